// How the application model behaves on a big home, as a person at the window feels it: how
// long the main thread stalls while the first scan shows partial results, how long applying
// one progress snapshot takes, how long a start with a summary takes until the numbers show,
// and how long quitting takes in the middle of a scan.
//
//   store_benchmark HOME
//
// HOME is a synthetic home (make-synthetic-home); the program writes its settings and summary
// inside it, under .config/Tallowmere and .cache/Tallowmere, and deletes the summary first.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <vector>

#include "AppStore.h"

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    if (values.empty()) {
        return 0;
    }
    std::ranges::sort(values);
    return values[values.size() / 2];
}

// Times every queued call the store's worker hands to the main thread: the progress snapshots
// and the finished scan.
class TimedApplication : public QCoreApplication {
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        if (receiver != store || event->type() != QEvent::MetaCall) {
            return QCoreApplication::notify(receiver, event);
        }
        const auto start = Clock::now();
        const bool handled = QCoreApplication::notify(receiver, event);
        handoffs.push_back(millisecondsSince(start));
        return handled;
    }

    QObject* store = nullptr;
    std::vector<double> handoffs;
};

// The longest gap between two ticks of a 1 ms timer while `running` holds: how late the main
// thread can be to anything a person does.
double longestStallWhile(const std::function<bool()>& running) {
    QTimer ticks;
    ticks.setTimerType(Qt::PreciseTimer);
    ticks.setInterval(1);
    auto last = Clock::now();
    double longest = 0;
    QObject::connect(&ticks, &QTimer::timeout, [&] {
        longest = std::max(longest, millisecondsSince(last) - 1.0);
        last = Clock::now();
    });
    ticks.start();
    while (running()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    return longest;
}

std::unique_ptr<tallowmere::AppStore> makeStore() {
    return std::make_unique<tallowmere::AppStore>();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: store_benchmark HOME\n");
        return 2;
    }
    const std::filesystem::path home = std::filesystem::absolute(argv[1]);
    ::setenv("HOME", home.c_str(), 1);
    for (const char* name :
         {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
        ::unsetenv(name);
    }
    std::filesystem::remove(home / ".cache/Tallowmere/storage-summary.json");
    TimedApplication application(argc, argv);

    auto start = Clock::now();
    auto store = makeStore();
    application.store = store.get();
    const double firstStall = longestStallWhile([&] { return store->aiScanning(); });
    const double firstScan = millisecondsSince(start);
    if (application.handoffs.empty()) {
        std::fprintf(stderr, "store_benchmark: the scan handed nothing over\n");
        return 1;
    }
    std::vector<double> snapshots(application.handoffs.begin(), application.handoffs.end() - 1);
    std::printf(
        "first scan, no summary: %.0f ms; %zu snapshots applied, median %.2f ms, longest %.2f ms;"
        " finished scan applied in %.2f ms; longest main-thread stall %.2f ms\n",
        firstScan, snapshots.size(), median(snapshots),
        snapshots.empty() ? 0.0 : *std::ranges::max_element(snapshots), application.handoffs.back(),
        firstStall);
    store.reset();

    start = Clock::now();
    store = makeStore();
    const double startWithSummary = millisecondsSince(start);
    std::printf("start with a summary: storage %s after %.2f ms\n",
                store->storage().isNull() ? "missing" : "shown", startWithSummary);
    QElapsedTimer scanning;
    scanning.start();
    while (scanning.elapsed() < 1000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
    const bool stillScanning = store->aiScanning();
    start = Clock::now();
    store->stopBackgroundWork();
    store.reset();
    std::printf("quit one second into a scan (%s): store gone after %.2f ms\n",
                stillScanning ? "still scanning" : "scan already done", millisecondsSince(start));
    return 0;
}
