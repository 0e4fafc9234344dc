#pragma once

#include <vector>

#include "RowListModel.h"
#include "removal/StorageCleanupResult.h"

namespace tallowmere {

// The items of the last removal to the Trash that can still be put back.
class UndoItemListModel : public RowListModel {
    Q_OBJECT

public:
    enum Role {
        TrashPathRole = Qt::UserRole + 1,  // where the item lies in the Trash, which identifies it
        NameRole,                          // the item's own name
        OriginalPathRole,                  // where it goes back to
        IsFolderRole,                      // true for a whole folder
        SizeTextRole,                      // its size as a person reads it
    };
    Q_ENUM(Role)

    explicit UndoItemListModel(QObject* parent = nullptr);

    // Shows `items`, in their order. True when anything changed.
    bool show(const std::vector<TrashedStorageFile>& items);
};

}  // namespace tallowmere
