#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <set>
#include <string>

#include "AppStore.h"
#include "removal/StorageRemovalPlan.h"

namespace tallowmere {

// The tool detail's own state: which of the tool's folders are selected for review and which
// one shows its details, with what the selection means (its removal plan) and the sections of
// the breakdown. It follows the store's findings of the tool: a folder that can no longer be
// selected leaves the selection, and the details of a folder that is gone close.
class LocationSelection : public QObject {
    Q_OBJECT
    Q_PROPERTY(tallowmere::AppStore* store READ store WRITE setStore NOTIFY toolChanged)
    Q_PROPERTY(QString owner READ owner WRITE setOwner NOTIFY toolChanged)
    Q_PROPERTY(bool includeRecent READ includeRecent WRITE setIncludeRecent NOTIFY toolChanged)
    // The ids (folder paths) of the selected findings.
    Q_PROPERTY(QStringList selectedLocations READ selectedLocations NOTIFY selectionChanged)
    // True when something can be selected and all of it is.
    Q_PROPERTY(bool allSelected READ allSelected NOTIFY selectionChanged)
    // True when the selection removes nothing.
    Q_PROPERTY(bool planEmpty READ planEmpty NOTIFY selectionChanged)
    // "2 selected · 1.5 GB to review".
    Q_PROPERTY(QString selectionText READ selectionText NOTIFY selectionChanged)
    // The id of the finding whose details are open; empty for none.
    Q_PROPERTY(QString expandedLocationID READ expandedLocationID NOTIFY expandedChanged)
    // One map per guidance group that has findings, in order: "group", "title", "sizeText".
    Q_PROPERTY(QVariantList sections READ sections NOTIFY toolChanged)

public:
    explicit LocationSelection(QObject* parent = nullptr);

    AppStore* store() const { return m_store; }
    void setStore(AppStore* store);
    QString owner() const { return m_owner; }
    void setOwner(const QString& owner);
    bool includeRecent() const { return m_includeRecent; }
    void setIncludeRecent(bool includeRecent);
    QStringList selectedLocations() const;
    bool allSelected() const;
    bool planEmpty() const;
    QString selectionText() const;
    QString expandedLocationID() const { return m_expanded; }
    QVariantList sections() const;

    // Adds the finding `id` to the selection or takes it out.
    Q_INVOKABLE void setSelected(const QString& id, bool selected);
    // Selects every finding that can be selected, or none.
    Q_INVOKABLE void setAllSelected(bool selected);
    // Opens the details of `id`, closing any other, or closes them if they are open.
    Q_INVOKABLE void setExpanded(const QString& id, bool expanded);

signals:
    void toolChanged();
    void selectionChanged();
    void expandedChanged();

private:
    const StorageTool* tool() const;
    std::set<std::string> selectableIDs() const;
    bool isVisibleFinding(const QString& id) const;
    StorageRemovalPlan plan() const;
    void followTool();

    QPointer<AppStore> m_store;
    QString m_owner;
    bool m_includeRecent = true;
    std::set<std::string> m_selected;
    QString m_expanded;
};

}  // namespace tallowmere
