#include "platform/PathRules.h"

namespace tallowmere::PathRules {

std::filesystem::path standardized(const std::filesystem::path& path) {
    std::string text = path.lexically_normal().native();
    while (text.size() > 1 && text.ends_with('/')) {
        text.pop_back();
    }
    // lexically_normal turns "a/.." into "."; a standardized empty relative path stays ".".
    return text.empty() ? std::filesystem::path(".") : std::filesystem::path(text);
}

std::filesystem::path absoluteStandardized(const std::filesystem::path& path) {
    if (path.is_absolute()) {
        return standardized(path);
    }
    return standardized(std::filesystem::current_path() / path);
}

std::string lastComponent(const std::filesystem::path& path) {
    const std::string& text = path.native();
    const auto slash = text.find_last_of('/');
    return slash == std::string::npos ? text : text.substr(slash + 1);
}

bool isInside(const std::string& path, const std::string& folder) {
    if (folder == "/") {
        return path.size() > 1 && path.starts_with('/');
    }
    return path.size() > folder.size() + 1 && path.starts_with(folder) &&
           path[folder.size()] == '/';
}

}  // namespace tallowmere::PathRules
