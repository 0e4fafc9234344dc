#include "guidance/StorageCleanupGroup.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <numeric>
#include <utility>

namespace tallowmere {
namespace {

using Kind = StorageCleanupGroup::Kind;

struct KindTexts {
    std::string_view rawValue;
    std::string_view category;
    std::string_view title;
    std::string_view symbol;
    std::string_view explanation;
};

// Indexed by the kind's position in `allCases`.
constexpr std::array<KindTexts, StorageCleanupKind::allCases.size()> kindTexts{{
    {"cache", "Cache", "Rebuildable cache", "arrow.triangle.2.circlepath",
     "Temporary files in recognized cache folders, unchanged for at least 24 hours. The tool "
     "may rebuild or download them again; its next launch may be slower."},
    {"logs", "Logs", "Older diagnostic logs", "doc.text",
     "Diagnostic .log files unchanged for at least 7 days. Removing them loses older "
     "troubleshooting details, not conversation history."},
}};

const KindTexts& textsOf(Kind kind) {
    return kindTexts[static_cast<std::size_t>(kind)];
}

std::vector<StorageCleanupFile> filesOf(Kind kind, const std::vector<StorageCleanupFile>& files) {
    std::vector<StorageCleanupFile> selected;
    std::ranges::copy_if(files, std::back_inserter(selected), [&](const auto& file) {
        return nameOf(file.category) == textsOf(kind).category;
    });
    return selected;
}

}  // namespace

std::int64_t StorageCleanupGroup::allocatedBytes() const {
    return std::transform_reduce(files.begin(), files.end(), std::int64_t{0}, std::plus{},
                                 [](const auto& file) { return file.allocatedBytes; });
}

std::vector<StorageCleanupGroup> StorageCleanupGroup::group(
    const std::vector<StorageCleanupFile>& files) {
    std::vector<StorageCleanupGroup> groups;
    for (const auto kind : StorageCleanupKind::allCases) {
        auto selected = filesOf(kind, files);
        if (!selected.empty()) {
            groups.push_back(StorageCleanupGroup{kind, std::move(selected)});
        }
    }
    return groups;
}

namespace StorageCleanupKind {

std::string_view rawValue(Kind kind) {
    return textsOf(kind).rawValue;
}

std::optional<Kind> fromRawValue(std::string_view rawValue) {
    const auto match = std::ranges::find_if(
        allCases, [&](Kind kind) { return textsOf(kind).rawValue == rawValue; });
    return match == allCases.end() ? std::nullopt : std::optional(*match);
}

std::string_view title(Kind kind) {
    return textsOf(kind).title;
}

std::string_view symbol(Kind kind) {
    return textsOf(kind).symbol;
}

std::string_view explanation(Kind kind) {
    return textsOf(kind).explanation;
}

}  // namespace StorageCleanupKind

}  // namespace tallowmere
