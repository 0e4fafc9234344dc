#include "platform/ShallowListing.h"

#include <fcntl.h>

#include "platform/DirectoryStream.h"

namespace tallowmere {

std::optional<std::vector<ListedEntry>> listVisibleEntries(const std::filesystem::path& folder) {
    DirectoryStream stream = DirectoryStream::openChild(AT_FDCWD, folder.c_str());
    if (!stream.valid()) {
        return std::nullopt;
    }
    std::vector<ListedEntry> entries;
    DirectoryChunk chunk;
    while (stream.readChunk(chunk, 4096, DirectoryStream::StatusReads::none)) {
        for (const auto& entry : chunk.entries) {
            const auto name = chunk.name(entry);
            if (!name.starts_with('.')) {
                entries.push_back({std::string(name), entry.kind});
            }
        }
    }
    if (stream.readFailed()) {
        return std::nullopt;
    }
    return entries;
}

EntryKind entryKindAt(const std::filesystem::path& folder, const std::string& name) {
    EntryStatus status;
    return readEntryStatus(AT_FDCWD, (folder / name).c_str(), status) ? status.kind
                                                                      : EntryKind::unknown;
}

}  // namespace tallowmere
