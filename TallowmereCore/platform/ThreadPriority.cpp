#include "platform/ThreadPriority.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tallowmere {

namespace {

// From linux/ioprio.h, which C++ cannot include on every kernel's headers.
constexpr int ioprioWhoProcess = 1;
constexpr int ioprioClassBestEffort = 2;
constexpr int ioprioClassShift = 13;
constexpr int ioprioLowestLevel = 7;

constexpr int niceValueOfBackgroundWork = 10;

}  // namespace

void lowerThisThreadPriority() noexcept {
    const auto thread = static_cast<id_t>(::gettid());
    // On Linux a thread's nice value is its own, so this leaves the window's threads alone.
    ::setpriority(PRIO_PROCESS, thread, niceValueOfBackgroundWork);
    ::syscall(SYS_ioprio_set, ioprioWhoProcess, thread,
              (ioprioClassBestEffort << ioprioClassShift) | ioprioLowestLevel);
}

}  // namespace tallowmere
