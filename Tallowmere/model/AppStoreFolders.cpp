// The store's tracked folders: adding one through the folder chooser and removing one.
#include <algorithm>

#include "AppStore.h"
#include "NativeText.h"
#include "catalog/LocationDiscovery.h"
#include "platform/PathRules.h"
#include "platform/UserFolders.h"

namespace tallowmere {

namespace {

// True when `folder` is one of the built-in catalog's folders for the layout in use. Folders
// found only by looking around (editor extensions, the XDG variables) do not count.
bool isCatalogFolder(const std::filesystem::path& folder) {
    const auto home = UserFolders::homeFolder();
    const auto catalog = AIStorageScanner::placedCatalog({}, nativeStorageLayout());
    return std::ranges::any_of(
        catalog, [&](const StorageLocation& location) { return location.url(home) == folder; });
}

}  // namespace

void AppStore::chooseAIStorageFolder() {
    if (m_review || m_preparingLocations) {
        return;
    }
    const auto chosen = m_chooser->chooseFolder();
    if (!chosen || chosen->empty()) {
        return;
    }
    const std::string path = PathRules::absoluteStandardized(*chosen).native();
    if (std::ranges::find(m_settings.customPaths, path) != m_settings.customPaths.end()) {
        return;
    }
    try {
        if (isCatalogFolder(path)) {
            return;
        }
    } catch (const std::exception& failure) {
        setError(QString::fromUtf8(failure.what()));
        return;
    }
    m_settings.customPaths.push_back(path);
    trackedFoldersChanged();
}

void AppStore::removeAIStorageFolder(const QString& path) {
    if (m_review || m_preparingLocations) {
        return;
    }
    std::erase(m_settings.customPaths, NativeText::fromQString(path));
    trackedFoldersChanged();
}

void AppStore::trackedFoldersChanged() {
    writeSettings();
    emit customAIPathsChanged();
    stopAIScan();
    scanAI();
}

}  // namespace tallowmere
