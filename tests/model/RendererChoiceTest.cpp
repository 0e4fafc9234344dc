#include <unistd.h>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "RendererChoice.h"

using tallowmere::RendererChoice::prefersSoftware;

class RendererChoiceTest : public QObject {
    Q_OBJECT

private slots:
    void softwareOnlyWithoutAnOpenableRenderNode() {
        QTemporaryDir devices;
        QVERIFY(prefersSoftware({}, devices.filePath("missing")));
        QVERIFY(prefersSoftware({}, devices.path()));

        // A display card without a render node is not enough to draw with.
        touch(devices.filePath("card0"));
        QVERIFY(prefersSoftware({}, devices.path()));

        touch(devices.filePath("renderD128"));
        QVERIFY(!prefersSoftware({}, devices.path()));

        if (::geteuid() != 0) {
            QFile::setPermissions(devices.filePath("renderD128"), QFile::ReadOwner);
            QVERIFY(prefersSoftware({}, devices.path()));
        }
    }

    void aRendererChosenInTheEnvironmentStands() {
        QTemporaryDir devices;
        for (const char* name : {"QT_QUICK_BACKEND", "QSG_RHI_BACKEND"}) {
            QProcessEnvironment environment;
            environment.insert(name, "opengl");
            QVERIFY2(!prefersSoftware(environment, devices.path()), name);
        }
    }

private:
    static void touch(const QString& path) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
};

QTEST_GUILESS_MAIN(RendererChoiceTest)
#include "RendererChoiceTest.moc"
