#include <QTest>

#include "ViewStyle.h"
// moc would read the layout's enumerator `linux` as the macro of that name.
#ifndef Q_MOC_RUN
#include "catalog/StorageLayout.h"
#endif

using tallowmere::StorageLayout;
using tallowmere::ViewStyle;

class ViewStyleTest : public QObject {
    Q_OBJECT

private slots:
    void shortPathsNameOnlyWhatIsInsideTheHome();
    void sizesSplitIntoNumberAndUnit();
    void badgesAndWordsFollowExactNamesAndTheLayout();
};

void ViewStyleTest::shortPathsNameOnlyWhatIsInsideTheHome() {
    const ViewStyle style("/Users/u", StorageLayout::macos);
    QCOMPARE(style.shortPath("/Users/u/Library/Caches"), "~/Library/Caches");
    QCOMPARE(style.shortPath("/Users/u"), "/Users/u");
    QCOMPARE(style.shortPath("/Users/ubel/x"), "/Users/ubel/x");
    QCOMPARE(style.shortPath("/opt/models"), "/opt/models");
}

void ViewStyleTest::sizesSplitIntoNumberAndUnit() {
    QCOMPARE(ViewStyle::sizeText(0), "0 KB");
    QCOMPARE(ViewStyle::sizeNumber(1'500'000'000), "1.5");
    QCOMPARE(ViewStyle::sizeUnit(1'500'000'000), "GB");
    QCOMPARE(ViewStyle::sizeNumber(0) + " " + ViewStyle::sizeUnit(0), "0 KB");
    QCOMPARE(ViewStyle::sizeUnit(1), "byte");
}

void ViewStyleTest::badgesAndWordsFollowExactNamesAndTheLayout() {
    QCOMPARE(ViewStyle::badgeText("Claude Code"), "CC");
    QCOMPARE(ViewStyle::badgeText("claude code"), QString());
    QCOMPARE(ViewStyle::toolColor("Cursor"), QColor::fromRgbF(0.76f, 0.84f, 0.67f));
    QCOMPARE(ViewStyle::toolColor("IBM Bob"), QColor::fromRgbF(0.87f, 0.83f, 0.79f));
    QCOMPARE(ViewStyle::toolColor("abc"), QColor::fromRgbF(0.79f, 0.84f, 0.87f));

    const ViewStyle mac("/Users/u", StorageLayout::macos);
    const ViewStyle onLinux("/home/u", StorageLayout::linux);
    QCOMPARE(mac.computer() + " " + mac.fileViewer(), "your Mac Finder");
    QCOMPARE(onLinux.computer() + " " + onLinux.fileViewer(), "this computer the file manager");
    QCOMPARE(mac.trashNote(), "Recoverable. Hidden items in Finder: ⌘⇧.");
    QCOMPARE(onLinux.trashNote(), "Recoverable from the Trash.");
    QCOMPARE(onLinux.supportedOwners().size(), 26);
}

QTEST_GUILESS_MAIN(ViewStyleTest)
#include "ViewStyleTest.moc"
