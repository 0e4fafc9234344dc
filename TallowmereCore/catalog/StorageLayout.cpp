#include "catalog/StorageLayout.h"

namespace tallowmere {

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

}  // namespace tallowmere
