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

// The trash location relative to `base`, for readable expectations.
std::string trashedAt(const fs::path& item, const fs::path& base) {
    return Trash::moveToTrash(item, identityOf(item)).location.lexically_relative(base).native();
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

    const auto trashedFile = Trash::moveToTrash(file, fileIdentity);
    const auto trashedFolder = Trash::moveToTrash(folder, folderIdentity);

    EXPECT_EQ(trashedFile.location, trash / "files/notes.txt");
    EXPECT_EQ(trashedFolder.location, trash / "files/cache");
    EXPECT_TRUE(trashedFile.identityMatches);
    EXPECT_TRUE(trashedFolder.identityMatches);
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

    Trash::restore(trashedFile.location, file);
    Trash::restore(trashedFolder.location, folder);

    EXPECT_EQ(identityOf(file), fileIdentity);
    EXPECT_EQ(identityOf(folder), folderIdentity);
    EXPECT_EQ(contentOf(folder / "a/b.bin"), "xxx");
    EXPECT_TRUE(fs::is_empty(trash / "files"));
    EXPECT_TRUE(fs::is_empty(trash / "info"));

    // Another item than the expected one is still moved, and reported.
    const auto replaced = Trash::moveToTrash(file, folderIdentity);
    EXPECT_EQ(replaced.location, trash / "files/notes.txt");
    EXPECT_FALSE(replaced.identityMatches);
}

TEST_F(TrashTest, RecordsOddNamesPercentEncodedAndMovesLinksAsLinks) {
    const auto odd = tree.file("odd/we\nird \xff%.txt");
    const auto target = tree.file("odd/target.txt");
    const auto link = tree.symlink(target.native(), "odd/link");

    const auto trashedOdd = Trash::moveToTrash(odd, identityOf(odd));
    const auto trashedLink = Trash::moveToTrash(link, identityOf(link));

    // The temporary root holds only letters, digits, "/" and "-", which stay as they are.
    EXPECT_EQ(recordedPath(trash, "we\nird \xff%.txt"),
              "Path=" + tree.root().native() + "/odd/we%0Aird%20%FF%25.txt");
    EXPECT_TRUE(fs::is_symlink(trashedLink.location));
    EXPECT_EQ(contentOf(target), "x");
    Trash::restore(trashedOdd.location, odd);
    Trash::restore(trashedLink.location, link);
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

    Trash::restore(trash / "files/same.3", third);
    Trash::restore(trash / "files/same", first);
    EXPECT_EQ(fs::file_size(first), 1U);
    EXPECT_EQ(fs::file_size(third), 3U);
    EXPECT_TRUE(fs::exists(trash / "info/same.2.trashinfo"));
    EXPECT_FALSE(fs::exists(trash / "info/same.trashinfo"));
}

TEST_F(TrashTest, RestoreNeverReplacesFollowsLinksOrCreatesFolders) {
    const auto taken = tree.file("taken/notes.txt", 4);
    const auto gone = tree.file("gone/notes.txt");
    const auto linked = tree.file("linked/notes.txt");
    const auto trashedTaken = Trash::moveToTrash(taken, identityOf(taken)).location;
    const auto trashedGone = Trash::moveToTrash(gone, identityOf(gone)).location;
    const auto trashedLinked = Trash::moveToTrash(linked, identityOf(linked)).location;
    writeText(taken, "new");
    fs::remove_all(tree / "gone");
    fs::rename(tree / "linked", tree / "elsewhere");
    tree.symlink((tree / "elsewhere").native(), "linked");

    EXPECT_EQ(failureOf([&] { Trash::restore(trashedTaken, taken); }),
              "An item with the same name already exists.");
    EXPECT_EQ(failureOf([&] { Trash::restore(trashedGone, gone); }),
              "The folder it was in no longer exists.");
    EXPECT_EQ(failureOf([&] { Trash::restore(trashedLinked, linked); }),
              "A symbolic link was found where a folder was expected.");

    EXPECT_EQ(contentOf(taken), "new");
    EXPECT_EQ(contentOf(trashedTaken), "xxxx");
    EXPECT_FALSE(fs::exists(tree / "gone"));
    EXPECT_TRUE(fs::is_empty(tree / "elsewhere"));
    for (const auto& trashed : {trashedTaken, trashedGone, trashedLinked}) {
        EXPECT_TRUE(fs::exists(trashed));
        EXPECT_TRUE(fs::exists(trash / "info" / (trashed.filename().native() + ".trashinfo")));
    }
}

TEST_F(TrashTest, NeverUsesATrashReachedThroughALinkAndLeavesTheItemInPlace) {
    const auto item = tree.file("project/item");
    tree.folder("elsewhere");
    tree.folder("data");
    tree.symlink((tree / "elsewhere").native(), "data/Trash");
    EXPECT_EQ(failureOf([&] { Trash::moveToTrash(item, identityOf(item)); }), noUsableTrash);

    fs::remove(trash);
    tree.folder("data/Trash/files");
    tree.symlink((tree / "elsewhere").native(), "data/Trash/info");
    EXPECT_EQ(failureOf([&] { Trash::moveToTrash(item, identityOf(item)); }), noUsableTrash);

    EXPECT_TRUE(fs::exists(item));
    EXPECT_TRUE(fs::is_empty(tree / "elsewhere"));
    EXPECT_TRUE(fs::is_empty(trash / "files"));

    tree.symlink((tree / "project").native(), "through-link");
    EXPECT_EQ(failureOf([&] { Trash::moveToTrash(tree / "through-link/item", {}); }),
              "A symbolic link was found where a folder was expected.");
    EXPECT_EQ(failureOf([&] { Trash::moveToTrash(tree / "project/missing", {}); }),
              "The file doesn’t exist.");
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
    const auto location = Trash::moveToTrash(item, identityOf(item)).location;
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

        Trash::restore(shared / user / "files/four", volume / "project/four");
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
        lines += failureOf([&] { Trash::moveToTrash(item, identityOf(item)); }) + "\n";
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
        std::string lines = failureOf([&] { Trash::moveToTrash(item, identityOf(item)); }) + "\n";
        fs::remove(volume / own);
        tree.folder("volume/" + own);
        ::chown((volume / own).c_str(), 65534, 65534);
        lines += failureOf([&] { Trash::moveToTrash(item, identityOf(item)); }) + "\n";
        return lines +
               (fs::exists(item) && fs::is_empty(volume / "elsewhere") && fs::is_empty(volume / own)
                    ? "untouched"
                    : "touched");
    });
    if (!report) {
        GTEST_SKIP() << mountsNotPermitted;
    }
    EXPECT_EQ(*report, std::string(noUsableTrash) + "\n" + noUsableTrash + "\nuntouched");
}

}  // namespace
}  // namespace tallowmere
