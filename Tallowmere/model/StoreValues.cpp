#include "StoreValues.h"

#include "NativeText.h"
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

ReviewValue ReviewValue::of(const LocationRemovalReview& review) {
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
    return value;
}

}  // namespace tallowmere
