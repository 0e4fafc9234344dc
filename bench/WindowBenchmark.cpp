// How the window feels on a big home: the time from starting the process to the first frame
// that shows the numbers of a saved summary, and, while the first scan then runs with the list
// filling in, the longest frame and the longest stall of the main thread.
//
//   window_benchmark HOME [RUNS]
//
// HOME is a synthetic home (make-synthetic-home). The program writes its settings and summary
// inside it, under .config/Tallowmere and .cache/Tallowmere: a first run scans once to save
// the summary, then each measured run is a new process. Run it on a display (xvfb-run works).

#include <sys/wait.h>
#include <unistd.h>
#include <QApplication>
#include <QElapsedTimer>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTimer>
#include <QtQml/QQmlExtensionPlugin>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "AppStore.h"
#include "DesktopServices.h"
#include "QmlTypes.h"
#include "RendererChoice.h"
#include "ViewStyle.h"
#include "catalog/StorageLayout.h"

Q_IMPORT_QML_PLUGIN(TallowmerePlugin)

namespace {

std::int64_t monotonicNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

// One start of the window, as a person sees it. `launchedAt` is when the parent started this
// process; "prepare" only waits for the first scan, so that its summary is saved.
int runWindow(int argc, char* argv[], bool prepare, std::int64_t launchedAt) {
    QApplication application(argc, argv);
    QQuickStyle::setStyle("Basic");
    tallowmere::RendererChoice::apply();
    tallowmere::AppStore store;
    tallowmere::ViewStyle style(std::getenv("HOME"), tallowmere::nativeStorageLayout());
    tallowmere::DesktopServices desktop;
    tallowmere::registerQmlTypes(&store, &style, &desktop);
    QQmlApplicationEngine engine;
    tallowmere::addIconProvider(engine);
    engine.addImportPath("qrc:/qt/qml");
    engine.load(QUrl("qrc:/qt/qml/Tallowmere/TallowmereWindow.qml"));
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
    if (!window) {
        return 1;
    }
    double firstNumbers = -1;
    double longestFrame = 0;
    double longestStall = 0;
    std::int64_t lastFrame = 0;
    QElapsedTimer sinceTick;
    sinceTick.start();
    QObject::connect(window, &QQuickWindow::frameSwapped, [&] {
        const std::int64_t now = monotonicNanoseconds();
        if (firstNumbers < 0 && !store.storage().isNull()) {
            firstNumbers = double(now - launchedAt) / 1e6;
            sinceTick.restart();
        } else if (lastFrame != 0 && store.aiScanning()) {
            longestFrame = std::max(longestFrame, double(now - lastFrame) / 1e6);
        }
        lastFrame = now;
    });
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, [&] {
        if (store.aiScanning() && firstNumbers >= 0) {
            longestStall = std::max(longestStall, double(sinceTick.nsecsElapsed()) / 1e6);
        }
        sinceTick.restart();
    });
    ticks.start(1);
    QObject::connect(&store, &tallowmere::AppStore::aiScanningChanged, [&] {
        if (!store.aiScanning()) {
            QApplication::quit();
        }
    });
    QApplication::exec();
    if (!prepare) {
        std::printf(
            "first frame with numbers %.1f ms · longest frame during the scan %.1f ms · "
            "longest main-thread stall %.1f ms · %d tools\n",
            firstNumbers, longestFrame, longestStall, store.tools()->count());
    }
    return 0;
}

int launch(const char* self, const std::string& home, const char* mode) {
    const std::string launchedAt = std::to_string(monotonicNanoseconds());
    const pid_t child = fork();
    if (child == 0) {
        execl(self, self, home.c_str(), mode, launchedAt.c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: window_benchmark HOME [RUNS]\n");
        return 2;
    }
    const std::string home = std::filesystem::absolute(argv[1]).native();
    ::setenv("HOME", home.c_str(), 1);
    for (const char* name :
         {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
        ::unsetenv(name);
    }
    if (argc == 4) {
        int appArgc = 1;
        return runWindow(appArgc, argv, std::string(argv[2]) == "prepare", std::stoll(argv[3]));
    }
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
    if (launch("/proc/self/exe", home, "prepare") != 0) {
        return 1;
    }
    for (int run = 0; run < runs; ++run) {
        if (launch("/proc/self/exe", home, "measure") != 0) {
            return 1;
        }
    }
    return 0;
}
