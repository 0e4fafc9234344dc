#pragma once

#include <vector>

#include "RowListModel.h"
#include "measurement/StorageTool.h"

namespace tallowmere {

// Tools, one row each, as the overview and the graph show them.
class ToolListModel : public RowListModel {
    Q_OBJECT

public:
    enum Role {
        OwnerRole = Qt::UserRole + 1,  // the owner name, which identifies the tool
        AllocatedBytesRole,            // bytes on disk over all its findings
        SizeTextRole,                  // those bytes as a person reads them ("1.2 GB")
        LocationCountRole,             // how many of its findings are worth showing
        IncompleteRole,                // true when a walk stopped at its limit or skipped entries
        FileCountRole,                 // files counted over all its findings
    };
    Q_ENUM(Role)

    explicit ToolListModel(QObject* parent = nullptr);

    // Shows `tools`, in their order. True when anything changed.
    bool show(const std::vector<const StorageTool*>& tools);
};

}  // namespace tallowmere
