#include "text/NaturalOrder.h"

#include <algorithm>

namespace tallowmere::NaturalOrder {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

unsigned char folded(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte - 'A' + 'a') : byte;
}

// Takes the digit run at the front of `text` off it.
std::string_view takeDigits(std::string_view& text) {
    std::size_t end = 0;
    while (end < text.size() && isDigit(text[end])) {
        ++end;
    }
    const std::string_view run = text.substr(0, end);
    text.remove_prefix(end);
    return run;
}

// Compares two digit runs by value: without leading zeros, a longer run is larger.
int compareNumbers(std::string_view a, std::string_view b) {
    a.remove_prefix(std::min(a.find_first_not_of('0'), a.size()));
    b.remove_prefix(std::min(b.find_first_not_of('0'), b.size()));
    if (a.size() != b.size()) {
        return a.size() < b.size() ? -1 : 1;
    }
    return a.compare(b);
}

// Compares ignoring letter case and the spelling of numbers; 0 when only those differ.
int compareNatural(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const int order = compareNumbers(takeDigits(a), takeDigits(b));
            if (order != 0) {
                return order;
            }
            continue;
        }
        // A number against another character ranks as its first digit would, which keeps the
        // order consistent because no other character falls between the digits.
        if (folded(a.front()) != folded(b.front())) {
            return folded(a.front()) < folded(b.front()) ? -1 : 1;
        }
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return a.empty() ? (b.empty() ? 0 : -1) : 1;
}

}  // namespace

bool less(std::string_view a, std::string_view b) {
    const int order = compareNatural(a, b);
    return order != 0 ? order < 0 : a < b;
}

}  // namespace tallowmere::NaturalOrder
