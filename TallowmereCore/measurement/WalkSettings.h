#pragma once

#include <chrono>
#include <cstdint>
#include <stop_token>
#include <thread>

#include "measurement/AIStorageScanner.h"

namespace tallowmere {

struct WalkSettings {
    std::stop_token stopToken;
    bool pauses = true;
    // Entries after which a walk of one location stops and says it was limited.
    std::int64_t maxEntries = 0;

    void throwIfStopped() const {
        if (stopToken.stop_requested()) {
            throw ScanCancelled();
        }
    }
};

// Keeps one thread's walk to its pace: with pauses on, it sleeps 2 ms after every 256 entries so
// a long walk leaves the disk to others.
class WalkPace {
public:
    explicit WalkPace(bool pauses) : m_pauses(pauses) {}

    void entryWalked() {
        if (++m_sincePause == entriesBetweenPauses) {
            m_sincePause = 0;
            if (m_pauses) {
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        }
    }

private:
    static constexpr int entriesBetweenPauses = 256;
    bool m_pauses;
    int m_sincePause = 0;
};

}  // namespace tallowmere
