#include "IconImageProvider.h"

#include <QPainter>
#include <QSvgRenderer>

namespace tallowmere {

namespace {

// The icons are drawn on a 24 × 24 grid.
constexpr int gridSize = 24;

}  // namespace

IconImageProvider::IconImageProvider() : QQuickImageProvider(QQmlImageProviderBase::Image) {}

QImage IconImageProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const qsizetype slash = id.lastIndexOf(u'/');
    const QColor color(u'#' + id.mid(slash + 1));
    QSvgRenderer renderer(QStringLiteral(":/icons/%1.svg").arg(id.left(slash)));
    if (slash < 1 || !color.isValid() || !renderer.isValid()) {
        return {};
    }
    const QSize drawn(requestedSize.width() > 0 ? requestedSize.width() : gridSize,
                      requestedSize.height() > 0 ? requestedSize.height() : gridSize);
    QImage image(drawn, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    // The files are drawn in black; keep their coverage and take the colour asked for.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    if (size) {
        *size = drawn;
    }
    return image;
}

}  // namespace tallowmere
