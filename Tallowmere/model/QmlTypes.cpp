#include "QmlTypes.h"

#include <QQmlEngine>

#include "AppStore.h"
#include "DesktopServices.h"
#include "FindingSectionModel.h"
#include "IconImageProvider.h"
#include "LocationSelection.h"
#include "ViewStyle.h"

namespace tallowmere {

void registerQmlTypes(AppStore* store, ViewStyle* style, DesktopServices* desktop) {
    constexpr const char* uri = "Tallowmere.Model";
    qmlRegisterSingletonInstance(uri, 1, 0, "AppStore", store);
    qmlRegisterSingletonInstance(uri, 1, 0, "ViewStyle", style);
    qmlRegisterSingletonInstance(uri, 1, 0, "Desktop", desktop);
    qmlRegisterType<LocationSelection>(uri, 1, 0, "LocationSelection");
    qmlRegisterType<FindingSectionModel>(uri, 1, 0, "FindingSectionModel");
}

void addIconProvider(QQmlEngine& engine) {
    // The engine owns its providers.
    engine.addImageProvider(QStringLiteral("icon"), new IconImageProvider);
}

}  // namespace tallowmere
