#include "ToolListModel.h"

#include "NativeText.h"
#include "text/SizeText.h"

namespace tallowmere {

ToolListModel::ToolListModel(QObject* parent)
    : RowListModel(
          {"owner", "allocatedBytes", "sizeText", "locationCount", "incomplete", "fileCount"},
          parent) {}

bool ToolListModel::show(const std::vector<const StorageTool*>& tools) {
    std::vector<Row> rows;
    rows.reserve(tools.size());
    int measuredCount = 0;
    qint64 measuredBytes = 0;
    for (const StorageTool* tool : tools) {
        const std::int64_t bytes = tool->allocatedBytes();
        if (bytes > 0) {
            ++measuredCount;
            measuredBytes += bytes;
        }
        rows.push_back({NativeText::toQString(tool->owner), qint64{bytes},
                        QString::fromStdString(SizeText::bytes(bytes)),
                        qint64{tool->visibleFindingCount()}, tool->incomplete(),
                        qint64{tool->fileCount()}});
    }
    if (measuredCount != m_measuredCount || measuredBytes != m_measuredBytes) {
        m_measuredCount = measuredCount;
        m_measuredBytes = measuredBytes;
        emit measuredChanged();
    }
    return replaceRows(std::move(rows));
}

}  // namespace tallowmere
