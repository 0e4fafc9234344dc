#include <QAbstractItemModelTester>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <limits>

#include "AppStore.h"
#include "StoreHome.h"
#include "persistence/StoreSettings.h"

using namespace std::chrono_literals;
using tallowmere::AppStore;
using tallowmere::ReviewValue;
using tallowmere::ScanValue;
using tallowmere::ToolValue;
using tallowmere::testing::ChooserScript;
using tallowmere::testing::ScriptedChooser;
using tallowmere::testing::StoreHome;

namespace {

constexpr tallowmere::Date longAgo = 600'000'000;  // 2020, older than every age limit

std::unique_ptr<AppStore> makeStore(ChooserScript& script, std::chrono::nanoseconds period = 300s) {
    return std::make_unique<AppStore>(
        AppStore::Setup{std::make_unique<ScriptedChooser>(script), period});
}

bool idle(const AppStore& store) {
    return !store.aiScanning() && !store.preparingLocations() && !store.cleaning() &&
           !store.restoring();
}

[[nodiscard]] bool waitUntilIdle(const AppStore& store) {
    return QTest::qWaitFor([&] { return idle(store); }, 20'000);
}

void writeText(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

std::string readText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

QStringList ownersOf(const tallowmere::ToolListModel& model) {
    QStringList owners;
    for (const auto& key : model.keys()) {
        owners.push_back(key.toString());
    }
    return owners;
}

QStringList findingIDsOf(const std::vector<tallowmere::StorageTool>& tools, const QString& owner) {
    QStringList ids;
    for (const auto& tool : tools) {
        if (QString::fromStdString(tool.owner) == owner) {
            for (const auto& finding : tool.findings) {
                ids.push_back(QString::fromStdString(finding.id()));
            }
        }
    }
    return ids;
}

// An Ollama with one model folder and two old logs: a review of both locations holds one whole
// folder and two files.
void makeOllama(const StoreHome& home) {
    home.file(".ollama/models/blobs/sha256-1", 64 * 1024);
    home.file(".ollama/logs/server.log", 8192, longAgo);
    home.file(".ollama/logs/server-1.log", 8192, longAgo);
}

}  // namespace

class AppStoreTest : public QObject {
    Q_OBJECT

private slots:
    void settingsOfAnotherTypeReadAsDefaultsAndAreKeptAside();
    void anUnreadableSettingsFileIsKeptAsideBeforeTheFirstWrite();
    void lowDiskSpaceFollowsTheThresholdWithoutOverflowing();
    void partialResultsShowOnlyWhileNothingIsOnScreen();
    void aStoppedScanNeverShowsItsResults();
    void operationsRefuseSilentlyWhileBusy();
    void visibleToolsAndTheSelectionFollowTheTools();
    void trackingFoldersChecksWhatIsAlreadyMeasured();
    void aReviewNamesTheToolsInsideItsFolders();
    void trashRemovalAndAnUndoThatRestoresTwoOfThree();
    void permanentRemovalAndARemovalThatMovesNothing();
    void monitoringRescansOnItsClockAndSkipsBusyWakeUps();
    void listModelsStayConsistentThroughAWholeSession();
    void qmlBindingsFollowTheStore();
    void quittingWaitsForARemovalOrAnUndoToFinish();
};

void AppStoreTest::settingsOfAnotherTypeReadAsDefaultsAndAreKeptAside() {
    StoreHome home;
    const std::string original =
        R"({"aiMonitoring":"no","aiLowSpaceGB":"30","aiCustomPaths":["/srv/models"]})";
    writeText(home.settingsFile(), original);
    ChooserScript script;
    auto store = makeStore(script);
    QCOMPARE(store->aiMonitoring(), true);
    QCOMPARE(store->lowSpaceGB(), qint64{20});
    QCOMPARE(store->customAIPaths(), QStringList{"/srv/models"});
    QVERIFY(waitUntilIdle(*store));

    store->setLowSpaceGB(50);
    QCOMPARE(readText(home.settingsFile().native() + ".damaged"), original);
    const auto written = tallowmere::StoreSettingsFile::read(home.settingsFile());
    QVERIFY(!written.damaged);
    QCOMPARE(written.settings, (tallowmere::StoreSettings{true, 50, {"/srv/models"}}));

    // Only the first write keeps the old file aside.
    store->setLowSpaceGB(10);
    QVERIFY(!std::filesystem::exists(home.settingsFile().native() + ".damaged-2"));
}

void AppStoreTest::anUnreadableSettingsFileIsKeptAsideBeforeTheFirstWrite() {
    StoreHome home;
    const std::string damaged = R"({"aiCustomPaths":["/home/me/keep")";
    writeText(home.settingsFile(), damaged);
    writeText(home.settingsFile().native() + ".damaged", "an older one");
    ChooserScript script;
    auto store = makeStore(script);
    QVERIFY(store->customAIPaths().isEmpty());
    QVERIFY(waitUntilIdle(*store));
    store->setAiMonitoring(false);
    QCOMPARE(readText(home.settingsFile().native() + ".damaged"), std::string("an older one"));
    QCOMPARE(readText(home.settingsFile().native() + ".damaged-2"), damaged);
    QCOMPARE(tallowmere::StoreSettingsFile::read(home.settingsFile()).settings.aiMonitoring, false);
}

void AppStoreTest::lowDiskSpaceFollowsTheThresholdWithoutOverflowing() {
    StoreHome home;
    ChooserScript script;
    auto store = makeStore(script);
    QVERIFY(waitUntilIdle(*store));
    QVERIFY(!store->diskSpace().isNull());
    QSignalSpy changes(store.get(), &AppStore::lowDiskSpaceChanged);
    store->setLowSpaceGB(std::numeric_limits<qint64>::max());
    QVERIFY(store->lowDiskSpace());
    store->setLowSpaceGB(std::numeric_limits<qint64>::min());
    QVERIFY(!store->lowDiskSpace());
    store->setLowSpaceGB(0);
    QVERIFY(!store->lowDiskSpace());
    QCOMPARE(changes.count(), 3);
}

void AppStoreTest::partialResultsShowOnlyWhileNothingIsOnScreen() {
    StoreHome home;
    makeOllama(home);
    home.file(".codex/sessions/one.jsonl", 20'000);
    ChooserScript script;
    // The finished scan is shown while `aiScanning` is still set; anything before it is partial.
    int shownWhileScanning = 0;
    {
        auto store = makeStore(script);
        QVERIFY(store->storage().isNull());
        QVERIFY(store->aiScanning());
        connect(store.get(), &AppStore::storageChanged,
                [&] { shownWhileScanning += store->aiScanning() ? 1 : 0; });
        QVERIFY(waitUntilIdle(*store));
        QVERIFY(store->hasFreshScan());
        QCOMPARE(ownersOf(*store->tools()), (QStringList{"Ollama", "Codex"}));
    }
    QVERIFY(shownWhileScanning >= 2);
    QVERIFY(std::filesystem::exists(home.summaryFile()));

    shownWhileScanning = 0;
    auto store = makeStore(script);
    QVERIFY(!store->storage().isNull());
    QVERIFY(!store->hasFreshScan());
    QCOMPARE(ownersOf(*store->tools()), (QStringList{"Ollama", "Codex"}));
    connect(store.get(), &AppStore::storageChanged,
            [&] { shownWhileScanning += store->aiScanning() ? 1 : 0; });
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(shownWhileScanning, 1);
    QVERIFY(store->hasFreshScan());
}

void AppStoreTest::aStoppedScanNeverShowsItsResults() {
    StoreHome home;
    makeOllama(home);
    ChooserScript script;
    auto store = makeStore(script);
    QVERIFY(store->aiScanning());
    QSignalSpy shown(store.get(), &AppStore::storageChanged);
    store->stopAIScan();
    QVERIFY(!store->aiScanning());
    QTest::qWait(400);
    QCOMPARE(shown.count(), 0);
    QVERIFY(store->storage().isNull());

    store->scanAI();
    store->stopAIScan();
    store->scanAI();
    QVERIFY(store->aiScanning());
    QVERIFY(waitUntilIdle(*store));
    QVERIFY(store->hasFreshScan());
    QCOMPARE(ownersOf(*store->tools()), QStringList{"Ollama"});
    QVERIFY(store->error().isEmpty());
}

void AppStoreTest::operationsRefuseSilentlyWhileBusy() {
    StoreHome home;
    makeOllama(home);
    ChooserScript script;
    auto store = makeStore(script);
    QSignalSpy scanStarts(store.get(), &AppStore::aiScanningChanged);
    store->scanAI();
    QCOMPARE(scanStarts.count(), 0);
    QVERIFY(waitUntilIdle(*store));
    const QStringList ollama = findingIDsOf(store->toolList(), "Ollama");
    QCOMPARE(ollama.size(), 2);

    store->scanAI();
    QVERIFY(store->aiScanning());
    store->reviewLocations(ollama, "Ollama", true);  // refused: a scan runs
    QVERIFY(!store->preparingLocations());
    QVERIFY(waitUntilIdle(*store));
    store->reviewLocations({"/not/a/finding"}, "Ollama", true);  // empty plan
    store->reviewLocations(ollama, "Nobody", true);              // no such tool
    QVERIFY(!store->preparingLocations());

    store->reviewLocations(ollama, "Ollama", true);
    QVERIFY(store->preparingLocations());
    QVERIFY(waitUntilIdle(*store));
    QVERIFY(store->pendingReview().has_value());

    scanStarts.clear();
    QSignalSpy pathChanges(store.get(), &AppStore::customAIPathsChanged);
    script.answers = {"/srv/models"};
    store->scanAI();
    store->chooseAIStorageFolder();
    store->removeAIStorageFolder("/srv/models");
    store->reviewLocations(ollama, "Ollama", true);
    store->undoCleanup();
    QCOMPARE(scanStarts.count(), 0);
    QCOMPARE(script.asked, 0);
    QCOMPARE(pathChanges.count(), 0);
    QVERIFY(idle(*store));
    QVERIFY(store->error().isEmpty());

    // Closing the sheet drops the review; a view cannot put one back.
    store->setLocationRemovalReview(QVariant::fromValue(ReviewValue{}));
    QVERIFY(store->pendingReview().has_value());
    store->setLocationRemovalReview(QVariant::fromValue(nullptr));
    QVERIFY(!store->pendingReview().has_value());
}

void AppStoreTest::visibleToolsAndTheSelectionFollowTheTools() {
    StoreHome home;
    home.file(".claude/projects/one/session.jsonl", 30'000);
    home.file(".codex/sessions/two.jsonl", 20'000);
    const auto models = home.file("../models/Models/weights.bin", 10'000).parent_path();
    const auto empty = home.folder("../empty/Empty");
    writeText(home.settingsFile(), "{\"aiMonitoring\":false,\"aiCustomPaths\":[\"" +
                                       models.lexically_normal().native() + "\",\"" +
                                       empty.lexically_normal().native() + "\"]}");
    ChooserScript script;
    auto store = makeStore(script);
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(ownersOf(*store->visibleTools()), (QStringList{"Claude Code", "Codex", "Models"}));
    QVERIFY(ownersOf(*store->tools()).contains("Empty"));

    store->setToolQuery("code");
    QCOMPARE(ownersOf(*store->visibleTools()), (QStringList{"Claude Code", "Codex"}));
    store->setToolQuery("CODE");
    QCOMPARE(ownersOf(*store->visibleTools()), (QStringList{"Claude Code", "Codex"}));
    store->setToolQuery(" ");
    QCOMPARE(ownersOf(*store->visibleTools()), (QStringList{"Claude Code"}));
    store->setToolQuery("");

    // A tool of no bytes is never listed but can be selected; a search that hides the
    // selected tool keeps it selected.
    store->setSelectedToolID("Empty");
    QCOMPARE(store->selectedTool().value<ToolValue>().owner, QString("Empty"));
    store->setSelectedToolID("Models");
    store->setToolQuery("code");
    QCOMPARE(store->selectedTool().value<ToolValue>().owner, QString("Models"));
    QCOMPARE(store->selectedToolFindings()->count(), 1);

    std::filesystem::remove_all(models);
    QSignalSpy selection(store.get(), &AppStore::selectedToolIDChanged);
    store->scanAI();
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(store->selectedToolID(), QString());
    QVERIFY(store->selectedTool().isNull());
    QCOMPARE(store->selectedToolFindings()->count(), 0);
    QCOMPARE(selection.count(), 1);
}

void AppStoreTest::trackingFoldersChecksWhatIsAlreadyMeasured() {
    StoreHome home;
    home.file(".ollama/models/blob", 10'000);
    const auto first = home.file("../a/Models/one.bin", 5'000).parent_path().lexically_normal();
    const auto second = home.file("../b/Models/two.bin", 7'000).parent_path().lexically_normal();
    const auto ollama = home.file("../c/Ollama/extra.bin", 3'000).parent_path().lexically_normal();
    ChooserScript script;
    auto store = makeStore(script);
    QVERIFY(waitUntilIdle(*store));

    script.answers = {first.native() + "/../Models/.", std::nullopt, first.native(),
                      (home.home() / ".ollama/models").native()};
    QSignalSpy scanStarts(store.get(), &AppStore::aiScanningChanged);
    store->chooseAIStorageFolder();  // through ".." and "."
    QCOMPARE(store->customAIPaths(), QStringList{QString::fromStdString(first.native())});
    QVERIFY(store->aiScanning());
    QVERIFY(waitUntilIdle(*store));
    scanStarts.clear();
    store->chooseAIStorageFolder();  // cancelled
    store->chooseAIStorageFolder();  // already tracked
    store->chooseAIStorageFolder();  // a catalog folder
    QCOMPARE(script.asked, 4);
    QCOMPARE(scanStarts.count(), 0);
    QCOMPARE(store->customAIPaths().size(), 1);

    script.answers = {second.native(), ollama.native()};
    store->chooseAIStorageFolder();
    store->chooseAIStorageFolder();  // stops the scan the first one started
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(tallowmere::StoreSettingsFile::read(home.settingsFile()).settings.customPaths,
             (std::vector<std::string>{first.native(), second.native(), ollama.native()}));
    QCOMPARE(findingIDsOf(store->toolList(), "Models").size(), 2);
    QCOMPARE(findingIDsOf(store->toolList(), "Ollama").size(), 2);

    store->removeAIStorageFolder("/not/tracked");
    QVERIFY(store->aiScanning());
    QVERIFY(waitUntilIdle(*store));
    store->removeAIStorageFolder(QString::fromStdString(first.native()));
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(findingIDsOf(store->toolList(), "Models").size(), 1);
}

void AppStoreTest::aReviewNamesTheToolsInsideItsFolders() {
    StoreHome home;
    makeOllama(home);
    const auto inner = home.file(".ollama/models/Inner/x.bin", 2'000).parent_path();
    writeText(home.settingsFile(), "{\"aiCustomPaths\":[\"" + inner.native() + "\"]}");
    ChooserScript script;
    auto store = makeStore(script);
    QVERIFY(waitUntilIdle(*store));
    store->reviewLocations(findingIDsOf(store->toolList(), "Ollama"), "Ollama", true);
    QVERIFY(waitUntilIdle(*store));
    const auto review = store->locationRemovalReview().value<ReviewValue>();
    QCOMPARE(review.owner, QString("Ollama"));
    QCOMPARE(review.affectedTools, QStringList{"Inner"});
    QCOMPARE(review.selectionSummary, QString("2 cache/log files · 1 whole folder"));
    QCOMPARE(review.folderPaths,
             QStringList{QString::fromStdString((home.home() / ".ollama/models").native())});
    QVERIFY(store->error().isEmpty());
}

void AppStoreTest::trashRemovalAndAnUndoThatRestoresTwoOfThree() {
    StoreHome home;
    makeOllama(home);
    ChooserScript script;
    auto store = makeStore(script);
    QVERIFY(waitUntilIdle(*store));
    store->reviewLocations(findingIDsOf(store->toolList(), "Ollama"), "Ollama", true);
    QVERIFY(waitUntilIdle(*store));
    QVERIFY(std::filesystem::exists(home.summaryFile()));
    store->removeReviewedLocations(AppStore::RemovalMethod::Trash);
    QVERIFY(store->cleaning());
    QVERIFY(!std::filesystem::exists(home.summaryFile()));
    QVERIFY(QTest::qWaitFor([&] { return !store->cleaning(); }, 20'000));
    QCOMPARE(store->notice(), QString("Moved 3 items to Trash."));
    QVERIFY(store->locationRemovalReview().isNull());
    QCOMPARE(store->undoItems()->count(), 3);
    QVERIFY(waitUntilIdle(*store));
    QVERIFY(std::filesystem::exists(home.summaryFile()));  // every removal ends with a scan
    QVERIFY(store->error().isEmpty());

    writeText(home.home() / ".ollama/logs/server.log", "a new log in the old place");
    store->undoCleanup();
    QVERIFY(store->restoring());
    QVERIFY(QTest::qWaitFor([&] { return !store->restoring(); }, 20'000));
    QCOMPARE(store->notice(), QString("Restored 2 items to the original locations."));
    QCOMPARE(store->undoItems()->count(), 1);
    QVERIFY(store->error().startsWith(
        "Some items couldn’t be restored. Existing files and folders weren’t overwritten; you can "
        "review the remaining items in Trash.\n\nserver.log: "));
    QCOMPARE(readText(home.home() / ".ollama/logs/server.log"),
             std::string("a new log in the old place"));
    QVERIFY(std::filesystem::exists(home.home() / ".ollama/models/blobs/sha256-1"));
    QVERIFY(waitUntilIdle(*store));

    // A second removal to the Trash replaces the undo list.
    store->setError({});
    std::filesystem::remove(home.home() / ".ollama/logs/server.log");
    store->reviewLocations({QString::fromStdString((home.home() / ".ollama/models").native())},
                           "Ollama", true);
    QVERIFY(waitUntilIdle(*store));
    store->removeReviewedLocations(AppStore::RemovalMethod::Trash);
    QVERIFY(QTest::qWaitFor([&] { return !store->cleaning(); }, 20'000));
    QCOMPARE(store->notice(), QString("Moved 1 item to Trash."));
    QCOMPARE(store->undoList().size(), 1u);
    QCOMPARE(store->undoList().front().original.url.native(),
             (home.home() / ".ollama/models").native());
    QVERIFY(waitUntilIdle(*store));
}

void AppStoreTest::permanentRemovalAndARemovalThatMovesNothing() {
    StoreHome home;
    makeOllama(home);
    home.file("../Models/weights.bin", 1'000);
    const auto models = (home.home() / "../Models").lexically_normal();
    writeText(home.settingsFile(), "{\"aiCustomPaths\":[\"" + models.native() + "\"]}");
    ChooserScript script;
    auto store = makeStore(script);
    QVERIFY(waitUntilIdle(*store));
    store->reviewLocations(findingIDsOf(store->toolList(), "Models"), "Models", true);
    QVERIFY(waitUntilIdle(*store));
    store->removeReviewedLocations(AppStore::RemovalMethod::Trash);
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(store->undoItems()->count(), 1);

    // A folder changed after its review stays; the old undo list stays too.
    store->reviewLocations(findingIDsOf(store->toolList(), "Ollama"), "Ollama", true);
    QVERIFY(waitUntilIdle(*store));
    home.file(".ollama/models/blobs/sha256-2", 100);
    std::filesystem::remove(home.home() / ".ollama/logs/server.log");
    std::filesystem::remove(home.home() / ".ollama/logs/server-1.log");
    store->setNotice("an earlier notice");
    store->removeReviewedLocations(AppStore::RemovalMethod::Permanent);
    QVERIFY(QTest::qWaitFor([&] { return !store->cleaning(); }, 20'000));
    QCOMPARE(store->notice(), QString());
    QCOMPARE(store->undoItems()->count(), 1);
    QVERIFY(store->error().startsWith(
        "3 items couldn’t be fully removed. Changed folders were skipped. Filesystem errors may "
        "leave partly removed folders; scan again to check.\n\n"));
    QCOMPARE(store->error().count('\n'), 4);
    QVERIFY(std::filesystem::exists(home.home() / ".ollama/models/blobs/sha256-2"));
    QVERIFY(waitUntilIdle(*store));

    store->setError({});
    home.file(".ollama/logs/a.log", 100, longAgo);
    home.file(".ollama/logs/b.log", 100, longAgo);
    store->scanAI();
    QVERIFY(waitUntilIdle(*store));
    store->reviewLocations(findingIDsOf(store->toolList(), "Ollama"), "Ollama", true);
    QVERIFY(waitUntilIdle(*store));
    store->removeReviewedLocations(AppStore::RemovalMethod::Permanent);
    QVERIFY(QTest::qWaitFor([&] { return !store->cleaning(); }, 20'000));
    QCOMPARE(store->notice(), QString("Permanently deleted 3 items. No Undo."));
    QCOMPARE(store->undoItems()->count(), 0);
    QVERIFY(!std::filesystem::exists(home.home() / ".ollama/models"));
    QVERIFY(store->error().isEmpty());
    QVERIFY(waitUntilIdle(*store));
}

void AppStoreTest::monitoringRescansOnItsClockAndSkipsBusyWakeUps() {
    StoreHome home;
    makeOllama(home);
    ChooserScript script;
    int scansStarted = 0;
    auto store = makeStore(script, 150ms);
    connect(store.get(), &AppStore::aiScanningChanged,
            [&] { scansStarted += store->aiScanning() ? 1 : 0; });
    QVERIFY(QTest::qWaitFor([&] { return scansStarted >= 3; }, 10'000));

    store->setAiMonitoring(false);
    QVERIFY(waitUntilIdle(*store));
    scansStarted = 0;
    QTest::qWait(500);
    QCOMPARE(scansStarted, 0);

    store->setAiMonitoring(true);
    QCOMPARE(scansStarted, 1);  // at once
    store->setAiMonitoring(true);
    QCOMPARE(scansStarted, 1);  // refused: the first still runs; one loop remains
    QVERIFY(waitUntilIdle(*store));
    QVERIFY(QTest::qWaitFor([&] { return scansStarted >= 3; }, 10'000));

    // A wake-up that finds a review pending starts nothing.
    QVERIFY(waitUntilIdle(*store));
    store->reviewLocations(findingIDsOf(store->toolList(), "Ollama"), "Ollama", true);
    QVERIFY(QTest::qWaitFor([&] { return store->pendingReview().has_value(); }, 10'000));
    scansStarted = 0;
    QTest::qWait(500);
    QCOMPARE(scansStarted, 0);
    store->stopBackgroundWork();
    store->setLocationRemovalReview(QVariant::fromValue(nullptr));
    QTest::qWait(400);
    QCOMPARE(scansStarted, 0);
}

void AppStoreTest::listModelsStayConsistentThroughAWholeSession() {
    StoreHome home;
    makeOllama(home);
    home.file(".codex/sessions/a.jsonl", 30'000);
    home.file(".claude/projects/p/b.jsonl", 3'000);
    ChooserScript script;
    auto store = makeStore(script);
    using Tester = QAbstractItemModelTester;
    Tester tools(store->tools(), Tester::FailureReportingMode::QtTest);
    Tester visible(store->visibleTools(), Tester::FailureReportingMode::QtTest);
    Tester findings(store->selectedToolFindings(), Tester::FailureReportingMode::QtTest);
    Tester undo(store->undoItems(), Tester::FailureReportingMode::QtTest);
    QVERIFY(waitUntilIdle(*store));
    store->setSelectedToolID("Ollama");
    QCOMPARE(store->selectedToolFindings()->count(), 2);
    store->setToolQuery("c");
    store->setToolQuery("");
    home.file(".claude/projects/p/c.jsonl", 300'000);  // Claude Code moves to the top
    store->scanAI();
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(ownersOf(*store->tools()), (QStringList{"Claude Code", "Ollama", "Codex"}));
    store->reviewLocations(findingIDsOf(store->toolList(), "Ollama"), "Ollama", true);
    QVERIFY(waitUntilIdle(*store));
    store->removeReviewedLocations(AppStore::RemovalMethod::Trash);
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(store->undoItems()->count(), 3);
    QCOMPARE(ownersOf(*store->visibleTools()), (QStringList{"Claude Code", "Codex"}));
    QCOMPARE(store->selectedToolFindings()->count(), 0);
    store->undoCleanup();
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(store->undoItems()->count(), 0);
    QCOMPARE(ownersOf(*store->visibleTools()), (QStringList{"Claude Code", "Ollama", "Codex"}));
}

void AppStoreTest::qmlBindingsFollowTheStore() {
    StoreHome home;
    makeOllama(home);
    ChooserScript script;
    auto store = makeStore(script);
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(R"(
        import QtQml
        QtObject {
            required property QtObject store
            property bool scanning: store.aiScanning
            property real total: store.storage ? store.storage.allocatedBytes : -1
            property string totalText: store.storage ? store.storage.allocatedText : ""
            property string available: store.diskSpace ? store.diskSpace.availableText : ""
            property int visibleCount: store.visibleTools.count
            property string selectedOwner: store.selectedTool ? store.selectedTool.owner : ""
            property int findingCount: store.selectedToolFindings.count
            property string review: store.locationRemovalReview
                                    ? store.locationRemovalReview.selectionSummary : ""
            property int pathCount: store.customAIPaths.length
        })",
                      {});
    std::unique_ptr<QObject> view(component.createWithInitialProperties(
        {{"store", QVariant::fromValue(static_cast<QObject*>(store.get()))}}));
    QVERIFY2(view, qPrintable(component.errorString()));
    QCOMPARE(view->property("scanning").toBool(), true);
    QCOMPARE(view->property("total").toDouble(), -1.0);
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(view->property("scanning").toBool(), false);
    QVERIFY(view->property("total").toDouble() > 0);
    QCOMPARE(view->property("totalText").toString(),
             store->storage().value<ScanValue>().allocatedText);
    QVERIFY(!view->property("available").toString().isEmpty());
    QCOMPARE(view->property("visibleCount").toInt(), 1);
    store->setSelectedToolID("Ollama");
    QCOMPARE(view->property("selectedOwner").toString(), QString("Ollama"));
    QCOMPARE(view->property("findingCount").toInt(), 2);
    store->reviewLocations(findingIDsOf(store->toolList(), "Ollama"), "Ollama", true);
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(view->property("review").toString(), QString("2 cache/log files · 1 whole folder"));
}

void AppStoreTest::quittingWaitsForARemovalOrAnUndoToFinish() {
    StoreHome home;
    const std::vector<std::filesystem::path> reviewed{home.home() / ".ollama/models",
                                                      home.home() / ".ollama/logs/server.log",
                                                      home.home() / ".ollama/logs/server-1.log"};
    const auto removeOllama = [&](AppStore& store) {
        makeOllama(home);
        for (int file = 0; file < 2000; ++file) {
            home.file(".ollama/models/blobs/part-" + std::to_string(file), 10);
        }
        store.scanAI();
        QVERIFY(waitUntilIdle(store));
        store.reviewLocations(findingIDsOf(store.toolList(), "Ollama"), "Ollama", true);
        QVERIFY(waitUntilIdle(store));
        QCOMPARE(store.pendingReview()->selectionSummary(),
                 std::string("2 cache/log files · 1 whole folder"));
        store.removeReviewedLocations(AppStore::RemovalMethod::Trash);
    };
    ChooserScript script;
    auto store = makeStore(script);
    QVERIFY(waitUntilIdle(*store));
    removeOllama(*store);
    store->stopBackgroundWork();
    store.reset();
    for (const auto& item : reviewed) {
        QVERIFY2(!std::filesystem::exists(item), item.c_str());
    }

    store = makeStore(script);
    QVERIFY(waitUntilIdle(*store));
    removeOllama(*store);
    QVERIFY(waitUntilIdle(*store));
    QCOMPARE(store->undoItems()->count(), 3);
    store->undoCleanup();
    store->stopBackgroundWork();
    store.reset();
    for (const auto& item : reviewed) {
        QVERIFY2(std::filesystem::exists(item), item.c_str());
    }
}

QTEST_GUILESS_MAIN(AppStoreTest)
#include "AppStoreTest.moc"
