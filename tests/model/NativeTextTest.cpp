#include <QTest>
#include <string>

#include "NativeText.h"

class NativeTextTest : public QObject {
    Q_OBJECT

private slots:
    void nativeTextCarriesAnyBytes();
};

void NativeTextTest::nativeTextCarriesAnyBytes() {
    using tallowmere::NativeText::fromQString;
    using tallowmere::NativeText::toQString;
    QCOMPARE(toQString("Claude Code"), QString("Claude Code"));
    QCOMPARE(toQString("mod\xc3\xa8les"), QString::fromUtf8("modèles"));
    QCOMPARE(toQString("a\xe8z"), QString("a") + QChar(0xDCE8) + "z");
    for (const std::string& bytes :
         {std::string("mod\xe8les"), std::string("\xff\xfe\x80"), std::string("\xed\xb3\xbf"),
          std::string("\xf0\x90\x82\x80 and \xf0\x9f\x98\x80"), std::string("\xc3"),
          std::string("a\0b", 3)}) {
        QCOMPARE(fromQString(toQString(bytes)), bytes);
    }
    for (int byte = 0; byte < 256; ++byte) {
        const std::string bytes(1, static_cast<char>(byte));
        QCOMPARE(fromQString(toQString(bytes)), bytes);
    }
}

QTEST_GUILESS_MAIN(NativeTextTest)
#include "NativeTextTest.moc"
