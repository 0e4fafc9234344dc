#include "RowListModel.h"

#include <QSet>

namespace tallowmere {

RowListModel::RowListModel(QVector<QByteArray> roleNames, QObject* parent)
    : QAbstractListModel(parent), m_roleNames(std::move(roleNames)) {}

int RowListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant RowListModel::data(const QModelIndex& index, int role) const {
    const int column = role - Qt::UserRole - 1;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid) ||
        column < 0 || column >= m_roleNames.size()) {
        return {};
    }
    return m_rows[static_cast<std::size_t>(index.row())][column];
}

QHash<int, QByteArray> RowListModel::roleNames() const {
    QHash<int, QByteArray> names;
    for (int column = 0; column < m_roleNames.size(); ++column) {
        names.insert(Qt::UserRole + 1 + column, m_roleNames[column]);
    }
    return names;
}

QVector<QVariant> RowListModel::keys() const {
    QVector<QVariant> keys;
    for (const auto& row : m_rows) {
        keys.push_back(row.front());
    }
    return keys;
}

bool RowListModel::replaceRows(std::vector<Row> rows) {
    const int countBefore = count();
    m_changed = false;
    removeRowsNotIn(rows);
    for (std::size_t at = 0; at < rows.size(); ++at) {
        placeRow(static_cast<int>(at), std::move(rows[at]));
    }
    if (count() != countBefore) {
        emit countChanged();
    }
    return m_changed;
}

void RowListModel::removeRowsNotIn(const std::vector<Row>& rows) {
    QSet<QString> kept;
    for (const auto& row : rows) {
        kept.insert(row.front().toString());
    }
    for (int at = count() - 1; at >= 0; --at) {
        if (!kept.contains(m_rows[static_cast<std::size_t>(at)].front().toString())) {
            beginRemoveRows({}, at, at);
            m_rows.erase(m_rows.begin() + at);
            endRemoveRows();
            m_changed = true;
        }
    }
}

// Puts `row` at `at`: the rows before it are already in their final order.
void RowListModel::placeRow(int at, Row row) {
    const int found = indexOfKey(row.front(), at);
    if (found < 0) {
        beginInsertRows({}, at, at);
        m_rows.insert(m_rows.begin() + at, std::move(row));
        endInsertRows();
        m_changed = true;
        return;
    }
    if (found != at) {
        beginMoveRows({}, found, found, {}, at);
        auto moved = std::move(m_rows[static_cast<std::size_t>(found)]);
        m_rows.erase(m_rows.begin() + found);
        m_rows.insert(m_rows.begin() + at, std::move(moved));
        endMoveRows();
        m_changed = true;
    }
    auto& current = m_rows[static_cast<std::size_t>(at)];
    if (current != row) {
        current = std::move(row);
        emit dataChanged(index(at), index(at));
        m_changed = true;
    }
}

int RowListModel::indexOfKey(const QVariant& key, int from) const {
    for (int at = from; at < count(); ++at) {
        if (m_rows[static_cast<std::size_t>(at)].front() == key) {
            return at;
        }
    }
    return -1;
}

}  // namespace tallowmere
