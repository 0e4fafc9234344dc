#include "text/TextRules.h"

#include <gtest/gtest.h>

#include <string>

namespace tallowmere {
namespace {

using namespace std::string_literals;

TEST(TextRules, LowercasesOnlyAsciiLetters) {
    EXPECT_EQ(TextRules::asciiLowercased("Saoudrizwan.Claude-Dev"), "saoudrizwan.claude-dev");
    // Neighbours of A-Z, a UTF-8 "Ä" and Latin-1 capitals (0xC4, 0xDA) must not move.
    EXPECT_EQ(TextRules::asciiLowercased("@AZ[`az{\xC3\x84\xC4\xDA\0"s),
              "@az[`az{\xC3\x84\xC4\xDA\0"s);
}

TEST(TextRules, AcceptsOnlyWellFormedUtf8Sequences) {
    // The first and last code point of each length, and the code points around the surrogates.
    for (const std::string& valid :
         {"\0"s, "\x7F"s, "\xC2\x80"s, "\xDF\xBF"s, "\xE0\xA0\x80"s, "\xED\x9F\xBF"s,
          "\xEE\x80\x80"s, "\xEF\xBF\xBF"s, "\xF0\x90\x80\x80"s, "\xF4\x8F\xBF\xBF"s}) {
        EXPECT_EQ(TextRules::utf8SequenceLength(valid, 0), valid.size()) << valid;
    }
    // Stray continuations, overlong forms, surrogates, past U+10FFFF, truncated, interrupted.
    for (const std::string& invalid :
         {"\x80"s, "\xBF"s, "\xFF"s, "\xC0\x80"s, "\xC1\xBF"s, "\xE0\x9F\xBF"s, "\xF0\x8F\xBF\xBF"s,
          "\xED\xA0\x80"s, "\xED\xBF\xBF"s, "\xF4\x90\x80\x80"s, "\xF5\x80\x80\x80"s, "\xC2"s,
          "\xE2\x82"s, "\xF0\x9F\x98"s, "\xC2\x41"s, "\xE2\x82\x41"s, "\xF0\x9F\x98\xC0"s}) {
        EXPECT_EQ(TextRules::utf8SequenceLength(invalid, 0), 0u) << testing::PrintToString(invalid);
    }
    EXPECT_EQ(TextRules::utf8SequenceLength("a\xE2\x82\xAC", 1), 3u);
    EXPECT_EQ(TextRules::utf8SequenceLength("a\xE2\x82\xAC", 2), 0u);
    EXPECT_EQ(TextRules::utf8SequenceLength("a\xE2\x82\xAC", 4), 0u);
}

TEST(TextRules, CountsCodePointsAndStrayBytesAlike) {
    EXPECT_EQ(TextRules::codePointCount(""), 0u);
    EXPECT_EQ(TextRules::codePointCount("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), 4u);
    EXPECT_EQ(TextRules::codePointCount("\xED\xA0\x80x\xF0\x9F\x98"), 7u);
}

}  // namespace
}  // namespace tallowmere
