#include "platform/WakeTimer.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <system_error>

namespace tallowmere {

WakeTimer::WakeTimer() : m_fd(::timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (!m_fd.valid()) {
        throw std::system_error(errno, std::generic_category(),
                                "Couldn’t create a timer on the boot-time clock");
    }
}

void WakeTimer::arm(std::chrono::nanoseconds after) {
    using std::chrono::duration_cast;
    using std::chrono::seconds;
    // A zero value would disarm the timer instead of firing at once.
    const auto delay = std::max(after, std::chrono::nanoseconds(1));
    itimerspec value{};
    value.it_value.tv_sec = duration_cast<seconds>(delay).count();
    value.it_value.tv_nsec = (delay - duration_cast<seconds>(delay)).count();
    if (::timerfd_settime(m_fd.get(), 0, &value, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), "Couldn’t arm the wake-up timer");
    }
}

void WakeTimer::acknowledge() noexcept {
    std::uint64_t expirations = 0;
    while (::read(m_fd.get(), &expirations, sizeof expirations) < 0 && errno == EINTR) {
    }
}

}  // namespace tallowmere
