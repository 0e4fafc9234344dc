#include "text/JsonDocument.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace tallowmere {
namespace {

using namespace std::string_literals;

TEST(JsonDocument, ReadsStringsAsBytesAndLooksUpMembersByBytes) {
    const auto document = JsonDocument::parse(
        R"( {"p\udcffth": "a\/b\nc\udc80", "0": "x", "1": "0", "k": 1, "k": "last",)"
        "\n\"caf\xC3\xA9\": [\"\", \"\\u00e9\", \"\xF0\x9F\x98\x80\"]} ");
    ASSERT_TRUE(document);
    const JsonValue root = document->root();
    EXPECT_EQ(root.member("p\xFFth").string(), "a/b\nc\x80");
    // Genuine strings that look like the placeholders the reader uses stay what they are.
    EXPECT_EQ(root.member("0").string(), "x");
    EXPECT_EQ(root.member("1").string(), "0");
    EXPECT_EQ(root.member("k").string(), "last");
    const auto list = root.member("café").elements();
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 3u);
    EXPECT_EQ((*list)[0].string(), "");
    EXPECT_EQ((*list)[1].string(), "é");
    EXPECT_EQ((*list)[2].string(), "😀");
    EXPECT_EQ(root.member("missing").string(), std::nullopt);
    EXPECT_EQ(root.member("missing").member("deeper").elements(), std::nullopt);
    EXPECT_EQ(root.member("p\xFF").string(), std::nullopt);
    EXPECT_EQ((*list)[0].member("0").string(), std::nullopt);
}

TEST(JsonDocument, TellsIntegersFromOtherNumbersAndAnswersNothingOnWrongTypes) {
    const auto document = JsonDocument::parse(
        R"({"max": 9223372036854775807, "min": -9223372036854775808, "zero": -0,)"
        R"( "over": 9223372036854775808, "under": -9223372036854775809, "whole": 2.0,)"
        R"( "exp": 1e2, "half": 1.5, "yes": true, "no": false, "nil": null, "text": "1"})");
    ASSERT_TRUE(document);
    const JsonValue root = document->root();
    EXPECT_EQ(root.member("max").integer(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(root.member("min").integer(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(root.member("zero").integer(), 0);
    for (const char* notInteger : {"over", "under", "whole", "exp", "half", "yes", "nil", "text"}) {
        EXPECT_EQ(root.member(notInteger).integer(), std::nullopt) << notInteger;
    }
    EXPECT_EQ(root.member("max").number(), 9223372036854775807.0);
    EXPECT_EQ(root.member("whole").number(), 2.0);
    EXPECT_EQ(root.member("half").number(), 1.5);
    EXPECT_EQ(root.member("yes").boolean(), true);
    EXPECT_EQ(root.member("no").boolean(), false);
    EXPECT_EQ(root.member("zero").boolean(), std::nullopt);
    EXPECT_EQ(root.member("text").number(), std::nullopt);
    EXPECT_EQ(root.member("nil").string(), std::nullopt);
    EXPECT_EQ(root.elements(), std::nullopt);
}

TEST(JsonDocument, RefusesWhatIsNotOneWellFormedValue) {
    const std::string deep = std::string(513, '[') + std::string(513, ']');
    for (const std::string& bad : {""s,
                                   " "s,
                                   "{"s,
                                   R"({"a":1)"s,
                                   R"({"a" 1})"s,
                                   R"({"a":1,})"s,
                                   "[1] [2]"s,
                                   "nul"s,
                                   R"(["unterminated)"s,
                                   R"(["\"])"s,
                                   R"(["\ud800"])"s,
                                   R"(["\x"])"s,
                                   "[\"\n\"]"s,
                                   "[\"\xFF\"]"s,
                                   "[\xFF]"s,
                                   "{1:2}"s,
                                   "[01]"s,
                                   "[1.]"s,
                                   "/* c */ 1"s,
                                   deep}) {
        EXPECT_FALSE(JsonDocument::parse(bad)) << testing::PrintToString(bad);
    }
    EXPECT_TRUE(JsonDocument::parse(std::string(512, '[') + std::string(512, ']')));
    EXPECT_EQ(JsonDocument::parse(R"("\\")")->root().string(), "\\");
}

}  // namespace
}  // namespace tallowmere
