#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <QVariant>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "BackgroundTasks.h"
#include "FindingListModel.h"
#include "FolderChooser.h"
#include "MonitorClock.h"
#include "StoreValues.h"
#include "ToolListModel.h"
#include "UndoItemListModel.h"
#include "measurement/StorageScan.h"
#include "measurement/StorageTool.h"
#include "persistence/StoreSettings.h"
#include "removal/LocationRemovalReview.h"
#include "removal/StorageCleanupResult.h"

namespace tallowmere {

// The application's one model object: the scan on screen and its tools, the selection, the
// busy flags, the pending review, the undo records, the messages and the user's settings. It
// runs every scan, review, removal and undo through the core on background threads and applies
// their results here. Every property and operation belongs to the main thread.
class AppStore : public QObject {
    Q_OBJECT
    // The scan on screen (a ScanValue), or null.
    Q_PROPERTY(QVariant storage READ storage NOTIFY storageChanged)
    Q_PROPERTY(tallowmere::ToolListModel* tools READ tools NOTIFY toolsChanged)
    // The owner of the tool whose detail is shown; empty for none.
    Q_PROPERTY(QString selectedToolID READ selectedToolID WRITE setSelectedToolID NOTIFY
                   selectedToolIDChanged)
    Q_PROPERTY(QString toolQuery READ toolQuery WRITE setToolQuery NOTIFY toolQueryChanged)
    Q_PROPERTY(bool aiScanning READ aiScanning NOTIFY aiScanningChanged)
    Q_PROPERTY(bool hasFreshScan READ hasFreshScan NOTIFY hasFreshScanChanged)
    // The home volume's space (a DiskSpaceValue), or null.
    Q_PROPERTY(QVariant diskSpace READ diskSpace NOTIFY diskSpaceChanged)
    // A failure to show in an alert; empty for none. Views set it to "" when it is dismissed.
    Q_PROPERTY(QString error READ error WRITE setError NOTIFY errorChanged)
    // The result of the last removal or undo; empty for none.
    Q_PROPERTY(QString notice READ notice WRITE setNotice NOTIFY noticeChanged)
    // The pending review (a ReviewValue), or null. Views may only set it to null.
    Q_PROPERTY(QVariant locationRemovalReview READ locationRemovalReview WRITE
                   setLocationRemovalReview NOTIFY locationRemovalReviewChanged)
    Q_PROPERTY(bool preparingLocations READ preparingLocations NOTIFY preparingLocationsChanged)
    Q_PROPERTY(bool cleaning READ cleaning NOTIFY cleaningChanged)
    Q_PROPERTY(tallowmere::UndoItemListModel* undoItems READ undoItems NOTIFY undoItemsChanged)
    Q_PROPERTY(bool restoring READ restoring NOTIFY restoringChanged)
    Q_PROPERTY(bool aiMonitoring READ aiMonitoring WRITE setAiMonitoring NOTIFY aiMonitoringChanged)
    Q_PROPERTY(qint64 lowSpaceGB READ lowSpaceGB WRITE setLowSpaceGB NOTIFY lowSpaceGBChanged)
    Q_PROPERTY(QStringList customAIPaths READ customAIPaths NOTIFY customAIPathsChanged)
    // The tool named by selectedToolID (a ToolValue), or null.
    Q_PROPERTY(QVariant selectedTool READ selectedTool NOTIFY selectedToolChanged)
    // The selected tool's findings worth showing; empty without a selected tool.
    Q_PROPERTY(tallowmere::FindingListModel* selectedToolFindings READ selectedToolFindings NOTIFY
                   selectedToolChanged)
    Q_PROPERTY(tallowmere::ToolListModel* visibleTools READ visibleTools NOTIFY visibleToolsChanged)
    Q_PROPERTY(bool lowDiskSpace READ lowDiskSpace NOTIFY lowDiskSpaceChanged)

public:
    enum class RemovalMethod { Trash, Permanent };
    Q_ENUM(RemovalMethod)

    // What the application gives a store; tests give a fake chooser and a short period.
    struct Setup {
        std::unique_ptr<FolderChooser> chooser;  // the folder dialog when none is given
        std::chrono::nanoseconds monitorPeriod = std::chrono::seconds(300);
    };

    // Reads the settings and the summary of the last scan, then starts the first scan (and the
    // monitoring loop when it is on). Throws std::logic_error when another store exists.
    explicit AppStore(Setup setup, QObject* parent = nullptr);
    // The application's store: the folder dialog and the five-minute period.
    explicit AppStore(QObject* parent = nullptr);
    // Stops a running scan and waits for the background work: a removal or an undo in progress
    // is finished first, so nothing is left half-moved.
    ~AppStore() override;

    QVariant storage() const;
    ToolListModel* tools() { return &m_toolsModel; }
    QString selectedToolID() const { return m_selectedToolID; }
    void setSelectedToolID(const QString& owner);
    QString toolQuery() const { return m_toolQuery; }
    void setToolQuery(const QString& query);
    bool aiScanning() const { return m_aiScanning; }
    bool hasFreshScan() const { return m_hasFreshScan; }
    QVariant diskSpace() const;
    QString error() const { return m_error; }
    void setError(const QString& error);
    QString notice() const { return m_notice; }
    void setNotice(const QString& notice);
    QVariant locationRemovalReview() const;
    void setLocationRemovalReview(const QVariant& review);
    bool preparingLocations() const { return m_preparingLocations; }
    bool cleaning() const { return m_cleaning; }
    UndoItemListModel* undoItems() { return &m_undoModel; }
    bool restoring() const { return m_restoring; }
    bool aiMonitoring() const { return m_settings.aiMonitoring; }
    void setAiMonitoring(bool on);
    qint64 lowSpaceGB() const { return m_settings.lowSpaceGB; }
    void setLowSpaceGB(qint64 gigabytes);
    QStringList customAIPaths() const;
    QVariant selectedTool() const;
    FindingListModel* selectedToolFindings() { return &m_findingsModel; }
    ToolListModel* visibleTools() { return &m_visibleToolsModel; }
    bool lowDiskSpace() const;

    // The records behind the properties, for C++ callers.
    const std::vector<StorageTool>& toolList() const { return m_tools; }
    const std::optional<LocationRemovalReview>& pendingReview() const { return m_review; }
    const std::vector<TrashedStorageFile>& undoList() const { return m_undoItems; }
    // The tool owned by `owner` in the list on screen, or null.
    const StorageTool* toolOwnedBy(const std::string& owner) const;

    // Starts a scan unless a scan, removal, undo, review or preparation is under way.
    Q_INVOKABLE void scanAI();
    // Stops the running scan; none of its results will show.
    Q_INVOKABLE void stopAIScan();
    // Ends the monitoring loop and stops the running scan, when the application quits.
    Q_INVOKABLE void stopBackgroundWork();
    // Asks for a folder to track and, if it is new, tracks it and scans again.
    Q_INVOKABLE void chooseAIStorageFolder();
    // Stops tracking every entry equal to `path` and scans again.
    Q_INVOKABLE void removeAIStorageFolder(const QString& path);
    // Prepares a review of the findings `ids` of the tool owned by `owner`, in the background.
    Q_INVOKABLE void reviewLocations(const QStringList& ids, const QString& owner,
                                     bool includeRecent);
    // Carries out the pending review, then scans again.
    Q_INVOKABLE void removeReviewedLocations(tallowmere::AppStore::RemovalMethod method);
    // Puts the items of the last removal to the Trash back, then scans again.
    Q_INVOKABLE void undoCleanup();

signals:
    void storageChanged();
    void toolsChanged();
    void selectedToolIDChanged();
    void toolQueryChanged();
    void aiScanningChanged();
    void hasFreshScanChanged();
    void diskSpaceChanged();
    void errorChanged();
    void noticeChanged();
    void locationRemovalReviewChanged();
    void preparingLocationsChanged();
    void cleaningChanged();
    void undoItemsChanged();
    void restoringChanged();
    void aiMonitoringChanged();
    void lowSpaceGBChanged();
    void customAIPathsChanged();
    void selectedToolChanged();
    void visibleToolsChanged();
    void lowDiskSpaceChanged();

private:
    void loadSummary();
    void configureMonitor();
    void writeSettings();
    void setFlag(bool& flag, bool value, void (AppStore::*changed)());
    void setDiskSpaceReadAt(const std::filesystem::path& home);
    void showScan(StorageScan&& scan);
    void showTools();
    void showVisibleTools();
    void showSelectedTool();
    void setReview(std::optional<LocationRemovalReview> review);
    void setUndoItems(std::vector<TrashedStorageFile> items);
    void postProgress(const QUuid& token, StorageScan&& soFar);
    void finishScan(const QUuid& token, const std::filesystem::path& home,
                    Outcome<StorageScan>&& outcome);
    void finishPreparing(Outcome<std::optional<LocationRemovalReview>>&& outcome,
                         std::vector<std::string> affectedTools);
    void finishRemoval(StorageRemovalMethod method, StorageCleanupResult&& result);
    void finishUndo(StorageRestoreResult&& result);
    void trackedFoldersChanged();

    std::unique_ptr<FolderChooser> m_chooser;
    const std::chrono::nanoseconds m_monitorPeriod;

    std::optional<ScanValue> m_storage;
    std::vector<StorageTool> m_tools;
    QString m_selectedToolID;
    QString m_toolQuery;
    bool m_aiScanning = false;
    bool m_hasFreshScan = false;
    std::optional<DiskSpace> m_diskSpace;
    QString m_error;
    QString m_notice;
    std::optional<LocationRemovalReview> m_review;
    bool m_preparingLocations = false;
    bool m_cleaning = false;
    std::vector<TrashedStorageFile> m_undoItems;
    bool m_restoring = false;
    StoreSettings m_settings;
    // The settings file could not be read as written; it is kept aside before the first write.
    bool m_settingsDamaged = false;

    ToolListModel m_toolsModel;
    ToolListModel m_visibleToolsModel;
    FindingListModel m_findingsModel;
    UndoItemListModel m_undoModel;

    std::unique_ptr<MonitorClock> m_monitor;
    std::optional<BackgroundTasks::TaskID> m_worker;
    QUuid m_scanToken;
    // Last, so that its threads are joined before anything they report to goes away.
    BackgroundTasks m_tasks{this};
};

}  // namespace tallowmere
