#include <QQmlEngine>
#include <QQuickStyle>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuickTest>
#include <optional>

#include "ViewSession.h"

Q_IMPORT_QML_PLUGIN(TallowmerePlugin)

// Runs the tst_*.qml files against one store: made once the application exists, registered
// with the engine of each file, and gone before the application.
class ViewTestSetup : public QObject {
    Q_OBJECT

public slots:
    void applicationAvailable() {
        QQuickStyle::setStyle("Basic");
        m_session.emplace();
    }
    void qmlEngineAvailable(QQmlEngine* engine) { m_session->registerFor(*engine); }
    void cleanupTestCase() { m_session.reset(); }

private:
    std::optional<tallowmere::testing::ViewSession> m_session;
};

QUICK_TEST_MAIN_WITH_SETUP(view_tests, ViewTestSetup)

#include "ViewTestMain.moc"
