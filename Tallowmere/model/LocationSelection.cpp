#include "LocationSelection.h"

#include <QVariantMap>
#include <algorithm>

#include "NativeText.h"
#include "ViewStyle.h"
#include "guidance/StorageGuidance.h"

namespace tallowmere {

namespace {

std::int64_t totalOf(const StorageRemovalPlan& plan) {
    std::int64_t total = 0;
    for (const auto& folder : plan.folders) {
        total += folder.allocatedBytes;
    }
    for (const auto& file : plan.files) {
        total += file.allocatedBytes;
    }
    return total;
}

}  // namespace

LocationSelection::LocationSelection(QObject* parent) : QObject(parent) {}

void LocationSelection::setStore(AppStore* store) {
    if (m_store) {
        disconnect(m_store, nullptr, this, nullptr);
    }
    m_store = store;
    if (m_store) {
        connect(m_store, &AppStore::selectedToolChanged, this, &LocationSelection::followTool);
    }
    followTool();
}

// Another tool starts with nothing selected and no details open.
void LocationSelection::setOwner(const QString& owner) {
    if (owner != m_owner) {
        m_owner = owner;
        m_selected.clear();
        m_expanded.clear();
        emit expandedChanged();
    }
    followTool();
}

void LocationSelection::setIncludeRecent(bool includeRecent) {
    m_includeRecent = includeRecent;
    followTool();
}

QStringList LocationSelection::selectedLocations() const {
    QStringList ids;
    for (const auto& id : m_selected) {
        ids.push_back(NativeText::toQString(id));
    }
    return ids;
}

bool LocationSelection::allSelected() const {
    const auto selectable = selectableIDs();
    return !selectable.empty() && m_selected == selectable;
}

bool LocationSelection::planEmpty() const {
    return plan().isEmpty();
}

QString LocationSelection::selectionText() const {
    return QString::number(m_selected.size()) + " selected · " +
           ViewStyle::sizeText(totalOf(plan())) + " to review";
}

QVariantList LocationSelection::sections() const {
    QVariantList sections;
    const StorageTool* shown = tool();
    if (!shown) {
        return sections;
    }
    for (const auto group : StorageGuidanceGroup::allCases) {
        std::int64_t bytes = 0;
        bool found = false;
        for (const auto& finding : shown->findings) {
            if (StorageTool::isVisible(finding) &&
                StorageGuidance::forCategory(finding.location.category).group == group) {
                bytes += finding.allocatedBytes;
                found = true;
            }
        }
        if (found) {
            sections.push_back(
                QVariantMap{{"group", QString::fromUtf8(StorageGuidanceGroup::rawValue(group))},
                            {"title", QString::fromUtf8(StorageGuidanceGroup::title(group))},
                            {"sizeText", ViewStyle::sizeText(bytes)}});
        }
    }
    return sections;
}

void LocationSelection::setSelected(const QString& id, bool selected) {
    const std::string bytes = NativeText::fromQString(id);
    const bool changed = selected
                             ? selectableIDs().contains(bytes) && m_selected.insert(bytes).second
                             : m_selected.erase(bytes) > 0;
    if (changed) {
        emit selectionChanged();
    }
}

void LocationSelection::setAllSelected(bool selected) {
    m_selected = selected ? selectableIDs() : std::set<std::string>{};
    emit selectionChanged();
}

void LocationSelection::setExpanded(const QString& id, bool expanded) {
    if (expanded && m_expanded != id && isVisibleFinding(id)) {
        m_expanded = id;
        emit expandedChanged();
    } else if (!expanded && m_expanded == id && !id.isEmpty()) {
        m_expanded.clear();
        emit expandedChanged();
    }
}

const StorageTool* LocationSelection::tool() const {
    return m_store ? m_store->toolOwnedBy(NativeText::fromQString(m_owner)) : nullptr;
}

std::set<std::string> LocationSelection::selectableIDs() const {
    std::set<std::string> ids;
    if (const StorageTool* shown = tool()) {
        for (const auto& finding : shown->findings) {
            if (StorageTool::isVisible(finding) &&
                StorageRemovalPlan::canSelect(finding, m_includeRecent)) {
                ids.insert(finding.id());
            }
        }
    }
    return ids;
}

bool LocationSelection::isVisibleFinding(const QString& id) const {
    const StorageTool* shown = tool();
    const std::string bytes = NativeText::fromQString(id);
    return shown && std::ranges::any_of(shown->findings, [&](const StorageFinding& finding) {
               return StorageTool::isVisible(finding) && finding.id() == bytes;
           });
}

StorageRemovalPlan LocationSelection::plan() const {
    const StorageTool* shown = tool();
    return shown ? StorageRemovalPlan::make(*shown, m_selected, m_includeRecent)
                 : StorageRemovalPlan{};
}

// Keeps only what the tool's findings still allow, then tells the views.
void LocationSelection::followTool() {
    const auto selectable = selectableIDs();
    std::erase_if(m_selected, [&](const std::string& id) { return !selectable.contains(id); });
    if (!m_expanded.isEmpty() && !isVisibleFinding(m_expanded)) {
        m_expanded.clear();
        emit expandedChanged();
    }
    emit toolChanged();
    emit selectionChanged();
}

}  // namespace tallowmere
