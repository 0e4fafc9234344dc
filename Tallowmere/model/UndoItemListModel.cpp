#include "UndoItemListModel.h"

#include "NativeText.h"
#include "text/SizeText.h"

namespace tallowmere {

UndoItemListModel::UndoItemListModel(QObject* parent)
    : RowListModel({"trashPath", "name", "originalPath", "isFolder", "sizeText"}, parent) {}

bool UndoItemListModel::show(const std::vector<TrashedStorageFile>& items) {
    std::vector<Row> rows;
    for (const auto& item : items) {
        const std::int64_t bytes =
            item.locationSnapshot ? item.locationSnapshot->allocatedBytes : item.original.bytes;
        rows.push_back({NativeText::toQString(item.trashURL.native()),
                        NativeText::toQString(item.original.name().native()),
                        NativeText::toQString(item.original.url.native()),
                        item.locationSnapshot.has_value(),
                        QString::fromStdString(SizeText::bytes(bytes))});
    }
    return replaceRows(std::move(rows));
}

}  // namespace tallowmere
