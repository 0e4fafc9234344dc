#include "RendererChoice.h"

#include <QDir>
#include <QFileInfo>
#include <QQuickWindow>

namespace tallowmere::RendererChoice {

namespace {

bool hasOpenableRenderNode(const QString& renderNodeFolder) {
    const QDir folder(renderNodeFolder);
    const QStringList nodes =
        folder.entryList({QStringLiteral("renderD*")}, QDir::Files | QDir::System);
    for (const QString& node : nodes) {
        const QFileInfo info(folder.filePath(node));
        if (info.isReadable() && info.isWritable()) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool prefersSoftware(const QProcessEnvironment& environment, const QString& renderNodeFolder) {
    for (const char* chosen : {"QT_QUICK_BACKEND", "QSG_RHI_BACKEND"}) {
        if (!environment.value(QString::fromLatin1(chosen)).isEmpty()) {
            return false;
        }
    }
    return !hasOpenableRenderNode(renderNodeFolder);
}

void apply() {
    if (prefersSoftware(QProcessEnvironment::systemEnvironment(), QStringLiteral("/dev/dri"))) {
        QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    }
}

}  // namespace tallowmere::RendererChoice
