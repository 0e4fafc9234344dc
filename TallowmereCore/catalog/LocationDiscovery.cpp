#include "catalog/LocationDiscovery.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>

#include "catalog/CustomFolder.h"
#include "catalog/EditorBreakdown.h"
#include "catalog/ToolCatalog.h"
#include "measurement/AIStorageScanner.h"
#include "platform/PathRules.h"
#include "platform/ShallowListing.h"

namespace tallowmere::AIStorageScanner {

namespace {

struct XdgOverride {
    std::string_view prefix;
    const char* variable;
};

constexpr std::array<XdgOverride, 4> xdgOverrides = {{{".local/share/", "XDG_DATA_HOME"},
                                                      {".cache/", "XDG_CACHE_HOME"},
                                                      {".config/", "XDG_CONFIG_HOME"},
                                                      {".local/state/", "XDG_STATE_HOME"}}};

constexpr std::array<std::string_view, 11> editors = {
    "Code",        "Code - Insiders", "VSCodium", "Cursor",  "Windsurf",          "Kiro",
    "Antigravity", "Antigravity IDE", "Trae",     "IBM Bob", "IBM Bob - Insiders"};

constexpr std::array<std::string_view, 2> remoteServerFolders = {".vscode-server",
                                                                 ".vscode-server-insiders"};

constexpr std::string_view applicationSupport = "Library/Application Support/";
constexpr std::string_view linuxConfig = ".config/";
constexpr std::size_t profilesLimit = 256;
constexpr std::size_t globalStorageLimit = 512;

void throwIfStopped(const std::stop_token& stopToken) {
    if (stopToken.stop_requested()) {
        throw ScanCancelled();
    }
}

std::string placedForLayout(const std::string& relativePath, StorageLayout layout) {
    if (layout == StorageLayout::linux && relativePath.starts_with(applicationSupport)) {
        return std::string(linuxConfig) + relativePath.substr(applicationSupport.size());
    }
    return relativePath;
}

// The value of an XDG variable taken as a folder, with `rest` appended as path components.
std::string joinedUnder(std::string folder, std::string_view rest) {
    while (folder.size() > 1 && folder.ends_with('/')) {
        folder.pop_back();
    }
    return folder.ends_with('/') ? folder + std::string(rest) : folder + "/" + std::string(rest);
}

std::string movedByEnvironment(const std::string& relativePath, const Environment& environment) {
    for (const auto& [prefix, variable] : xdgOverrides) {
        if (!relativePath.starts_with(prefix)) {
            continue;
        }
        const auto value = environment.find(variable);
        if (value != environment.end() && value->second.starts_with('/')) {
            return joinedUnder(value->second, std::string_view(relativePath).substr(prefix.size()));
        }
    }
    return relativePath;
}

// Where a home-relative catalog path lies for this layout and environment.
std::string placed(const std::string& relativePath, const Environment& environment,
                   StorageLayout layout) {
    return movedByEnvironment(placedForLayout(relativePath, layout), environment);
}

void appendEditorExtensions(std::vector<StorageLocation>& result, const std::filesystem::path& home,
                            const Environment& environment, StorageLayout layout,
                            const std::stop_token& stopToken) {
    for (const std::string_view editor : editors) {
        throwIfStopped(stopToken);
        const std::string userPath =
            std::string(applicationSupport) + std::string(editor) + "/User";
        const std::filesystem::path user =
            StorageLocation{"", "", placed(userPath, environment, layout), ""}.url(home);
        std::vector<std::filesystem::path> searched = {user};
        std::ranges::copy(safeDirectories(user / "profiles", profilesLimit),
                          std::back_inserter(searched));
        for (const auto& folder : searched) {
            throwIfStopped(stopToken);
            const auto profile = folder == user
                                     ? std::nullopt
                                     : std::optional<std::string>(PathRules::lastComponent(folder));
            for (const auto& extension :
                 safeDirectories(folder / "globalStorage", globalStorageLimit)) {
                if (auto location =
                        attributeEditorExtension(extension, std::string(editor), profile)) {
                    result.push_back(std::move(*location));
                }
            }
        }
    }
}

void appendServerExtensions(std::vector<StorageLocation>& result,
                            const std::filesystem::path& home) {
    for (const std::string_view server : remoteServerFolders) {
        const auto storage = home / server / "data/User/globalStorage";
        for (const auto& extension : safeDirectories(storage, globalStorageLimit)) {
            if (auto location = attributeServerExtension(extension, std::string(server))) {
                result.push_back(std::move(*location));
            }
        }
    }
}

std::vector<StorageLocation> withoutRepeatedFolders(std::vector<StorageLocation> locations,
                                                    const std::filesystem::path& home) {
    std::unordered_set<std::string> seen;
    std::erase_if(locations, [&](const StorageLocation& location) {
        return !seen.insert(location.url(home).native()).second;
    });
    return locations;
}

}  // namespace

std::vector<StorageLocation> placedCatalog(const Environment& environment, StorageLayout layout) {
    std::vector<StorageLocation> result = locations();
    for (auto& location : result) {
        location.relativePath = placed(location.relativePath, environment, layout);
        location.detail = wordedForLayout(location.detail, layout);
    }
    return result;
}

std::vector<StorageLocation> discoverLocations(const std::filesystem::path& home,
                                               const Environment& environment, StorageLayout layout,
                                               std::stop_token stopToken) {
    std::vector<StorageLocation> result = placedCatalog(environment, layout);
    appendEditorExtensions(result, home, environment, layout, stopToken);
    appendServerExtensions(result, home);
    std::ranges::move(extensionBreakdown(result), std::back_inserter(result));
    return withoutRepeatedFolders(std::move(result), home);
}

std::vector<StorageLocation> measuredLocations(const std::filesystem::path& home,
                                               const Environment& environment, StorageLayout layout,
                                               const std::vector<std::string>& trackedFolders,
                                               std::stop_token stopToken) {
    auto locations = discoverLocations(home, environment, layout, stopToken);
    for (const auto& folder : trackedFolders) {
        locations.push_back(customFolderLocation(folder, layout));
    }
    return locations;
}

std::vector<std::filesystem::path> safeDirectories(const std::filesystem::path& folder,
                                                   std::size_t limit) {
    const auto standard = PathRules::standardized(folder);
    if (PathRules::resolvingSymlinks(standard) != standard) {
        return {};
    }
    auto entries = listVisibleEntries(standard);
    if (!entries) {
        return {};
    }
    std::ranges::sort(*entries, {}, &ListedEntry::name);
    entries->resize(std::min(entries->size(), limit));
    std::vector<std::filesystem::path> folders;
    for (const auto& entry : *entries) {
        const EntryKind kind =
            entry.kind == EntryKind::unknown ? entryKindAt(standard, entry.name) : entry.kind;
        if (kind == EntryKind::directory) {
            folders.push_back(standard / entry.name);
        }
    }
    return folders;
}

}  // namespace tallowmere::AIStorageScanner
