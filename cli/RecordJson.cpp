#include "RecordJson.h"

namespace tallowmere::cli {

void writeLocationFields(JsonWriter& json, const StorageLocation& location) {
    json.key("owner");
    json.string(location.owner);
    json.key("category");
    json.string(location.category);
    json.key("relativePath");
    json.string(location.relativePath);
    json.key("detail");
    json.string(location.detail);
}

void writeEntryFields(JsonWriter& json, const FileEntry& entry) {
    json.key("path");
    json.string(entry.url.native());
    json.key("bytes");
    json.integer(entry.bytes);
    json.key("modified");
    json.date(entry.modified);
    json.key("fileIdentity");
    if (entry.fileIdentity) {
        json.string(entry.fileIdentity->text());
    } else {
        json.null();
    }
}

namespace {

void writeCleanupFileFields(JsonWriter& json, const StorageCleanupFile& file) {
    writeEntryFields(json, file.entry);
    json.key("root");
    json.string(file.root.native());
    json.key("category");
    json.string(nameOf(file.category));
    json.key("allocatedBytes");
    json.integer(file.allocatedBytes);
    json.key("includesRecent");
    json.boolean(file.includesRecent);
}

}  // namespace

void writeCleanupFile(JsonWriter& json, const StorageCleanupFile& file) {
    json.beginObject();
    writeCleanupFileFields(json, file);
    json.endObject();
}

void writeReviewedFile(JsonWriter& json, const StorageCleanupFile& file) {
    json.beginObject();
    writeCleanupFileFields(json, file);
    json.key("statusChanged");
    if (file.statusChanged) {
        json.date(*file.statusChanged);
    } else {
        json.null();
    }
    json.endObject();
}

void writeSnapshot(JsonWriter& json, const StorageLocationSnapshot& snapshot) {
    json.beginObject();
    json.key("path");
    json.string(snapshot.url.native());
    json.key("category");
    json.string(snapshot.category);
    json.key("detail");
    json.string(snapshot.detail);
    json.key("allocatedBytes");
    json.integer(snapshot.allocatedBytes);
    json.key("itemCount");
    json.integer(snapshot.itemCount);
    json.key("modified");
    json.date(snapshot.modified);
    json.key("fileIdentity");
    json.string(snapshot.fileIdentity);
    json.key("fingerprint");
    json.string(snapshot.fingerprint);
    json.key("changeFingerprint");
    json.string(snapshot.changeFingerprint);
    json.endObject();
}

void writeTrashedItem(JsonWriter& json, const TrashedStorageFile& item) {
    json.beginObject();
    json.key("original");
    json.beginObject();
    writeEntryFields(json, item.original);
    json.endObject();
    json.key("trashPath");
    json.string(item.trashURL.native());
    json.key("locationSnapshot");
    if (item.locationSnapshot) {
        writeSnapshot(json, *item.locationSnapshot);
    } else {
        json.null();
    }
    json.endObject();
}

std::optional<FileEntry> readEntry(const JsonValue& value) {
    const auto path = value.member("path").string();
    const auto bytes = value.member("bytes").integer();
    const auto modified = value.member("modified").number();
    const auto identity = value.member("fileIdentity");
    if (!path || !bytes || !modified || (!identity.string() && !identity.isNull())) {
        return std::nullopt;
    }
    std::optional<FileIdentity> fileIdentity;
    if (const auto text = identity.string()) {
        // A damaged identity must not pass for none, which would check nothing.
        fileIdentity = FileIdentity::parse(*text);
        if (!fileIdentity) {
            return std::nullopt;
        }
    }
    return FileEntry{*path, *bytes, *modified, fileIdentity};
}

std::optional<StorageCleanupFile> readCleanupFile(const JsonValue& value) {
    const auto entry = readEntry(value);
    const auto root = value.member("root").string();
    const auto name = value.member("category").string();
    const auto category = name ? cleanupCategoryNamed(*name) : std::nullopt;
    const auto allocated = value.member("allocatedBytes").integer();
    const auto includesRecent = value.member("includesRecent").boolean();
    if (!entry || !root || !category || !allocated || !includesRecent) {
        return std::nullopt;
    }
    return StorageCleanupFile{*entry, *root, *category, *allocated, *includesRecent, std::nullopt};
}

std::optional<StorageCleanupFile> readReviewedFile(const JsonValue& value) {
    auto file = readCleanupFile(value);
    const auto statusChanged = value.member("statusChanged");
    if (!file || (!statusChanged.number() && !statusChanged.isNull())) {
        return std::nullopt;
    }
    file->statusChanged = statusChanged.number();
    return file;
}

std::optional<StorageLocationSnapshot> readSnapshot(const JsonValue& value) {
    const auto path = value.member("path").string();
    const auto category = value.member("category").string();
    const auto detail = value.member("detail").string();
    const auto allocated = value.member("allocatedBytes").integer();
    const auto items = value.member("itemCount").integer();
    const auto modified = value.member("modified").number();
    const auto identity = value.member("fileIdentity").string();
    const auto fingerprint = value.member("fingerprint").string();
    const auto changeFingerprint = value.member("changeFingerprint").string();
    if (!path || !category || !detail || !allocated || !items || !modified || !identity ||
        !fingerprint || !changeFingerprint) {
        return std::nullopt;
    }
    return StorageLocationSnapshot{*path,     *category, *detail,      *allocated,        *items,
                                   *modified, *identity, *fingerprint, *changeFingerprint};
}

std::optional<TrashedStorageFile> readTrashedItem(const JsonValue& value) {
    const auto original = readEntry(value.member("original"));
    const auto trashPath = value.member("trashPath").string();
    const auto snapshotValue = value.member("locationSnapshot");
    const auto snapshot = readSnapshot(snapshotValue);
    if (!original || !trashPath || (!snapshot && !snapshotValue.isNull())) {
        return std::nullopt;
    }
    return TrashedStorageFile{*original, *trashPath, snapshot};
}

}  // namespace tallowmere::cli
