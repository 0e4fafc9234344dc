#pragma once

#include <string_view>

namespace tallowmere::NaturalOrder {

// The file-browser order: ASCII letters compare case-insensitively and digit runs by numeric
// value (of any length); texts that compare equal so far are ordered by their bytes, so the
// order is total.
bool less(std::string_view a, std::string_view b);

}  // namespace tallowmere::NaturalOrder
