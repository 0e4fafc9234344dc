#pragma once

#include <vector>

#include "RowListModel.h"
#include "measurement/StorageTool.h"

namespace tallowmere {

// Tools, one row each, as the overview and the graph show them.
class ToolListModel : public RowListModel {
    Q_OBJECT
    // How many of the tools have at least one byte on disk: the ones the graph shows.
    Q_PROPERTY(int measuredCount READ measuredCount NOTIFY measuredChanged)
    // Their bytes on disk together.
    Q_PROPERTY(qint64 measuredBytes READ measuredBytes NOTIFY measuredChanged)

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

    int measuredCount() const { return m_measuredCount; }
    qint64 measuredBytes() const { return m_measuredBytes; }

    // Shows `tools`, in their order. True when anything changed.
    bool show(const std::vector<const StorageTool*>& tools);

signals:
    void measuredChanged();

private:
    int m_measuredCount = 0;
    qint64 m_measuredBytes = 0;
};

}  // namespace tallowmere
