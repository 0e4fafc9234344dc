#include <QSignalSpy>
#include <QTest>

#include "PrivateBus.h"
#include "SingleInstance.h"

using tallowmere::SingleInstance;
using tallowmere::testing::PrivateBus;

class SingleInstanceTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (m_bus.address().isEmpty()) {
            QSKIP("dbus-daemon is not available");
        }
    }

    // Each launch has its own connection; closing it gives its name back, as quitting does.
    void cleanup() {
        for (const char* name :
             {"first", "second", "third", "quitting", "next", "squatter", "launch"}) {
            QDBusConnection::disconnectFromBus(name);
        }
    }

    void aSecondLaunchBringsTheFirstForwardAndDoesNotRun() {
        SingleInstance first(m_bus.connect("first"));
        QVERIFY(first.claim());
        QSignalSpy activated(&first, &SingleInstance::activated);

        SingleInstance second(m_bus.connect("second"));
        QVERIFY(!second.claim());
        QCOMPARE(activated.count(), 1);

        SingleInstance third(m_bus.connect("third"));
        QVERIFY(!third.claim());
        QCOMPARE(activated.count(), 2);
    }

    void theNameIsFreeAgainOnceTheFirstHasQuit() {
        {
            SingleInstance first(m_bus.connect("quitting"));
            QVERIFY(first.claim());
        }
        QDBusConnection::disconnectFromBus("quitting");
        SingleInstance next(m_bus.connect("next"));
        QVERIFY(next.claim());
    }

    void anOwnerThatDoesNotAnswerDoesNotKeepTheWindowAway() {
        auto squatter = m_bus.connect("squatter");
        QVERIFY(squatter.registerService(SingleInstance::serviceName));
        SingleInstance launch(m_bus.connect("launch"));
        QVERIFY(launch.claim());
    }

    void withoutASessionBusTheLaunchRuns() {
        SingleInstance launch(QDBusConnection("not connected"));
        QVERIFY(launch.claim());
    }

private:
    PrivateBus m_bus;
};

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
