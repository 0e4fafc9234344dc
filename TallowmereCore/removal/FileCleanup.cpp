#include "removal/FileCleanup.h"

#include <fcntl.h>
#include <cerrno>
#include <set>

#include "platform/Deletion.h"
#include "platform/EntryStatus.h"
#include "platform/FileSystemError.h"
#include "platform/PathRules.h"
#include "platform/Trash.h"
#include "removal/AIStorageCleanup.h"
#include "removal/FileTrash.h"
#include "removal/RemovalErrors.h"
#include "removal/StorageLocationTrash.h"

namespace tallowmere::AIStorageCleanup {

const char* const changedInTrashDescription =
    "It was moved to the Trash, but the item found there is not the one that was moved. Check "
    "the Trash before restoring it.";

namespace {

constexpr std::int64_t restoreSnapshotLimit = 100000;

std::string errorText(const std::filesystem::path& item, const std::exception& error) {
    return PathRules::lastComponent(item) + ": " + error.what();
}

bool reachedWithoutLinks(const std::filesystem::path& standardPath) {
    return PathRules::resolvingSymlinks(standardPath) == standardPath;
}

// Throws FileTrashError unless the file still lies in its location, without links on the way,
// and is still eligible now.
void checkStillEligible(const StorageCleanupFile& file, const std::filesystem::path& path) {
    const auto root = PathRules::standardized(file.root);
    if (!PathRules::isInside(path.native(), root.native()) || !reachedWithoutLinks(path) ||
        !eligible(path, file.entry.modified, file.category, currentDate(), file.includesRecent)) {
        throw FileTrashError();
    }
}

void removeOne(const StorageCleanupFile& file, StorageRemovalMethod method,
               StorageCleanupResult& result) {
    const auto path = PathRules::standardized(file.entry.url);
    checkStillEligible(file, path);
    if (method == StorageRemovalMethod::permanent) {
        FileTrash::validate(file.entry);
        Deletion::removeFile(file.entry.url);
        ++result.moved;
        return;
    }
    const auto trashed = FileTrash::move(file.entry);
    ++result.moved;
    result.items.push_back({file.entry, trashed.location, std::nullopt});
    if (!trashed.identityMatches) {
        result.errors.push_back(PathRules::lastComponent(file.entry.url) + ": " +
                                changedInTrashDescription);
    }
}

bool somethingExistsAt(const std::filesystem::path& path) {
    EntryStatus status;
    return readEntryStatus(AT_FDCWD, path.c_str(), status) || errno != ENOENT;
}

void restoreOne(const TrashedStorageFile& item, const ScanOptions& options) {
    const auto target = PathRules::standardized(item.original.url);
    const auto source = PathRules::standardized(item.trashURL);
    if (!reachedWithoutLinks(target) || !reachedWithoutLinks(source) || somethingExistsAt(target)) {
        throw FileSystemError::fromErrno(EEXIST);
    }
    if (const auto& reviewed = item.locationSnapshot) {
        const auto inTrash = StorageLocationTrash::snapshot(
            source, reviewed->category, reviewed->detail, restoreSnapshotLimit, options);
        if (inTrash.fingerprint != reviewed->fingerprint) {
            throw FileTrashError();
        }
    } else {
        FileTrash::validate(
            {source, item.original.bytes, item.original.modified, item.original.fileIdentity});
    }
    Trash::restore(source, target);
}

}  // namespace

StorageCleanupResult remove(const std::vector<StorageCleanupFile>& files,
                            StorageRemovalMethod method) {
    StorageCleanupResult result;
    std::set<std::string> handled;
    for (const auto& file : files) {
        if (!handled.emplace(file.entry.url.native()).second) {
            continue;
        }
        try {
            removeOne(file, method, result);
        } catch (const std::exception& error) {
            result.errors.push_back(errorText(file.entry.url, error));
        }
    }
    return result;
}

StorageCleanupResult moveToTrash(const std::vector<StorageCleanupFile>& files) {
    return remove(files, StorageRemovalMethod::trash);
}

StorageRestoreResult restore(const std::vector<TrashedStorageFile>& items,
                             const ScanOptions& options) {
    StorageRestoreResult result;
    for (const auto& item : items) {
        try {
            restoreOne(item, options);
            ++result.restored;
        } catch (const std::exception& error) {
            result.remaining.push_back(item);
            result.errors.push_back(errorText(item.original.url, error));
        }
    }
    return result;
}

}  // namespace tallowmere::AIStorageCleanup
