#include "text/CountText.h"

namespace tallowmere::CountText {

std::string grouped(std::int64_t count) {
    const std::string digits = std::to_string(count < 0 ? -(count + 1) + 1ULL : count + 0ULL);
    std::string text;
    for (std::size_t index = 0; index < digits.size(); ++index) {
        if (index > 0 && (digits.size() - index) % 3 == 0) {
            text += ',';
        }
        text += digits[index];
    }
    return count < 0 ? "-" + text : text;
}

}  // namespace tallowmere::CountText
