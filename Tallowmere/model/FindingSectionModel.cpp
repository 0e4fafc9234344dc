#include "FindingSectionModel.h"

#include "FindingListModel.h"

namespace tallowmere {

FindingSectionModel::FindingSectionModel(QObject* parent) : QSortFilterProxyModel(parent) {}

void FindingSectionModel::setGroup(const QString& group) {
    if (group != m_group) {
        m_group = group;
        invalidateRowsFilter();
        emit groupChanged();
    }
}

bool FindingSectionModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const {
    const auto index = sourceModel()->index(sourceRow, 0, sourceParent);
    return index.data(FindingListModel::GuidanceGroupRole).toString() == m_group;
}

}  // namespace tallowmere
