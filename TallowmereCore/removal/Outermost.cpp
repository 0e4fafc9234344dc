#include <algorithm>
#include <string>
#include <utility>

#include "platform/PathRules.h"
#include "removal/StorageLocationTrash.h"
#include "text/TextRules.h"

namespace tallowmere::StorageLocationTrash {

std::vector<std::filesystem::path> outermost(const std::vector<std::filesystem::path>& folders) {
    // Length in code points, as a person counts characters; equal lengths fall back to bytes.
    std::vector<std::pair<std::size_t, std::string>> sorted;
    for (const auto& folder : folders) {
        std::string path = PathRules::standardized(folder).native();
        sorted.emplace_back(TextRules::codePointCount(path), std::move(path));
    }
    std::ranges::sort(sorted);
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());

    std::vector<std::filesystem::path> kept;
    for (const auto& candidate : sorted) {
        const std::string& path = candidate.second;
        const bool nested = std::ranges::any_of(kept, [&path](const std::filesystem::path& outer) {
            return PathRules::isInside(path, outer.native());
        });
        if (!nested) {
            kept.emplace_back(path);
        }
    }
    return kept;
}

}  // namespace tallowmere::StorageLocationTrash
