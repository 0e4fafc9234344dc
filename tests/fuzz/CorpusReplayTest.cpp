#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "SummaryFuzzing.h"

namespace tallowmere {
namespace {

// Every seed of the fuzzer's corpus, decoded as the fuzzer decodes it: "valid-" seeds must be
// accepted, "refused-" seeds refused, and every accepted summary must survive a new save.
TEST(SummaryCorpus, SeedsDecodeAsTheirNamesSay) {
    int valid = 0;
    int refused = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TALLOWMERE_FUZZ_CORPUS)) {
        std::ifstream stream(entry.path(), std::ios::binary);
        const std::string json{std::istreambuf_iterator<char>(stream), {}};
        const std::string name = entry.path().filename().native();
        const auto scan = fuzzing::decodeSummary(json);
        if (name.starts_with("valid-")) {
            ++valid;
            EXPECT_TRUE(scan) << name;
        } else if (name.starts_with("refused-")) {
            ++refused;
            EXPECT_FALSE(scan) << name;
        }
        if (scan) {
            EXPECT_TRUE(fuzzing::survivesReencoding(*scan)) << name;
        }
    }
    EXPECT_GT(valid, 0);
    EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace tallowmere
