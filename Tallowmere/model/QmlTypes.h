#pragma once

class QQmlEngine;

namespace tallowmere {

class AppStore;
class DesktopServices;
class ViewStyle;

// Makes `store`, `style` and `desktop` the singletons AppStore, ViewStyle and Desktop of the QML
// module "Tallowmere.Model", beside the types LocationSelection and FindingSectionModel. The
// three objects must outlive every engine that uses them.
void registerQmlTypes(AppStore* store, ViewStyle* style, DesktopServices* desktop);

// Lets `engine` load the application's icons from "image://icon/NAME/COLOR".
void addIconProvider(QQmlEngine& engine);

}  // namespace tallowmere
