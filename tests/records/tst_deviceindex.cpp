// SPDX-License-Identifier: MIT
#include "records/deviceindex.h"

#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>

class TestDeviceIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        name_ = folder_->filePath(QStringLiteral("table.tpp.index"));
    }

    void padsAndCutsEntries_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QString() << QByteArray();
        QTest::newRow("short") << QStringLiteral("gate 1") << QByteArray("gate 1");
        QTest::newRow("31 bytes") << QString(31, QLatin1Char('x')) << QByteArray(31, 'x');
        QTest::newRow("40 bytes") << QString(40, QLatin1Char('x')) << QByteArray(31, 'x');
        QTest::newRow("two-byte letters")
            << QString(20, QChar(0x416)) << QString(15, QChar(0x416)).toUtf8();
    }
    void padsAndCutsEntries()
    {
        QFETCH(QString, id);
        QFETCH(QByteArray, text);
        const QByteArray entry = DeviceIndex::entry(id);
        QCOMPARE(entry.size(), 32);
        QCOMPARE(entry, text + QByteArray(32 - text.size(), '\0'));
    }

    void staysInStep()
    {
        DeviceIndex index;
        QVERIFY(!index.isOpen());
        QVERIFY(index.open(name_, QIODevice::WriteOnly));
        QVERIFY(index.write(0, QStringLiteral("a")));
        QVERIFY(index.write(3, QStringLiteral("d")));
        QCOMPARE(content(), DeviceIndex::entry(QStringLiteral("a")) + QByteArray(64, '\0') +
                                DeviceIndex::entry(QStringLiteral("d")));
        QVERIFY(index.cut(1));
        QVERIFY(index.write(1, QStringLiteral("b")));
        QCOMPARE(content(),
                 DeviceIndex::entry(QStringLiteral("a")) + DeviceIndex::entry(QStringLiteral("b")));
    }

    void emptiesFileWhenOpened()
    {
        DeviceIndex index;
        QVERIFY(index.open(name_, QIODevice::WriteOnly));
        QVERIFY(index.write(0, QStringLiteral("a")));
        QVERIFY(index.open(name_, QIODevice::WriteOnly));
        QCOMPARE(content(), QByteArray());
    }

    void leavesNoPartialEntryOnFullDisk()
    {
        DeviceIndex index;
        QVERIFY(index.open(name_, QIODevice::WriteOnly));
        QVERIFY(index.write(0, QStringLiteral("a")));
        {
            const FileLimit fullDisk(40);
            QVERIFY(!index.write(1, QStringLiteral("b")));
        }
        QCOMPARE(content(), DeviceIndex::entry(QStringLiteral("a")));
    }

private:
    QByteArray content() const
    {
        QFile file(name_);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> folder_;
    QString name_;
};

STALLO_TEST_MAIN(TestDeviceIndex)
#include "tst_deviceindex.moc"
