#include "FindingListModel.h"

#include <QVariantMap>

#include "NativeText.h"
#include "guidance/StorageGuidance.h"
#include "removal/StorageRemovalPlan.h"
#include "text/SizeText.h"

namespace tallowmere {

namespace {

constexpr bool includeRecent = true;
constexpr int largestFilesShown = 6;

QString sizeText(std::int64_t bytes) {
    return QString::fromStdString(SizeText::bytes(bytes));
}

QString counted(std::size_t count, const char* noun) {
    return QString::number(count) + " " + noun + (count == 1 ? "" : "s");
}

std::int64_t bytesOf(const std::vector<StorageCleanupFile>& files) {
    std::int64_t total = 0;
    for (const auto& file : files) {
        total += file.allocatedBytes;
    }
    return total;
}

QString statusText(const StorageFinding& finding, const StorageGuidance& guidance,
                   const std::vector<StorageCleanupFile>& candidates) {
    if (!StorageRemovalPlan::usesEligibleFiles(finding)) {
        return QString::fromStdString(guidance.summary());
    }
    if (candidates.empty()) {
        return finding.fileCount == 0 ? "Empty folder" : "No removable cache/log files";
    }
    return counted(candidates.size(), "file") + " to review · " + sizeText(finding.allocatedBytes) +
           " total on disk";
}

QString partialText(const StorageFinding& finding) {
    if (!finding.limited && finding.skippedCount < 1) {
        return {};
    }
    return "Partly measured · " + QString::number(finding.skippedCount) + " items unavailable" +
           (finding.limited ? " · scan limit reached" : "");
}

QVariantList largestFiles(const StorageFinding& finding) {
    QVariantList files;
    for (const auto& file : finding.largestFiles) {
        if (files.size() == largestFilesShown) {
            break;
        }
        files.push_back(QVariantMap{{"name", NativeText::toQString(file.name().native())},
                                    {"path", NativeText::toQString(file.url.native())},
                                    {"sizeText", sizeText(file.bytes)}});
    }
    return files;
}

RowListModel::Row rowOf(const StorageFinding& finding) {
    const auto guidance = StorageGuidance::forCategory(finding.location.category);
    const bool eligible = StorageRemovalPlan::usesEligibleFiles(finding);
    const auto candidates = StorageRemovalPlan::candidates(finding, includeRecent);
    return {NativeText::toQString(finding.id()),
            NativeText::toQString(finding.location.category),
            NativeText::toQString(finding.url.native()),
            NativeText::toQString(finding.location.detail),
            qint64{finding.allocatedBytes},
            qint64{finding.fileCount},
            eligible,
            StorageRemovalPlan::canSelect(finding, includeRecent),
            sizeText(eligible ? bytesOf(candidates) : finding.allocatedBytes),
            eligible ? "to review" : "on disk",
            statusText(finding, guidance, candidates),
            guidance.group == StorageGuidance::Group::rebuildable,
            QString::fromUtf8(StorageGuidanceGroup::rawValue(guidance.group)),
            QString::fromStdString(guidance.consequence),
            partialText(finding),
            largestFiles(finding)};
}

}  // namespace

FindingListModel::FindingListModel(QObject* parent)
    : RowListModel({"locationID", "category", "path", "detail", "allocatedBytes", "fileCount",
                    "eligible", "canSelect", "sizeText", "sizeLabel", "statusText", "rebuildable",
                    "guidanceGroup", "consequence", "partialText", "largestFiles"},
                   parent) {}

bool FindingListModel::show(const StorageTool* tool) {
    std::vector<Row> rows;
    if (tool) {
        for (const auto& finding : tool->findings) {
            if (StorageTool::isVisible(finding)) {
                rows.push_back(rowOf(finding));
            }
        }
    }
    return replaceRows(std::move(rows));
}

}  // namespace tallowmere
