#include "text/TextRules.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tallowmere {
namespace {

using namespace std::string_literals;

TEST(TextRules, LowercasesOnlyAsciiLetters) {
    EXPECT_EQ(TextRules::asciiLowercased("Saoudrizwan.Claude-Dev"), "saoudrizwan.claude-dev");
    // Neighbours of A-Z, a UTF-8 "Ä" and Latin-1 capitals (0xC4, 0xDA) must not move.
    EXPECT_EQ(TextRules::asciiLowercased("@AZ[`az{\xC3\x84\xC4\xDA"), "@az[`az{\xC3\x84\xC4\xDA");
    EXPECT_EQ(TextRules::asciiLowercased("A\0B"s), "a\0b"s);
}

TEST(TextRules, Utf8SequenceLengthFollowsWellFormedRanges) {
    struct Case {
        std::string bytes;
        std::size_t length;
    };
    const std::vector<Case> cases{
        {"\0"s, 1},
        {"\x7F", 1},
        {"\xC2\x80", 2},          // U+0080
        {"\xDF\xBF", 2},          // U+07FF
        {"\xE0\xA0\x80", 3},      // U+0800
        {"\xED\x9F\xBF", 3},      // U+D7FF
        {"\xEE\x80\x80", 3},      // U+E000
        {"\xEF\xBF\xBF", 3},      // U+FFFF
        {"\xF0\x90\x80\x80", 4},  // U+10000
        {"\xF4\x8F\xBF\xBF", 4},  // U+10FFFF
        {"\x80", 0},              // continuation byte without a lead
        {"\xBF", 0},
        {"\xC0\x80", 0},          // overlong NUL
        {"\xC1\xBF", 0},          // overlong U+007F
        {"\xE0\x9F\xBF", 0},      // overlong U+07FF
        {"\xF0\x8F\xBF\xBF", 0},  // overlong U+FFFF
        {"\xED\xA0\x80", 0},      // U+D800
        {"\xED\xBF\xBF", 0},      // U+DFFF
        {"\xF4\x90\x80\x80", 0},  // U+110000
        {"\xF5\x80\x80\x80", 0},  // lead byte past U+10FFFF
        {"\xFF", 0},
        {"\xC2", 0},              // truncated
        {"\xE2\x82", 0},          // truncated euro sign
        {"\xF0\x9F\x98", 0},      // truncated emoji
        {"\xC2\x41", 0},          // second byte not a continuation
        {"\xE2\x82\x41", 0},      // third byte not a continuation
        {"\xF0\x9F\x98\xC0", 0},  // fourth byte not a continuation
    };
    for (const Case& c : cases) {
        EXPECT_EQ(TextRules::utf8SequenceLength(c.bytes, 0), c.length)
            << testing::PrintToString(c.bytes);
    }
    const std::string text = "a\xE2\x82\xAC";
    EXPECT_EQ(TextRules::utf8SequenceLength(text, 1), 3u);
    EXPECT_EQ(TextRules::utf8SequenceLength(text, 2), 0u);
    EXPECT_EQ(TextRules::utf8SequenceLength(text, 4), 0u);
    EXPECT_EQ(TextRules::utf8SequenceLength(text, 99), 0u);
}

TEST(TextRules, CountsCodePointsAndStrayBytesAlike) {
    EXPECT_EQ(TextRules::codePointCount(""), 0u);
    EXPECT_EQ(TextRules::codePointCount("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), 4u);
    EXPECT_EQ(TextRules::codePointCount("\xE2\x82"), 2u);
    EXPECT_EQ(TextRules::codePointCount("\xED\xA0\x80x"), 4u);
    EXPECT_EQ(TextRules::codePointCount("\xF0\x9F\x98\x80\xF0\x9F\x98"), 4u);
}

}  // namespace
}  // namespace tallowmere
