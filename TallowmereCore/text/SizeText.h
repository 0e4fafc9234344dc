#pragma once

#include <cstdint>
#include <string>

namespace tallowmere::SizeText {

// How a byte count is shown to a person, in decimal units (1 KB = 1000 bytes): "0 KB",
// "1 byte", "N bytes" below 1000, then whole KB, MB with one decimal and GB to EB with up to
// two, trailing zeros dropped and rounded half away from zero ("1.5 MB", "1.23 GB"); a value
// that rounds to 1000 of a unit is shown in the next one. Negative counts get a leading "-".
std::string bytes(std::int64_t count);

}  // namespace tallowmere::SizeText
