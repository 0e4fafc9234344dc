#include "catalog/StorageLayout.h"

#include <array>
#include <utility>

namespace tallowmere {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 2> linuxWording{{
    {"in Finder", "in the file manager"},
    {"Native macOS Goose data", "Goose desktop data"},
}};

}  // namespace

std::optional<StorageLayout> storageLayoutNamed(std::string_view name) {
    if (name == "macos") {
        return StorageLayout::macos;
    }
    if (name == "linux") {
        return StorageLayout::linux;
    }
    return std::nullopt;
}

std::string_view storageLayoutName(StorageLayout layout) {
    return layout == StorageLayout::macos ? "macos" : "linux";
}

std::string wordedForLayout(std::string_view text, StorageLayout layout) {
    std::string worded(text);
    if (layout != StorageLayout::linux) {
        return worded;
    }
    for (const auto& [macText, linuxText] : linuxWording) {
        for (auto at = worded.find(macText); at != std::string::npos;
             at = worded.find(macText, at + linuxText.size())) {
            worded.replace(at, macText.size(), linuxText);
        }
    }
    return worded;
}

}  // namespace tallowmere
