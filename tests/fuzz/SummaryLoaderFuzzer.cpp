#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "SummaryFuzzing.h"

// libFuzzer's entry: any bytes may reach the loader from a damaged or hostile file, so decoding
// must never crash, and what it accepts must survive being saved again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view json(reinterpret_cast<const char*>(data), size);
    const auto scan = tallowmere::fuzzing::decodeSummary(json);
    if (scan && !tallowmere::fuzzing::survivesReencoding(*scan)) {
        std::abort();
    }
    return 0;
}
