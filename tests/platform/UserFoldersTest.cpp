#include "platform/UserFolders.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

namespace tallowmere {
namespace {

using namespace std::string_literals;
using Folders = std::map<std::string, std::filesystem::path>;

const Folders defaults = {{"DESKTOP", "/home/dev/Desktop"},     {"DOWNLOAD", "/home/dev/Downloads"},
                          {"TEMPLATES", "/home/dev/Templates"}, {"PUBLICSHARE", "/home/dev/Public"},
                          {"DOCUMENTS", "/home/dev/Documents"}, {"MUSIC", "/home/dev/Music"},
                          {"PICTURES", "/home/dev/Pictures"},   {"VIDEOS", "/home/dev/Videos"}};

TEST(UserFolders, ReadsUserDirsLinesAsXdgUserDirsWritesThem) {
    const std::string text =
        "# This file is written by xdg-user-dirs-update\n"
        "XDG_DESKTOP_DIR=\"$HOME/\"\n"
        " \tXDG_DOWNLOAD_DIR = \"/data/Down loads/\"\n"
        "XDG_DOCUMENTS_DIR=\"$HOME/My \\\"Docs\\\" \\\\ \\$x\"\n"
        "XDG_MUSIC_DIR=\"$HOME/Musik\"\n"
        "XDG_MUSIC_DIR=\"$HOME/Music/../Audio\"\n"
        "XDG_PICTURES_DIR=\"$HOME//etc\"\n"
        "XDG_VIDEOS_DIR=\"/media/videos\" # on the big disk\n"
        "XDG_PROJECTS_DIR=\"$HOME/Projects\"\n";
    Folders expected = defaults;
    expected["DESKTOP"] = "/home/dev";
    expected["DOWNLOAD"] = "/data/Down loads";
    expected["DOCUMENTS"] = "/home/dev/My \"Docs\" \\ $x";
    expected["MUSIC"] = "/home/dev/Audio";
    expected["PICTURES"] = "/home/dev/etc";
    expected["VIDEOS"] = "/media/videos";
    EXPECT_EQ(UserFolders::parseXdgUserDirs(text, "/home/dev"), expected);
}

TEST(UserFolders, DamagedUserDirsLinesKeepTheDefaults) {
    const std::string text =
        "XDG_DESKTOP_DIR=\"Desktop2\"\n"
        "XDG_DOWNLOAD_DIR=\"$HOME/Unclosed\n"
        "XDG_DOCUMENTS_DIR=/unquoted\"\n"
        "# XDG_MUSIC_DIR=\"$HOME/Commented\"\n"
        "XDG_PICTURES_DIRX=\"$HOME/Wrong\"\n"
        "XDG_VIDEOS_DIR \"$HOME/NoEquals\"\n"
        "XDG_DIR=\"/x\"\nXDG_=\"/x\"\nXDG_\n"
        "XDG_TEMPLATES_DIR=\"$HOMEX/y\"\n"
        "XDG_PUBLICSHARE_DIR=\"$HOME\"\n"
        "\xff\xfe\0XDG_MUSIC_DIR=\"/nul\"\n\\"s;
    EXPECT_EQ(UserFolders::parseXdgUserDirs(text, "/home/dev"), defaults);
    EXPECT_EQ(UserFolders::parseXdgUserDirs("", "/home/dev/"), defaults);
    EXPECT_EQ(UserFolders::parseXdgUserDirs("", "/").at("VIDEOS"), "/Videos");
}

}  // namespace
}  // namespace tallowmere
