#include "ScanJson.h"

#include "text/JsonWriter.h"

namespace tallowmere::cli {

namespace {

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
        json.string(*entry.fileIdentity);
    } else {
        json.null();
    }
}

void writeEntries(JsonWriter& json, const char* key, const std::vector<FileEntry>& entries) {
    json.key(key);
    json.beginArray();
    for (const auto& entry : entries) {
        json.beginObject();
        writeEntryFields(json, entry);
        json.endObject();
    }
    json.endArray();
}

void writeCleanupFiles(JsonWriter& json, const char* key,
                       const std::vector<StorageCleanupFile>& files) {
    json.key(key);
    json.beginArray();
    for (const auto& file : files) {
        json.beginObject();
        writeEntryFields(json, file.entry);
        json.key("root");
        json.string(file.root.native());
        json.key("category");
        json.string(file.category);
        json.key("allocatedBytes");
        json.integer(file.allocatedBytes);
        json.key("includesRecent");
        json.boolean(file.includesRecent);
        json.endObject();
    }
    json.endArray();
}

void writeFinding(JsonWriter& json, const StorageFinding& finding) {
    json.beginObject();
    writeLocationFields(json, finding.location);
    json.key("path");
    json.string(finding.url.native());
    json.key("allocatedBytes");
    json.integer(finding.allocatedBytes);
    json.key("logicalBytes");
    json.integer(finding.logicalBytes);
    json.key("fileCount");
    json.integer(finding.fileCount);
    json.key("skippedCount");
    json.integer(finding.skippedCount);
    json.key("limited");
    json.boolean(finding.limited);
    writeEntries(json, "largestFiles", finding.largestFiles);
    writeEntries(json, "oldLogs", finding.oldLogs);
    writeCleanupFiles(json, "cleanupFiles", finding.cleanupFiles);
    writeCleanupFiles(json, "recentCleanupFiles", finding.recentCleanupFiles);
    json.endObject();
}

}  // namespace

std::string scanJson(const StorageScan& scan, const std::filesystem::path& home) {
    JsonWriter json;
    json.beginObject();
    json.key("home");
    json.string(home.native());
    json.key("completedAt");
    json.date(scan.completedAt);
    json.key("absentLocations");
    json.integer(scan.absentLocations);
    json.key("unreadableLocations");
    json.integer(scan.unreadableLocations);
    json.key("incomplete");
    json.boolean(scan.incomplete());
    json.key("allocatedBytes");
    json.integer(scan.allocatedBytes());
    json.key("findings");
    json.beginArray();
    for (const auto& finding : scan.findings) {
        writeFinding(json, finding);
    }
    json.endArray();
    json.endObject();
    return json.text();
}

std::string catalogJson(const std::vector<StorageLocation>& locations,
                        const std::vector<std::string>& supportedOwners) {
    JsonWriter json;
    json.beginObject();
    json.key("locations");
    json.beginArray();
    for (const auto& location : locations) {
        json.beginObject();
        writeLocationFields(json, location);
        json.endObject();
    }
    json.endArray();
    json.key("supportedOwners");
    json.beginArray();
    for (const auto& owner : supportedOwners) {
        json.string(owner);
    }
    json.endArray();
    json.endObject();
    return json.text();
}

}  // namespace tallowmere::cli
