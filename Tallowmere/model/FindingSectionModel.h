#pragma once

#include <QSortFilterProxyModel>
#include <QString>

namespace tallowmere {

// The rows of a findings model whose guidance group is `group` ("rebuildable", "savedWork",
// "settings" or "mixed"), in their order: one section of the tool detail.
class FindingSectionModel : public QSortFilterProxyModel {
    Q_OBJECT
    Q_PROPERTY(QString group READ group WRITE setGroup NOTIFY groupChanged)

public:
    explicit FindingSectionModel(QObject* parent = nullptr);

    QString group() const { return m_group; }
    void setGroup(const QString& group);

signals:
    void groupChanged();

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    QString m_group;
};

}  // namespace tallowmere
