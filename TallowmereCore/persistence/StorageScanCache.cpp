#include "persistence/StorageScanCache.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <system_error>

#include "platform/AtomicFile.h"
#include "platform/Deletion.h"
#include "platform/UserFolders.h"
#include "text/JsonDocument.h"
#include "text/JsonWriter.h"

namespace tallowmere::StorageScanCache {

namespace {

constexpr std::int64_t formatVersion = 1;
constexpr Date maxAge = 7 * 24 * 60 * 60;
// A summary of the whole catalog takes some tens of kilobytes; this leaves room for any number
// of custom folders while bounding what a damaged file can make us read.
constexpr std::size_t maxFileBytes = std::size_t{64} << 20;

// std::string compares as unsigned char, so this is byte order.
std::vector<std::string> sorted(std::vector<std::string> paths) {
    std::ranges::sort(paths);
    return paths;
}

void writeRow(JsonWriter& json, const StorageFinding& finding) {
    json.beginObject();
    json.key("owner");
    json.string(finding.location.owner);
    json.key("category");
    json.string(finding.location.category);
    json.key("path");
    json.string(finding.url.native());
    json.key("detail");
    json.string(finding.location.detail);
    json.key("allocated");
    json.integer(finding.allocatedBytes);
    json.key("logical");
    json.integer(finding.logicalBytes);
    json.key("count");
    json.integer(finding.fileCount);
    json.key("skipped");
    json.integer(finding.skippedCount);
    json.key("limited");
    json.boolean(finding.limited);
    json.endObject();
}

// The row keeps the folder's absolute path in place of the relative one; an absolute
// relativePath names the same folder, so the location still denotes what was measured.
std::optional<StorageFinding> findingFromRow(const JsonValue& row) {
    auto owner = row.member("owner").string();
    auto category = row.member("category").string();
    auto path = row.member("path").string();
    auto detail = row.member("detail").string();
    const auto allocated = row.member("allocated").integer();
    const auto logical = row.member("logical").integer();
    const auto count = row.member("count").integer();
    const auto skipped = row.member("skipped").integer();
    const auto limited = row.member("limited").boolean();
    if (!owner || !category || !path || !detail || !allocated || !logical || !count || !skipped ||
        !limited) {
        return std::nullopt;
    }
    StorageFinding finding;
    finding.location = {std::move(*owner), std::move(*category), *path, std::move(*detail)};
    finding.url = std::move(*path);
    finding.allocatedBytes = *allocated;
    finding.logicalBytes = *logical;
    finding.fileCount = *count;
    finding.skippedCount = *skipped;
    finding.limited = *limited;
    return finding;
}

std::optional<std::vector<StorageFinding>> findingsFromRows(const JsonValue& value) {
    const auto rows = value.elements();
    if (!rows) {
        return std::nullopt;
    }
    std::vector<StorageFinding> findings;
    findings.reserve(rows->size());
    for (const auto& row : *rows) {
        auto finding = findingFromRow(row);
        if (!finding) {
            return std::nullopt;
        }
        findings.push_back(std::move(*finding));
    }
    return findings;
}

// Written so that a NaN age fails too.
bool isFresh(Date completedAt, Date now) {
    const Date age = now - completedAt;
    return age >= 0 && age <= maxAge;
}

std::optional<StorageScan> scanFromSnapshot(const JsonValue& snapshot,
                                            const std::filesystem::path& home,
                                            const std::vector<std::string>& customPaths, Date now) {
    const auto version = snapshot.member("version").integer();
    const auto storedHome = snapshot.member("home").string();
    const auto storedCustomPaths = snapshot.member("customPaths").strings();
    const auto completedAt = snapshot.member("completedAt").number();
    const auto absent = snapshot.member("absent").integer();
    const auto unreadable = snapshot.member("unreadable").integer();
    auto findings = findingsFromRows(snapshot.member("rows"));
    if (!version || !storedHome || !storedCustomPaths || !completedAt || !absent || !unreadable ||
        !findings) {
        return std::nullopt;
    }
    if (*version != formatVersion || *storedHome != home.native() ||
        *storedCustomPaths != sorted(customPaths) || !isFresh(*completedAt, now)) {
        return std::nullopt;
    }
    // The unreadable folders' paths and reasons are not kept, only their count.
    return StorageScan{std::move(*findings), *absent, *unreadable, *completedAt, {}};
}

}  // namespace

std::string encode(const StorageScan& scan, const std::filesystem::path& home,
                   const std::vector<std::string>& customPaths) {
    JsonWriter json;
    json.beginObject();
    json.key("version");
    json.integer(formatVersion);
    json.key("home");
    json.string(home.native());
    json.key("customPaths");
    json.beginArray();
    for (const auto& path : sorted(customPaths)) {
        json.string(path);
    }
    json.endArray();
    json.key("completedAt");
    json.date(scan.completedAt);
    json.key("absent");
    json.integer(scan.absentLocations);
    json.key("unreadable");
    json.integer(scan.unreadableLocations);
    json.key("rows");
    json.beginArray();
    for (const auto& finding : scan.findings) {
        writeRow(json, finding);
    }
    json.endArray();
    json.endObject();
    return json.text();
}

std::optional<StorageScan> decode(std::string_view json, const std::filesystem::path& home,
                                  const std::vector<std::string>& customPaths, Date now) noexcept {
    try {
        const auto document = JsonDocument::parse(json);
        return document ? scanFromSnapshot(document->root(), home, customPaths, now) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void save(const StorageScan& scan, const std::filesystem::path& file,
          const std::filesystem::path& home, const std::vector<std::string>& customPaths) {
    // The writer would put null there, which no load accepts; refuse before touching the file.
    if (!std::isfinite(scan.completedAt)) {
        throw std::system_error(std::make_error_code(std::errc::invalid_argument),
                                "Cannot save the scan summary " + file.native() +
                                    ": the scan's completion date is not a finite number");
    }
    AtomicFile::write(file, encode(scan, home, customPaths));
}

std::optional<StorageScan> load(const std::filesystem::path& file,
                                const std::filesystem::path& home,
                                const std::vector<std::string>& customPaths, Date now) noexcept {
    try {
        const auto json = AtomicFile::readWholeFile(file, maxFileBytes);
        return json ? decode(*json, home, customPaths, now) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void forget() noexcept {
    try {
        Deletion::removeFile(UserFolders::summaryFile());
    } catch (const std::exception&) {
    }
}

}  // namespace tallowmere::StorageScanCache
