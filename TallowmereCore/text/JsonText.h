#pragma once

#include <optional>
#include <string>
#include <string_view>

// JSON strings (RFC 8259) that carry any byte string losslessly: bytes outside well-formed
// UTF-8 travel as the escapes \udc80-\udcff (the surrogateescape convention of PEP 383).
namespace tallowmere::JsonText {

// `bytes` as a JSON string with its quotes: '"', '\' and control characters escaped, well-formed
// UTF-8 kept as is, each other byte written \udcXX; "/" is not escaped.
std::string quoted(std::string_view bytes);
// The same, appended to `out`.
void appendQuoted(std::string& out, std::string_view bytes);

// The bytes that the inside of a JSON string (without its quotes) stands for: every RFC 8259
// escape is decoded, a lone \udc80-\udcff gives back its single byte. Nothing when the text is
// malformed: a bad or truncated escape, another lone surrogate, a raw control character, an
// unescaped '"', or a raw byte outside well-formed UTF-8.
std::optional<std::string> unquotedContent(std::string_view escapedContentWithoutQuotes);

// The shortest text that reads back as exactly `value`, ending in ".0" when it would otherwise
// read as an integer; "null" for infinities and NaN, which JSON cannot write.
std::string shortestNumber(double value);

}  // namespace tallowmere::JsonText
