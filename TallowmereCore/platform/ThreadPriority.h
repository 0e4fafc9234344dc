#pragma once

namespace tallowmere {

// Puts the calling thread below the user's interactive work, for background walks: a nice
// value of 10 for the processor and the lowest best-effort class for the disk. Threads started
// from it inherit both. Best effort: a system that refuses leaves the priority as it was.
void lowerThisThreadPriority() noexcept;

}  // namespace tallowmere
