#include <QApplication>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QWindow>
#include <QtQml/QQmlExtensionPlugin>
#include <stdexcept>

#include "AppStore.h"
#include "DesktopServices.h"
#include "QmlTypes.h"
#include "RendererChoice.h"
#include "SingleInstance.h"
#include "ViewStyle.h"
#include "catalog/StorageLayout.h"
#include "platform/UserFolders.h"

Q_IMPORT_QML_PLUGIN(TallowmerePlugin)

namespace {

std::filesystem::path homeOrNone() {
    try {
        return tallowmere::UserFolders::homeFolder();
    } catch (const std::runtime_error&) {
        return {};
    }
}

}  // namespace

int main(int argc, char* argv[]) {
    // Widgets, for the folder chooser.
    QApplication application(argc, argv);
    QApplication::setApplicationName("Tallowmere");
    QApplication::setDesktopFileName(tallowmere::SingleInstance::serviceName);
    QApplication::setWindowIcon(QIcon(":/artwork/AppIcon-256.png"));
    QQuickStyle::setStyle("Basic");
    tallowmere::RendererChoice::apply();

    tallowmere::SingleInstance instance;
    if (!instance.claim()) {
        return 0;
    }

    tallowmere::AppStore store;
    tallowmere::ViewStyle style(homeOrNone(), tallowmere::nativeStorageLayout());
    tallowmere::DesktopServices desktop;
    tallowmere::registerQmlTypes(&store, &style, &desktop);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &store,
                     &tallowmere::AppStore::stopBackgroundWork);

    QQmlApplicationEngine engine;
    tallowmere::addIconProvider(engine);
    engine.addImportPath("qrc:/qt/qml");
    engine.load(QUrl("qrc:/qt/qml/Tallowmere/TallowmereWindow.qml"));
    auto* window = qobject_cast<QWindow*>(engine.rootObjects().value(0));
    if (!window) {
        return 1;
    }
    QObject::connect(&instance, &tallowmere::SingleInstance::activated, window,
                     [window] { tallowmere::SingleInstance::bringForward(*window); });
    return QApplication::exec();
}
