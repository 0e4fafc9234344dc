#include "catalog/LocationDiscovery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "TemporaryTree.h"
#include "catalog/ToolCatalog.h"
#include "measurement/AIStorageScanner.h"

namespace tallowmere::AIStorageScanner {
namespace {

using ::testing::ElementsAre;
using testing::TemporaryTree;

std::vector<std::string> pathsOf(const std::vector<StorageLocation>& locations) {
    std::vector<std::string> paths;
    for (const auto& location : locations) {
        paths.push_back(location.relativePath);
    }
    return paths;
}

std::vector<StorageLocation> discovered(const TemporaryTree& home,
                                        const Environment& environment = {},
                                        StorageLayout layout = StorageLayout::linux) {
    return discoverLocations(home.root(), environment, layout);
}

std::vector<StorageLocation> beyondCatalog(const std::vector<StorageLocation>& locations) {
    return {locations.begin() + static_cast<std::ptrdiff_t>(AIStorageScanner::locations().size()),
            locations.end()};
}

TEST(LocationDiscovery, EmptyHomeGivesTheCatalogPlacedForItsLayout) {
    TemporaryTree home;
    const auto mac = discovered(home, {}, StorageLayout::macos);
    EXPECT_EQ(pathsOf(mac), pathsOf(locations()));

    const auto onLinux = discovered(home);
    ASSERT_EQ(onLinux.size(), 144u);
    EXPECT_EQ(onLinux[22].relativePath, ".config/IBM Bob");
    EXPECT_EQ(onLinux[54].relativePath, ".config/Cursor/Cache");
    EXPECT_EQ(onLinux[27].relativePath, ".config/opencode");
    EXPECT_EQ(onLinux[0].detail, locations()[0].detail);
}

TEST(LocationDiscovery, DetailsNameTheFileManagerOfTheirLayout) {
    TemporaryTree home;
    const auto details = [&](StorageLayout layout) {
        std::string all;
        for (const auto& location :
             measuredLocations(home.root(), {}, layout, {(home / "Work").native()})) {
            all += location.detail + "\n";
        }
        return all;
    };
    const std::string mac = details(StorageLayout::macos);
    const std::string onLinux = details(StorageLayout::linux);

    EXPECT_THAT(mac, ::testing::HasSubstr("Added by you. Review in Finder; this may contain"));
    EXPECT_THAT(mac, ::testing::HasSubstr("Native macOS Goose data and configuration. "));
    EXPECT_THAT(onLinux, ::testing::HasSubstr(
                             "Added by you. Review in the file manager; this may contain active "
                             "work or conversation history."));
    EXPECT_THAT(onLinux, ::testing::HasSubstr("Review in the file manager; OpenCode may need"));
    EXPECT_THAT(onLinux, ::testing::HasSubstr("Goose desktop data and configuration. "));
    EXPECT_THAT(onLinux, ::testing::Not(::testing::HasSubstr("Finder")));
    EXPECT_THAT(onLinux, ::testing::Not(::testing::HasSubstr("macOS")));
}

TEST(LocationDiscovery, XdgVariablesMoveTheirFolders) {
    TemporaryTree home;
    const auto moved = discovered(home, {{"XDG_CACHE_HOME", "/c/"}, {"XDG_CONFIG_HOME", "/x"}});
    EXPECT_EQ(moved[11].relativePath, "/c/huggingface");
    EXPECT_EQ(moved[13].relativePath, "/c/lm-studio/models");
    EXPECT_EQ(moved[26].relativePath, "/c/opencode");
    EXPECT_EQ(moved[27].relativePath, "/x/opencode");
    EXPECT_EQ(moved[38].relativePath, "/x/Cursor");  // the Linux layout, then XDG_CONFIG_HOME
    EXPECT_EQ(moved[25].relativePath, ".local/share/opencode");

    for (const char* ignored : {"c", ""}) {
        EXPECT_EQ(pathsOf(discovered(home, {{"XDG_CACHE_HOME", ignored}})),
                  pathsOf(discovered(home)));
    }

    // Pointing a variable at its default place names the same folders, so nothing repeats.
    const auto same = discovered(home, {{"XDG_DATA_HOME", (home / ".local/share").native()}});
    ASSERT_EQ(same.size(), 144u);
    EXPECT_EQ(same[25].relativePath, (home / ".local/share/opencode").native());
    for (std::size_t index = 0; index < same.size(); ++index) {
        EXPECT_EQ(same[index].url(home.root()), discovered(home)[index].url(home.root()));
    }

    // Two catalog rows that land on one folder: the first keeps its place.
    const auto repeated = discovered(home, {{"XDG_CACHE_HOME", (home / ".local/share").native()}});
    EXPECT_EQ(repeated.size(), 143u);
    EXPECT_EQ(repeated[25].relativePath, ".local/share/opencode");
}

TEST(LocationDiscovery, FindsExtensionsInEditorsProfilesAndServers) {
    TemporaryTree home;
    const std::string cursor = ".config/Cursor/User";
    home.folder(cursor + "/globalStorage/Saoudrizwan.Claude-Dev");
    home.folder(cursor + "/globalStorage/unknown.extension");
    home.folder(cursor + "/globalStorage/.hidden");
    home.file(cursor + "/globalStorage/github.copilot", 1);  // a file, not a folder
    home.folder(cursor + "/profiles/work/globalStorage/saoudrizwan.claude-dev");
    home.folder(cursor + "/profiles/home/globalStorage/continue.continue");
    home.folder(".config/Code/User/globalStorage/sourcegraph.amp");
    home.folder(".vscode-server/data/User/globalStorage/github.copilot-chat");
    home.folder("outside/kilocode.kilo-code");
    home.symlink("../../../../outside/kilocode.kilo-code",
                 cursor + "/globalStorage/kilocode.kilo-code");

    const auto found = beyondCatalog(discovered(home));
    const auto root = home.root().native();
    EXPECT_THAT(
        pathsOf(found),
        ElementsAre(
            root + "/.config/Code/User/globalStorage/sourcegraph.amp",
            root + "/" + cursor + "/globalStorage/Saoudrizwan.Claude-Dev",
            root + "/" + cursor + "/profiles/home/globalStorage/continue.continue",
            root + "/" + cursor + "/profiles/work/globalStorage/saoudrizwan.claude-dev",
            root + "/.vscode-server/data/User/globalStorage/github.copilot-chat",
            root + "/" + cursor + "/globalStorage/Saoudrizwan.Claude-Dev/tasks",
            root + "/" + cursor + "/globalStorage/Saoudrizwan.Claude-Dev/checkpoints",
            root + "/" + cursor + "/profiles/work/globalStorage/saoudrizwan.claude-dev/tasks",
            root + "/" + cursor +
                "/profiles/work/globalStorage/saoudrizwan.claude-dev/checkpoints"));
    EXPECT_EQ(found[0].owner, "Amp");
    EXPECT_EQ(found[1].owner, "Cline");
    EXPECT_EQ(found[1].category, "IDE extension data");
    EXPECT_EQ(found[3].detail,
              "Cursor · profile work. Task history, checkpoints, indexes and settings belong to "
              "this extension. Manage them through Cline.");
    EXPECT_EQ(found[4].detail,
              "Local .vscode-server extension data. Remote hosts and containers must be measured "
              "separately.");

    // The macOS layout looks under Library/Application Support instead.
    EXPECT_EQ(discovered(home, {}, StorageLayout::macos).size(), 145u);  // only the server one
    EXPECT_EQ(beyondCatalog(discovered(home, {{"XDG_CONFIG_HOME", "/nowhere"}})).size(), 1u);
}

TEST(LocationDiscovery, NeverLooksBehindLinksOrPastTheLimits) {
    TemporaryTree home;
    home.folder("real/globalStorage/saoudrizwan.claude-dev");
    home.folder(".config/Kiro");
    home.symlink("../../real", ".config/Kiro/User");
    const std::string storage = ".config/Windsurf/User/globalStorage/";
    for (int index = 0; index < 512; ++index) {
        home.file(storage + "a" + std::to_string(1000 + index), 0);
    }
    home.folder(storage + "github.copilot");
    EXPECT_TRUE(beyondCatalog(discovered(home)).empty());

    std::filesystem::remove(home / (storage + "a1000"));
    EXPECT_EQ(beyondCatalog(discovered(home)).size(), 1u);
    EXPECT_THAT(safeDirectories(home / ".config/Windsurf/User/globalStorage", 512),
                ElementsAre(home / (storage + "github.copilot")));
    EXPECT_TRUE(safeDirectories(home / ".config/Kiro/User", 512).empty());
    EXPECT_TRUE(safeDirectories(home / "missing", 512).empty());
}

TEST(LocationDiscovery, StopsInTheEditorWalkWhenAsked) {
    TemporaryTree home;
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(discoverLocations(home.root(), {}, StorageLayout::linux, stop.get_token()),
                 ScanCancelled);
}

}  // namespace
}  // namespace tallowmere::AIStorageScanner
