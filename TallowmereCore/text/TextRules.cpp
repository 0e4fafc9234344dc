#include "text/TextRules.h"

namespace tallowmere::TextRules {

namespace {

// What a lead byte allows: the sequence length and the range of the second byte. Restricting
// the second byte is what rules out overlong forms, surrogates and code points past U+10FFFF
// (Unicode, table 3-7 "Well-Formed UTF-8 Byte Sequences").
struct LeadByte {
    std::size_t length = 0;
    unsigned char secondLow = 0x80;
    unsigned char secondHigh = 0xBF;
};

LeadByte leadByte(unsigned char byte) {
    if (byte <= 0x7F) {
        return {1};
    }
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {2};
    }
    if (byte == 0xE0) {
        return {3, 0xA0, 0xBF};
    }
    if (byte == 0xED) {
        return {3, 0x80, 0x9F};
    }
    if (byte >= 0xE1 && byte <= 0xEF) {
        return {3};
    }
    if (byte == 0xF0) {
        return {4, 0x90, 0xBF};
    }
    if (byte == 0xF4) {
        return {4, 0x80, 0x8F};
    }
    if (byte >= 0xF1 && byte <= 0xF3) {
        return {4};
    }
    return {};
}

bool isContinuation(unsigned char byte) {
    return byte >= 0x80 && byte <= 0xBF;
}

}  // namespace

std::string asciiLowercased(std::string_view text) {
    std::string result;
    asciiLowercase(text, result);
    return result;
}

void asciiLowercase(std::string_view text, std::string& into) {
    into.assign(text);
    for (char& c : into) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
}

std::size_t utf8SequenceLength(std::string_view text, std::size_t at) {
    if (at >= text.size()) {
        return 0;
    }
    const LeadByte lead = leadByte(static_cast<unsigned char>(text[at]));
    if (lead.length <= 1) {
        return lead.length;
    }
    if (text.size() - at < lead.length) {
        return 0;
    }
    const auto second = static_cast<unsigned char>(text[at + 1]);
    if (second < lead.secondLow || second > lead.secondHigh) {
        return 0;
    }
    for (std::size_t i = 2; i < lead.length; ++i) {
        if (!isContinuation(static_cast<unsigned char>(text[at + i]))) {
            return 0;
        }
    }
    return lead.length;
}

std::size_t codePointCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) {
        const std::size_t length = utf8SequenceLength(text, at);
        at += length == 0 ? 1 : length;
    }
    return count;
}

}  // namespace tallowmere::TextRules
