#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include "IconImageProvider.h"

using tallowmere::IconImageProvider;

namespace {

// The icon names the views ask for, read from their sources.
QStringList iconNamesInViews() {
    const QDir views(QStringLiteral(TALLOWMERE_VIEWS_FOLDER));
    static const QRegularExpression named(
        QStringLiteral(R"re((?<![.\w])(?:iconName|name):\s*"([a-z][a-z0-9.]*)")re"));
    QStringList names;
    for (const QString& file : views.entryList({QStringLiteral("*.qml")})) {
        QFile source(views.filePath(file));
        if (!source.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QString text = QString::fromUtf8(source.readAll());
        for (const auto& match : named.globalMatch(text)) {
            names.append(match.captured(1));
        }
    }
    names.removeDuplicates();
    return names;
}

}  // namespace

class IconImageProviderTest : public QObject {
    Q_OBJECT

private slots:
    void everyIconTheViewsNameIsDrawn() {
        const QStringList names = iconNamesInViews();
        QVERIFY(names.size() >= 10);
        IconImageProvider provider;
        for (const QString& name : names) {
            QSize size;
            const QImage image = provider.requestImage(name + "/1d1d1f", &size, {16, 16});
            QVERIFY2(!image.isNull(), qPrintable(name));
            QCOMPARE(size, QSize(16, 16));
        }
    }

    void drawsInTheColourAndSizeAskedFor() {
        IconImageProvider provider;
        QSize size;
        const QImage image = provider.requestImage("folder/80ff0000", &size, {40, 30});
        QCOMPARE(image.size(), QSize(40, 30));
        QCOMPARE(size, QSize(40, 30));
        int maxAlpha = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                maxAlpha = std::max(maxAlpha, pixel.alpha());
                if (pixel.alpha() > 8) {
                    QCOMPARE(pixel.red(), 255);
                    QCOMPARE(pixel.green(), 0);
                }
            }
        }
        QVERIFY(maxAlpha >= 0x78 && maxAlpha <= 0x88);

        // Without a size asked for, the icon's own grid.
        QCOMPARE(provider.requestImage("folder/000000", &size, {}).size(), QSize(24, 24));
    }

    void unknownNamesAndBrokenColoursGiveNothing() {
        IconImageProvider provider;
        QSize size;
        for (const char* id : {"no.such.icon/000000", "folder/notacolour", "folder", "/000000",
                               "../artwork/AppIcon-64.png/000000", ""}) {
            QVERIFY2(provider.requestImage(id, &size, {16, 16}).isNull(), id);
        }
    }
};

QTEST_GUILESS_MAIN(IconImageProviderTest)
#include "IconImageProviderTest.moc"
