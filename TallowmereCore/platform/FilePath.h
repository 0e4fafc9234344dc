#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tallowmere {

// A path kept in a record: native bytes, stored once and shared by every copy. A scan keeps
// thousands of paths, often the same one in several lists; std::filesystem::path would store
// each of them again, with every component apart.
class FilePath {
public:
    FilePath() = default;
    FilePath(std::string native)
        : m_native(std::make_shared<const std::string>(std::move(native))) {}
    FilePath(const char* native) : FilePath(std::string(native)) {}
    FilePath(const std::filesystem::path& path) : FilePath(path.native()) {}

    const std::string& native() const { return m_native ? *m_native : nothing(); }
    const char* c_str() const { return native().c_str(); }
    bool empty() const { return native().empty(); }
    // The path for path operations.
    operator std::filesystem::path() const { return native(); }

    bool operator==(const FilePath& other) const { return native() == other.native(); }
    bool operator==(const std::filesystem::path& other) const { return native() == other.native(); }

private:
    static const std::string& nothing() {
        static const std::string nothing;
        return nothing;
    }

    std::shared_ptr<const std::string> m_native;
};

}  // namespace tallowmere
