#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <chrono>

#include "platform/WakeTimer.h"

namespace tallowmere {

// The monitoring loop's sleep: wakes every `period` on a clock that keeps running while the
// computer sleeps, so a laptop that slept through the hour rescans as soon as it wakes.
// Each period starts when the previous wake-up has been handled. Destroying it ends the loop.
class MonitorClock : public QObject {
    Q_OBJECT

public:
    explicit MonitorClock(std::chrono::nanoseconds period, QObject* parent = nullptr);

signals:
    // Emitted on the main thread at each wake-up; the next sleep begins when its handlers return.
    void wokeUp();

private:
    void wake();

    const std::chrono::nanoseconds m_period;
    WakeTimer m_timer;
    QSocketNotifier m_notifier;
};

}  // namespace tallowmere
