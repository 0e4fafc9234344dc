#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "measurement/AIStorageScanner.h"

namespace tallowmere::cli {

// A scan's progress on one line of standard error, a terminal: the entries and bytes counted so
// far, the time since the start and the location being walked, shortened to fit. Redrawn in
// place a few times a second from its own thread while it lives, cleared when it goes.
class ProgressLine {
public:
    // `locationNames` are the scan's locations as shown to a person, in the scan's order.
    ProgressLine(const ScanMeter& meter, std::vector<std::string> locationNames);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();

private:
    void draw();

    const ScanMeter& m_meter;
    const std::vector<std::string> m_locationNames;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    bool m_drawn = false;
    std::jthread m_ticker;  // last, so that it stops before the rest goes
};

}  // namespace tallowmere::cli
