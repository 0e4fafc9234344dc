#include "platform/FileIdentity.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tallowmere {
namespace {

// The text is kept in undo records and reviews, so it must read back exactly, and nothing
// else may pass for it.
TEST(FileIdentity, TextReadsBackExactlyAndNothingElseParses) {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ((FileIdentity{2049, 123}.text()), "2049:123");
    for (const FileIdentity identity : {FileIdentity{0, 0}, FileIdentity{most, most},
                                        FileIdentity{1, most}, FileIdentity{most, 7}}) {
        EXPECT_EQ(FileIdentity::parse(identity.text()), identity) << identity.text();
    }
    for (const char* text : {"", ":", "1:", ":1", "1:2:3", "-1:2", "1:+2", "1: 2", "1:2 ",
                             "18446744073709551616:1", "0x1:2"}) {
        EXPECT_EQ(FileIdentity::parse(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace tallowmere
