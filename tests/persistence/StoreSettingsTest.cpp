#include "persistence/StoreSettings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "TemporaryTree.h"

namespace tallowmere {
namespace {

std::string readText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(StoreSettings, EachKeyOfAnotherTypeKeepsItsDefaultAndMarksTheFileDamaged) {
    const StoreSettings defaults;
    EXPECT_EQ(StoreSettingsFile::decode("{}").settings, defaults);
    EXPECT_FALSE(StoreSettingsFile::decode("{}").damaged);
    EXPECT_FALSE(StoreSettingsFile::decode(R"({"other":1})").damaged);

    const auto mixed = StoreSettingsFile::decode(
        R"({"aiMonitoring":false,"aiLowSpaceGB":"30","aiCustomPaths":["/a","/b"]})");
    EXPECT_EQ(mixed.settings, (StoreSettings{false, 20, {"/a", "/b"}}));
    EXPECT_TRUE(mixed.damaged);

    for (const char* json :
         {R"({"aiMonitoring":1})", R"({"aiMonitoring":null})", R"({"aiLowSpaceGB":30.5})",
          R"({"aiLowSpaceGB":1e3})", R"({"aiLowSpaceGB":99999999999999999999})",
          R"({"aiCustomPaths":"/a"})", R"({"aiCustomPaths":["/a",2]})", "[]", "\"text\"", "{", "",
          "{\"aiCustomPaths\":[\"\xff\"]}"}) {
        const auto reading = StoreSettingsFile::decode(json);
        EXPECT_EQ(reading.settings, defaults) << json;
        EXPECT_TRUE(reading.damaged) << json;
    }
    EXPECT_EQ(StoreSettingsFile::decode(R"({"aiLowSpaceGB":-5})").settings.lowSpaceGB, -5);
}

TEST(StoreSettings, PathsOfAnyBytesRoundTripThroughTheFile) {
    testing::TemporaryTree tree;
    const auto file = tree / "config/Tallowmere/settings.json";
    const StoreSettings settings{false, 50, {"/srv/mod\xe8les", "/a/\"quoted\"\n", "/b"}};
    StoreSettingsFile::write(settings, file);
    EXPECT_EQ(readText(file),
              R"({"aiMonitoring":false,"aiLowSpaceGB":50,"aiCustomPaths":["/srv/mod\udce8les",)"
              R"("/a/\"quoted\"\n","/b"]})");
    const auto reading = StoreSettingsFile::read(file);
    EXPECT_EQ(reading.settings, settings);
    EXPECT_FALSE(reading.damaged);
    EXPECT_FALSE(StoreSettingsFile::read(tree / "missing.json").damaged);
}

TEST(StoreSettings, ADamagedFileIsKeptAsideUnderAFreeName) {
    testing::TemporaryTree tree;
    const auto file = tree.file("settings.json");
    std::ofstream(file) << "{\"aiCustomPaths\":[\"/keep";
    std::ofstream(tree / "settings.json.damaged") << "older";
    StoreSettingsFile::keepAside(file);
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(readText(tree / "settings.json.damaged"), "older");
    EXPECT_EQ(readText(tree / "settings.json.damaged-2"), "{\"aiCustomPaths\":[\"/keep");
    EXPECT_NO_THROW(StoreSettingsFile::keepAside(file));  // nothing left to keep

    // A file that exists but cannot be read counts as damaged, so it is not written over.
    const auto unreadable = tree.file("locked.json");
    ::chmod(unreadable.c_str(), 0);
    if (::geteuid() != 0) {
        EXPECT_TRUE(StoreSettingsFile::read(unreadable).damaged);
    }
    EXPECT_THROW(StoreSettingsFile::write({}, tree.file("plain") / "settings.json"),
                 std::system_error);
}

}  // namespace
}  // namespace tallowmere
