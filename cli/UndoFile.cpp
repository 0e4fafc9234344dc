#include "UndoFile.h"

#include "ReviewFile.h"
#include "platform/FileSystemError.h"
#include "text/TerminalText.h"

namespace tallowmere::cli {

namespace {

constexpr std::size_t maxUndoFileBytes = 256u << 20;
constexpr auto writeInterval = std::chrono::milliseconds(250);

std::string shown(const std::filesystem::path& path) {
    return TerminalText::escaped(path.native());
}

}  // namespace

UndoFile::UndoFile(std::filesystem::path path, LockedFile file,
                   std::vector<TrashedStorageFile> items)
    : m_path(std::move(path)), m_file(std::move(file)), m_items(std::move(items)) {}

UndoFile UndoFile::open(const std::filesystem::path& path, Missing missing) {
    std::error_code error;
    if (missing == Missing::refuse && !std::filesystem::exists(path, error)) {
        throw RecordFileError("Can’t read " + shown(path) + ": The file doesn’t exist.");
    }
    std::optional<LockedFile> file;
    std::string text;
    try {
        file = LockedFile::open(path);
        if (file) {
            text = file->read(maxUndoFileBytes);
        }
    } catch (const FileSystemError& failure) {
        throw RecordFileError(std::string("Can’t use the undo file ") + failure.what());
    }
    if (!file) {
        throw RecordFileError("Another tallowmere-cli command is using the undo file " +
                              shown(path) +
                              ". Run this one when it has finished; nothing was moved.");
    }
    // A file of ours that is still empty holds nothing to lose; anything else must be ours.
    auto items = text.empty() ? std::vector<TrashedStorageFile>{} : decodeUndoItems(text, path);
    return UndoFile(path, std::move(*file), std::move(items));
}

void UndoFile::save(std::vector<TrashedStorageFile> items) {
    m_items = std::move(items);
    write();
}

void UndoFile::add(const TrashedStorageFile& item) {
    m_items.push_back(item);
    m_pending = true;
    if (std::chrono::steady_clock::now() - m_lastWrite >= writeInterval) {
        write();
    }
}

void UndoFile::flush() {
    if (m_pending) {
        write();
    }
}

void UndoFile::removeIfUnused() {
    if (m_file.created() && m_items.empty()) {
        try {
            m_file.remove();
        } catch (const FileSystemError&) {
        }
    }
}

void UndoFile::write() {
    try {
        m_file.replace(encodeUndoItems(m_items) + "\n");
    } catch (const FileSystemError& failure) {
        throw RecordFileError(std::string("Can’t write the undo file ") + failure.what());
    }
    m_pending = false;
    m_lastWrite = std::chrono::steady_clock::now();
}

}  // namespace tallowmere::cli
