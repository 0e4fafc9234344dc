#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>

namespace tallowmere::testing {

// A session bus of the test's own, so that names it takes and services it fakes reach nothing
// else on the machine. `address()` is empty when dbus-daemon could not start.
class PrivateBus {
public:
    PrivateBus() {
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
        if (m_daemon.waitForStarted(5000) && m_daemon.waitForReadyRead(5000)) {
            m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        }
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        m_daemon.kill();
        m_daemon.waitForFinished(5000);
    }

    QString address() const { return m_address; }

    // A new connection to the bus, under the name `name` within this process.
    QDBusConnection connect(const QString& name) const {
        return QDBusConnection::connectToBus(m_address, name);
    }

private:
    QProcess m_daemon;
    QString m_address;
};

}  // namespace tallowmere::testing
