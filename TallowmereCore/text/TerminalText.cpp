#include "text/TerminalText.h"

#include "text/TextRules.h"

namespace tallowmere::TerminalText {

namespace {

void appendHexEscape(std::string& out, unsigned char byte) {
    constexpr char hexDigits[] = "0123456789ABCDEF";
    out += "\\x";
    out += hexDigits[byte >> 4];
    out += hexDigits[byte & 0xF];
}

// Bytes written as a backslash and a letter, and those letters.
constexpr std::string_view shortEscapeBytes = "\n\t\r\\";
constexpr std::string_view shortEscapeLetters = "ntr\\";

void appendAscii(std::string& out, char c) {
    const std::size_t index = shortEscapeBytes.find(c);
    const auto byte = static_cast<unsigned char>(c);
    if (index != std::string_view::npos) {
        out += '\\';
        out += shortEscapeLetters[index];
    } else if (byte < 0x20 || byte == 0x7F) {
        appendHexEscape(out, byte);
    } else {
        out += c;
    }
}

// C1 controls (U+0080-U+009F) are encoded C2 80 to C2 9F; terminals obey some of them (CSI).
bool isC1Control(std::string_view sequence) {
    return sequence.size() == 2 && static_cast<unsigned char>(sequence[0]) == 0xC2 &&
           static_cast<unsigned char>(sequence[1]) <= 0x9F;
}

void appendSequence(std::string& out, std::string_view sequence) {
    if (sequence.size() == 1) {
        appendAscii(out, sequence[0]);
    } else if (isC1Control(sequence)) {
        appendHexEscape(out, static_cast<unsigned char>(sequence[0]));
        appendHexEscape(out, static_cast<unsigned char>(sequence[1]));
    } else {
        out += sequence;
    }
}

}  // namespace

std::string escaped(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = TextRules::utf8SequenceLength(bytes, at);
        if (length == 0) {
            appendHexEscape(out, static_cast<unsigned char>(bytes[at]));
            ++at;
        } else {
            appendSequence(out, bytes.substr(at, length));
            at += length;
        }
    }
    return out;
}

}  // namespace tallowmere::TerminalText
