#pragma once

#include <chrono>

#include "platform/FileDescriptor.h"

namespace tallowmere {

// A one-shot timer on the clock that keeps running while the computer sleeps (CLOCK_BOOTTIME),
// read through a descriptor that an event loop can watch: it becomes readable when the timer
// fires. Move-only; closing it cancels the timer.
class WakeTimer {
public:
    // Throws std::system_error when the system has no such timer to give.
    WakeTimer();

    // The descriptor to watch for reading.
    int fd() const { return m_fd.get(); }

    // Fires once, `after` from now, replacing any earlier arming.
    void arm(std::chrono::nanoseconds after);

    // Clears a firing, so the descriptor stops being readable until the next one.
    void acknowledge() noexcept;

private:
    FileDescriptor m_fd;
};

}  // namespace tallowmere
