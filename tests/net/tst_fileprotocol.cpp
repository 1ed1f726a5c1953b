// SPDX-License-Identifier: MIT
#include "net/fileprotocol.h"

#include "tests/support/testmain.h"

class TestFileProtocol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesRequests()
    {
        QCOMPARE(FileProtocol::getRequest(QStringLiteral("/etc/streams.ini")),
                 QByteArray("GET_IMMEDIATE_FILE:/etc/streams.ini\r\n"));
        QCOMPARE(FileProtocol::getRequest(QStringLiteral("/a%1b,c")),
                 QByteArray("GET_IMMEDIATE_FILE:/a%1b,c\r\n"));
        QCOMPARE(FileProtocol::putRequest(QStringLiteral("/mnt/usb/accessbase.tpa"), 5000000000),
                 QByteArray("PUT_IMMEDIATE_FILE:/mnt/usb/accessbase.tpa,5000000000\r\n"));
    }

    void readsAnswers_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("refusal");
        QTest::addColumn<qint64>("size");
        QTest::newRow("size") << QByteArray("File size=1025\r\n") << false << qint64(1025);
        QTest::newRow("only a line feed") << QByteArray("File size=7\n") << false << qint64(7);
        QTest::newRow("stray returns") << QByteArray("File\r size=\r12\r\n") << false << qint64(12);
        QTest::newRow("beyond 32 bits")
            << QByteArray("File size=99999999999\r\n") << false << qint64(99999999999);
        QTest::newRow("negative") << QByteArray("File size=-5\r\n") << false << qint64(0);
        QTest::newRow("no number") << QByteArray("File size=abc\r\n") << false << qint64(0);
        QTest::newRow("zero") << QByteArray("File size=0\r\n") << false << qint64(0);
        QTest::newRow("empty") << QByteArray("\r\n") << false << qint64(0);
        QTest::newRow("refusal") << QByteArray("Error\r\n") << true << qint64(0);
        QTest::newRow("refusal with text")
            << QByteArray("Error=Can't open file\r\n") << true << qint64(0);
        QTest::newRow("lower case") << QByteArray("error\r\n") << false << qint64(0);
        QTest::newRow("not at the beginning") << QByteArray(" Error\r\n") << false << qint64(0);
        QTest::newRow("bytes") << QByteArray("\x00\xFF\x80\r\n", 5) << false << qint64(0);
    }
    void readsAnswers()
    {
        QFETCH(QByteArray, line);
        const QByteArray answer = FileProtocol::stripped(line);
        QVERIFY(!answer.contains('\r') && !answer.contains('\n'));
        QTEST(FileProtocol::isRefusal(answer), "refusal");
        QTEST(FileProtocol::announcedSize(answer), "size");
    }
};

STALLO_TEST_MAIN(TestFileProtocol)
#include "tst_fileprotocol.moc"
