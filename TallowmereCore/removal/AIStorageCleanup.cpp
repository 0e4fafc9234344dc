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

// True when "auth", "credential", "secret" or "token" is part of `lowerName`. A walk asks this
// of every file of a cache location, so the name is read once, not once per word.
bool hasSensitivePart(std::string_view lowerName) {
    for (std::size_t at = 0; at < lowerName.size(); ++at) {
        const std::string_view rest = lowerName.substr(at);
        switch (rest.front()) {
            case 'a':
                if (rest.starts_with("auth")) {
                    return true;
                }
                break;
            case 'c':
                if (rest.starts_with("credential")) {
                    return true;
                }
                break;
            case 's':
                if (rest.starts_with("secret")) {
                    return true;
                }
                break;
            case 't':
                if (rest.starts_with("token")) {
                    return true;
                }
                break;
            default:
                break;
        }
    }
    return false;
}

// The extensions of databases, locks, keys and model weights. Written out by length so that
// each comparison is one of known size.
bool isExcludedExtension(std::string_view extension) {
    switch (extension.size()) {
        case 2:
            return extension == "db" || extension == "pt";
        case 3:
            return extension == "ldb" || extension == "pem" || extension == "key" ||
                   extension == "p12" || extension == "pfx" || extension == "pth";
        case 4:
            return extension == "lock" || extension == "gguf" || extension == "onnx";
        case 5:
            return extension == "vscdb";
        case 6:
            return extension == "sqlite";
        case 7:
            return extension == "sqlite3";
        case 11:
            return extension == "safetensors";
        default:
            return false;
    }
}

bool hasExcludedName(std::string_view lowerName) {
    return hasSensitivePart(lowerName) || isExcludedExtension(extensionOf(lowerName)) ||
           lowerName.ends_with("-wal") || lowerName.ends_with("-shm") ||
           lowerName.ends_with("-journal") || lowerName.ends_with(".lock") || lowerName == ".env" ||
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
    const std::string_view kind = category;
    if (kind == "Logs") {
        if (!isLowerLogFileName(lowerName)) {
            return verdict;
        }
        minimumAge = logMinimumAge;
        verdict.oldLog = age >= logMinimumAge;
    } else if (kind != "Cache") {
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
