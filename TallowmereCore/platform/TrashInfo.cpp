#include "platform/TrashInfo.h"

#include <algorithm>

namespace tallowmere {

namespace {

bool keptAsIs(unsigned char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_' ||
           byte == '~' || byte == '/';
}

// Names are bytes, not text: every other byte, invalid UTF-8 and newlines included, is escaped
// so that the desktop's Trash gets the exact original name back.
std::string percentEncoded(const std::string& path) {
    static constexpr char hexDigits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (keptAsIs(byte)) {
            encoded += character;
        } else {
            encoded += '%';
            encoded += hexDigits[byte >> 4];
            encoded += hexDigits[byte & 0x0F];
        }
    }
    return encoded;
}

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    return -1;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '%') {
            decoded += text[index];
            continue;
        }
        const int high = index + 2 < text.size() ? hexValue(text[index + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[index + 2]) : -1;
        if (low < 0) {
            return std::nullopt;
        }
        decoded += static_cast<char>(high * 16 + low);
        index += 2;
    }
    return decoded;
}

std::string localTimeText(std::time_t time) {
    std::tm parts{};
    ::localtime_r(&time, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    return text;
}

}  // namespace

std::string trashInfoText(const std::string& originalPath, std::time_t deletion) {
    return "[Trash Info]\nPath=" + percentEncoded(originalPath) +
           "\nDeletionDate=" + localTimeText(deletion) + "\n";
}

std::optional<std::string> trashInfoPath(std::string_view text) {
    bool inGroup = false;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.starts_with('[')) {
            inGroup = line == "[Trash Info]";
        } else if (inGroup && line.starts_with("Path=")) {
            return percentDecoded(line.substr(5));
        }
    }
    return std::nullopt;
}

}  // namespace tallowmere
