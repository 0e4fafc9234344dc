#include "MonitorClock.h"

namespace tallowmere {

MonitorClock::MonitorClock(std::chrono::nanoseconds period, QObject* parent)
    : QObject(parent), m_period(period), m_notifier(m_timer.fd(), QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &MonitorClock::wake);
    m_timer.arm(m_period);
}

void MonitorClock::wake() {
    m_timer.acknowledge();
    emit wokeUp();
    m_timer.arm(m_period);
}

}  // namespace tallowmere
