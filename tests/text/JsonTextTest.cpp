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

TEST(JsonText, QuotedEscapesWhatJsonRequiresAndBytesOutsideUtf8) {
    EXPECT_EQ(JsonText::quoted("a\"b\\c/d"), R"("a\"b\\c/d")");
    EXPECT_EQ(JsonText::quoted("\b\f\n\r\t\0\x1F\x7F"s), "\"\\b\\f\\n\\r\\t\\u0000\\u001f\x7F\"");
    const std::string typographic = "“café” – 😀";
    EXPECT_EQ(JsonText::quoted(typographic), "\"" + typographic + "\"");
    // A stray byte, a truncated euro sign after a whole one, an overlong "/", a surrogate.
    EXPECT_EQ(JsonText::quoted("\xFF\xE2\x82\xAC\xE2\x82\xC0\xAF\xED\xA0\x80"),
              R"("\udcff€\udce2\udc82\udcc0\udcaf\udced\udca0\udc80")");
}

TEST(JsonText, UnquotedContentDecodesEveryEscape) {
    EXPECT_EQ(JsonText::unquotedContent(R"(\"\\\/\b\f\n\r\t/)"), "\"\\/\b\f\n\r\t/");
    EXPECT_EQ(JsonText::unquotedContent(R"(\u0000\u00e9\u00E9\u20AC)"), "\0éé€"s);
    EXPECT_EQ(JsonText::unquotedContent(R"(\ud83d\ude00\uDBFF\uDFFF)"), "😀\xF4\x8F\xBF\xBF");
    EXPECT_EQ(JsonText::unquotedContent(R"(\udc80x\udcFF)"), "\x80x\xFF");
    // A high surrogate pairs with any low one that follows, \udc80-\udcff included.
    EXPECT_EQ(JsonText::unquotedContent(R"(\ud800\udc80)"), "\xF0\x90\x82\x80");
    EXPECT_EQ(JsonText::unquotedContent("café \x7F"), "café \x7F");
}

TEST(JsonText, UnquotedContentRejectsMalformedText) {
    for (const std::string& bad :
         {"\\"s,          "\\x"s,        "\\U0041"s,        "\\u12"s,
          "\\u12g4"s,     "\\u-123"s,    "\\u+123"s,        "\\ud83d"s,
          "\\ud83dx"s,    "\\ud83d\\n"s, "\\ud83d\\u0041"s, "\\ud83d\\ud83d"s,
          "\\udc7f"s,     "\\udd00"s,    "\\udfff"s,        "\n"s,
          "\0"s,          "a\"b"s,       "\xFF"s,           "\xE2\x82"s,
          "\xED\xA0\x80"s}) {
        EXPECT_EQ(JsonText::unquotedContent(bad), std::nullopt) << testing::PrintToString(bad);
    }
}

// Random byte strings rich in what matters here: characters JSON escapes, well-formed sequences
// of every length, and stray bytes that may form near-miss sequences with their neighbours.
std::string randomBytes(std::mt19937& random) {
    static const std::string pieces[] = {"\"", "\\", "/", "\n",       "\0"s,   "\x7F",
                                         "é",  "€",  "😀", "\xC2\x80", R"(\u)", R"(\udc80)"};
    std::uniform_int_distribution<std::size_t> choice(0, 2 * std::size(pieces) - 1);
    std::uniform_int_distribution<int> byte(0, 255);
    std::string bytes;
    for (int n = std::uniform_int_distribution(0, 24)(random); n > 0; --n) {
        const std::size_t pick = choice(random);
        bytes += pick < std::size(pieces) ? pieces[pick] : std::string(1, char(byte(random)));
    }
    return bytes;
}

TEST(JsonText, RandomByteStringsRoundTripThroughValidJson) {
    std::mt19937 random(383);
    for (int round = 0; round < 20000; ++round) {
        const std::string bytes = randomBytes(random);
        const std::string json = JsonText::quoted(bytes);
        // RFC 8259 text: UTF-8 throughout, no raw control characters.
        for (std::size_t at = 0; at < json.size(); at += TextRules::utf8SequenceLength(json, at)) {
            ASSERT_NE(TextRules::utf8SequenceLength(json, at), 0u) << json;
            ASSERT_GE(static_cast<unsigned char>(json[at]), 0x20) << json;
        }
        ASSERT_TRUE(json.size() >= 2 && json.front() == '"' && json.back() == '"') << json;
        const auto inside = std::string_view(json).substr(1, json.size() - 2);
        ASSERT_EQ(JsonText::unquotedContent(inside), bytes) << testing::PrintToString(bytes);
    }
}

TEST(JsonText, ShortestNumberAlwaysShowsAFractionOrExponent) {
    EXPECT_EQ(JsonText::shortestNumber(63113904000.0), "63113904000.0");
    EXPECT_EQ(JsonText::shortestNumber(-63114076800.0), "-63114076800.0");
    EXPECT_EQ(JsonText::shortestNumber(-0.0), "-0.0");
    EXPECT_EQ(JsonText::shortestNumber(0.5), "0.5");
    EXPECT_EQ(JsonText::shortestNumber(736123456.789), "736123456.789");
    EXPECT_EQ(JsonText::shortestNumber(1e22), "1e+22");
    EXPECT_EQ(JsonText::shortestNumber(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(JsonText::shortestNumber(std::numeric_limits<double>::quiet_NaN()), "null");
}

void expectReadsBackIdentically(double value) {
    const std::string text = JsonText::shortestNumber(value);
    double parsed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    ASSERT_TRUE(error == std::errc{} && end == text.data() + text.size()) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(parsed), std::bit_cast<std::uint64_t>(value)) << text;
}

TEST(JsonText, RandomNumbersReadBackAsTheSameDouble) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> dates(-63114076800.0, 63113904000.0);
    std::uniform_int_distribution<std::int64_t> wholeSeconds(-4'000'000'000, 4'000'000'000);
    for (int round = 0; round < 20000; ++round) {
        const double anyBits = std::bit_cast<double>(random());
        if (std::isfinite(anyBits)) {
            expectReadsBackIdentically(anyBits);
        }
        expectReadsBackIdentically(dates(random));
        expectReadsBackIdentically(static_cast<double>(wholeSeconds(random)));
    }
}

}  // namespace
}  // namespace tallowmere
