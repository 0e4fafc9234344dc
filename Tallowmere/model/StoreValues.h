#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include "measurement/DiskSpace.h"
#include "measurement/StorageScan.h"
#include "measurement/StorageTool.h"
#include "removal/LocationRemovalReview.h"

// The store's records as views read them: read-only values that QML binds to by property name.
namespace tallowmere {

// The scan on screen, without its findings (the store keeps those in its tools).
struct ScanValue {
    Q_GADGET
    Q_PROPERTY(qint64 allocatedBytes MEMBER allocatedBytes CONSTANT)
    Q_PROPERTY(QString allocatedText MEMBER allocatedText CONSTANT)
    Q_PROPERTY(QDateTime completedAt MEMBER completedAt CONSTANT)
    Q_PROPERTY(bool incomplete MEMBER incomplete CONSTANT)
    Q_PROPERTY(qint64 absentLocations MEMBER absentLocations CONSTANT)
    Q_PROPERTY(qint64 unreadableLocations MEMBER unreadableLocations CONSTANT)

public:
    qint64 allocatedBytes = 0;
    QString allocatedText;
    QDateTime completedAt;
    bool incomplete = false;
    qint64 absentLocations = 0;
    qint64 unreadableLocations = 0;

    static ScanValue of(const StorageScan& scan);
    bool operator==(const ScanValue&) const = default;
};

// Total and available bytes of the home folder's volume.
struct DiskSpaceValue {
    Q_GADGET
    Q_PROPERTY(qint64 total MEMBER total CONSTANT)
    Q_PROPERTY(qint64 available MEMBER available CONSTANT)
    Q_PROPERTY(QString availableText MEMBER availableText CONSTANT)

public:
    qint64 total = 0;
    qint64 available = 0;
    QString availableText;

    static DiskSpaceValue of(const DiskSpace& space);
    bool operator==(const DiskSpaceValue&) const = default;
};

// One tool's totals; its findings are the store's selected-tool findings model.
struct ToolValue {
    Q_GADGET
    Q_PROPERTY(QString owner MEMBER owner CONSTANT)
    Q_PROPERTY(qint64 allocatedBytes MEMBER allocatedBytes CONSTANT)
    Q_PROPERTY(QString sizeText MEMBER sizeText CONSTANT)
    Q_PROPERTY(qint64 locationCount MEMBER locationCount CONSTANT)
    Q_PROPERTY(bool incomplete MEMBER incomplete CONSTANT)

public:
    QString owner;
    qint64 allocatedBytes = 0;
    QString sizeText;
    qint64 locationCount = 0;
    bool incomplete = false;

    static ToolValue of(const StorageTool& tool);
    bool operator==(const ToolValue&) const = default;
};

// The pending removal review, as the review sheet shows it.
struct ReviewValue {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString owner MEMBER owner CONSTANT)
    Q_PROPERTY(QStringList folderPaths MEMBER folderPaths CONSTANT)
    Q_PROPERTY(qint64 fileCount MEMBER fileCount CONSTANT)
    Q_PROPERTY(QStringList affectedTools MEMBER affectedTools CONSTANT)
    Q_PROPERTY(qint64 allocatedBytes MEMBER allocatedBytes CONSTANT)
    Q_PROPERTY(QString sizeText MEMBER sizeText CONSTANT)
    Q_PROPERTY(QString selectionSummary MEMBER selectionSummary CONSTANT)
    // One map per kind of file, cache first: "title", "sizeText", "countText" and "roots", the
    // sorted folders the files lie in.
    Q_PROPERTY(QVariantList fileGroups MEMBER fileGroups CONSTANT)
    // One map per whole folder: "category", "sizeText", "shortPath", "summary", "itemsText".
    Q_PROPERTY(QVariantList folders MEMBER folders CONSTANT)

public:
    QString id;
    QString owner;
    QStringList folderPaths;
    qint64 fileCount = 0;
    QStringList affectedTools;
    qint64 allocatedBytes = 0;
    QString sizeText;
    QString selectionSummary;
    QVariantList fileGroups;
    QVariantList folders;

    // Paths inside `home` are written from "~/".
    static ReviewValue of(const LocationRemovalReview& review, const QString& home);
};

}  // namespace tallowmere
