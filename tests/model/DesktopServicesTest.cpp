#include <QDBusMessage>
#include <QDBusVariant>
#include <QDesktopServices>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include "DesktopServices.h"
#include "NativeText.h"
#include "PrivateBus.h"

using tallowmere::DesktopServices;
using tallowmere::NativeText::toQString;
using tallowmere::testing::PrivateBus;

namespace {

// A file manager on the private bus that notes what it was asked to show.
class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;

public slots:
    Q_SCRIPTABLE void ShowItems(const QStringList& uris, const QString&) { shown += uris; }
};

// The settings portal, answering as older portals do: the value in two variants.
class FakeSettingsPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    bool animations = false;

public slots:
    Q_SCRIPTABLE QDBusVariant Read(const QString&, const QString&) {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(animations)));
    }
};

// Where the desktop was asked to open a folder instead.
class OpenedUrls : public QObject {
    Q_OBJECT

public:
    QList<QUrl> opened;

public slots:
    void open(const QUrl& url) { opened += url; }
};

}  // namespace

class DesktopServicesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (m_bus.address().isEmpty()) {
            QSKIP("dbus-daemon is not available");
        }
        QDesktopServices::setUrlHandler("file", &m_opened, "open");
    }

    void cleanup() {
        m_opened.opened.clear();
        for (const char* name : {"app", "file manager", "portal"}) {
            QDBusConnection::disconnectFromBus(name);
        }
    }

    void revealSelectsTheItemInTheRunningFileManager() {
        FakeFileManager fileManager;
        auto side = m_bus.connect("file manager");
        QVERIFY(side.registerObject("/org/freedesktop/FileManager1", &fileManager,
                                    QDBusConnection::ExportScriptableSlots));
        QVERIFY(side.registerService("org.freedesktop.FileManager1"));

        DesktopServices desktop(m_bus.connect("app"));
        // Any bytes a name may hold reach the file manager as the same bytes.
        desktop.reveal(toQString("/tmp/dir #1/a b%?\xff.txt"));
        QTRY_COMPARE(fileManager.shown, QStringList{"file:///tmp/dir%20%231/a%20b%25%3F%FF.txt"});
        QTest::qWait(50);
        QVERIFY(m_opened.opened.isEmpty());
    }

    void revealOpensTheFolderWhenNoFileManagerAnswers() {
        DesktopServices desktop(m_bus.connect("app"));
        desktop.reveal(toQString("/tmp/dir #1\xff/a b.txt"));
        QTRY_COMPARE(m_opened.opened.size(), 1);
        QCOMPARE(m_opened.opened[0].toString(QUrl::FullyEncoded), "file:///tmp/dir%20%231%FF");
    }

    void reduceMotionFollowsThePortal() {
        FakeSettingsPortal portal;
        auto side = m_bus.connect("portal");
        QVERIFY(side.registerObject("/org/freedesktop/portal/desktop", &portal,
                                    QDBusConnection::ExportScriptableSlots));
        QVERIFY(side.registerService("org.freedesktop.portal.Desktop"));

        DesktopServices desktop(m_bus.connect("app"));
        QTRY_VERIFY(desktop.reduceMotion());

        QSignalSpy changed(&desktop, &DesktopServices::reduceMotionChanged);
        auto signal = QDBusMessage::createSignal(
            "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "SettingChanged");
        signal << QString("org.gnome.desktop.interface") << QString("enable-animations")
               << QVariant::fromValue(QDBusVariant(true));
        QVERIFY(side.send(signal));
        QTRY_COMPARE(changed.count(), 1);
        QVERIFY(!desktop.reduceMotion());
    }

    void withoutAPortalAnimationsStayOn() {
        DesktopServices desktop(m_bus.connect("app"));
        QTest::qWait(100);
        QVERIFY(!desktop.reduceMotion());
    }

private:
    PrivateBus m_bus;
    OpenedUrls m_opened;
};

QTEST_MAIN(DesktopServicesTest)
#include "DesktopServicesTest.moc"
