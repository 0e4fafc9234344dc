#pragma once

#include <QQuickImageProvider>

namespace tallowmere {

// The application's line icons, for Image items: "image://icon/NAME/COLOR" is the icon NAME
// (a file in the icons resource) painted in COLOR ("rrggbb" or "aarrggbb"), drawn at the size
// the item asks for. Drawing into an image once, rather than as shapes on a multisampled layer,
// keeps each icon a plain texture the scene graph batches with the others.
class IconImageProvider : public QQuickImageProvider {
public:
    IconImageProvider();

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

}  // namespace tallowmere
