#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts are byte strings (file names may hold any byte but '/' and NUL); these rules never
// assume they are valid UTF-8.
namespace tallowmere::TextRules {

// `text` with the ASCII letters A-Z lower-cased; every other byte is kept as it is.
std::string asciiLowercased(std::string_view text);

// The same into `into`, reusing its storage: for walks that lower-case every file name.
void asciiLowercase(std::string_view text, std::string& into);

// The length (1-4) of the well-formed UTF-8 sequence that starts at byte `at`, or 0 when none
// does there (overlong forms, encoded surrogates, code points above U+10FFFF, truncated
// sequences, stray continuation bytes, or `at` past the end).
std::size_t utf8SequenceLength(std::string_view text, std::size_t at);

// The number of Unicode code points in `text`, where each byte outside a well-formed UTF-8
// sequence counts as one.
std::size_t codePointCount(std::string_view text);

}  // namespace tallowmere::TextRules
