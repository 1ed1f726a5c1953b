// SPDX-License-Identifier: MIT
#include "simulator/devicehost.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/testmain.h"

#include <QTcpSocket>

Q_DECLARE_METATYPE(Fault)
Q_DECLARE_METATYPE(RawClient::End)

using End = RawClient::End;

// Every fault of the file service as it is seen on the wire.
class FaultModesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void downloads_data();
    void downloads();
    void happenSoManyTimes();
    void happenToTheirFileOnly();
    void delayTheAnswer();
    void pauseInABlock();
    void trickle();
    void floodFiftyMegabytes();
    void leaveNoListener();

    void uploads_data();
    void uploads();
    void stopReadingAnUpload();

private:
    QByteArray content() const;

    std::unique_ptr<DeviceHost> host_;
};

namespace
{

const QString path = QStringLiteral("/mnt/usb/file");
constexpr int patience = 5000;
// How long the other side must keep still to count as "still there".
constexpr int stillness = 50;

QByteArray get(const QString &file = path)
{
    return "GET_IMMEDIATE_FILE:" + file.toLatin1() + "\r\n";
}

} // namespace

QByteArray FaultModesTest::content() const
{
    QByteArray bytes;
    for (int place = 0; place < 3000; ++place) {
        bytes += static_cast<char>(place % 251);
    }
    return bytes;
}

void FaultModesTest::init()
{
    host_ = std::make_unique<DeviceHost>();
    QString error;
    QVERIFY2(host_->start(&error), qPrintable(error));
    host_->files().set(path, content());
}

void FaultModesTest::cleanup()
{
    host_.reset();
}

void FaultModesTest::downloads_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<RawClient::End>("end");
    const QByteArray all = content();
    const QByteArray answer = "File size=3000\r\n";
    const auto row = [](const char *name, const Fault &fault, const QByteArray &expected, End end) {
        QTest::newRow(name) << fault << expected << end;
    };
    row("closed on accept", Fault::closeOnAccept(), "", End::Closed);
    row("reset on accept", Fault::resetOnAccept(), "", End::Reset);
    row("silent", Fault::silent(), "", End::Open);
    row("closed after the request", Fault::closeAfterRequest(), "", End::Closed);
    row("reset after the request", Fault::resetAfterRequest(), "", End::Reset);
    for (const QByteArray &line : {QByteArray("Error=busy"), QByteArray("Error"),
                                   QByteArray("error"), QByteArray(""), Fault::garbage().text}) {
        row(("answer " + line.left(10).toPercentEncoding()).constData(), Fault::answer(line),
            line + "\r\n", End::Open);
    }
    for (const char *size : {"-5", "0", "abc", "2000000000", "99999999999", ""}) {
        row((QByteArray("size ") + size).constData(), Fault::declaredSize(size),
            QByteArray("File size=") + size + "\r\n" + all, End::Open);
    }
    row("size too small", Fault::sizeOffset(-100), "File size=2900\r\n" + all, End::Open);
    row("size too large", Fault::sizeOffset(100), "File size=3100\r\n" + all, End::Open);
    row("closed before the content", Fault::closeAfter(0), answer, End::Closed);
    row("closed in a block", Fault::closeAfter(1500), answer + all.left(1500), End::Closed);
    row("closed in the remainder", Fault::closeAfter(-1), answer + all.left(2999), End::Closed);
    row("closed at the end", Fault::closeAtEnd(), answer + all, End::Closed);
    row("closed after more than there is", Fault::closeAfter(9999), answer + all, End::Closed);
    row("reset in a block", Fault::resetAfter(1500), answer + all.left(1500), End::Reset);
    row("reset at the end", Fault::resetAfter(3000), answer + all, End::Reset);
    row("paused", Fault::pause(1500, 10), answer + all, End::Open);
    row("trickling", Fault::trickle(16, 0), answer + all, End::Open);
    row("late", Fault::delay(10), answer + all, End::Open);
    row("replaced by a longer file", Fault::replace(1000, QByteArray(5000, 'n')),
        answer + all.left(1000) + QByteArray(2000, 'n'), End::Open);
    row("replaced by a shorter file", Fault::replace(1000, QByteArray(1100, 'n')),
        answer + all.left(1000) + QByteArray(100, 'n') + QByteArray(1900, '\0'), End::Open);
    row("of uploads only", Fault::silent().onlyFor(Fault::Method::Put), answer + all, End::Open);
}

void FaultModesTest::downloads()
{
    QFETCH(Fault, fault);
    QFETCH(QByteArray, expected);
    QFETCH(RawClient::End, end);
    host_->faults().add(fault);
    RawClient client(host_->address(), host_->filePort());
    if (!fault.isOnAccept()) { // a request would cross the close, and be answered by a reset
        client.send(get());
    }
    client.read(expected.size(), patience);
    QCOMPARE(client.received(), expected);
    client.read(expected.size() + 1, end == End::Open ? stillness : patience);
    QCOMPARE(client.received(), expected);
    QCOMPARE(client.end(), end);
}

void FaultModesTest::happenSoManyTimes()
{
    host_->faults().add(Fault::answer("Error=not yet").on(path).times(2));
    for (const char *expected : {"Error=not yet\r\n", "Error=not yet\r\n", "File size=3000\r\n"}) {
        RawClient client(host_->address(), host_->filePort());
        client.send(get());
        client.read(qstrlen(expected), patience);
        QVERIFY(client.received().startsWith(expected));
    }
    QCOMPARE(host_->journal().count(JournalEntry::Kind::FaultUsed), 2);
    QCOMPARE(host_->journal().countRequests(path), 3);
}

void FaultModesTest::happenToTheirFileOnly()
{
    host_->faults().add(Fault::closeAfterRequest().on(DevicePaths::archive()));
    RawClient spared(host_->address(), host_->filePort());
    spared.send(get());
    spared.read(16, patience);
    QVERIFY(spared.received().startsWith("File size=3000\r\n"));
    RawClient hit(host_->address(), host_->filePort());
    hit.send(get(DevicePaths::archive()));
    hit.read(1, patience);
    QCOMPARE(hit.end(), End::Closed);
}

void FaultModesTest::delayTheAnswer()
{
    host_->faults().add(Fault::delay(300));
    RawClient client(host_->address(), host_->filePort());
    client.send(get());
    client.read(3016, patience);
    QCOMPARE(client.count(), qint64(3016));
    QVERIFY2(client.firstByte() >= 295, qPrintable(QString::number(client.firstByte())));
}

void FaultModesTest::pauseInABlock()
{
    host_->faults().add(Fault::pause(1500, 400));
    RawClient client(host_->address(), host_->filePort());
    QElapsedTimer timer;
    timer.start();
    client.send(get());
    client.read(16 + 1500, patience);
    QCOMPARE(client.count(), qint64(16 + 1500));
    client.read(3016, patience);
    QCOMPARE(client.received(), "File size=3000\r\n" + content());
    QVERIFY2(timer.elapsed() >= 395, qPrintable(QString::number(timer.elapsed())));
}

void FaultModesTest::trickle()
{
    host_->faults().add(Fault::trickle(500, 40));
    RawClient client(host_->address(), host_->filePort());
    QElapsedTimer timer;
    timer.start();
    client.send(get());
    client.read(3016, patience);
    QCOMPARE(client.received(), "File size=3000\r\n" + content());
    QVERIFY2(timer.elapsed() >= 5 * 39, qPrintable(QString::number(timer.elapsed())));
}

void FaultModesTest::floodFiftyMegabytes()
{
    host_->faults().add(Fault::flood());
    RawClient client(host_->address(), host_->filePort());
    client.send(get());
    client.read(1000, patience);
    QVERIFY(client.received().count('x') == client.received().size());
    client.keepNothing();
    client.read(50 * 1000 * 1000, patience);
    QCOMPARE(client.count(), qint64(50 * 1000 * 1000));
    QCOMPARE(client.end(), End::Open);
}

void FaultModesTest::leaveNoListener()
{
    const quint16 port = host_->filePort();
    host_->setFileListening(false);
    QCOMPARE(RawClient(host_->address(), port).end(), End::Refused);
    host_->setFileListening(true);
    QCOMPARE(host_->filePort(), port);
    RawClient client(host_->address(), port);
    client.send(get());
    client.read(3016, patience);
    QCOMPARE(client.count(), qint64(3016));
}

void FaultModesTest::uploads_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<RawClient::End>("end");
    QTest::addColumn<bool>("stored");
    QTest::newRow("none") << Fault::silent().onlyFor(Fault::Method::Get) << QByteArray("OK\r\n")
                          << End::Open << true;
    QTest::newRow("refused") << Fault::answer("Error=read only")
                             << QByteArray("Error=read only\r\n") << End::Open << false;
    QTest::newRow("not answered") << Fault::silent() << QByteArray() << End::Open << false;
    QTest::newRow("closed") << Fault::closeAfterRequest() << QByteArray() << End::Closed << false;
    QTest::newRow("reset") << Fault::resetAfterRequest() << QByteArray() << End::Reset << false;
    QTest::newRow("reset half-way")
        << Fault::resetAfter(1500) << QByteArray("OK\r\n") << End::Reset << false;
    QTest::newRow("not read") << Fault::stopReading(100) << QByteArray("OK\r\n") << End::Open
                              << false;
    QTest::newRow("closed at the end")
        << Fault::closeAtEnd() << QByteArray("OK\r\n") << End::Closed << true;
    QTest::newRow("late") << Fault::delay(50) << QByteArray("OK\r\n") << End::Open << true;
}

void FaultModesTest::uploads()
{
    QFETCH(Fault, fault);
    QFETCH(QByteArray, expected);
    QFETCH(RawClient::End, end);
    QFETCH(bool, stored);
    host_->faults().add(fault);
    RawClient client(host_->address(), host_->filePort());
    client.send("PUT_IMMEDIATE_FILE:" + path.toLatin1() + ",5000\r\n");
    client.read(expected.size(), patience);
    QCOMPARE(client.received(), expected);
    if (expected == "OK\r\n") {
        client.send(QByteArray(5000, 'u'));
    }
    if (stored) {
        QTRY_COMPARE(host_->files().get(path), QByteArray(5000, 'u'));
    }
    client.read(expected.size() + 1, end == End::Open ? stillness : patience);
    QCOMPARE(client.received(), expected);
    QCOMPARE(client.end(), end);
    QCOMPARE(host_->files().get(path) == content(), !stored);
}

void FaultModesTest::stopReadingAnUpload()
{
    host_->faults().add(Fault::stopReading());
    constexpr int size = 32 * 1024 * 1024;
    QTcpSocket client;
    client.connectToHost(host_->address(), host_->filePort());
    QVERIFY(client.waitForConnected(patience));
    client.write("PUT_IMMEDIATE_FILE:" + path.toLatin1() + ',' + QByteArray::number(size) + "\r\n");
    QVERIFY(client.waitForReadyRead(patience));
    QCOMPARE(client.readAll(), QByteArray("OK\r\n"));
    client.write(QByteArray(size, 'u'));
    while (client.waitForBytesWritten(500)) {
    }
    QVERIFY(client.bytesToWrite() > 0);
    QCOMPARE(client.state(), QAbstractSocket::ConnectedState);
    QCOMPARE(host_->files().get(path), content());
}

STALLO_TEST_MAIN(FaultModesTest)
#include "tst_faultmodes.moc"
