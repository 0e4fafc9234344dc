#pragma once

#include <QColor>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>
#include <filesystem>

namespace tallowmere {

// Declared opaque: moc would read its enumerator `linux` as the macro of that name.
enum class StorageLayout;

// The texts and colours every view shares that need the core or the system: sizes, short
// paths, times, tool colours and badges, and the words that differ between macOS and Linux.
// Stateless apart from the home folder and layout it was made with.
class ViewStyle : public QObject {
    Q_OBJECT
    // "your Mac" or "this computer".
    Q_PROPERTY(QString computer READ computer CONSTANT)
    // "Finder" or "the file manager", after "in" or "Show … in".
    Q_PROPERTY(QString fileViewer READ fileViewer CONSTANT)
    // The note under "Move to Trash" in the removal method picker.
    Q_PROPERTY(QString trashNote READ trashNote CONSTANT)
    // Every owner the catalog recognises, in the catalog's order.
    Q_PROPERTY(QStringList supportedOwners READ supportedOwners CONSTANT)

public:
    ViewStyle(std::filesystem::path home, StorageLayout layout, QObject* parent = nullptr);

    QString computer() const;
    QString fileViewer() const;
    QString trashNote() const;
    QStringList supportedOwners() const;

    // `bytes` as every view shows a size: "0 KB" for 0, else decimal units ("1.5 GB").
    Q_INVOKABLE static QString sizeText(qint64 bytes);
    // The number of sizeText ("1.5"), for the overview's large total.
    Q_INVOKABLE static QString sizeNumber(qint64 bytes);
    // The unit of sizeText ("GB").
    Q_INVOKABLE static QString sizeUnit(qint64 bytes);
    // `path` with the home folder written "~" when the path lies strictly inside it.
    Q_INVOKABLE QString shortPath(const QString& path) const { return shortPath(path, m_home); }
    static QString shortPath(const QString& path, const QString& home);
    // The time of `moment` in the system locale's short format, without the date.
    Q_INVOKABLE static QString shortTime(const QDateTime& moment);
    // The graph colour of the tool owned by `owner`, the same in every scan.
    Q_INVOKABLE static QColor toolColor(const QString& owner);
    // The letters on the badge of a catalog tool; empty for any other owner, which shows the
    // fallback symbol.
    Q_INVOKABLE static QString badgeText(const QString& owner);

private:
    QString m_home;
    StorageLayout m_layout;
};

}  // namespace tallowmere
