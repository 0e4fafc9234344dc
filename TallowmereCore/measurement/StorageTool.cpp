#include "measurement/StorageTool.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <map>
#include <numeric>
#include <utility>

namespace tallowmere {
namespace {

// One review never offers more files than this, however many the findings hold.
constexpr std::size_t reviewFilesCapacity = 500;

bool isCleanupCategory(const std::string& category) {
    return category == "Cache" || category == "Logs";
}

bool holdsCleanableBytes(const StorageFinding& finding) {
    return std::ranges::any_of(finding.recentCleanupFiles,
                               [](const auto& file) { return file.allocatedBytes > 0; });
}

StorageTool toolOf(const std::string& owner, std::vector<StorageFinding> findings) {
    std::ranges::stable_sort(findings, std::greater{}, &StorageFinding::allocatedBytes);
    return StorageTool{owner, std::move(findings)};
}

bool largerThan(const StorageTool& left, const StorageTool& right) {
    const auto leftBytes = left.allocatedBytes();
    const auto rightBytes = right.allocatedBytes();
    if (leftBytes != rightBytes) {
        return leftBytes > rightBytes;
    }
    return left.owner < right.owner;
}

}  // namespace

std::int64_t StorageTool::allocatedBytes() const {
    return std::transform_reduce(findings.begin(), findings.end(), std::int64_t{0}, std::plus{},
                                 [](const auto& finding) { return finding.allocatedBytes; });
}

std::int64_t StorageTool::fileCount() const {
    return std::transform_reduce(findings.begin(), findings.end(), std::int64_t{0}, std::plus{},
                                 [](const auto& finding) { return finding.fileCount; });
}

bool StorageTool::incomplete() const {
    return std::ranges::any_of(
        findings, [](const auto& finding) { return finding.limited || finding.skippedCount > 0; });
}

std::vector<std::string> StorageTool::categories() const {
    std::vector<std::string> labels;
    labels.reserve(findings.size());
    for (const auto& finding : findings) {
        labels.push_back(finding.location.category);
    }
    std::ranges::sort(labels);
    labels.erase(std::unique(labels.begin(), labels.end()), labels.end());
    return labels;
}

bool StorageTool::isVisible(const StorageFinding& finding) {
    if (isCleanupCategory(finding.location.category)) {
        return holdsCleanableBytes(finding);
    }
    return finding.allocatedBytes > 0;
}

std::int64_t StorageTool::visibleFindingCount() const {
    return std::ranges::count_if(findings, isVisible);
}

std::vector<StorageFinding> StorageTool::visibleFindings() const {
    std::vector<StorageFinding> visible;
    std::ranges::copy_if(findings, std::back_inserter(visible), isVisible);
    return visible;
}

std::vector<StorageCleanupFile> StorageTool::cleanupFiles() const {
    std::vector<StorageCleanupFile> files;
    for (const auto& finding : findings) {
        files.insert(files.end(), finding.recentCleanupFiles.begin(),
                     finding.recentCleanupFiles.end());
    }
    std::ranges::stable_sort(files, std::greater{}, &StorageCleanupFile::allocatedBytes);
    if (files.size() > reviewFilesCapacity) {
        files.resize(reviewFilesCapacity);
    }
    return files;
}

std::int64_t StorageTool::reviewBytes() const {
    // The sum over cleanupFiles(), from the sizes alone: which of equal sizes is cut does not
    // change the sum, so no record needs copying.
    std::vector<std::int64_t> sizes;
    for (const auto& finding : findings) {
        for (const auto& file : finding.recentCleanupFiles) {
            sizes.push_back(file.allocatedBytes);
        }
    }
    const auto kept =
        sizes.begin() + static_cast<std::ptrdiff_t>(std::min(sizes.size(), reviewFilesCapacity));
    std::ranges::nth_element(sizes, kept, std::greater{});
    return std::accumulate(sizes.begin(), kept, std::int64_t{0});
}

std::vector<StorageTool> StorageTool::group(std::vector<StorageFinding>&& findings) {
    std::map<std::string, std::vector<StorageFinding>> parts;
    for (auto& finding : findings) {
        parts[finding.location.owner].push_back(std::move(finding));
    }
    std::vector<StorageTool> tools;
    tools.reserve(parts.size());
    for (auto& [owner, part] : parts) {
        tools.push_back(toolOf(owner, std::move(part)));
    }
    std::ranges::sort(tools, largerThan);
    return tools;
}

}  // namespace tallowmere
