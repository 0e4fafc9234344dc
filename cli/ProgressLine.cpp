#include "ProgressLine.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "TerminalLines.h"
#include "text/CountText.h"
#include "text/SizeText.h"
#include "text/TextRules.h"

namespace tallowmere::cli {

namespace {

constexpr auto redrawEvery = std::chrono::milliseconds(250);

std::string elapsedText(std::chrono::steady_clock::duration elapsed) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
    char text[32];
    if (seconds >= 3600) {
        std::snprintf(
            text, sizeof text, "%lld:%02lld:%02lld", static_cast<long long>(seconds / 3600),
            static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60));
    } else {
        std::snprintf(text, sizeof text, "%lld:%02lld", static_cast<long long>(seconds / 60),
                      static_cast<long long>(seconds % 60));
    }
    return text;
}

}  // namespace

ProgressLine::ProgressLine(const ScanMeter& meter, std::vector<std::string> locationNames)
    : m_meter(meter),
      m_locationNames(std::move(locationNames)),
      m_ticker([this](std::stop_token stop) {
          std::mutex mutex;
          std::condition_variable_any wake;
          std::unique_lock lock(mutex);
          // At once, so that a person sees the scan has begun, then a few times a second.
          while (!stop.stop_requested()) {
              draw();
              wake.wait_for(lock, stop, redrawEvery, [] { return false; });
          }
      }) {}

ProgressLine::~ProgressLine() {
    m_ticker.request_stop();
    m_ticker.join();
    if (m_drawn) {
        std::cerr << "\r\033[K" << std::flush;
    }
}

void ProgressLine::draw() {
    const auto entries = m_meter.entries.load(std::memory_order_relaxed);
    const auto bytes = m_meter.allocatedBytes.load(std::memory_order_relaxed);
    const auto location = m_meter.location.load(std::memory_order_relaxed);
    const std::string counts = "Scanning… " + CountText::grouped(entries) + " entries · " +
                               SizeText::bytes(bytes) + " · " +
                               elapsedText(std::chrono::steady_clock::now() - m_start);
    // One column short of the width, so that the cursor never wraps onto a new line.
    const std::size_t width = terminalColumns(STDERR_FILENO).value_or(80) - 1;
    std::string line = fitted(counts, width);
    const std::size_t used = TextRules::codePointCount(line) + 3;
    const std::size_t room = width > used ? width - used : 0;
    if (location < m_locationNames.size() && room > 8) {
        line += " · " + fitted(m_locationNames[location], room);
    }
    std::cerr << "\r\033[K" << line << std::flush;
    m_drawn = true;
}

}  // namespace tallowmere::cli
