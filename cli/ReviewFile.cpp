#include "ReviewFile.h"

#include "RecordJson.h"
#include "platform/AtomicFile.h"
#include "removal/RemovalScope.h"
#include "text/JsonDocument.h"
#include "text/Sha256.h"
#include "text/TerminalText.h"

namespace tallowmere::cli {

namespace {

constexpr std::int64_t formatVersion = 1;
constexpr std::size_t maxRecordFileBytes = 256u << 20;
constexpr std::string_view checksumKey = ",\"checksum\":\"";
constexpr std::size_t digestLength = 64;

// Closes `json` (an object missing its last "}") with the checksum of the closed object.
std::string withChecksum(const std::string& openObject) {
    const std::string digest = Sha256::hexDigestOf(openObject + "}");
    return openObject + std::string(checksumKey) + digest + "\"}";
}

RecordFileError damaged(const std::filesystem::path& file, const std::string& why) {
    return RecordFileError("Can’t use " + file.native() + ": " + why);
}

// The document of a file written by withChecksum, when the checksum matches its content.
JsonDocument verifiedDocument(std::string_view text, const std::filesystem::path& file) {
    if (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    const std::size_t tail = checksumKey.size() + digestLength + 2;
    if (text.size() < tail + 1 || !text.ends_with("\"}") ||
        text.substr(text.size() - tail, checksumKey.size()) != checksumKey) {
        throw damaged(
            file, "it has no checksum, so it was not written by tallowmere-cli or was cut short.");
    }
    const std::string body = std::string(text.substr(0, text.size() - tail)) + "}";
    const std::string_view digest = text.substr(text.size() - digestLength - 2, digestLength);
    if (Sha256::hexDigestOf(body) != digest) {
        throw damaged(
            file, "its checksum does not match; it was damaged or edited after it was written.");
    }
    auto document = JsonDocument::parse(text);
    if (!document || document->root().member("version").integer() != formatVersion) {
        throw damaged(file, "it is not a version 1 file of tallowmere-cli.");
    }
    return *document;
}

template <typename Record, typename Read>
std::vector<Record> readAll(const JsonValue& array, Read read, const std::filesystem::path& file) {
    const auto elements = array.elements();
    if (!elements) {
        throw damaged(file, "a list is missing.");
    }
    std::vector<Record> records;
    for (const auto& element : *elements) {
        auto record = read(element);
        if (!record) {
            throw damaged(file, "one of its records is incomplete.");
        }
        records.push_back(std::move(*record));
    }
    return records;
}

std::optional<std::string> readText(const JsonValue& value) {
    return value.string();
}

// Paths are taken from a record only as they would be written: anything else is refused
// loudly, never skipped in silence.
void requireStandardPath(const std::filesystem::path& path, const std::filesystem::path& file) {
    if (!isStandardAbsolutePath(path)) {
        throw damaged(file, "the path “" + TerminalText::escaped(path.native()) +
                                "” in it is not absolute and standardised.");
    }
}

}  // namespace

std::string encodeReview(const ReviewRecord& record) {
    const LocationRemovalReview& review = record.review;
    JsonWriter json;
    json.beginObject();
    json.key("version");
    json.integer(formatVersion);
    json.key("id");
    json.string(review.id);
    json.key("owner");
    json.string(review.owner);
    json.key("layout");
    json.string(std::string(storageLayoutName(record.layout)));
    json.key("locations");
    json.beginArray();
    for (const auto& location : review.locations) {
        writeSnapshot(json, location);
    }
    json.endArray();
    json.key("affectedTools");
    json.beginArray();
    for (const auto& owner : review.affectedTools) {
        json.string(owner);
    }
    json.endArray();
    json.key("files");
    json.beginArray();
    for (const auto& file : review.files) {
        writeReviewedFile(json, file);
    }
    json.endArray();
    json.endObject();
    std::string text = json.text();
    text.pop_back();
    return withChecksum(text);
}

ReviewRecord decodeReview(std::string_view text, const std::filesystem::path& file) {
    const JsonDocument document = verifiedDocument(text, file);
    const JsonValue root = document.root();
    const auto id = root.member("id").string();
    const auto owner = root.member("owner").string();
    const auto layoutName = root.member("layout").string();
    const auto layout = layoutName ? storageLayoutNamed(*layoutName) : std::nullopt;
    if (!id || !owner || !layout) {
        throw damaged(file, "its id, owner or layout is missing.");
    }
    ReviewRecord record{
        {*id, *owner,
         readAll<StorageLocationSnapshot>(root.member("locations"), readSnapshot, file),
         readAll<std::string>(root.member("affectedTools"), readText, file),
         readAll<StorageCleanupFile>(root.member("files"), readReviewedFile, file)},
        *layout};
    for (const auto& location : record.review.locations) {
        requireStandardPath(location.url, file);
    }
    for (const auto& reviewed : record.review.files) {
        requireStandardPath(std::filesystem::path(reviewed.entry.url), file);
        requireStandardPath(std::filesystem::path(reviewed.root), file);
    }
    return record;
}

std::string encodeUndoItems(const std::vector<TrashedStorageFile>& items) {
    JsonWriter json;
    json.beginObject();
    json.key("version");
    json.integer(formatVersion);
    json.key("items");
    json.beginArray();
    for (const auto& item : items) {
        writeTrashedItem(json, item);
    }
    json.endArray();
    json.endObject();
    std::string text = json.text();
    text.pop_back();
    return withChecksum(text);
}

std::vector<TrashedStorageFile> decodeUndoItems(std::string_view text,
                                                const std::filesystem::path& file) {
    const JsonDocument document = verifiedDocument(text, file);
    auto items =
        readAll<TrashedStorageFile>(document.root().member("items"), readTrashedItem, file);
    for (const auto& item : items) {
        requireStandardPath(std::filesystem::path(item.original.url), file);
        requireStandardPath(item.trashURL, file);
    }
    return items;
}

std::string readRecordFile(const std::filesystem::path& file) {
    auto text = AtomicFile::readWholeFile(file, maxRecordFileBytes);
    if (!text) {
        throw RecordFileError("Can’t read " + file.native() + ".");
    }
    return *text;
}

}  // namespace tallowmere::cli
