#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

class QWindow;

namespace tallowmere {

// One window per session: the first launch owns the application's name on the session bus and
// answers org.freedesktop.Application.Activate; a later launch asks it to come forward instead of
// starting a second store and a second monitoring loop.
class SingleInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    static constexpr const char* serviceName = "org.tallowmere.Tallowmere";
    static constexpr const char* objectPath = "/org/tallowmere/Tallowmere";

    explicit SingleInstance(QDBusConnection bus = QDBusConnection::sessionBus(),
                            QObject* parent = nullptr);

    // True when this process should run: it now owns the name, or there is no session bus, or
    // the owner of the name did not answer. False when the running instance came forward.
    bool claim();

    // Shows `window` in front of the others, restored if it was minimised.
    static void bringForward(QWindow& window);

public slots:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);

signals:
    // A later launch asked this one to come forward.
    void activated();

private:
    bool takeName();
    bool askOwnerToComeForward();

    QDBusConnection m_bus;
};

}  // namespace tallowmere
