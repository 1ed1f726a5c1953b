// SPDX-License-Identifier: MIT
#include "tests/netsetup/networkdialogcase.h"

#include <QElapsedTimer>
#include <QProcess>

#include <csignal>

namespace
{

constexpr int patience = 30000;

// What the X tool says; empty when it fails.
QByteArray ask(const QStringList &arguments)
{
    QProcess tool;
    tool.start(QStringLiteral("xdotool"), arguments);
    return tool.waitForFinished() && tool.exitCode() == 0 ? tool.readAllStandardOutput().trimmed()
                                                          : QByteArray();
}

} // namespace

// The program stallo-netsetup on a bare X server of the smallest size, handled as from outside: by
// its current directory, its mouse and keys, and signals.
class TestNetsetupProgram : public NetworkDialogCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void typesOnTheKeypadOnly();
    void startsWithoutFiles();
    void cancelWritesNothing();
    void endsCleanly_data();
    void endsCleanly();
    void textsInTheEncodingOfTheLocale();

private:
    // The program's window, and a dialog of our own as its map.
    void start(const QStringList &environment = QStringList());
    QPoint place(const char *name) const;
    // Behind the text of a field.
    QPoint placeInField(const char *name) const;
    // With the mouse, all in one go.
    static void pressAll(const QVector<QPoint> &places);
    // The keys that erase so many characters and type a text, and the field that they are for.
    QVector<QPoint> keysFor(const char *name, int erased, const QString &text) const;
    void expectEnd();

    std::unique_ptr<QProcess> program_;
    QPoint corner_;
};

void TestNetsetupProgram::init()
{
    NetworkDialogCase::init();
    program_ = std::make_unique<QProcess>();
    dialog_ = std::make_unique<DlgSetupNetwork>(nullptr);
    dialog_->setAttribute(Qt::WA_DontShowOnScreen);
    dialog_->show();
}

void TestNetsetupProgram::cleanup()
{
    if (program_->state() != QProcess::NotRunning) {
        program_->kill();
        program_->waitForFinished();
    }
    program_.reset();
    NetworkDialogCase::cleanup();
}

void TestNetsetupProgram::start(const QStringList &environment)
{
    program_->setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    program_->setProcessChannelMode(QProcess::ForwardedChannels);
    program_->setWorkingDirectory(QDir::currentPath());
    program_->start(QStringLiteral("env"),
                    environment + QStringList{QStringLiteral(STALLO_NETSETUP)});
    QVERIFY(program_->waitForStarted());
    const QStringList search{QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                             QStringLiteral("--name"), QStringLiteral("^Network Settings$")};
    QByteArray window;
    QTRY_VERIFY_WITH_TIMEOUT(!(window = ask(search)).isEmpty(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(ask({QStringLiteral("getwindowfocus")}), window, patience);
    const QByteArray geometry = '\n' +
                                ask({QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"),
                                     QString::fromLatin1(window)}) +
                                '\n';
    const auto number = [&geometry](const char *key) {
        const int begin = geometry.indexOf(QByteArray("\n") + key + '=') + 2 + int(qstrlen(key));
        return geometry.mid(begin, geometry.indexOf('\n', begin) - begin).toInt();
    };
    corner_ = QPoint(number("X"), number("Y"));
    const QSize size(number("WIDTH"), number("HEIGHT"));
    // The map is of the same land, and all of it is on the screen.
    QCOMPARE(size, dialog_->size());
    QVERIFY(QRect(0, 0, 1024, 512).contains(QRect(corner_, size)));
}

QPoint TestNetsetupProgram::place(const char *name) const
{
    const auto *widget = part<QWidget>(name);
    return corner_ + widget->mapTo(dialog_.get(), widget->rect().center());
}

QPoint TestNetsetupProgram::placeInField(const char *name) const
{
    const auto *widget = part<QWidget>(name);
    return corner_ + widget->mapTo(dialog_.get(), QPoint(widget->width() - 10, 22));
}

void TestNetsetupProgram::pressAll(const QVector<QPoint> &places)
{
    QStringList arguments;
    for (const QPoint &place : places) {
        arguments << QStringLiteral("mousemove") << QString::number(place.x())
                  << QString::number(place.y()) << QStringLiteral("click") << QStringLiteral("1");
    }
    QCOMPARE(QProcess::execute(QStringLiteral("xdotool"), arguments), 0);
}

QVector<QPoint> TestNetsetupProgram::keysFor(const char *name, int erased,
                                             const QString &text) const
{
    QVector<QPoint> keys{placeInField(name)};
    keys.insert(1, erased, place("pbBackSpace"));
    for (const QChar letter : text) {
        keys.append(place(letter == QLatin1Char('.')
                              ? "pbComma"
                              : (QStringLiteral("pb") + letter).toLatin1().constData()));
    }
    return keys;
}

void TestNetsetupProgram::expectEnd()
{
    QVERIFY(program_->state() == QProcess::NotRunning || program_->waitForFinished(patience));
    QCOMPARE(program_->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program_->exitCode(), 0);
}

void TestNetsetupProgram::typesOnTheKeypadOnly()
{
    NetworkFiles::writeAll();
    start();
    pressAll(keysFor("leIPAddress", 8, QStringLiteral("192.168.10.47")));
    pressAll(keysFor("leNetorkmask", 9, QStringLiteral("255.255.240.0")));
    pressAll(keysFor("leGateway", 8, QStringLiteral("192.168.10.1")));
    pressAll(keysFor("le1DNS", 8, QString()));
    pressAll(keysFor("le2DNS", 8, QStringLiteral("8.65.3.9")));
    pressAll(keysFor("leHostName", 0, QStringLiteral("2")));
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
    pressAll({place("pbApply")});
    expectEnd();
    QCOMPARE(
        NetworkFiles::contents(),
        QList<QByteArray>({"DOMAINNAME=park.lan\nHOSTNAME=gate2\n# panel\n",
                           "DEVICE=eth0\nDHCP=0\nGATEWAY=192.168.10.1\nIPADDR=192.168.10.47\n"
                           "NETMASK=255.255.240.0\n",
                           "search lan\nnameserver \nnameserver 8.65.3.9\nnameserver 10.0.0.7\n"}));
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

void TestNetsetupProgram::startsWithoutFiles()
{
    start();
    pressAll({place("cbUseDHCP"), place("pbApply")});
    expectEnd();
    QCOMPARE(NetworkFiles::contents(),
             QList<QByteArray>({"DOMAINNAME=\nHOSTNAME=\n", "DHCP=1\nGATEWAY=\nIPADDR=\nNETMASK=\n",
                                "nameserver \nnameserver \n"}));
}

void TestNetsetupProgram::cancelWritesNothing()
{
    NetworkFiles::writeAll();
    start();
    pressAll(keysFor("leIPAddress", 1, QStringLiteral("9")));
    pressAll({place("cbUseDHCP"), place("pbCancel")});
    expectEnd();
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

void TestNetsetupProgram::endsCleanly_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("Escape") << 0;
}

// With a field half edited.
void TestNetsetupProgram::endsCleanly()
{
    QFETCH(const int, signal);
    NetworkFiles::writeAll();
    start();
    pressAll(keysFor("leGateway", 1, QString()));
    QElapsedTimer clock;
    clock.start();
    if (signal != 0) {
        ::kill(static_cast<pid_t>(program_->processId()), signal);
    } else {
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"),
                                   {QStringLiteral("key"), QStringLiteral("Escape")}),
                 0);
    }
    expectEnd();
    QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

// Cyrillic letters of one byte, which are no UTF-8.
void TestNetsetupProgram::textsInTheEncodingOfTheLocale()
{
    TextFile::write(NetworkFiles::common(), "# \xCF\xE0\xED\xE5\xEB\xFC\nHOSTNAME=gate\n");
    start({QStringLiteral("LOCPATH=" STALLO_LOCALES), QStringLiteral("LC_ALL=ru_RU.CP1251")});
    pressAll({place("pbApply")});
    expectEnd();
    QCOMPARE(TextFile::content(NetworkFiles::common()),
             QByteArray("DOMAINNAME=\nHOSTNAME=gate\n# \xCF\xE0\xED\xE5\xEB\xFC\n"));
}

STALLO_TEST_MAIN(TestNetsetupProgram)
#include "tst_netsetupprogram.moc"
