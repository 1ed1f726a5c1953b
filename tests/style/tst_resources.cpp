// SPDX-License-Identifier: MIT
#include "resources/resources.h"

#include "tests/support/testmain.h"

#include <QFile>
#include <QIcon>

class TestResources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void iconInManySizes();
};

void TestResources::iconInManySizes()
{
    initStalloResources();
    QVERIFY(QFile::exists(QStringLiteral(":/icon1.ico")));
    const QIcon icon(QStringLiteral(":/icon1.ico"));
    QVERIFY(!icon.isNull());
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        QVERIFY(icon.availableSizes().contains(QSize(size, size)));
        const QImage image = icon.pixmap(size, size).toImage();
        // Something is drawn in it, and its corners are clear.
        QCOMPARE(qAlpha(image.pixel(size / 2, size / 2)), 255);
        QVERIFY(qAlpha(image.pixel(0, 0)) < 128);
    }
}

STALLO_TEST_MAIN(TestResources)
#include "tst_resources.moc"
