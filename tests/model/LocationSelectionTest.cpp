#include <QSignalSpy>
#include <QTest>
#include <filesystem>

#include "AppStore.h"
#include "LocationSelection.h"
#include "StoreHome.h"
#include "ViewStyle.h"

using tallowmere::AppStore;
using tallowmere::LocationSelection;
using tallowmere::testing::ChooserScript;
using tallowmere::testing::ScriptedChooser;
using tallowmere::testing::StoreHome;

namespace {

constexpr tallowmere::Date longAgo = 600'000'000;

[[nodiscard]] bool scanned(AppStore& store) {
    return QTest::qWaitFor([&] { return !store.aiScanning(); }, 20'000);
}

qint64 bytesOf(const AppStore& store, const std::string& owner, const std::string& id) {
    for (const auto& finding : store.toolOwnedBy(owner)->findings) {
        if (finding.id() == id) {
            return finding.allocatedBytes;
        }
    }
    return -1;
}

}  // namespace

class LocationSelectionTest : public QObject {
    Q_OBJECT

private slots:
    void selectAllFollowsWhatTheScanAllows();
    void anotherToolStartsWithNothingSelected();
};

void LocationSelectionTest::selectAllFollowsWhatTheScanAllows() {
    StoreHome home;
    home.file(".ollama/models/blobs/sha256-1", 64 * 1024);
    home.file(".ollama/logs/server.log", 8192, longAgo);
    ChooserScript script;
    AppStore store(AppStore::Setup{std::make_unique<ScriptedChooser>(script)});
    QVERIFY(scanned(store));
    LocationSelection selection;
    selection.setStore(&store);
    selection.setOwner("Ollama");
    const QString models = QString::fromStdString((home.home() / ".ollama/models").native());
    const QString logs = QString::fromStdString((home.home() / ".ollama/logs").native());

    QCOMPARE(selection.selectionText(), "0 selected · 0 KB to review");
    QVERIFY(selection.planEmpty());
    QVERIFY(!selection.allSelected());
    selection.setSelected(QString::fromStdString((home.home() / ".ollama").native()), true);
    QVERIFY(selection.selectedLocations().isEmpty());

    // Selecting each selectable folder one by one is the same as "Select all".
    selection.setSelected(models, true);
    QVERIFY(!selection.allSelected());
    selection.setSelected(logs, true);
    QVERIFY(selection.allSelected());
    const qint64 total = bytesOf(store, "Ollama", models.toStdString()) +
                         bytesOf(store, "Ollama", logs.toStdString());
    QCOMPARE(selection.selectionText(),
             "2 selected · " + tallowmere::ViewStyle::sizeText(total) + " to review");
    selection.setAllSelected(false);
    QVERIFY(selection.selectedLocations().isEmpty());
    selection.setAllSelected(true);
    QCOMPARE(selection.selectedLocations(), (QStringList{logs, models}));

    // A rescan without the logs drops them from the selection and closes their details.
    selection.setExpanded(logs, true);
    QCOMPARE(selection.expandedLocationID(), logs);
    std::filesystem::remove_all(home.home() / ".ollama/logs");
    QSignalSpy selectionChanged(&selection, &LocationSelection::selectionChanged);
    store.scanAI();
    QVERIFY(scanned(store));
    QVERIFY(!selectionChanged.isEmpty());
    QCOMPARE(selection.selectedLocations(), QStringList{models});
    QVERIFY(selection.allSelected());
    QCOMPARE(selection.expandedLocationID(), QString());
    QCOMPARE(selection.sections().size(), 1);
}

void LocationSelectionTest::anotherToolStartsWithNothingSelected() {
    StoreHome home;
    home.file(".ollama/models/blobs/sha256-1", 64 * 1024);
    home.file(".codex/sessions/a.jsonl", 8192);
    ChooserScript script;
    AppStore store(AppStore::Setup{std::make_unique<ScriptedChooser>(script)});
    QVERIFY(scanned(store));
    LocationSelection selection;
    selection.setStore(&store);
    selection.setOwner("Ollama");
    selection.setAllSelected(true);
    QCOMPARE(selection.selectedLocations().size(), 1);
    const auto sections = selection.sections();
    QCOMPARE(sections.size(), 1);
    QCOMPARE(sections.front().toMap().value("sizeText").toString(),
             tallowmere::ViewStyle::sizeText(
                 bytesOf(store, "Ollama", (home.home() / ".ollama/models").native())));

    selection.setOwner("Codex");
    QVERIFY(selection.selectedLocations().isEmpty());
    QVERIFY(!selection.allSelected());
}

QTEST_GUILESS_MAIN(LocationSelectionTest)
#include "LocationSelectionTest.moc"
