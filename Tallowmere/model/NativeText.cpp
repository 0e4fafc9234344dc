#include "NativeText.h"

#include "text/TextRules.h"

namespace tallowmere::NativeText {

namespace {

constexpr char16_t escapedByteBase = 0xDC00;

}  // namespace

QString toQString(std::string_view bytes) {
    QString text;
    text.reserve(static_cast<qsizetype>(bytes.size()));
    std::size_t at = 0;
    while (at < bytes.size()) {
        std::size_t run = 0;
        while (at + run < bytes.size()) {
            const std::size_t length = TextRules::utf8SequenceLength(bytes, at + run);
            if (length == 0) {
                break;
            }
            run += length;
        }
        text += QString::fromUtf8(bytes.data() + at, static_cast<qsizetype>(run));
        at += run;
        if (at < bytes.size()) {
            text += QChar(
                static_cast<char16_t>(escapedByteBase + static_cast<unsigned char>(bytes[at])));
            ++at;
        }
    }
    return text;
}

std::string fromQString(const QString& text) {
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(text.size()));
    qsizetype runStart = 0;
    const auto flushRun = [&](qsizetype end) {
        bytes += QStringView(text).mid(runStart, end - runStart).toUtf8().toStdString();
    };
    for (qsizetype at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at].unicode();
        const bool escapedByte = unit >= escapedByteBase + 0x80 && unit <= escapedByteBase + 0xFF;
        const bool pairedLow = at > 0 && text[at - 1].isHighSurrogate();
        if (escapedByte && !pairedLow) {
            flushRun(at);
            bytes += static_cast<char>(unit - escapedByteBase);
            runStart = at + 1;
        }
    }
    flushRun(text.size());
    return bytes;
}

}  // namespace tallowmere::NativeText
