// SPDX-License-Identifier: MIT
#include "records/access.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

// The program stallo-device from outside: command line, console, signals, files.
class DeviceProgramTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void refusesWhatItCannotUse_data();
    void refusesWhatItCannotUse();
    void tellsAPortThatIsTaken();
    void givesHelp();
    void saysWhenItIsReady();
    void answersEveryCommand_data();
    void answersEveryCommand();
    void pushesAndCounts();
    void failsAsTold();
    void closesAndOpensPorts();
    void showsTheListInForce();
    void keepsRunningWithoutInput();
    void endsWithInputWhenTold();
    void endsCleanlyOnSignals_data();
    void endsCleanlyOnSignals();
    void writesInACodePage();
    void writesWhatItSentAndDid();
    void servesAFolder();

private:
    void start(const QStringList &arguments = QStringList());
    QByteArray command(const QByteArray &line);
    QByteArray readLine();
    QByteArray fetch(const QByteArray &path, int bytes) const;

    std::unique_ptr<QProcess> program_;
    QString address_;
    quint16 onLinePort_ = 0;
    quint16 filePort_ = 0;
};

namespace
{

constexpr int patience = 10000;

QString programPath()
{
    return QStringLiteral(STALLO_DEVICE);
}

} // namespace

void DeviceProgramTest::init()
{
    program_ = std::make_unique<QProcess>();
}

void DeviceProgramTest::cleanup()
{
    if (program_->state() != QProcess::NotRunning) {
        program_->kill();
        program_->waitForFinished(patience);
    }
    program_.reset();
}

QByteArray DeviceProgramTest::readLine()
{
    while (!program_->canReadLine() && program_->waitForReadyRead(patience)) {
    }
    return program_->readLine().trimmed();
}

void DeviceProgramTest::start(const QStringList &arguments)
{
    program_->start(programPath(), QStringList{QStringLiteral("--online-port"), QStringLiteral("0"),
                                               QStringLiteral("--file-port"), QStringLiteral("0")} +
                                       arguments);
    const QList<QByteArray> ready = readLine().split(' ');
    QCOMPARE(ready.size(), 4);
    QCOMPARE(ready.first(), QByteArray("ready"));
    address_ = QString::fromLatin1(ready.at(1));
    onLinePort_ = ready.at(2).toUShort();
    filePort_ = ready.at(3).toUShort();
    QVERIFY(onLinePort_ != 0 && filePort_ != 0);
}

QByteArray DeviceProgramTest::command(const QByteArray &line)
{
    program_->write(line + '\n');
    return readLine();
}

QByteArray DeviceProgramTest::fetch(const QByteArray &path, int bytes) const
{
    RawClient client(address_, filePort_);
    client.send("GET_IMMEDIATE_FILE:" + path + "\r\n");
    client.read(bytes, patience);
    return client.received();
}

void DeviceProgramTest::refusesWhatItCannotUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("named");
    const auto row = [](const char *arguments, const char *named) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(QLatin1Char('|'))
                                 << QString::fromLatin1(named);
    };
    row("--explode", "explode");
    row("something", "something");
    row("--online-port|70000", "70000");
    row("--online-port|-1", "-1");
    row("--file-port|web", "web");
    row("--file-port", "file-port");
    row("--address|nowhere", "nowhere");
    row("--address|192.0.2.1", "192.0.2.1");
    row("--rate|fast", "fast");
    row("--rate|-1", "-1");
    row("--rate|nan", "nan");
    row("--count|1.5", "1.5");
    row("--burst|-3", "-3");
    row("--unreadable|1.5", "1.5");
    row("--unreadable|0.6|--unknown|0.6", "more than 1");
    row("--manual|0.6|--card|0.6", "more than 1");
    row("--archive|-1", "-1");
    row("--residents|1001", "1001");
    row("--seed|-1", "-1");
    row("--late-ms|soon", "soon");
    row("--code-page|CP9999", "CP9999");
    row("--code-page|UTF-16", "UTF-16");
    row("--root|/no/such/folder", "/no/such/folder");
    row("--journal|/no/such/folder/journal", "/no/such/folder/journal");
    row("--sent|/no/such/folder/sent", "/no/such/folder/sent");
    row("--fault|explode", "explode");
    row("--exit-with-stdin=yes", "exit-with-stdin");
}

void DeviceProgramTest::refusesWhatItCannotUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, named);
    if (arguments.size() < 4 && !arguments.first().contains(QLatin1String("port"))) {
        arguments += {QStringLiteral("--online-port"), QStringLiteral("0"),
                      QStringLiteral("--file-port"), QStringLiteral("0")};
    }
    program_->start(programPath(), arguments);
    QVERIFY(program_->waitForFinished(patience));
    QCOMPARE(program_->exitStatus(), QProcess::NormalExit);
    QVERIFY(program_->exitCode() != 0);
    QVERIFY(arguments.first() != QLatin1String("--code-page") || program_->exitCode() == 2);
    const QString error = QString::fromLocal8Bit(program_->readAllStandardError());
    QVERIFY2(error.startsWith(QLatin1String("stallo-device: ")), qPrintable(error));
    QVERIFY2(error.contains(named), qPrintable(error));
    QVERIFY(program_->readAllStandardOutput().isEmpty());
}

void DeviceProgramTest::tellsAPortThatIsTaken()
{
    start();
    QProcess second;
    second.start(programPath(), {QStringLiteral("--online-port"), QString::number(onLinePort_),
                                 QStringLiteral("--file-port"), QStringLiteral("0")});
    QVERIFY(second.waitForFinished(patience));
    QVERIFY(second.exitCode() != 0);
    QVERIFY(second.readAllStandardError().contains(QByteArray::number(onLinePort_)));
}

void DeviceProgramTest::givesHelp()
{
    program_->start(programPath(), {QStringLiteral("--help")});
    QVERIFY(program_->waitForFinished(patience));
    QCOMPARE(program_->exitCode(), 0);
    const QByteArray help = program_->readAllStandardOutput();
    QVERIFY(help.contains("--late-photos"));
    QVERIFY(help.contains("--code-page"));
    QVERIFY(help.contains("close-after"));
}

void DeviceProgramTest::saysWhenItIsReady()
{
    start({QStringLiteral("--address"), QStringLiteral("127.0.0.2"), QStringLiteral("--id"),
           QStringLiteral("GATE")});
    QCOMPARE(address_, QStringLiteral("127.0.0.2"));
    QCOMPARE(fetch("/etc/streams.ini", 37),
             QByteArray("File size=23\r\n[common]\ndeviceid=GATE\n"));
}

void DeviceProgramTest::answersEveryCommand_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("beginning");
    const auto row = [](const char *line, const char *beginning) {
        QTest::newRow(line) << QByteArray(line) << QByteArray(beginning);
    };
    row("push", "sent 0");
    row("push A123BC77", "sent 0");
    row("burst 5", "sent 0");
    row("burst many", "error");
    row("burst -1", "error");
    row("rate 2", "ok");
    row("rate 2 10", "ok");
    row("rate", "error");
    row("rate fast", "error");
    row("split 191 100", "to 0");
    row("split 192 100", "error");
    row("raw 00ff", "to 0");
    row("awkward", "to 0");
    row("count", "barrier 0 reload 0 keep-alive 0 sent 0 connections 0 unexpected 0");
    row("fault silent on /x times 2", "ok");
    row("fault explode", "error Unknown fault \"explode\"");
    row("faults", "0 in force");
    row("clear", "ok");
    row("drop", "ok");
    row("reset", "ok");
    row("gone 10", "ok");
    row("gone away", "error");
    row("gone-without-a-word on", "ok");
    row("gone-without-a-word off", "ok");
    row("gone-without-a-word", "error Usage");
    row("listen online off", "ok");
    row("listen file on", "ok");
    row("listen somewhere on", "error");
    row("reading off", "ok");
    row("reading", "error");
    row("stored", "40 entries 0000");
    row("active", "40 entries 0000");
    row("put /x /no/such/file", "error /no/such/file");
    row("remove /etc/streams.ini", "ok");
    row("restore /etc/streams.ini", "ok");
    row("late /etc/streams.ini 10", "ok");
    row("requests", "0");
    row("help", "push");
    row("explode", "error Unknown command \"explode\"");
    row("", "");
}

void DeviceProgramTest::answersEveryCommand()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, beginning);
    start();
    const QByteArray answer = command(line);
    QVERIFY2(answer.startsWith(beginning), answer.constData());
    QVERIFY2(beginning.isEmpty() == answer.isEmpty(), answer.constData());
    // One line and no more.
    QCOMPARE(command("requests"), QByteArray("0"));
    QCOMPARE(command("quit"), QByteArray("ok"));
    QVERIFY(program_->waitForFinished(patience));
    QCOMPARE(program_->exitCode(), 0);
}

void DeviceProgramTest::pushesAndCounts()
{
    start({QStringLiteral("--seed"), QStringLiteral("5")});
    RawClient client(address_, onLinePort_);
    client.send("\xFD\xFF\xFFz");
    QTRY_COMPARE(command("count"), QByteArray("barrier 1 reload 0 keep-alive 2 sent 0 connections "
                                              "1 unexpected 1"));
    QCOMPARE(command("push A123BC77"), QByteArray("sent 1"));
    client.read(192, patience);
    QCOMPARE(client.received().mid(8, 10), QByteArray("A123BC77\0\0", 10));
    QCOMPARE(command("burst 10"), QByteArray("sent 10"));
    client.read(11 * 192, patience);
    QCOMPARE(client.count(), qint64(11 * 192));
    QCOMPARE(command("raw 01 02"), QByteArray("to 1 connections"));
    client.read(11 * 192 + 2, patience);
    QVERIFY(client.received().endsWith("\x01\x02"));
    QCOMPARE(command("rate 200 5"), QByteArray("ok"));
    client.read(16 * 192 + 2, patience);
    QCOMPARE(client.count(), qint64(16 * 192 + 2));
    QCOMPARE(command("drop"), QByteArray("ok"));
    client.read(20 * 192, patience);
    QCOMPARE(client.end(), RawClient::End::Closed);
}

void DeviceProgramTest::failsAsTold()
{
    start({QStringLiteral("--fault"), QStringLiteral("answer Error=first times 1"),
           QStringLiteral("--fault"), QStringLiteral("answer \"Error=second fault\" times 1")});
    QCOMPARE(fetch("/etc/streams.ini", 13), QByteArray("Error=first\r\n"));
    QCOMPARE(fetch("/etc/streams.ini", 20), QByteArray("Error=second fault\r\n"));
    QVERIFY(fetch("/etc/streams.ini", 14).startsWith("File size=28\r\n"));
    QCOMPARE(command("fault size -5 on /etc/streams.ini"), QByteArray("ok"));
    QVERIFY(fetch("/etc/streams.ini", 14).startsWith("File size=-5\r\n"));
    QCOMPARE(command("clear"), QByteArray("ok"));
    QVERIFY(fetch("/etc/streams.ini", 14).startsWith("File size=28\r\n"));
    QCOMPARE(command("remove /etc/streams.ini"), QByteArray("ok"));
    QCOMPARE(fetch("/etc/streams.ini", 23), QByteArray("Error=Can't open file\r\n"));
    QCOMPARE(command("requests /etc/streams.ini"), QByteArray("6"));
}

void DeviceProgramTest::closesAndOpensPorts()
{
    start();
    QCOMPARE(command("listen online off"), QByteArray("ok"));
    QCOMPARE(RawClient(address_, onLinePort_).end(), RawClient::End::Refused);
    QVERIFY(RawClient(address_, filePort_).isConnected());
    QCOMPARE(command("listen online on"), QByteArray("ok"));
    QVERIFY(RawClient(address_, onLinePort_).isConnected());
}

void DeviceProgramTest::showsTheListInForce()
{
    start({QStringLiteral("--residents"), QStringLiteral("2")});
    const QByteArray before = command("active");
    QVERIFY(before.startsWith("2 entries "));
    Access entry;
    entry.setId(7);
    entry.setNumber(QStringLiteral("A123BC77"));
    RawClient upload(address_, filePort_);
    upload.send("PUT_IMMEDIATE_FILE:/mnt/usb/accessbase.tpa,116\r\n");
    upload.read(4, patience);
    QCOMPARE(upload.received(), QByteArray("OK\r\n"));
    upload.send(QByteArray(entry.data(), 116));
    const QByteArray expected = "1 entries " + QByteArray(entry.data(), 116).toHex();
    QTRY_COMPARE(command("stored"), expected);
    QCOMPARE(command("active"), before);
    RawClient reload(address_, onLinePort_);
    reload.send("\xEF");
    QTRY_COMPARE(command("active"), expected);
}

void DeviceProgramTest::keepsRunningWithoutInput()
{
    start();
    program_->closeWriteChannel();
    QVERIFY(fetch("/etc/streams.ini", 42).startsWith("File size=28\r\n"));
    QVERIFY(!program_->waitForFinished(200));
    QVERIFY(fetch("/etc/streams.ini", 42).startsWith("File size=28\r\n"));
}

void DeviceProgramTest::endsWithInputWhenTold()
{
    start({QStringLiteral("--exit-with-stdin")});
    program_->closeWriteChannel();
    QVERIFY(program_->waitForFinished(patience));
    QCOMPARE(program_->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program_->exitCode(), 0);
}

void DeviceProgramTest::endsCleanlyOnSignals_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void DeviceProgramTest::endsCleanlyOnSignals()
{
    QFETCH(int, number);
    start({QStringLiteral("--rate"), QStringLiteral("100")});
    RawClient client(address_, onLinePort_);
    client.read(192, patience);
    kill(static_cast<pid_t>(program_->processId()), number);
    QVERIFY(program_->waitForFinished(patience));
    QCOMPARE(program_->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program_->exitCode(), 0);
    client.read(1000000, patience);
    QCOMPARE(client.end(), RawClient::End::Closed);
}

void DeviceProgramTest::writesInACodePage()
{
    start({QStringLiteral("--code-page"), QStringLiteral("KOI8-R"), QStringLiteral("--cyrillic"),
           QStringLiteral("--unknown"), QStringLiteral("0"), QStringLiteral("--burst"),
           QStringLiteral("1")});
    RawClient client(address_, onLinePort_);
    client.read(192, patience);
    // "Ключ ", and behind it a number.
    QCOMPARE(client.received().mid(158, 5), QByteArray("\xEB\xCC\xC0\xDE "));
    QCOMPARE(command(QStringLiteral("push А1").toLocal8Bit()), QByteArray("sent 1"));
    client.read(2 * 192, patience);
    QCOMPARE(client.received().right(192).mid(8, 3), QByteArray("\xE1\x31\0", 3));
}

void DeviceProgramTest::writesWhatItSentAndDid()
{
    const QTemporaryDir folder;
    const QString sent = folder.filePath(QStringLiteral("sent"));
    const QString journal = folder.filePath(QStringLiteral("journal"));
    start({QStringLiteral("--sent"), sent, QStringLiteral("--journal"), journal,
           QStringLiteral("--burst"), QStringLiteral("50"), QStringLiteral("--rate"),
           QStringLiteral("500"), QStringLiteral("--count"), QStringLiteral("50")});
    RawClient client(address_, onLinePort_);
    client.read(100 * 192, patience);
    QCOMPARE(client.count(), qint64(100 * 192));
    QCOMPARE(command("quit"), QByteArray("ok"));
    QVERIFY(program_->waitForFinished(patience));
    QFile sentFile(sent);
    QVERIFY(sentFile.open(QIODevice::ReadOnly));
    QCOMPARE(sentFile.readAll(), client.received());
    QFile journalFile(journal);
    QVERIFY(journalFile.open(QIODevice::ReadOnly));
    QCOMPARE(journalFile.readAll().count(" record-sent "), 100);
}

void DeviceProgramTest::servesAFolder()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("etc")));
    QFile file(folder.filePath(QStringLiteral("etc/streams.ini")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("from a folder");
    file.close();
    start({QStringLiteral("--root"), folder.path()});
    QCOMPARE(fetch("/etc/streams.ini", 27), QByteArray("File size=13\r\nfrom a folder"));
    RawClient upload(address_, filePort_);
    upload.send("PUT_IMMEDIATE_FILE:/new/file,3\r\nabc");
    upload.read(4, patience);
    QFile uploaded(folder.filePath(QStringLiteral("new/file")));
    QTRY_VERIFY(uploaded.exists());
    QVERIFY(uploaded.open(QIODevice::ReadOnly));
    QCOMPARE(uploaded.readAll(), QByteArray("abc"));
}

STALLO_TEST_MAIN(DeviceProgramTest)
#include "tst_deviceprogram.moc"
