#include "ScanJson.h"

#include "RecordJson.h"
#include "guidance/StorageGuidance.h"
#include "measurement/StorageTool.h"
#include "text/JsonWriter.h"

namespace tallowmere::cli {

namespace {

// The lists hold up to 500 files a location: each goes out as it is written, so the output
// never holds a whole list.
void writeEntries(JsonWriter& json, const char* key, const std::vector<FileEntry>& entries,
                  std::ostream& out) {
    json.key(key);
    json.beginArray();
    for (const auto& entry : entries) {
        json.beginObject();
        writeEntryFields(json, entry);
        json.endObject();
        json.flushTo(out);
    }
    json.endArray();
}

void writeCleanupFiles(JsonWriter& json, const char* key,
                       const std::vector<StorageCleanupFile>& files, std::ostream& out) {
    json.key(key);
    json.beginArray();
    for (const auto& file : files) {
        writeCleanupFile(json, file);
        json.flushTo(out);
    }
    json.endArray();
}

void writeUnreadable(JsonWriter& json, const char* key,
                     const std::vector<UnreadableFolder>& folders) {
    json.key(key);
    json.beginArray();
    for (const auto& folder : folders) {
        json.beginObject();
        json.key("path");
        json.string(folder.path.native());
        json.key("reason");
        json.string(folder.reason);
        json.endObject();
    }
    json.endArray();
}

void writeGuidance(JsonWriter& json, const StorageGuidance& guidance) {
    json.key("guidance");
    json.beginObject();
    json.key("group");
    json.string(StorageGuidanceGroup::rawValue(guidance.group));
    json.key("advice");
    json.string(guidance.advice);
    json.key("consequence");
    json.string(guidance.consequence);
    json.key("summary");
    json.string(guidance.summary());
    json.endObject();
}

void writeFinding(JsonWriter& json, const StorageFinding& finding, std::ostream& out) {
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
    writeEntries(json, "largestFiles", finding.largestFiles, out);
    writeEntries(json, "oldLogs", finding.oldLogs, out);
    writeCleanupFiles(json, "cleanupFiles", finding.cleanupFiles, out);
    writeCleanupFiles(json, "recentCleanupFiles", finding.recentCleanupFiles, out);
    writeGuidance(json, StorageGuidance::forCategory(finding.location.category));
    json.key("cleanupFileCount");
    json.integer(finding.cleanupFileCount);
    json.key("cleanupBytes");
    json.integer(finding.cleanupBytes);
    json.key("recentCleanupFileCount");
    json.integer(finding.recentCleanupFileCount);
    json.key("recentCleanupBytes");
    json.integer(finding.recentCleanupBytes);
    writeUnreadable(json, "unreadableEntries", finding.unreadableEntries);
    json.endObject();
}

void writeStrings(JsonWriter& json, const char* key, const std::vector<std::string>& texts) {
    json.key(key);
    json.beginArray();
    for (const auto& text : texts) {
        json.string(text);
    }
    json.endArray();
}

void writeTool(JsonWriter& json, const StorageTool& tool) {
    json.beginObject();
    json.key("owner");
    json.string(tool.owner);
    json.key("allocatedBytes");
    json.integer(tool.allocatedBytes());
    json.key("fileCount");
    json.integer(tool.fileCount());
    json.key("incomplete");
    json.boolean(tool.incomplete());
    writeStrings(json, "categories", tool.categories());
    std::vector<std::string> visible;
    for (const auto& finding : tool.findings) {
        if (StorageTool::isVisible(finding)) {
            visible.push_back(finding.url.native());
        }
    }
    writeStrings(json, "visibleFindings", visible);
    json.key("reviewBytes");
    json.integer(tool.reviewBytes());
    json.endObject();
}

}  // namespace

void writeScanJson(std::ostream& out, StorageScan scan, const std::filesystem::path& home) {
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
        writeFinding(json, finding, out);
        json.flushTo(out);
    }
    json.endArray();
    json.key("tools");
    json.beginArray();
    for (const auto& tool : StorageTool::group(std::move(scan.findings))) {
        writeTool(json, tool);
    }
    json.endArray();
    writeUnreadable(json, "unreadableFolders", scan.unreadableFolders);
    json.endObject();
    json.flushTo(out);
    out << '\n';
}

std::string locationsJson(const std::vector<StorageLocation>& locations,
                          const std::filesystem::path& home) {
    JsonWriter json;
    json.beginObject();
    json.key("home");
    json.string(home.native());
    json.key("locations");
    json.beginArray();
    for (const auto& location : locations) {
        json.beginObject();
        writeLocationFields(json, location);
        json.key("path");
        json.string(location.url(home).native());
        json.endObject();
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
