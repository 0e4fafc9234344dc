#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace tallowmere {

// What the views ask of the desktop: showing an item in the file manager, and whether the
// user has turned animations off.
class DesktopServices : public QObject {
    Q_OBJECT
    // True when the desktop's settings portal says animations are off; false until it answers,
    // and when there is no portal.
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY reduceMotionChanged)

public:
    explicit DesktopServices(QDBusConnection bus = QDBusConnection::sessionBus(),
                             QObject* parent = nullptr);

    bool reduceMotion() const { return m_reduceMotion; }

    // Selects `path` in the running file manager (org.freedesktop.FileManager1), or opens the
    // folder that holds it when no file manager answers.
    Q_INVOKABLE void reveal(const QString& path);

signals:
    void reduceMotionChanged();

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void readAnimationSetting();
    void setAnimationsEnabled(bool enabled);

    QDBusConnection m_bus;
    bool m_reduceMotion = false;
};

}  // namespace tallowmere
