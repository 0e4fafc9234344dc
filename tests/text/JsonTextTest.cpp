#include "text/JsonText.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include "text/TextRules.h"

namespace tallowmere {
namespace {

using namespace std::string_literals;

TEST(JsonText, QuotedEscapesWhatJsonRequires) {
    EXPECT_EQ(JsonText::quoted(""), "\"\"");
    EXPECT_EQ(JsonText::quoted("a\"b\\c/d"), "\"a\\\"b\\\\c/d\"");
    EXPECT_EQ(JsonText::quoted("\b\f\n\r\t\x01\x1F\x7F"), "\"\\b\\f\\n\\r\\t\\u0001\\u001f\x7F\"");
    EXPECT_EQ(JsonText::quoted("\0"s), "\"\\u0000\"");
    const std::string typographic =
        "\xE2\x80\x9C"
        "caf\xC3\xA9\xE2\x80\x9D \xE2\x80\x93 \xF0\x9F\x98\x80";
    EXPECT_EQ(JsonText::quoted(typographic), "\"" + typographic + "\"");
}

TEST(JsonText, QuotedWritesBytesOutsideUtf8AsSurrogateEscapes) {
    EXPECT_EQ(JsonText::quoted("\xFF\x80"), "\"\\udcff\\udc80\"");
    EXPECT_EQ(JsonText::quoted("a\xE2\x82"), "\"a\\udce2\\udc82\"");
    EXPECT_EQ(JsonText::quoted("\xC0\xAF"), "\"\\udcc0\\udcaf\"");
    EXPECT_EQ(JsonText::quoted("\xED\xA0\x80"), "\"\\udced\\udca0\\udc80\"");
    EXPECT_EQ(JsonText::quoted("\xE2\x82\xAC\xE2\x82"), "\"\xE2\x82\xAC\\udce2\\udc82\"");
}

TEST(JsonText, UnquotedContentDecodesEveryEscape) {
    EXPECT_EQ(JsonText::unquotedContent(""), "");
    EXPECT_EQ(JsonText::unquotedContent("\\\"\\\\\\/\\b\\f\\n\\r\\t"), "\"\\/\b\f\n\r\t");
    EXPECT_EQ(JsonText::unquotedContent("a/b"), "a/b");
    EXPECT_EQ(JsonText::unquotedContent("\\u0000\\u0041"), "\0A"s);
    EXPECT_EQ(JsonText::unquotedContent("\\u00e9\\u00E9\\u20AC"), "\xC3\xA9\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(JsonText::unquotedContent("\\ud83d\\ude00"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(JsonText::unquotedContent("\\uDBFF\\uDFFF"), "\xF4\x8F\xBF\xBF");
    EXPECT_EQ(JsonText::unquotedContent("\\udc80x\\udcFF"), "\x80x\xFF");
    // A high surrogate pairs with whatever low surrogate follows, including \udc80-\udcff.
    EXPECT_EQ(JsonText::unquotedContent("\\ud800\\udc80"), "\xF0\x90\x82\x80");
    EXPECT_EQ(JsonText::unquotedContent("caf\xC3\xA9 \x7F"), "caf\xC3\xA9 \x7F");
}

TEST(JsonText, UnquotedContentRejectsMalformedText) {
    for (const std::string& bad : {
             "\\"s,
             "a\\"s,
             "\\x"s,
             "\\U0041"s,
             "\\u12"s,
             "\\u12g4"s,
             "\\u-123"s,
             "\\u+123"s,
             "\\ud83d"s,
             "\\ud83dx"s,
             "\\ud83d\\n"s,
             "\\ud83d\\u0041"s,
             "\\ud83d\\ud83d"s,
             "\\ude00"s,
             "\\udc7f"s,
             "\\udd00"s,
             "\\udfff"s,
             "\n"s,
             "\0"s,
             "\x1F"s,
             "a\"b"s,
             "\xFF"s,
             "\xE2\x82"s,
             "\xED\xA0\x80"s,
             "\xC0\xAF"s,
         }) {
        EXPECT_EQ(JsonText::unquotedContent(bad), std::nullopt) << testing::PrintToString(bad);
    }
}

// Random byte strings rich in what matters here: ASCII escapes, well-formed sequences of
// every length, and stray bytes that may form near-miss sequences with their neighbours.
std::string randomBytes(std::mt19937& random) {
    static const std::string pieces[] = {
        "\"",           "\\",       "/",        "\n",           "\0"s,
        "\x1F",         "\x7F",     "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
        "\xED\x9F\xBF", "\xC2\x80", "\\u",      "\\udc80",
    };
    std::uniform_int_distribution<int> length(0, 24);
    std::uniform_int_distribution<int> choice(0, 2 * std::size(pieces) - 1);
    std::uniform_int_distribution<int> byte(0, 255);
    std::string bytes;
    for (int n = length(random); n > 0; --n) {
        const auto pick = static_cast<std::size_t>(choice(random));
        bytes += pick < std::size(pieces) ? pieces[pick] : std::string(1, char(byte(random)));
    }
    return bytes;
}

TEST(JsonText, RandomByteStringsRoundTripThroughValidJson) {
    std::mt19937 random(383);
    for (int round = 0; round < 20000; ++round) {
        const std::string bytes = randomBytes(random);
        const std::string json = JsonText::quoted(bytes);
        ASSERT_GE(json.size(), 2u);
        ASSERT_EQ(json.front(), '"');
        ASSERT_EQ(json.back(), '"');
        // RFC 8259 text: UTF-8 throughout, no raw control characters.
        for (std::size_t at = 0; at < json.size();) {
            const std::size_t length = TextRules::utf8SequenceLength(json, at);
            ASSERT_NE(length, 0u) << json;
            ASSERT_GE(static_cast<unsigned char>(json[at]), 0x20) << json;
            at += length;
        }
        const auto inside = std::string_view(json).substr(1, json.size() - 2);
        ASSERT_EQ(JsonText::unquotedContent(inside), bytes) << testing::PrintToString(bytes);
    }
}

TEST(JsonText, ShortestNumberAlwaysShowsAFraction) {
    EXPECT_EQ(JsonText::shortestNumber(63113904000.0), "63113904000.0");
    EXPECT_EQ(JsonText::shortestNumber(-63114076800.0), "-63114076800.0");
    EXPECT_EQ(JsonText::shortestNumber(0.5), "0.5");
    EXPECT_EQ(JsonText::shortestNumber(0.1), "0.1");
    EXPECT_EQ(JsonText::shortestNumber(0.0), "0.0");
    EXPECT_EQ(JsonText::shortestNumber(-0.0), "-0.0");
    EXPECT_EQ(JsonText::shortestNumber(736123456.789), "736123456.789");
    EXPECT_EQ(JsonText::shortestNumber(1e22), "1e+22");
    EXPECT_EQ(JsonText::shortestNumber(5e-324), "5e-324");
    EXPECT_EQ(JsonText::shortestNumber(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(JsonText::shortestNumber(std::numeric_limits<double>::quiet_NaN()), "null");
}

void expectReadsBackIdentically(double value) {
    const std::string text = JsonText::shortestNumber(value);
    double parsed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    ASSERT_EQ(error, std::errc{}) << text;
    ASSERT_EQ(end, text.data() + text.size()) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(parsed), std::bit_cast<std::uint64_t>(value)) << text;
    ASSERT_NE(text.find_first_of(".e"), std::string::npos) << text;
}

TEST(JsonText, RandomNumbersReadBackAsTheSameDouble) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> dates(-63114076800.0, 63113904000.0);
    std::uniform_int_distribution<std::int64_t> wholeSeconds(-4'000'000'000, 4'000'000'000);
    for (int round = 0; round < 20000; ++round) {
        const double anyDouble = std::bit_cast<double>(random());
        if (std::isfinite(anyDouble)) {
            expectReadsBackIdentically(anyDouble);
        }
        expectReadsBackIdentically(dates(random));
        expectReadsBackIdentically(static_cast<double>(wholeSeconds(random)));
    }
}

}  // namespace
}  // namespace tallowmere
