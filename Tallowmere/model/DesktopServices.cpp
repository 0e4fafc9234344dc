#include "DesktopServices.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDesktopServices>
#include <QUrl>

#include <filesystem>
#include "NativeText.h"

namespace tallowmere {

namespace {

const QString portalService = "org.freedesktop.portal.Desktop";
const QString portalPath = "/org/freedesktop/portal/desktop";
const QString portalSettings = "org.freedesktop.portal.Settings";
const QString interfaceNamespace = "org.gnome.desktop.interface";
const QString animationsKey = "enable-animations";

// A file URI for any byte string: every byte but the unreserved ones and "/" percent-encoded,
// so a name that is not UTF-8 still reaches the file manager as the same bytes.
QString fileUri(const std::string& path) {
    // QByteArray's own encoding: QUrl's takes a QString, which would turn such bytes into U+FFFD.
    return "file://" + QString::fromLatin1(QByteArray::fromStdString(path).toPercentEncoding("/"));
}

// The portal wraps the value in one variant, older portals in two.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

}  // namespace

DesktopServices::DesktopServices(QDBusConnection bus, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)) {
    readAnimationSetting();
}

void DesktopServices::reveal(const QString& path) {
    const std::string bytes = NativeText::fromQString(path);
    const QString folder = fileUri(std::filesystem::path(bytes).parent_path().native());
    auto call = QDBusMessage::createMethodCall("org.freedesktop.FileManager1",
                                               "/org/freedesktop/FileManager1",
                                               "org.freedesktop.FileManager1", "ShowItems");
    call << QStringList{fileUri(bytes)} << QString();
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [folder](auto* finished) {
        finished->deleteLater();
        if (finished->isError()) {
            QDesktopServices::openUrl(QUrl(folder, QUrl::StrictMode));
        }
    });
}

void DesktopServices::readAnimationSetting() {
    if (!m_bus.isConnected()) {
        return;
    }
    m_bus.connect(portalService, portalPath, portalSettings, "SettingChanged", this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    auto read = QDBusMessage::createMethodCall(portalService, portalPath, portalSettings, "Read");
    read << interfaceNamespace << animationsKey;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(read), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](auto* finished) {
        finished->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *finished;
        if (!reply.isError()) {
            setAnimationsEnabled(unwrapped(reply.value().variant()).toBool());
        }
    });
}

void DesktopServices::settingChanged(const QString& group, const QString& key,
                                     const QDBusVariant& value) {
    if (group == interfaceNamespace && key == animationsKey) {
        setAnimationsEnabled(unwrapped(value.variant()).toBool());
    }
}

void DesktopServices::setAnimationsEnabled(bool enabled) {
    if (m_reduceMotion != !enabled) {
        m_reduceMotion = !enabled;
        emit reduceMotionChanged();
    }
}

}  // namespace tallowmere
