#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QVariant>
#include <QVector>
#include <vector>

namespace tallowmere {

// A list model whose rows are replaced whole by the store and shown to views with the fewest
// changes: rows are matched by their key (the first role), so a row that stays is updated in
// place, one that moves is moved, and only new rows are inserted. A view keeps its delegates,
// hover and scroll position while a scan reports progress.
class RowListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    // One row: the value of each role in role order, its key first.
    using Row = QVector<QVariant>;

    int count() const { return static_cast<int>(m_rows.size()); }
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // The key of each row, in order.
    QVector<QVariant> keys() const;

signals:
    void countChanged();

protected:
    // `roleNames` in role order; the roles are numbered from Qt::UserRole + 1.
    RowListModel(QVector<QByteArray> roleNames, QObject* parent);

    // Makes the rows `rows`, whose keys are distinct. True when anything changed.
    bool replaceRows(std::vector<Row> rows);

private:
    void removeRowsNotIn(const std::vector<Row>& rows);
    void placeRow(int at, Row row);
    int indexOfKey(const QVariant& key, int from) const;

    QVector<QByteArray> m_roleNames;
    std::vector<Row> m_rows;
    bool m_changed = false;
};

}  // namespace tallowmere
