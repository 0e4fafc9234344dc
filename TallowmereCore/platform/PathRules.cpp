#include "platform/PathRules.h"

#include <cstdlib>
#include <memory>
#include <optional>

namespace tallowmere::PathRules {

namespace {

std::optional<std::string> realPath(const std::string& path) {
    std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr),
                                                         &std::free);
    return resolved ? std::optional<std::string>(resolved.get()) : std::nullopt;
}

}  // namespace

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

std::filesystem::path resolvingSymlinks(const std::filesystem::path& path) {
    const std::filesystem::path standard = standardized(path);
    std::string existing = standard.native();
    std::string rest;
    while (true) {
        if (const auto resolved = realPath(existing)) {
            return standardized(rest.empty() ? *resolved : *resolved + "/" + rest);
        }
        const auto slash = existing.rfind('/');
        if (slash == std::string::npos || existing == "/") {
            return standard;
        }
        const std::string last = existing.substr(slash + 1);
        rest = rest.empty() ? last : last + "/" + rest;
        existing = slash == 0 ? "/" : existing.substr(0, slash);
    }
}

bool isInside(const std::string& path, const std::string& folder) {
    if (folder == "/") {
        return path.size() > 1 && path.starts_with('/');
    }
    return path.size() > folder.size() + 1 && path.starts_with(folder) &&
           path[folder.size()] == '/';
}

}  // namespace tallowmere::PathRules
