#pragma once

#include <chrono>
#include <cstdint>
#include <stop_token>
#include <thread>
#include <utility>

#include "measurement/AIStorageScanner.h"

namespace tallowmere {

struct WalkSettings {
    std::stop_token stopToken;
    bool pauses = true;
    // Entries after which a walk of one location stops and says it was limited.
    std::int64_t maxEntries = 0;
    ScanMeter* meter = nullptr;

    void throwIfStopped() const {
        if (stopToken.stop_requested()) {
            throw ScanCancelled();
        }
    }
};

// Keeps one thread's walk to its pace: with pauses on, it sleeps 2 ms after every 256 entries so
// a long walk leaves the disk to others. It tells the meter, if any, how far it got at the same
// moments, so the walk itself touches no shared counter.
class WalkPace {
public:
    WalkPace(bool pauses, ScanMeter* meter) : m_pauses(pauses), m_meter(meter) {}
    WalkPace(WalkPace&& other) noexcept
        : m_pauses(other.m_pauses),
          m_meter(std::exchange(other.m_meter, nullptr)),
          m_sincePause(other.m_sincePause),
          m_bytes(other.m_bytes) {}
    WalkPace& operator=(WalkPace&&) = delete;
    ~WalkPace() { tellMeter(); }

    void entryWalked() {
        if (++m_sincePause == entriesBetweenPauses) {
            tellMeter();
            if (m_pauses) {
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        }
    }

    void fileMeasured(std::int64_t allocatedBytes) { m_bytes += allocatedBytes; }

    // The walk entered the location at `index` of the scan's list.
    void entered(std::size_t index) const {
        if (m_meter) {
            m_meter->location.store(index, std::memory_order_relaxed);
        }
    }

private:
    void tellMeter() {
        if (m_meter) {
            m_meter->entries.fetch_add(m_sincePause, std::memory_order_relaxed);
            m_meter->allocatedBytes.fetch_add(m_bytes, std::memory_order_relaxed);
        }
        m_sincePause = 0;
        m_bytes = 0;
    }

    static constexpr int entriesBetweenPauses = 256;
    bool m_pauses;
    ScanMeter* m_meter;
    int m_sincePause = 0;
    std::int64_t m_bytes = 0;
};

}  // namespace tallowmere
