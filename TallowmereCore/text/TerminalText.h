#pragma once

#include <string>
#include <string_view>

namespace tallowmere::TerminalText {

// `bytes` made safe to print on a terminal, so that no file name can drive it: "\n", "\t", "\r"
// and "\\" as those two-character escapes, other control bytes (0x00-0x1F, 0x7F) and bytes
// outside well-formed UTF-8 as \xNN, C1 control characters (U+0080-U+009F) as \xC2\xNN, with
// upper-case hex digits; all other well-formed UTF-8 unchanged.
std::string escaped(std::string_view bytes);

}  // namespace tallowmere::TerminalText
