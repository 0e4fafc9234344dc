#pragma once

#include <cstdint>
#include <string>

namespace tallowmere::CountText {

// A count as a person reads it in English: digits grouped in threes by commas ("2,315").
std::string grouped(std::int64_t count);

}  // namespace tallowmere::CountText
