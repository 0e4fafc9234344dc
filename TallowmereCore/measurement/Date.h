#pragma once

#include <cstdint>

namespace tallowmere {

// A point in time: seconds since 2001-01-01 00:00:00 UTC, with sub-second precision.
using Date = double;

// Stands for "no modification date": far enough ahead that such a file never counts as old.
inline constexpr Date distantFuture = 63113904000.0;
inline constexpr Date distantPast = -63114076800.0;

// Seconds between the Unix epoch and 2001-01-01 00:00:00 UTC.
inline constexpr std::int64_t unixEpochToReferenceDate = 978307200;

// Turns a file time (seconds and nanoseconds since the Unix epoch) into a Date.
Date dateFromFileTime(std::int64_t seconds, std::int64_t nanoseconds);

// The current time of the system clock.
Date currentDate();

}  // namespace tallowmere
