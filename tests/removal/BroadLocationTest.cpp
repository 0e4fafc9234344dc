#include "removal/BroadLocation.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "platform/AtomicFile.h"

namespace tallowmere {
namespace {

using Paths = std::vector<std::filesystem::path>;

// A home in a temporary folder, with every XDG base variable unset.
class BroadLocation : public ::testing::Test {
protected:
    void expectBroad(const Paths& paths, bool broad) const {
        for (const auto& path : paths) {
            EXPECT_EQ(StorageLocationTrash::isBroadLocation(path), broad) << path;
        }
    }

    testing::TemporaryTree tree;
    const std::filesystem::path home = tree.folder("home/dev");
    const testing::ScopedVariable homeVariable{"HOME", home.native()};
    const testing::ScopedVariable noData{"XDG_DATA_HOME", std::nullopt};
    const testing::ScopedVariable noConfig{"XDG_CONFIG_HOME", std::nullopt};
    const testing::ScopedVariable noCache{"XDG_CACHE_HOME", std::nullopt};
    const testing::ScopedVariable noState{"XDG_STATE_HOME", std::nullopt};
};

TEST_F(BroadLocation, RefusesSharedFoldersButNotOneToolsFolderInside) {
    expectBroad({home / ".local", home / ".local/share", home / ".config", home / ".cache",
                 home / ".local/state", home / "Library/Caches", home / "Library/Preferences"},
                true);
    expectBroad({"/opt/tool", home / ".config/Cursor", home / ".local/share/tool",
                 home / ".local/state/tool", home / "Library/Caches/tool", home / ".config2"},
                false);

    const testing::ScopedVariable config("XDG_CONFIG_HOME", (tree / "xdg/config/").native());
    const testing::ScopedVariable cache("XDG_CACHE_HOME", (tree / "xdg/x/../cache").native());
    const testing::ScopedVariable state("XDG_STATE_HOME", (tree / "xdg/state").native());
    expectBroad({tree / "xdg/config", tree / "xdg/cache", tree / "xdg/state", home / ".config",
                 home / ".local/share"},
                true);
    expectBroad({tree / "xdg/config/Cursor", tree / "xdg/state/tool", tree / "xdg"}, false);
}

TEST_F(BroadLocation, RefusesTrashesAndKeysWithEverythingInsideWhereverTheyLead) {
    tree.folder("keys");
    tree.folder("real-data");
    tree.symlink(tree / "keys", "home/dev/.ssh");
    tree.symlink(tree / "real-data", "data");
    const testing::ScopedVariable linked("XDG_DATA_HOME", (tree / "data").native());
    expectBroad({home / ".local/share/Trash/files/y", tree / "data", tree / "data/Trash/info",
                 tree / "real-data", tree / "real-data/Trash/files/y",
                 "/mnt/disk/.Trash-1000/files/z", "/mnt/disk/.Trash/1000", home / ".Trash/x",
                 home / ".ssh/x", tree / "keys/id_ed25519", home / ".gnupg/private-keys"},
                true);
    expectBroad({tree / "real-data/tool", "/mnt/disk/.Trash-x/z", "/mnt/disk/.Trash-/z",
                 "/mnt/disk/.Trashcan/z", home / ".local/share/Trashy", home / ".sshtool"},
                false);
}

TEST_F(BroadLocation, RefusesTheUserFoldersXdgUserDirsNames) {
    tree.folder("photos");
    tree.symlink(tree / "photos", "home/dev/Bilder");
    AtomicFile::write(home / ".config/user-dirs.dirs",
                      "XDG_DESKTOP_DIR=\"$HOME/\"\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"
                      "XDG_PICTURES_DIR=\"$HOME/Bilder\"\nXDG_DOWNLOAD_DIR=\"" +
                          (tree / "data/Downloads").native() + "\"\n");
    expectBroad({home / "Dokumente", home / "Bilder", tree / "photos", tree / "data/Downloads",
                 home / "Music"},
                true);
    expectBroad({home / "Dokumente/proj/.venv", home / "Documents", home / "Desktop", home / "proj",
                 tree / "photos/x"},
                false);

    AtomicFile::write(tree / "cfg/user-dirs.dirs", "XDG_MUSIC_DIR=\"$HOME/Audio\n\xff");
    const testing::ScopedVariable elsewhere("XDG_CONFIG_HOME", (tree / "cfg").native());
    expectBroad({home / "Documents", home / "Music", tree / "cfg"}, true);
    expectBroad({home / "Dokumente", home / "Audio"}, false);
}

}  // namespace
}  // namespace tallowmere
