#include "ViewSession.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QTest>

#include "NativeText.h"
#include "QmlTypes.h"
#include "catalog/StorageLayout.h"

namespace tallowmere::testing {

ViewSession::ViewSession()
    : m_style(m_home.home(), StorageLayout::linux),
      m_store(std::make_unique<AppStore>(
          AppStore::Setup{std::make_unique<ScriptedChooser>(m_script)})) {
    // Every view test starts from a finished scan that found nothing; anything else would make
    // the store's state depend on the machine.
    const bool idle = QTest::qWaitFor(
        [this] {
            return !m_store->aiScanning() && !m_store->preparingLocations() &&
                   !m_store->cleaning() && !m_store->restoring();
        },
        20'000);
    if (!idle || m_store->storage().metaType() != QMetaType::fromType<ScanValue>() ||
        !m_store->toolList().empty() || !m_store->error().isEmpty()) {
        qFatal("The store of the empty test home did not settle on an empty scan (error: %s)",
               qPrintable(m_store->error()));
    }
}

ViewSession::~ViewSession() {
    m_store->stopBackgroundWork();
}

void ViewSession::registerFor(QQmlEngine& engine) {
    engine.addImportPath("qrc:/qt/qml");
    registerQmlTypes(m_store.get(), &m_style, &m_desktop);
    addIconProvider(engine);
    engine.rootContext()->setContextProperty("testHome", home());
}

QString ViewSession::home() const {
    return NativeText::toQString(m_home.home().native());
}

}  // namespace tallowmere::testing
