#include "text/TerminalText.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "text/TextRules.h"

namespace tallowmere {
namespace {

using namespace std::string_literals;

TEST(TerminalText, EscapesControlsBackslashesAndBytesOutsideUtf8) {
    EXPECT_EQ(TerminalText::escaped("a\nb\tc\rd\\x41"), "a\\nb\\tc\\rd\\\\x41");
    EXPECT_EQ(TerminalText::escaped("\x1B[31m\0\x1F\x7F"s), "\\x1B[31m\\x00\\x1F\\x7F");
    EXPECT_EQ(TerminalText::escaped("\xC2\x80\xC2\x9B"
                                    "2J"),
              "\\xC2\\x80\\xC2\\x9B2J");
    EXPECT_EQ(TerminalText::escaped("\xFF\xE2\x82\xC0\x80\xED\xA0\x80"),
              "\\xFF\\xE2\\x82\\xC0\\x80\\xED\\xA0\\x80");
    const std::string printable = "caf\xC3\xA9 \xE2\x80\x9C\xC2\xA0/\xF0\x9F\x98\x80\xE2\x80\x9D~";
    EXPECT_EQ(TerminalText::escaped(printable), printable);
}

TEST(TerminalText, NoRandomNameReachesTheTerminalRaw) {
    std::mt19937 random(20240517);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int round = 0; round < 2000; ++round) {
        std::string name(32, '\0');
        for (char& c : name) {
            c = static_cast<char>(byte(random));
        }
        const std::string shown = TerminalText::escaped(name);
        for (std::size_t at = 0; at < shown.size();) {
            const std::size_t length = TextRules::utf8SequenceLength(shown, at);
            const auto lead = static_cast<unsigned char>(shown[at]);
            ASSERT_NE(length, 0u) << shown;
            ASSERT_FALSE(lead < 0x20 || lead == 0x7F) << shown;
            ASSERT_FALSE(lead == 0xC2 && static_cast<unsigned char>(shown[at + 1]) < 0xA0) << shown;
            at += length;
        }
    }
}

}  // namespace
}  // namespace tallowmere
