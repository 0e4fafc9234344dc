// Renders every state of the window into PNG files, on a home folder made for the purpose:
//
//   screenshot_tour OUTPUT_FOLDER
//
// The home, its settings, summary and Trash live in a temporary folder that is deleted at the
// end. Nothing is read from or written to the user's own home.

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QtQml/QQmlExtensionPlugin>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

#include "AppStore.h"
#include "DesktopServices.h"
#include "FolderChooser.h"
#include "LocationSelection.h"
#include "QmlTypes.h"
#include "ViewStyle.h"
#include "catalog/StorageLayout.h"

Q_IMPORT_QML_PLUGIN(TallowmerePlugin)

namespace {

namespace fs = std::filesystem;
using namespace tallowmere;

// Answers the folder chooser with the folders given, in order.
class ListedChooser : public FolderChooser {
public:
    explicit ListedChooser(std::deque<std::string> answers) : m_answers(std::move(answers)) {}

    std::optional<std::string> chooseFolder() override {
        if (m_answers.empty()) {
            return std::nullopt;
        }
        auto answer = m_answers.front();
        m_answers.pop_front();
        return answer;
    }

private:
    std::deque<std::string> m_answers;
};

void writeFile(const fs::path& path, std::size_t bytes, int ageDays = 0) {
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary);
    std::string block(4096, 'x');
    for (std::size_t written = 0; written < bytes; written += block.size()) {
        out.write(block.data(),
                  static_cast<std::streamsize>(std::min(block.size(), bytes - written)));
    }
    out.close();
    const auto when = fs::file_time_type::clock::now() - std::chrono::hours(24 * ageDays);
    fs::last_write_time(path, when);
}

// A home with a handful of tools of different sizes, a Cursor cache with old files and a
// Cline extension folder inside Cursor's editor data.
void makeHome(const fs::path& home, const fs::path& config) {
    constexpr std::size_t megabyte = 1'000'000;
    writeFile(home / ".codex/sessions/2026/rollout-1.jsonl", 38 * megabyte);
    writeFile(home / ".codex/log/codex-tui.log", 2 * megabyte, 30);
    writeFile(home / ".claude/projects/app/session.jsonl", 21 * megabyte);
    writeFile(home / ".claude/debug/latest.log", 3 * megabyte, 20);
    writeFile(home / ".ollama/models/blobs/sha256-a", 64 * megabyte);
    for (int index = 0; index < 8; ++index) {
        writeFile(config / ("Cursor/Cache/Cache_Data/f_" + std::to_string(index)),
                  (index + 1) * 700'000, 40);
    }
    writeFile(config / "Cursor/User/globalStorage/state.vscdb", 9 * megabyte);
    writeFile(config / "Cursor/User/globalStorage/saoudrizwan.claude-dev/tasks/1/ui.json",
              6 * megabyte);
    writeFile(home / ".cursor/extensions/ext/main.js", 4 * megabyte);
    writeFile(home / "Projects/prompts/notes.md", 1 * megabyte);
}

void setVariable(const char* name, const fs::path& value) {
    fs::create_directories(value);
    setenv(name, value.c_str(), 1);
}

// Runs the event loop until `done` holds; throws after 30 s or when the store shows an error.
void waitFor(const AppStore& store, const std::function<bool()>& done, const char* what) {
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > 30'000) {
            throw std::runtime_error(std::string("timed out waiting for ") + what);
        }
        if (!store.error().isEmpty()) {
            throw std::runtime_error(std::string("the store failed while waiting for ") + what +
                                     ": " + store.error().toStdString());
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
}

class Tour {
public:
    Tour(QQuickWindow* window, QString folder) : m_window(window), m_folder(std::move(folder)) {}

    void shoot(const char* name) {
        // Let animations and layouts settle before the picture.
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 400) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        }
        const QString file = m_folder + "/" + name + ".png";
        if (!m_window->grabWindow().save(file)) {
            throw std::runtime_error("could not write " + file.toStdString());
        }
        std::printf("%s\n", qPrintable(file));
    }

private:
    QQuickWindow* m_window;
    QString m_folder;
};

// The newest object of the type named `typeName` under `root`; older ones may wait for deletion.
template <typename T>
T* child(QObject* root, const char* typeName) {
    const auto objects = root->findChildren<QObject*>();
    for (auto object = objects.rbegin(); object != objects.rend(); ++object) {
        if (QString((*object)->metaObject()->className()).startsWith(typeName)) {
            return qobject_cast<T*>(*object);
        }
    }
    throw std::runtime_error(std::string("no ") + typeName + " in the window");
}

int runTour(const QString& output, const fs::path& root) {
    const fs::path home = root / "home";
    makeHome(home, root / "config");
    setVariable("HOME", home);
    setVariable("XDG_CONFIG_HOME", root / "config");
    setVariable("XDG_CACHE_HOME", root / "cache");
    setVariable("XDG_DATA_HOME", root / "data");
    setVariable("XDG_STATE_HOME", root / "state");

    AppStore store(AppStore::Setup{std::make_unique<ListedChooser>(std::deque<std::string>{
                                       (home / "Projects/prompts").native()}),
                                   std::chrono::hours(1)});
    ViewStyle style(home, StorageLayout::linux);
    DesktopServices desktop;
    registerQmlTypes(&store, &style, &desktop);

    QQmlApplicationEngine engine;
    addIconProvider(engine);
    engine.addImportPath("qrc:/qt/qml");
    engine.load(QUrl("qrc:/qt/qml/Tallowmere/TallowmereWindow.qml"));
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
    if (!window) {
        throw std::runtime_error("the window did not load");
    }
    Tour tour(window, output);
    // The first scan of so small a home ends before the first frame; hold it back for a picture.
    store.stopAIScan();
    tour.shoot("01-overview-waiting");

    store.scanAI();
    waitFor(
        store, [&] { return !store.aiScanning(); }, "the first scan");
    store.chooseAIStorageFolder();
    waitFor(
        store, [&] { return !store.aiScanning() && store.tools()->count() > 4; }, "the rescan");
    tour.shoot("02-overview-tools");

    store.setToolQuery("zzz");
    tour.shoot("03-search-no-match");
    store.setToolQuery({});

    store.setLowSpaceGB(100'000);
    tour.shoot("04-low-space-banner");
    store.setLowSpaceGB(20);

    store.setSelectedToolID("Cursor");
    waitFor(
        store, [&] { return store.selectedToolFindings()->count() > 0; }, "Cursor's folders");
    auto* selection = child<LocationSelection>(window, "tallowmere::LocationSelection");
    const QString cache = QString::fromStdString((root / "config/Cursor/Cache").native());
    selection->setSelected(cache, true);
    selection->setExpanded(cache, true);
    tour.shoot("05-tool-detail-expanded");

    store.reviewLocations({cache}, "Cursor", true);
    waitFor(
        store, [&] { return store.pendingReview().has_value(); }, "the files review");
    tour.shoot("06-review-files");
    store.setLocationRemovalReview({});

    const QString editorData = QString::fromStdString((root / "config/Cursor").native());
    store.reviewLocations({editorData}, "Cursor", true);
    waitFor(
        store, [&] { return store.pendingReview().has_value(); }, "the folders review");
    tour.shoot("07-review-folders");

    auto* sheet = child<QQuickItem>(window, "LocationRemovalReviewView");
    sheet->setProperty("removalMethod", int(AppStore::RemovalMethod::Permanent));
    sheet->setProperty("confirmPermanent", true);
    tour.shoot("08-permanent-confirmation");
    sheet->setProperty("confirmPermanent", false);
    store.setLocationRemovalReview({});

    store.reviewLocations({cache}, "Cursor", true);
    waitFor(
        store, [&] { return store.pendingReview().has_value(); }, "the review to carry out");
    store.removeReviewedLocations(AppStore::RemovalMethod::Trash);
    waitFor(
        store,
        [&] { return !store.cleaning() && !store.aiScanning() && !store.notice().isEmpty(); },
        "the removal");
    tour.shoot("09-footer-notice");

    store.setSelectedToolID({});
    auto* content = child<QQuickItem>(window, "ContentView");
    content->setProperty("showSettings", true);
    tour.shoot("10-settings");
    content->setProperty("showSettings", false);

    store.setError("Couldn’t move “f_3” to the Trash: Permission denied.");
    tour.shoot("11-error-alert");
    store.setError({});

    QObject* fileMenu = nullptr;
    for (QObject* object : window->findChildren<QObject*>()) {
        if (object->property("title").toString() == "&File") {
            fileMenu = object;
        }
    }
    if (!fileMenu || !QMetaObject::invokeMethod(fileMenu, "open")) {
        throw std::runtime_error("the File menu did not open");
    }
    tour.shoot("12-file-menu");
    QMetaObject::invokeMethod(fileMenu, "close");
    return 0;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: screenshot_tour OUTPUT_FOLDER\n");
        return 2;
    }
    QApplication application(argc, argv);
    QQuickStyle::setStyle("Basic");
    const QString output = QDir(argv[1]).absolutePath();
    QDir().mkpath(output);
    char pattern[] = "/tmp/tallowmere-tour-XXXXXX";
    const fs::path root = mkdtemp(pattern);
    int status = 1;
    try {
        status = runTour(output, root);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "screenshot_tour: %s\n", failure.what());
    }
    fs::remove_all(root);
    return status;
}
