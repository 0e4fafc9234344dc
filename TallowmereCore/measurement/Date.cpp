#include "measurement/Date.h"

#include <chrono>

namespace tallowmere {

Date dateFromFileTime(std::int64_t seconds, std::int64_t nanoseconds) {
    // Subtract in integers first so whole seconds stay exact.
    return static_cast<double>(seconds - unixEpochToReferenceDate) +
           static_cast<double>(nanoseconds) / 1e9;
}

Date currentDate() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const auto nanoseconds =
        std::chrono::duration_cast<std::chrono::nanoseconds>(sinceEpoch).count();
    return dateFromFileTime(nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000);
}

}  // namespace tallowmere
