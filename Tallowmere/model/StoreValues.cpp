#include "StoreValues.h"

#include <QVariantMap>
#include <set>

#include "NativeText.h"
#include "ViewStyle.h"
#include "guidance/StorageCleanupGroup.h"
#include "guidance/StorageGuidance.h"
#include "text/SizeText.h"

namespace tallowmere {

namespace {

QString bytesText(std::int64_t bytes) {
    return QString::fromStdString(SizeText::bytes(bytes));
}

QDateTime dateTimeOf(Date date) {
    const auto milliseconds = static_cast<qint64>((date + unixEpochToReferenceDate) * 1000.0);
    return QDateTime::fromMSecsSinceEpoch(milliseconds);
}

QStringList textsOf(const std::vector<std::string>& texts) {
    QStringList list;
    for (const auto& text : texts) {
        list.push_back(NativeText::toQString(text));
    }
    return list;
}

QVariantMap fileGroupOf(const StorageCleanupGroup& group, const QString& home) {
    const bool cache = group.kind == StorageCleanupGroup::Kind::cache;
    std::set<QString> roots;
    for (const auto& file : group.files) {
        roots.insert(ViewStyle::shortPath(NativeText::toQString(file.root.native()), home));
    }
    const auto count = group.files.size();
    return {{"title", cache ? "Rebuildable cache" : "Diagnostic logs"},
            {"sizeText", bytesText(group.allocatedBytes())},
            {"countText",
             QString::number(count) + (count == 1 ? " file · " : " files · ") +
                 (cache ? "May rebuild or download again" : "Removes troubleshooting records")},
            {"roots", QStringList(roots.begin(), roots.end())}};
}

QVariantMap folderOf(const StorageLocationSnapshot& location, const QString& home) {
    return {{"category", NativeText::toQString(location.category)},
            {"sizeText", bytesText(location.allocatedBytes)},
            {"shortPath", ViewStyle::shortPath(NativeText::toQString(location.url.native()), home)},
            {"summary",
             QString::fromStdString(StorageGuidance::forCategory(location.category).summary())},
            {"itemsText",
             QString::number(location.itemCount) + " items inside · includes all nested folders"}};
}

}  // namespace

ScanValue ScanValue::of(const StorageScan& scan) {
    const std::int64_t bytes = scan.allocatedBytes();
    return {bytes,
            bytesText(bytes),
            dateTimeOf(scan.completedAt),
            scan.incomplete(),
            scan.absentLocations,
            scan.unreadableLocations};
}

DiskSpaceValue DiskSpaceValue::of(const DiskSpace& space) {
    return {space.total, space.available, bytesText(space.available)};
}

ToolValue ToolValue::of(const StorageTool& tool) {
    const std::int64_t bytes = tool.allocatedBytes();
    return {NativeText::toQString(tool.owner), bytes, bytesText(bytes), tool.visibleFindingCount(),
            tool.incomplete()};
}

ReviewValue ReviewValue::of(const LocationRemovalReview& review, const QString& home) {
    ReviewValue value;
    value.id = QString::fromStdString(review.id);
    value.owner = NativeText::toQString(review.owner);
    for (const auto& location : review.locations) {
        value.folderPaths.push_back(NativeText::toQString(location.url.native()));
    }
    value.fileCount = static_cast<qint64>(review.files.size());
    value.affectedTools = textsOf(review.affectedTools);
    value.allocatedBytes = review.allocatedBytes();
    value.sizeText = bytesText(value.allocatedBytes);
    value.selectionSummary = QString::fromStdString(review.selectionSummary());
    for (const auto& group : StorageCleanupGroup::group(review.files)) {
        value.fileGroups.push_back(fileGroupOf(group, home));
    }
    for (const auto& location : review.locations) {
        value.folders.push_back(folderOf(location, home));
    }
    return value;
}

}  // namespace tallowmere
