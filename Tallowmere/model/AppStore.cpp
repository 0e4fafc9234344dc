#include "AppStore.h"

#include <algorithm>
#include <stdexcept>

#include "FolderDialogChooser.h"
#include "NativeText.h"
#include "catalog/LocationDiscovery.h"
#include "persistence/StorageScanCache.h"
#include "platform/ProcessEnvironment.h"
#include "platform/UserFolders.h"

namespace tallowmere {

namespace {

constexpr std::int64_t maxEntriesPerLocation = 100'000;

AppStore* liveStore = nullptr;

QString textOf(const std::string& bytes) {
    return NativeText::toQString(bytes);
}

QString messageOf(const std::exception& failure) {
    return QString::fromUtf8(failure.what());
}

// What a scan's worker needs, copied from the store when the scan starts.
struct ScanRequest {
    std::filesystem::path home;
    std::vector<std::string> tracked;
    std::optional<std::filesystem::path> summaryFile;
};

// The scan itself, on the worker's thread: discovery, the walk, then the summary for the next
// start. Throws ScanCancelled when stopped.
StorageScan measure(const ScanRequest& request, const AIStorageScanner::ProgressHandler& onProgress,
                    std::stop_token stop) {
    const auto locations = AIStorageScanner::measuredLocations(
        request.home, processEnvironment(), nativeStorageLayout(), request.tracked, stop);
    ScanOptions options;
    options.stopToken = stop;
    StorageScan scan =
        AIStorageScanner::scan(request.home, locations, maxEntriesPerLocation, onProgress, options);
    if (stop.stop_requested()) {
        throw ScanCancelled();
    }
    if (request.summaryFile) {
        try {
            StorageScanCache::save(scan, *request.summaryFile, request.home, request.tracked);
        } catch (const std::exception&) {
            // The next start simply shows no summary.
        }
    }
    return scan;
}

}  // namespace

AppStore::AppStore(Setup setup, QObject* parent)
    : QObject(parent),
      m_chooser(setup.chooser ? std::move(setup.chooser) : std::make_unique<FolderDialogChooser>()),
      m_monitorPeriod(setup.monitorPeriod),
      m_toolsModel(this),
      m_visibleToolsModel(this),
      m_findingsModel(this),
      m_undoModel(this),
      m_scanToken(QUuid::createUuid()) {
    if (liveStore) {
        throw std::logic_error("Only one AppStore may exist in a process.");
    }
    liveStore = this;
    try {
        const SettingsReading reading = StoreSettingsFile::read(StoreSettingsFile::location());
        m_settings = reading.settings;
        m_settingsDamaged = reading.damaged;
    } catch (const std::exception& failure) {
        m_error = messageOf(failure);
    }
    loadSummary();
    configureMonitor();
    if (!m_settings.aiMonitoring) {
        scanAI();
    }
}

AppStore::AppStore(QObject* parent) : AppStore(Setup{}, parent) {}

// The background tasks, destroyed first, ask every task to stop and join them all.
AppStore::~AppStore() {
    liveStore = nullptr;
}

void AppStore::loadSummary() {
    try {
        auto scan = StorageScanCache::load(UserFolders::summaryFile(), UserFolders::homeFolder(),
                                           m_settings.customPaths, currentDate());
        if (scan) {
            showScan(std::move(*scan));
        }
    } catch (const std::exception&) {
        // Without a home folder there is no summary to show; the first scan says why.
    }
}

QVariant AppStore::storage() const {
    return m_storage ? QVariant::fromValue(*m_storage) : QVariant::fromValue(nullptr);
}

void AppStore::setSelectedToolID(const QString& owner) {
    m_selectedToolID = owner;
    emit selectedToolIDChanged();
    showSelectedTool();
}

void AppStore::setToolQuery(const QString& query) {
    m_toolQuery = query;
    emit toolQueryChanged();
    showVisibleTools();
}

QVariant AppStore::diskSpace() const {
    return m_diskSpace ? QVariant::fromValue(DiskSpaceValue::of(*m_diskSpace))
                       : QVariant::fromValue(nullptr);
}

void AppStore::setError(const QString& error) {
    if (error == m_error) {
        return;
    }
    m_error = error;
    emit errorChanged();
}

void AppStore::setNotice(const QString& notice) {
    if (notice == m_notice) {
        return;
    }
    m_notice = notice;
    emit noticeChanged();
}

QVariant AppStore::locationRemovalReview() const {
    if (!m_review) {
        return QVariant::fromValue(nullptr);
    }
    QString home;
    try {
        home = NativeText::toQString(UserFolders::homeFolder().native());
    } catch (const std::runtime_error&) {
        // Without a home folder every path is shown in full.
    }
    return QVariant::fromValue(ReviewValue::of(*m_review, home));
}

// Views close the review sheet with this; a review is only ever made by reviewLocations, and
// one being carried out stays until the removal ends.
void AppStore::setLocationRemovalReview(const QVariant& review) {
    if (!review.isNull() || m_cleaning) {
        return;
    }
    setReview(std::nullopt);
}

void AppStore::setAiMonitoring(bool on) {
    m_settings.aiMonitoring = on;
    emit aiMonitoringChanged();
    writeSettings();
    configureMonitor();
}

void AppStore::setLowSpaceGB(qint64 gigabytes) {
    m_settings.lowSpaceGB = gigabytes;
    emit lowSpaceGBChanged();
    writeSettings();
    emit lowDiskSpaceChanged();
}

QStringList AppStore::customAIPaths() const {
    QStringList paths;
    for (const auto& path : m_settings.customPaths) {
        paths.push_back(textOf(path));
    }
    return paths;
}

QVariant AppStore::selectedTool() const {
    const StorageTool* tool = m_selectedToolID.isEmpty()
                                  ? nullptr
                                  : toolOwnedBy(NativeText::fromQString(m_selectedToolID));
    return tool ? QVariant::fromValue(ToolValue::of(*tool)) : QVariant::fromValue(nullptr);
}

bool AppStore::lowDiskSpace() const {
    return m_diskSpace && m_diskSpace->isLow(m_settings.lowSpaceGB);
}

void AppStore::writeSettings() {
    try {
        const auto file = StoreSettingsFile::location();
        if (m_settingsDamaged) {
            StoreSettingsFile::keepAside(file);
            m_settingsDamaged = false;
        }
        StoreSettingsFile::write(m_settings, file);
    } catch (const std::exception& failure) {
        setError("Couldn’t save your settings.\n\n" + messageOf(failure));
    }
}

void AppStore::setFlag(bool& flag, bool value, void (AppStore::*changed)()) {
    flag = value;
    emit(this->*changed)();
}

void AppStore::setDiskSpaceReadAt(const std::filesystem::path& home) {
    try {
        m_diskSpace = DiskSpace::read(home);
    } catch (const std::exception&) {
        m_diskSpace.reset();
    }
    emit diskSpaceChanged();
    emit lowDiskSpaceChanged();
}

void AppStore::showScan(StorageScan&& scan) {
    m_storage = ScanValue::of(scan);
    m_tools = StorageTool::group(std::move(scan.findings));
    emit storageChanged();
    showTools();
}

void AppStore::showTools() {
    std::vector<const StorageTool*> tools;
    for (const auto& tool : m_tools) {
        tools.push_back(&tool);
    }
    m_toolsModel.show(tools);
    emit toolsChanged();
    showVisibleTools();
    showSelectedTool();
}

void AppStore::showVisibleTools() {
    std::vector<const StorageTool*> visible;
    for (const auto& tool : m_tools) {
        if (tool.allocatedBytes() >= 1 &&
            (m_toolQuery.isEmpty() ||
             textOf(tool.owner).contains(m_toolQuery, Qt::CaseInsensitive))) {
            visible.push_back(&tool);
        }
    }
    m_visibleToolsModel.show(visible);
    emit visibleToolsChanged();
}

void AppStore::showSelectedTool() {
    m_findingsModel.show(m_selectedToolID.isEmpty()
                             ? nullptr
                             : toolOwnedBy(NativeText::fromQString(m_selectedToolID)));
    emit selectedToolChanged();
}

void AppStore::setReview(std::optional<LocationRemovalReview> review) {
    m_review = std::move(review);
    emit locationRemovalReviewChanged();
}

void AppStore::setUndoItems(std::vector<TrashedStorageFile> items) {
    m_undoItems = std::move(items);
    m_undoModel.show(m_undoItems);
    emit undoItemsChanged();
}

const StorageTool* AppStore::toolOwnedBy(const std::string& owner) const {
    const auto tool = std::ranges::find(m_tools, owner, &StorageTool::owner);
    return tool == m_tools.end() ? nullptr : &*tool;
}

void AppStore::configureMonitor() {
    m_monitor.reset();
    if (!m_settings.aiMonitoring) {
        return;
    }
    scanAI();
    m_monitor = std::make_unique<MonitorClock>(m_monitorPeriod);
    connect(m_monitor.get(), &MonitorClock::wokeUp, this, &AppStore::scanAI);
}

void AppStore::stopBackgroundWork() {
    m_monitor.reset();
    stopAIScan();
}

void AppStore::scanAI() {
    if (m_aiScanning || m_cleaning || m_restoring || m_review || m_preparingLocations) {
        return;
    }
    ScanRequest request;
    try {
        request.home = UserFolders::homeFolder();
        request.summaryFile = UserFolders::summaryFile();
    } catch (const std::exception& failure) {
        setError(messageOf(failure));
        return;
    }
    setFlag(m_aiScanning, true, &AppStore::aiScanningChanged);
    const QUuid token = QUuid::createUuid();
    m_scanToken = token;
    setDiskSpaceReadAt(request.home);
    request.tracked = m_settings.customPaths;
    const bool showPartial = !m_storage || (!m_hasFreshScan && m_tools.empty());
    AIStorageScanner::ProgressHandler onProgress;
    if (showPartial) {
        onProgress = [this, token](StorageScan soFar) { postProgress(token, std::move(soFar)); };
    }
    const auto home = request.home;
    m_worker = m_tasks.start<StorageScan>(
        [request = std::move(request), onProgress](std::stop_token stop) {
            return measure(request, onProgress, stop);
        },
        [this, token, home](Outcome<StorageScan> outcome) {
            finishScan(token, home, std::move(outcome));
        });
}

// Called on the worker's thread: only hands the snapshot over to the main thread.
void AppStore::postProgress(const QUuid& token, StorageScan&& soFar) {
    auto snapshot = std::make_shared<StorageScan>(std::move(soFar));
    QMetaObject::invokeMethod(
        this,
        [this, token, snapshot] {
            if (m_scanToken == token && m_aiScanning) {
                showScan(std::move(*snapshot));
            }
        },
        Qt::QueuedConnection);
}

void AppStore::finishScan(const QUuid& token, const std::filesystem::path& home,
                          Outcome<StorageScan>&& outcome) {
    if (outcome.value) {
        if (m_scanToken != token) {
            return;
        }
        showScan(std::move(*outcome.value));
        setFlag(m_hasFreshScan, true, &AppStore::hasFreshScanChanged);
        setDiskSpaceReadAt(home);
        if (!m_selectedToolID.isEmpty() &&
            !toolOwnedBy(NativeText::fromQString(m_selectedToolID))) {
            setSelectedToolID({});
        }
    } else {
        try {
            std::rethrow_exception(outcome.error);
        } catch (const ScanCancelled&) {
            // A stopped scan shows nothing.
        } catch (const std::exception& failure) {
            if (m_scanToken == token) {
                setError(messageOf(failure));
            }
        }
    }
    if (m_scanToken == token) {
        setFlag(m_aiScanning, false, &AppStore::aiScanningChanged);
    }
}

void AppStore::stopAIScan() {
    if (m_worker) {
        m_tasks.requestStop(*m_worker);
    }
    m_scanToken = QUuid::createUuid();
    setFlag(m_aiScanning, false, &AppStore::aiScanningChanged);
}

}  // namespace tallowmere
