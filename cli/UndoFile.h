#pragma once

#include <chrono>
#include <filesystem>
#include <vector>

#include "platform/LockedFile.h"
#include "removal/StorageCleanupResult.h"

namespace tallowmere::cli {

// The undo file of a removal or a restore, locked for as long as the command runs, so that
// two commands never write one undo file at once and no record is ever dropped.
class UndoFile {
public:
    enum class Missing { create, refuse };

    // Opens and locks `path` and reads the records already in it (a new or empty file has
    // none). Throws RecordFileError when another command holds it, when it holds anything but
    // undo records (it is then left as it is), or when it cannot be opened.
    static UndoFile open(const std::filesystem::path& path, Missing missing);

    const std::filesystem::path& path() const { return m_path; }
    const std::vector<TrashedStorageFile>& items() const { return m_items; }

    // Replaces the records with `items` and writes them at once. Throws RecordFileError.
    void save(std::vector<TrashedStorageFile> items);
    // Adds one record; writes the file when the last write is more than 0.25 s old. Throws
    // RecordFileError when it cannot be written (the record is kept in memory).
    void add(const TrashedStorageFile& item);
    // Writes what `add` has not written yet. Throws RecordFileError.
    void flush();
    // Removes the file when this command created it and it holds no record.
    void removeIfUnused();

private:
    UndoFile(std::filesystem::path path, LockedFile file, std::vector<TrashedStorageFile> items);
    void write();

    std::filesystem::path m_path;
    LockedFile m_file;
    std::vector<TrashedStorageFile> m_items;
    bool m_pending = false;
    std::chrono::steady_clock::time_point m_lastWrite;
};

}  // namespace tallowmere::cli
