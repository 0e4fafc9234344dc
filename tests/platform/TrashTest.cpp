#include "platform/Trash.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "platform/FileSystemError.h"
#include "platform/FolderDescriptors.h"

namespace tallowmere {
namespace {

namespace fs = std::filesystem;
using testing::ScopedVariable;
using testing::TemporaryTree;

constexpr char noUsableTrash[] = "No usable trash was found for this item’s file system.";
constexpr char mountsNotPermitted[] = "this system does not allow mounting in a private namespace";

FileIdentity identityOf(const fs::path& path) {
    struct stat status {};
    ::lstat(path.c_str(), &status);
    return {status.st_dev, status.st_ino};
}

std::string contentOf(const fs::path& file) {
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}

void writeText(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

// The Path line of an item's info file.
std::string recordedPath(const fs::path& trashFolder, const std::string& name) {
    const auto info = contentOf(trashFolder / "info" / (name + ".trashinfo"));
    const auto start = info.find("Path=");
    return info.substr(start, info.find('\n', start) - start);
}

// The description of the FileSystemError `action` throws, or "no error".
std::string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const FileSystemError& error) {
        return error.what();
    }
    return "no error";
}

// Moves `item` to the trash as a removal does: from its folder, opened without links.
Trash::TrashedItem moveToTrash(const fs::path& item) {
    return Trash::moveIn(openFolderWithoutLinks(item.parent_path()).get(), item);
}

// Moves a trashed item back as an undo does.
void restore(const fs::path& trashed, const fs::path& original) {
    const auto item = Trash::find(trashed, original);
    Trash::moveOut(item, openFolderWithoutLinks(original.parent_path()).get(), original.filename());
    Trash::forget(item);
}

// The trash location relative to `base`, for readable expectations.
std::string trashedAt(const fs::path& item, const fs::path& base) {
    return moveToTrash(item).location.lexically_relative(base).native();
}

bool isPrivateFolder(const fs::path& folder) {
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           (status.st_mode & 07777) == 0700 && status.st_uid == ::getuid();
}

// The home trash inside a temporary tree, found through XDG_DATA_HOME.
class TrashTest : public ::testing::Test {
protected:
    TemporaryTree tree;
    ScopedVariable dataHome{"XDG_DATA_HOME", (tree / "data").native()};
    fs::path trash = tree / "data/Trash";
};

TEST_F(TrashTest, MovesFilesAndFoldersInAndBackOut) {
    const auto file = tree.file("project/notes.txt", 5);
    const auto folder = tree.folder("project/cache");
    tree.file("project/cache/a/b.bin", 3);
    const auto fileIdentity = identityOf(file);
    const auto folderIdentity = identityOf(folder);

    const auto trashedFile = moveToTrash(file);
    const auto trashedFolder = moveToTrash(folder);

    EXPECT_EQ(trashedFile.location, trash / "files/notes.txt");
    EXPECT_EQ(trashedFolder.location, trash / "files/cache");
    EXPECT_FALSE(fs::exists(file));
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(contentOf(trash / "files/cache/a/b.bin"), "xxx");
    EXPECT_TRUE(isPrivateFolder(trash));
    EXPECT_TRUE(isPrivateFolder(trash / "files"));
    EXPECT_TRUE(isPrivateFolder(trash / "info"));
    const std::regex infoFormat(
        "\\[Trash Info\\]\nPath=" + (tree / "project/cache").native() +
        "\nDeletionDate=[0-9]{4}-[01][0-9]-[0-3][0-9]T[0-2][0-9]:[0-5][0-9]:[0-6][0-9]\n");
    EXPECT_TRUE(std::regex_match(contentOf(trash / "info/cache.trashinfo"), infoFormat))
        << contentOf(trash / "info/cache.trashinfo");

    restore(trashedFile.location, file);
    restore(trashedFolder.location, folder);

    EXPECT_EQ(identityOf(file), fileIdentity);
    EXPECT_EQ(identityOf(folder), folderIdentity);
    EXPECT_EQ(contentOf(folder / "a/b.bin"), "xxx");
    EXPECT_TRUE(fs::is_empty(trash / "files"));
    EXPECT_TRUE(fs::is_empty(trash / "info"));
}

TEST_F(TrashTest, RecordsOddNamesPercentEncodedAndMovesLinksAsLinks) {
    const auto odd = tree.file("odd/we\nird \xff%.txt");
    const auto target = tree.file("odd/target.txt");
    const auto link = tree.symlink(target.native(), "odd/link");

    const auto trashedOdd = moveToTrash(odd);
    const auto trashedLink = moveToTrash(link);

    // The temporary root holds only letters, digits, "/" and "-", which stay as they are.
    EXPECT_EQ(recordedPath(trash, "we\nird \xff%.txt"),
              "Path=" + tree.root().native() + "/odd/we%0Aird%20%FF%25.txt");
    EXPECT_TRUE(fs::is_symlink(trashedLink.location));
    EXPECT_EQ(contentOf(target), "x");
    restore(trashedOdd.location, odd);
    restore(trashedLink.location, link);
    EXPECT_EQ(contentOf(odd), "x");
    EXPECT_EQ(fs::read_symlink(link), target);
}

TEST_F(TrashTest, GivesEachItemAFreeNameAndItsOwnRecord) {
    const auto first = tree.file("a/same", 1);
    const auto second = tree.file("b/same", 2);
    const auto third = tree.file("c/same", 3);
    EXPECT_EQ(trashedAt(first, trash), "files/same");
    EXPECT_EQ(trashedAt(second, trash), "files/same.2");
    EXPECT_EQ(trashedAt(third, trash), "files/same.3");
    EXPECT_EQ(recordedPath(trash, "same.2"), "Path=" + (tree / "b/same").native());

    // A leftover folder in files/ without a record, and a record without an item, are neither
    // replaced nor reused.
    tree.folder("data/Trash/files/orphan");
    writeText(trash / "info/lonely.trashinfo", "kept");
    EXPECT_EQ(trashedAt(tree.file("d/orphan"), trash), "files/orphan.2");
    EXPECT_EQ(trashedAt(tree.file("d/lonely"), trash), "files/lonely.2");
    EXPECT_TRUE(fs::is_empty(trash / "files/orphan"));
    EXPECT_FALSE(fs::exists(trash / "info/orphan.trashinfo"));
    EXPECT_EQ(contentOf(trash / "info/lonely.trashinfo"), "kept");

    // A name too long for its info file is cut, never inside a character.
    std::string longName;
    for (int character = 0; character < 125; ++character) {
        longName += "é";
    }
    const auto cut = trashedAt(tree.file("e/" + longName), trash);
    EXPECT_EQ(cut, "files/" + longName.substr(0, 244));
    EXPECT_TRUE(fs::exists(trash / "info" / (longName.substr(0, 244) + ".trashinfo")));

    restore(trash / "files/same.3", third);
    restore(trash / "files/same", first);
    EXPECT_EQ(fs::file_size(first), 1U);
    EXPECT_EQ(fs::file_size(third), 3U);
    EXPECT_TRUE(fs::exists(trash / "info/same.2.trashinfo"));
    EXPECT_FALSE(fs::exists(trash / "info/same.trashinfo"));
}

TEST_F(TrashTest, GivesBackOnlyWhatItsRecordSaysCameFromThere) {
    const auto notes = tree.file("project/notes.txt", 4);
    const auto other = tree.file("project/other.txt", 2);
    const auto trashedNotes = moveToTrash(notes).location;
    const auto trashedOther = moveToTrash(other).location;
    const auto lookalike = tree.file("fake/files/notes.txt");
    writeText(tree / "fake/info/notes.txt.trashinfo",
              "[Trash Info]\nPath=" + notes.native() + "\nDeletionDate=2026-01-01T00:00:00\n");

    const std::string notInTrash =
        "It is not in one of your trash folders, so it is not restored from there.";
    const std::string otherPlace =
        "Its trash record does not name this place as where it came from, so it is not restored "
        "there.";
    EXPECT_EQ(failureOf([&] { Trash::find(lookalike, notes); }), notInTrash);
    EXPECT_EQ(failureOf([&] { Trash::find(tree / "project/notes.txt", notes); }),
              "It is not in a trash’s files folder, so it is not restored from there.");
    EXPECT_EQ(failureOf([&] { Trash::find(trashedOther, notes); }), otherPlace);
    EXPECT_EQ(failureOf([&] { Trash::find(trashedNotes, tree / "autostart/notes.txt"); }),
              otherPlace);
    writeText(trash / "info/other.txt.trashinfo", "[Trash Info]\nPath=%2");
    EXPECT_EQ(failureOf([&] { Trash::find(trashedOther, other); }), otherPlace);

    // The real record still gives it back, and never over what now stands at its place.
    writeText(notes, "new");
    const auto found = Trash::find(trashedNotes, notes);
    const auto folder = openFolderWithoutLinks(notes.parent_path());
    EXPECT_EQ(failureOf([&] { Trash::moveOut(found, folder.get(), "notes.txt"); }),
              "An item with the same name already exists.");
    EXPECT_EQ(contentOf(notes), "new");
    EXPECT_EQ(contentOf(trashedNotes), "xxxx");
    fs::remove(notes);
    restore(trashedNotes, notes);
    EXPECT_EQ(contentOf(notes), "xxxx");
    EXPECT_FALSE(fs::exists(trash / "info/notes.txt.trashinfo"));
}

TEST_F(TrashTest, NeverUsesATrashOthersCanChange) {
    const auto item = tree.file("project/item");
    tree.folder("data/Trash/files");
    tree.folder("data/Trash/info");
    const std::string refused = "The trash " + trash.native() +
                                " belongs to another user or others may change it, so nothing was "
                                "moved there.";
    for (const auto* part : {"", "files", "info"}) {
        fs::permissions(trash / part, fs::perms::group_write, fs::perm_options::add);
        EXPECT_EQ(failureOf([&] { moveToTrash(item); }), refused) << part;
        fs::permissions(trash / part, fs::perms::group_write, fs::perm_options::remove);
    }
    EXPECT_TRUE(fs::exists(item));
    if (::getuid() == 0) {
        ::chown(trash.c_str(), 65534, 65534);
        EXPECT_EQ(failureOf([&] { moveToTrash(item); }), refused);
        EXPECT_TRUE(fs::exists(item));
    }
}

TEST_F(TrashTest, NeverUsesATrashReachedThroughALinkAndLeavesTheItemInPlace) {
    const auto item = tree.file("project/item");
    tree.folder("elsewhere");
    tree.folder("data");
    tree.symlink((tree / "elsewhere").native(), "data/Trash");
    EXPECT_EQ(failureOf([&] { moveToTrash(item); }), noUsableTrash);

    fs::remove(trash);
    tree.folder("data/Trash/files");
    tree.symlink((tree / "elsewhere").native(), "data/Trash/info");
    EXPECT_EQ(failureOf([&] { moveToTrash(item); }), noUsableTrash);

    EXPECT_TRUE(fs::exists(item));
    EXPECT_TRUE(fs::is_empty(tree / "elsewhere"));
    EXPECT_TRUE(fs::is_empty(trash / "files"));

    fs::remove_all(trash);
    EXPECT_EQ(failureOf([&] { moveToTrash(tree / "project/missing"); }), "The file doesn’t exist.");
    EXPECT_TRUE(fs::is_empty(trash / "info"));
    EXPECT_TRUE(fs::exists(item));
}

TEST_F(TrashTest, FallsBackToTheHomeFolderWithoutAnAbsoluteDataFolder) {
    ScopedVariable relativeDataHome("XDG_DATA_HOME", "relative/data");
    ScopedVariable home("HOME", (tree / "home").native());
    const auto item = tree.file("project/item");

    EXPECT_EQ(trashedAt(item, tree.root()), "home/.local/share/Trash/files/item");
}

// Mounts a fresh tmpfs at `folder`; throws when it cannot.
void mountTemporaryFileSystem(const fs::path& folder) {
    fs::create_directories(folder);
    if (::mount("tmpfs", folder.c_str(), "tmpfs", 0, "mode=0755") != 0) {
        throw std::runtime_error("cannot mount a tmpfs at " + folder.native());
    }
}

void bindMount(const fs::path& source, const fs::path& target) {
    fs::create_directories(target);
    if (::mount(source.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        throw std::runtime_error("cannot bind " + source.native() + " to " + target.native());
    }
}

// Trashes `item` and tells where it went and the path its record holds, relative to `volume`.
std::string trashAndDescribe(const fs::path& item, const fs::path& volume) {
    const auto location = moveToTrash(item).location;
    return location.lexically_relative(volume).native() + " " +
           recordedPath(location.parent_path().parent_path(), location.filename().native());
}

std::string joinLines(const std::vector<std::string>& lines) {
    std::string joined;
    for (const auto& line : lines) {
        joined += line + "\n";
    }
    return joined;
}

TEST_F(TrashTest, UsesTheTrashAtTheTopOfAnotherMount) {
    const auto volume = tree / "volume";
    const std::string user = std::to_string(::getuid());
    const auto report = testing::runInMountNamespace([&] {
        mountTemporaryFileSystem(volume);
        const auto shared = volume / ".Trash";
        std::vector<std::string> lines;
        lines.push_back(trashAndDescribe(tree.file("volume/project/one"), volume));
        lines.push_back(isPrivateFolder(volume / (".Trash-" + user)) ? "private" : "open");
        // A shared .Trash is used only when it is a real folder with the sticky bit.
        fs::create_directory(shared);
        fs::permissions(shared, fs::perms::all);
        lines.push_back(trashAndDescribe(tree.file("volume/project/two"), volume));
        fs::remove(shared);
        tree.folder("volume/sticky");
        fs::permissions(volume / "sticky", fs::perms::all | fs::perms::sticky_bit);
        fs::create_directory_symlink(volume / "sticky", shared);
        lines.push_back(trashAndDescribe(tree.file("volume/project/three"), volume));
        fs::remove(shared);
        fs::create_directory(shared);
        fs::permissions(shared, fs::perms::all | fs::perms::sticky_bit);
        lines.push_back(trashAndDescribe(tree.file("volume/project/four"), volume));
        lines.push_back(trashAndDescribe(tree.file("volume/top"), volume));

        restore(shared / user / "files/four", volume / "project/four");
        lines.push_back(fs::exists(volume / "project/four") ? "restored" : "not restored");
        lines.push_back(fs::exists(shared / user / "info/four.trashinfo") ? "record kept"
                                                                          : "record gone");
        lines.push_back(fs::exists(tree / "data") ? "home trash made" : "no home trash");
        return joinLines(lines);
    });
    if (!report) {
        GTEST_SKIP() << mountsNotPermitted;
    }
    const std::string own = ".Trash-" + user;
    const std::string shared = ".Trash/" + user;
    EXPECT_EQ(
        *report,
        joinLines({own + "/files/one Path=project/one", "private",
                   own + "/files/two Path=project/two", own + "/files/three Path=project/three",
                   shared + "/files/four Path=project/four", shared + "/files/top Path=top",
                   "restored", "record gone", "no home trash"}));
}

TEST_F(TrashTest, TellsMountsApartEvenOnOneDevice) {
    tree.folder("data");
    const auto report = testing::runInMountNamespace([&] {
        // A bind mount shares the device of the home trash, yet a rename between them fails:
        // its items go to the trash at its own top.
        bindMount(tree.folder("source"), tree / "bound");
        std::string lines = trashedAt(tree.file("bound/item"), tree.root()) + "\n";

        // A home trash whose files/ is another mount: the move fails and nothing stays behind.
        tree.folder("data/Trash/info");
        bindMount(tree.folder("data/Trash/files"), trash / "files");
        const auto item = tree.file("project/item");
        lines += failureOf([&] { moveToTrash(item); }) + "\n";
        lines += fs::exists(item) ? "in place " : "gone ";
        return lines + (fs::is_empty(trash / "info") ? "no record" : "record left");
    });
    if (!report) {
        GTEST_SKIP() << mountsNotPermitted;
    }
    EXPECT_EQ(*report, "bound/.Trash-" + std::to_string(::getuid()) +
                           "/files/item\n"
                           "Its trash is on another mount, and items are never copied between "
                           "file systems, so it was left in place.\n"
                           "in place no record");
}

TEST_F(TrashTest, RefusesAMountWithoutAUsableTrash) {
    const auto volume = tree / "volume";
    const auto report = testing::runInMountNamespace([&] {
        mountTemporaryFileSystem(volume);
        const auto item = tree.file("volume/item");
        const auto own = ".Trash-" + std::to_string(::getuid());
        tree.folder("volume/elsewhere");
        fs::create_directory_symlink(volume / "elsewhere", volume / own);
        std::string lines = failureOf([&] { moveToTrash(item); }) + "\n";
        fs::remove(volume / own);
        tree.folder("volume/" + own);
        ::chown((volume / own).c_str(), 65534, 65534);
        lines += failureOf([&] { moveToTrash(item); }) + "\n";
        return lines +
               (fs::exists(item) && fs::is_empty(volume / "elsewhere") && fs::is_empty(volume / own)
                    ? "untouched"
                    : "touched");
    });
    if (!report) {
        GTEST_SKIP() << mountsNotPermitted;
    }
    EXPECT_EQ(*report, std::string(noUsableTrash) + "\nThe trash " + volume.native() + "/.Trash-" +
                           std::to_string(::getuid()) +
                           " belongs to another user or others may change it, so nothing was moved "
                           "there.\nuntouched");
}

}  // namespace
}  // namespace tallowmere
