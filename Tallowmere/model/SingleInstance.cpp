#include "SingleInstance.h"

#include <QDBusMessage>
#include <QWindow>

namespace tallowmere {

namespace {

// Long enough for a busy first instance to answer, short enough that a hung one does not keep
// the person waiting for a window.
constexpr int answerTimeoutMs = 5000;

}  // namespace

SingleInstance::SingleInstance(QDBusConnection bus, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)) {}

bool SingleInstance::claim() {
    if (!m_bus.isConnected() || takeName()) {
        return true;
    }
    if (askOwnerToComeForward()) {
        return false;
    }
    // The owner did not answer, perhaps because it has just quit: take the name if it is free
    // now, and run in any case rather than leave the person without a window.
    takeName();
    return true;
}

bool SingleInstance::takeName() {
    // The object first, so that a launch that finds the name can reach it at once.
    if (!m_bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots)) {
        return false;
    }
    if (m_bus.registerService(serviceName)) {
        return true;
    }
    m_bus.unregisterObject(objectPath);
    return false;
}

bool SingleInstance::askOwnerToComeForward() {
    auto call = QDBusMessage::createMethodCall(serviceName, objectPath,
                                               "org.freedesktop.Application", "Activate");
    call << QVariantMap{};
    // Events keep flowing while it waits, so an owner in this same process can answer too.
    const QDBusMessage reply = m_bus.call(call, QDBus::BlockWithGui, answerTimeoutMs);
    return reply.type() == QDBusMessage::ReplyMessage;
}

void SingleInstance::Activate(const QVariantMap&) {
    emit activated();
}

void SingleInstance::bringForward(QWindow& window) {
    if (window.windowStates() & Qt::WindowMinimized) {
        window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    }
    window.show();
    window.raise();
    window.requestActivate();
}

}  // namespace tallowmere
