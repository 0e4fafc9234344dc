#pragma once

#include "RowListModel.h"
#include "measurement/StorageTool.h"

namespace tallowmere {

// The findings of the selected tool worth showing, one location row each, with every text the
// row shows. Recent files count as candidates, as the window always reviews them.
class FindingListModel : public RowListModel {
    Q_OBJECT

public:
    enum Role {
        LocationIDRole = Qt::UserRole + 1,  // the folder's path, which identifies the finding
        CategoryRole,                       // the location's category label
        PathRole,                           // the folder's full path
        DetailRole,                         // the catalog's explanation of the location
        AllocatedBytesRole,                 // bytes on disk
        FileCountRole,                      // files counted
        EligibleRole,                       // true for "Cache" and "Logs": reviewed file by file
        CanSelectRole,                      // false only for such a location without candidates
        SizeTextRole,                       // candidates' bytes when eligible, else bytes on disk
        SizeLabelRole,                      // "to review" or "on disk"
        StatusTextRole,                     // the status line under the row
        RebuildableRole,                    // true when the guidance group is "rebuildable"
        GuidanceGroupRole,  // the guidance group's raw value ("savedWork" and so on)
        ConsequenceRole,    // what removing it costs
        PartialTextRole,    // the partial-measurement line, empty when measured fully
        LargestFilesRole,   // up to six maps of "name", "path" and "sizeText"
    };
    Q_ENUM(Role)

    explicit FindingListModel(QObject* parent = nullptr);

    // Shows the visible findings of `tool`, or nothing. True when anything changed.
    bool show(const StorageTool* tool);
};

}  // namespace tallowmere
