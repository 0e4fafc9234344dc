#include "platform/TrashInfo.h"

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

}  // namespace tallowmere
