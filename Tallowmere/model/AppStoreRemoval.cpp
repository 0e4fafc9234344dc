// The store's removal workflow: preparing a review, carrying it out, and undoing the last
// removal to the Trash.
#include "AppStore.h"
#include "NativeText.h"
#include "catalog/LocationDiscovery.h"
#include "persistence/StorageScanCache.h"
#include "platform/ProcessEnvironment.h"
#include "platform/UserFolders.h"
#include "removal/FileCleanup.h"
#include "removal/RemovalMessages.h"
#include "removal/RemovalScope.h"
#include "removal/StorageRemovalPlan.h"

namespace tallowmere {

namespace {

QString textOf(const std::optional<std::string>& message) {
    return message ? QString::fromStdString(*message) : QString();
}

StorageRemovalMethod coreMethod(AppStore::RemovalMethod method) {
    return method == AppStore::RemovalMethod::Trash ? StorageRemovalMethod::trash
                                                    : StorageRemovalMethod::permanent;
}

// A reviewed removal, on its own thread: it may remove only what the owner's locations, as a
// scan would measure them now, allow.
StorageCleanupResult removeInBackground(const LocationRemovalReview& review,
                                        StorageRemovalMethod method,
                                        const std::vector<std::string>& tracked) {
    try {
        const auto home = UserFolders::homeFolder();
        const RemovalScope scope(review.owner, home,
                                 AIStorageScanner::measuredLocations(
                                     home, processEnvironment(), nativeStorageLayout(), tracked));
        return removeReviewed(review, method, scope);
    } catch (const std::exception& failure) {
        return {0, {}, {std::string("Nothing was removed: ") + failure.what()}};
    }
}

}  // namespace

void AppStore::reviewLocations(const QStringList& ids, const QString& owner, bool includeRecent) {
    if (!m_hasFreshScan || m_aiScanning || m_cleaning || m_restoring || m_preparingLocations ||
        m_review) {
        return;
    }
    const StorageTool* tool = toolOwnedBy(NativeText::fromQString(owner));
    if (!tool) {
        return;
    }
    std::set<std::string> selected;
    for (const auto& id : ids) {
        selected.insert(NativeText::fromQString(id));
    }
    const auto plan = StorageRemovalPlan::make(*tool, selected, includeRecent);
    if (plan.isEmpty()) {
        return;
    }
    auto affected = affectedToolsOf(m_tools, tool->owner, plan.folders);
    setFlag(m_preparingLocations, true, &AppStore::preparingLocationsChanged);
    using Prepared = std::optional<LocationRemovalReview>;
    m_tasks.start<Prepared>(
        [tools = std::vector<StorageTool>{*tool}, selected, includeRecent](std::stop_token stop) {
            ScanOptions options;
            options.stopToken = stop;
            return LocationRemovalReview::prepare(tools, tools.front().owner, selected,
                                                  includeRecent, options);
        },
        [this, affected = std::move(affected)](Outcome<Prepared> outcome) mutable {
            finishPreparing(std::move(outcome), std::move(affected));
        });
}

void AppStore::finishPreparing(Outcome<std::optional<LocationRemovalReview>>&& outcome,
                               std::vector<std::string> affectedTools) {
    if (outcome.value && *outcome.value) {
        auto review = std::move(**outcome.value);
        review.affectedTools = std::move(affectedTools);
        setReview(std::move(review));
    } else if (outcome.error) {
        try {
            std::rethrow_exception(outcome.error);
        } catch (const ScanCancelled&) {
            // Only the store's end stops a preparation.
        } catch (const std::exception& failure) {
            setError(QString::fromStdString(RemovalMessages::preparationFailed(failure.what())));
        }
    }
    setFlag(m_preparingLocations, false, &AppStore::preparingLocationsChanged);
}

void AppStore::removeReviewedLocations(RemovalMethod method) {
    if (!m_review || m_cleaning) {
        return;
    }
    setFlag(m_cleaning, true, &AppStore::cleaningChanged);
    StorageScanCache::forget();
    // No stop token: once begun, a removal runs to its end, even when the application quits.
    m_tasks.start<StorageCleanupResult>(
        [review = *m_review, method = coreMethod(method), tracked = m_settings.customPaths](
            std::stop_token) { return removeInBackground(review, method, tracked); },
        [this, method = coreMethod(method)](Outcome<StorageCleanupResult> outcome) {
            finishRemoval(method, outcome.value
                                      ? std::move(*outcome.value)
                                      : StorageCleanupResult{0, {}, {"Nothing was removed."}});
        });
}

void AppStore::finishRemoval(StorageRemovalMethod method, StorageCleanupResult&& result) {
    setFlag(m_cleaning, false, &AppStore::cleaningChanged);
    setReview(std::nullopt);
    if (result.moved >= 1) {
        setUndoItems(method == StorageRemovalMethod::trash ? std::move(result.items)
                                                           : std::vector<TrashedStorageFile>{});
    }
    setNotice(textOf(RemovalMessages::removalNotice(result, method)));
    if (const auto error = RemovalMessages::removalError(result, method)) {
        setError(QString::fromStdString(*error));
    }
    scanAI();
}

void AppStore::undoCleanup() {
    if (m_cleaning || m_restoring || m_undoItems.empty() || m_review || m_preparingLocations) {
        return;
    }
    stopAIScan();
    setFlag(m_restoring, true, &AppStore::restoringChanged);
    StorageScanCache::forget();
    m_tasks.start<StorageRestoreResult>(
        [items = m_undoItems](std::stop_token) { return AIStorageCleanup::restore(items); },
        [this, items = m_undoItems](Outcome<StorageRestoreResult> outcome) {
            finishUndo(outcome.value ? std::move(*outcome.value)
                                     : StorageRestoreResult{0, items, {"Nothing was restored."}});
        });
}

void AppStore::finishUndo(StorageRestoreResult&& result) {
    setFlag(m_restoring, false, &AppStore::restoringChanged);
    setUndoItems(std::move(result.remaining));
    setNotice(textOf(RemovalMessages::restoreNotice(result)));
    if (const auto error = RemovalMessages::restoreError(result)) {
        setError(QString::fromStdString(*error));
    }
    scanAI();
}

}  // namespace tallowmere
