#include "text/TerminalText.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "text/TextRules.h"

namespace tallowmere {
namespace {

using namespace std::string_literals;

TEST(TerminalText, EscapesControlsAndTheBackslash) {
    EXPECT_EQ(TerminalText::escaped("a\nb\tc\rd\\e"), "a\\nb\\tc\\rd\\\\e");
    EXPECT_EQ(TerminalText::escaped("\x1B[31mred"), "\\x1B[31mred");
    EXPECT_EQ(TerminalText::escaped("\0\x01\x1F\x7F"s), "\\x00\\x01\\x1F\\x7F");
    // An escaped backslash keeps a name that spells an escape apart from the escaped byte.
    EXPECT_EQ(TerminalText::escaped("\\x41"), "\\\\x41");
}

TEST(TerminalText, EscapesC1ControlsAndBytesOutsideUtf8) {
    EXPECT_EQ(TerminalText::escaped("\xC2\x9B"
                                    "2J"),
              "\\xC2\\x9B2J");
    EXPECT_EQ(TerminalText::escaped("\xC2\x80\xC2\x9F"), "\\xC2\\x80\\xC2\\x9F");
    EXPECT_EQ(TerminalText::escaped("\xFF\x80"), "\\xFF\\x80");
    EXPECT_EQ(TerminalText::escaped("\xE2\x82"), "\\xE2\\x82");
    EXPECT_EQ(TerminalText::escaped("\xC0\x80\xED\xA0\x80"), "\\xC0\\x80\\xED\\xA0\\x80");
}

TEST(TerminalText, KeepsPrintableUtf8) {
    const std::string text =
        "caf\xC3\xA9 \xE2\x80\x9Cnotes\xE2\x80\x9D \xC2\xA0/\xF0\x9F\x98\x80 ~";
    EXPECT_EQ(TerminalText::escaped(text), text);
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
            ASSERT_NE(length, 0u) << "not UTF-8 at " << at << " in " << shown;
            const auto lead = static_cast<unsigned char>(shown[at]);
            ASSERT_FALSE(lead < 0x20 || lead == 0x7F) << "control byte in " << shown;
            ASSERT_FALSE(lead == 0xC2 && static_cast<unsigned char>(shown[at + 1]) < 0xA0)
                << "C1 control in " << shown;
            at += length;
        }
    }
}

}  // namespace
}  // namespace tallowmere
