#include "text/JsonText.h"

#include <charconv>
#include <cmath>
#include <cstdint>

#include "text/TextRules.h"

namespace tallowmere::JsonText {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

// The bytes RFC 8259 escapes as a backslash and a letter, and those letters; readers also
// accept "\/", which writers need not use.
constexpr std::string_view shortEscapeBytes = "\"\\\b\f\n\r\t";
constexpr std::string_view shortEscapeLetters = "\"\\bfnrt";

void appendUnicodeEscape(std::string& out, unsigned int unit) {
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        out += hexDigits[(unit >> shift) & 0xF];
    }
}

void appendEscapedAscii(std::string& out, char c) {
    const std::size_t index = shortEscapeBytes.find(c);
    if (index != std::string_view::npos) {
        out += '\\';
        out += shortEscapeLetters[index];
    } else if (static_cast<unsigned char>(c) < 0x20) {
        appendUnicodeEscape(out, static_cast<unsigned char>(c));
    } else {
        out += c;
    }
}

// Printable ASCII that a JSON string holds as it is.
bool isPlainAscii(char c) {
    return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
}

// Reads the 16-bit code unit of a \uXXXX escape whose four hex digits start at `at`.
std::optional<unsigned int> codeUnitAt(std::string_view text, std::size_t at) {
    if (text.size() - at < 4) {
        return std::nullopt;
    }
    unsigned int unit = 0;
    const auto [end, error] = std::from_chars(text.data() + at, text.data() + at + 4, unit, 16);
    if (error != std::errc{} || end != text.data() + at + 4) {
        return std::nullopt;
    }
    return unit;
}

void appendUtf8(std::string& out, std::uint32_t codePoint) {
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (codePoint >> 18));
        out += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

bool isHighSurrogate(unsigned int unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(unsigned int unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool isEscapedByte(unsigned int unit) {
    return unit >= 0xDC80 && unit <= 0xDCFF;
}

// Decodes the \u escape at `at` (pointing at the backslash), with the low half of a surrogate
// pair if one follows, into `out`; returns the number of input bytes used, or 0 if malformed.
std::size_t decodeUnicodeEscape(std::string_view text, std::size_t at, std::string& out) {
    const auto unit = codeUnitAt(text, at + 2);
    if (!unit) {
        return 0;
    }
    if (isHighSurrogate(*unit) && text.substr(at + 6, 2) == "\\u") {
        const auto low = codeUnitAt(text, at + 8);
        if (low && isLowSurrogate(*low)) {
            appendUtf8(out, 0x10000 + ((*unit - 0xD800) << 10) + (*low - 0xDC00));
            return 12;
        }
    }
    if (isEscapedByte(*unit)) {
        out += static_cast<char>(*unit - 0xDC00);
        return 6;
    }
    if (isHighSurrogate(*unit) || isLowSurrogate(*unit)) {
        return 0;
    }
    appendUtf8(out, *unit);
    return 6;
}

// Decodes the escape at `at` (pointing at the backslash) into `out`; returns the number of
// input bytes used, or 0 if malformed.
std::size_t decodeEscape(std::string_view text, std::size_t at, std::string& out) {
    if (at + 1 >= text.size()) {
        return 0;
    }
    const char letter = text[at + 1];
    if (letter == 'u') {
        return decodeUnicodeEscape(text, at, out);
    }
    if (letter == '/') {
        out += '/';
        return 2;
    }
    const std::size_t index = shortEscapeLetters.find(letter);
    if (index == std::string_view::npos) {
        return 0;
    }
    out += shortEscapeBytes[index];
    return 2;
}

// Copies the raw (unescaped) text at `at` into `out`; returns the number of bytes used, or 0
// when the text there may not appear raw inside a JSON string.
std::size_t copyRaw(std::string_view text, std::size_t at, std::string& out) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x20 || byte == '"') {
        return 0;
    }
    const std::size_t length = TextRules::utf8SequenceLength(text, at);
    out += text.substr(at, length);
    return length;
}

}  // namespace

void appendQuoted(std::string& out, std::string_view bytes) {
    out += '"';
    for (std::size_t at = 0; at < bytes.size();) {
        // Most paths are plain ASCII; copy such runs whole.
        std::size_t plain = at;
        while (plain < bytes.size() && isPlainAscii(bytes[plain])) {
            ++plain;
        }
        out.append(bytes.data() + at, plain - at);
        at = plain;
        if (at == bytes.size()) {
            break;
        }
        const std::size_t length = TextRules::utf8SequenceLength(bytes, at);
        if (length == 0) {
            appendUnicodeEscape(out, 0xDC00 + static_cast<unsigned char>(bytes[at]));
            ++at;
        } else if (length == 1) {
            appendEscapedAscii(out, bytes[at]);
            ++at;
        } else {
            out.append(bytes.data() + at, length);
            at += length;
        }
    }
    out += '"';
}

std::string quoted(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + 2);
    appendQuoted(out, bytes);
    return out;
}

std::optional<std::string> unquotedContent(std::string_view escapedContentWithoutQuotes) {
    const std::string_view text = escapedContentWithoutQuotes;
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t used =
            text[at] == '\\' ? decodeEscape(text, at, out) : copyRaw(text, at, out);
        if (used == 0) {
            return std::nullopt;
        }
        at += used;
    }
    return out;
}

std::string shortestNumber(double value) {
    if (!std::isfinite(value)) {
        return "null";
    }
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    std::string text(buffer, result.ptr);
    if (text.find_first_not_of("-0123456789") == std::string::npos) {
        text += ".0";
    }
    return text;
}

}  // namespace tallowmere::JsonText
