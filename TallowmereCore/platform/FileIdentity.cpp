#include "platform/FileIdentity.h"

#include <charconv>

namespace tallowmere {

std::string FileIdentity::text() const {
    // Written in place: a scan makes one for every file its lists keep.
    char digits[2 * 20 + 1];
    char* end = std::to_chars(digits, digits + sizeof digits, device).ptr;
    *end++ = ':';
    end = std::to_chars(end, digits + sizeof digits, inode).ptr;
    return std::string(digits, end);
}

std::optional<FileIdentity> FileIdentity::parse(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto number = [](std::string_view digits) -> std::optional<std::uint64_t> {
        std::uint64_t value = 0;
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (digits.empty() || error != std::errc{} || end != digits.data() + digits.size()) {
            return std::nullopt;
        }
        return value;
    };
    const auto device = number(text.substr(0, colon));
    const auto inode = number(text.substr(colon + 1));
    if (!device || !inode) {
        return std::nullopt;
    }
    return FileIdentity{*device, *inode};
}

}  // namespace tallowmere
