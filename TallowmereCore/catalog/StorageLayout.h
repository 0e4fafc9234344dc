#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowmere {

// Where editors keep their data: under "Library/Application Support/" on macOS, under
// "~/.config/" on Linux. (The build is strict ISO C++, so the GNU macro `linux` is not set.)
enum class StorageLayout { macos, linux };

// The layout of the system this program runs on.
constexpr StorageLayout nativeStorageLayout() {
#ifdef __APPLE__
    return StorageLayout::macos;
#else
    return StorageLayout::linux;
#endif
}

// "macos" or "linux".
std::optional<StorageLayout> storageLayoutNamed(std::string_view name);
// The name `storageLayoutNamed` reads back.
std::string_view storageLayoutName(StorageLayout layout);

// A catalog text, written for macOS, as a person on `layout` reads it: on Linux the Finder is
// "the file manager" and nothing claims to be native to macOS.
std::string wordedForLayout(std::string_view text, StorageLayout layout);

}  // namespace tallowmere
