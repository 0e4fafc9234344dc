#include "removal/AIStorageCleanup.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "platform/PathRules.h"
#include "text/TextRules.h"

namespace tallowmere::AIStorageCleanup {

namespace {

constexpr double cacheMinimumAge = 86400;  // a day
constexpr double logMinimumAge = 604800;   // a week

constexpr std::array<std::string_view, 13> protectedFolderNames = {
    "auth",   "credentials", "secrets",   "tokens", "sessions", "history", "conversations",
    "memory", "checkpoints", "worktrees", "models", "weights",  ".git"};
constexpr std::array<std::string_view, 4> sensitiveNameParts = {"auth", "credential", "secret",
                                                                "token"};
constexpr std::array<std::string_view, 15> excludedExtensions = {
    "db",  "vscdb", "sqlite", "sqlite3",     "ldb",  "lock", "pem", "key",
    "p12", "pfx",   "gguf",   "safetensors", "onnx", "pt",   "pth"};
constexpr std::array<std::string_view, 4> excludedEndings = {"-wal", "-shm", "-journal", ".lock"};

bool contains(const auto& list, std::string_view word) {
    return std::ranges::find(list, word) != list.end();
}

// The text after the last "."; a name whose only "." comes first has none.
std::string_view extensionOf(std::string_view name) {
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) {
        return {};
    }
    return name.substr(dot + 1);
}

bool isWholeInteger(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.empty() || text.front() < '0' || text.front() > '9') {
            return false;
        }
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return !text.empty() && error == std::errc{} && end == text.data() + text.size();
}

// "app.log.1": split at "." with empty pieces dropped, at least three pieces, "log" second
// to last and a whole number last.
bool isRotatedLogName(std::string_view lowerName) {
    std::size_t pieces = 0;
    std::string_view previous;
    std::string_view last;
    for (std::size_t start = 0; start <= lowerName.size();) {
        const auto dot = std::min(lowerName.find('.', start), lowerName.size());
        if (dot > start) {
            previous = last;
            last = lowerName.substr(start, dot - start);
            ++pieces;
        }
        start = dot + 1;
    }
    return pieces >= 3 && previous == "log" && isWholeInteger(last);
}

bool isLowerLogFileName(std::string_view lowerName) {
    return extensionOf(lowerName) == "log" || isRotatedLogName(lowerName);
}

bool hasExcludedName(std::string_view lowerName) {
    const auto hasPart = [&](std::string_view part) {
        return lowerName.find(part) != lowerName.npos;
    };
    const auto endsWith = [&](std::string_view ending) { return lowerName.ends_with(ending); };
    return std::ranges::any_of(sensitiveNameParts, hasPart) ||
           contains(excludedExtensions, extensionOf(lowerName)) ||
           std::ranges::any_of(excludedEndings, endsWith) || lowerName == ".env" ||
           lowerName.starts_with(".env.");
}

}  // namespace

bool isProtectedFolderName(std::string_view folderName) {
    return contains(protectedFolderNames, TextRules::asciiLowercased(folderName));
}

bool hasProtectedFolder(const std::filesystem::path& folder) {
    return std::ranges::any_of(folder, [](const std::filesystem::path& component) {
        return isProtectedFolderName(component.native());
    });
}

bool isOldLogFile(std::string_view lowerName, Date modified, const std::string& category, Date now,
                  bool includeRecent) {
    return category == "Logs" && isLowerLogFileName(lowerName) &&
           (includeRecent || now - modified >= logMinimumAge);
}

bool eligibleInFolder(std::string_view lowerName, bool folderProtected, Date modified,
                      const std::string& category, Date now, bool includeRecent) {
    const FileVerdict verdict =
        verdictInFolder(lowerName, folderProtected, modified, category, now);
    return includeRecent ? verdict.eligibleRecent : verdict.eligible;
}

FileVerdict verdictInFolder(std::string_view lowerName, bool folderProtected, Date modified,
                            const std::string& category, Date now) {
    const double age = now - modified;
    FileVerdict verdict;
    double minimumAge = cacheMinimumAge;
    if (category == "Logs") {
        if (!isLowerLogFileName(lowerName)) {
            return verdict;
        }
        minimumAge = logMinimumAge;
        verdict.oldLog = age >= logMinimumAge;
    } else if (category != "Cache") {
        return verdict;
    }
    if (folderProtected || hasExcludedName(lowerName)) {
        return verdict;
    }
    verdict.eligibleRecent = true;
    verdict.eligible = age >= minimumAge;
    return verdict;
}

bool eligible(const std::filesystem::path& file, Date modified, const std::string& category,
              Date now, bool includeRecent) {
    return eligibleInFolder(TextRules::asciiLowercased(PathRules::lastComponent(file)),
                            hasProtectedFolder(file.parent_path()), modified, category, now,
                            includeRecent);
}

}  // namespace tallowmere::AIStorageCleanup
