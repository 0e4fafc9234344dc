#pragma once

#include <optional>

#include "measurement/FileEntry.h"
#include "measurement/StorageLocation.h"
#include "removal/StorageCleanupFile.h"
#include "removal/StorageCleanupResult.h"
#include "removal/StorageLocationSnapshot.h"
#include "text/JsonDocument.h"
#include "text/JsonWriter.h"

namespace tallowmere::cli {

// The records of the command line's JSON, written as members of an open object (the
// `write…Fields` functions) or as whole objects, and read back strictly: every key present
// with its type, or nothing.

void writeLocationFields(JsonWriter& json, const StorageLocation& location);
// "path","bytes","modified","fileIdentity"
void writeEntryFields(JsonWriter& json, const FileEntry& entry);
// The entry's fields, then "root","category","allocatedBytes","includesRecent".
void writeCleanupFile(JsonWriter& json, const StorageCleanupFile& file);
// A cleanup file's fields, then "statusChanged" (a time or null): a file as a review lists it.
void writeReviewedFile(JsonWriter& json, const StorageCleanupFile& file);
// "path","category","detail","allocatedBytes","itemCount","modified","fileIdentity",
// "fingerprint","changeFingerprint"
void writeSnapshot(JsonWriter& json, const StorageLocationSnapshot& snapshot);
// "original":E,"trashPath","locationSnapshot":S or null
void writeTrashedItem(JsonWriter& json, const TrashedStorageFile& item);

std::optional<FileEntry> readEntry(const JsonValue& value);
std::optional<StorageCleanupFile> readCleanupFile(const JsonValue& value);
std::optional<StorageCleanupFile> readReviewedFile(const JsonValue& value);
std::optional<StorageLocationSnapshot> readSnapshot(const JsonValue& value);
std::optional<TrashedStorageFile> readTrashedItem(const JsonValue& value);

}  // namespace tallowmere::cli
