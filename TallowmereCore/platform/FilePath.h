#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace tallowmere {

// A path kept in a record: native bytes, stored once in one block and shared by every copy. A
// scan keeps tens of thousands of paths, often the same one in several lists;
// std::filesystem::path would store each again, with every component apart.
class FilePath {
public:
    FilePath() = default;
    FilePath(std::string_view native);
    FilePath(const std::string& native) : FilePath(std::string_view(native)) {}
    FilePath(const char* native) : FilePath(std::string_view(native)) {}
    FilePath(const std::filesystem::path& path) : FilePath(std::string_view(path.native())) {}
    // `folder` and `name` joined by one "/", made in one allocation.
    static FilePath joined(std::string_view folder, std::string_view name);

    FilePath(const FilePath& other) noexcept;
    FilePath(FilePath&& other) noexcept;
    FilePath& operator=(FilePath other) noexcept;
    ~FilePath();

    std::string_view native() const;
    const char* c_str() const;
    bool empty() const { return native().empty(); }
    // The path for path operations.
    operator std::filesystem::path() const { return native(); }

    bool operator==(const FilePath& other) const { return native() == other.native(); }
    bool operator==(const std::filesystem::path& other) const {
        return native() == std::string_view(other.native());
    }

private:
    // Followed in the same allocation by the bytes and a NUL.
    struct Block {
        std::atomic<std::size_t> references;
        std::size_t length;
    };

    // Room for a path of `length` bytes and its NUL, the bytes left to fill.
    explicit FilePath(std::size_t length);
    char* bytes() const;

    Block* m_block = nullptr;
};

}  // namespace tallowmere
