// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "records/deviceindex.h"
#include "records/scan.h"
#include "records/vasksettings.h"
#include "simulator/livefeed.h"
#include "tests/support/archivedevice.h"
#include "tests/support/archivepage.h"
#include "tests/support/blackhole.h"
#include "tests/support/devices.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <cstdlib>
#include <xcb/xcb.h>

namespace
{

constexpr int patience = 30000;
const QDateTime time0 = QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC);

OnLine record(int n)
{
    OnLine one = SampleRecords::plain(
        QStringLiteral("A%1BC77").arg(n % 1000, 3, 10, QLatin1Char('0')), time0.addSecs(n));
    one.setFileName(DevicePaths::photoFolder() + VaskSettings::picFileName(one));
    return one;
}

} // namespace

// The program itself, as it is installed, in a window on an X server, against a simulated device in
// this process: what it stored is compared with what the device sent. It is handled as from
// outside: by its command line, its mouse and keys (xdotool), the desktop and signals.
class TestWholeProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        home_ = std::make_unique<QTemporaryDir>();
        devices_ = std::make_unique<Devices>();
        panel_ = std::make_unique<QProcess>();
        // The panel reads its ports from its own settings.
        const QString folder = home_->filePath(QStringLiteral(".config/Dorvel Ltd"));
        QVERIFY(QDir().mkpath(folder));
        QFile settings(folder + QStringLiteral("/Stallo.conf"));
        QVERIFY(settings.open(QIODevice::WriteOnly));
        settings.write("[Global]\nVaskParkingPort=" + QByteArray::number(device().onLinePort()) +
                       "\nFileTransferPort=" + QByteArray::number(device().filePort()) +
                       "\nVideoTimeout=200\n[AddressList]\nAddresses=127.0.0.1, 127.0.0.2\n");
    }

    void cleanup()
    {
        if (panel_->state() != QProcess::NotRunning) {
            panel_->kill();
            panel_->waitForFinished();
        }
        panel_.reset();
        devices_.reset();
    }

    void storesWhatTheDeviceSent()
    {
        start({QStringLiteral("--online"), device().address()});
        QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 1, patience);
        QVector<OnLine> sent;
        for (int n = 0; n < 300; ++n) {
            sent.append(record(n));
        }
        device().pushAll(sent.mid(0, 250));
        for (int n = 250; n < 300; ++n) {
            device().push(sent.at(n));
        }
        QTRY_COMPARE_WITH_TIMEOUT(fileSize(QStringLiteral("tmponline.tpp")),
                                  qint64(300 * Scan::size), 60000);
        QByteArray table;
        QByteArray index;
        for (const OnLine &each : qAsConst(sent)) {
            table.append(Scan(each).data(), Scan::size);
            index += DeviceIndex::entry(device().deviceId());
        }
        QCOMPARE(content(QStringLiteral("tmponline.tpp")), table);
        QCOMPARE(content(QStringLiteral("tmponline.tpp.index")), index);
        for (const OnLine &each : qAsConst(sent)) {
            QCOMPARE(content(QStringLiteral("jpegdata/") + VaskSettings::picFileName(each)),
                     device().files().get(each.fileName()));
        }
        QTRY_VERIFY(device().journal().countRequests(DevicePaths::videoFrame()) > 0);
        endBySignal();
        QVERIFY(settingsText().contains("LastWindowsize="));
        QVERIFY(!settingsText().contains("LastWindowSize="));
    }

    void opensBarrierOncePerPress()
    {
        start({QStringLiteral("--online"), device().address()});
        QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 1, patience);
        // Enabled by the report of the connection, which takes a moment to reach the page.
        QTRY_VERIFY_WITH_TIMEOUT((click(barrierButton()), device().barrierCount() > 0), patience);
        const int before = device().barrierCount();
        for (int press = 1; press <= 3; ++press) {
            click(barrierButton());
            QTRY_COMPARE(device().barrierCount(), before + press);
        }
        QCOMPARE(device().unexpectedBytes(), QByteArray());
        endByCloseButton();
    }

    void refusesSecondStart()
    {
        start({QStringLiteral("--online"), device().address()});
        QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 1, patience);
        device().push(record(1));
        QTRY_COMPARE_WITH_TIMEOUT(fileSize(QStringLiteral("tmponline.tpp")), qint64(Scan::size),
                                  patience);
        QProcess second;
        second.setProcessEnvironment(panel_->processEnvironment());
        second.start(program(), {});
        QVERIFY(second.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT((key("Return"), second.state() == QProcess::NotRunning), patience);
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(fileSize(QStringLiteral("tmponline.tpp")), qint64(Scan::size));
        endBySignal();
    }

    void closesInEveryState_data()
    {
        QTest::addColumn<QString>("state");
        for (const char *state : {"idle", "identifier", "black hole", "silent device", "burst",
                                  "loaders", "error dialog", "address dialog"}) {
            QTest::newRow(state) << QString::fromLatin1(state);
        }
    }
    void closesInEveryState()
    {
        QFETCH(QString, state);
        std::unique_ptr<BlackHole> hole;
        if (state == QLatin1String("idle")) {
            start({});
            QTRY_VERIFY_WITH_TIMEOUT(QDir(home_->filePath(QStringLiteral("Stallo"))).exists(),
                                     patience);
        } else if (state == QLatin1String("identifier")) {
            device().files().remove(DevicePaths::streams());
            start({device().address()});
            QTRY_VERIFY_WITH_TIMEOUT(device().journal().countRequests(DevicePaths::streams()) > 0,
                                     patience);
        } else if (state == QLatin1String("black hole")) {
            hole = std::make_unique<BlackHole>(QHostAddress::LocalHost);
            storeOnLinePort(hole->port());
            start({device().address()});
            QTRY_VERIFY_WITH_TIMEOUT(device().journal().countRequests(DevicePaths::streams()) > 0,
                                     patience);
        } else if (state == QLatin1String("silent device")) {
            device().faults().add(Fault::silent());
            start({device().address()});
            QTRY_VERIFY_WITH_TIMEOUT(device().journal().countRequests() > 1, patience);
        } else {
            if (state == QLatin1String("loaders")) {
                device().faults().add(
                    Fault::answer("Error").onlyFor(Fault::Method::Get).on(record(1).fileName()));
            }
            start({device().address()});
            QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 1, patience);
            enterDialogState(state);
        }
        if (state == QLatin1String("idle")) {
            // Nothing tells from outside when the window is there; the button is pressed until it
            // is.
            QTRY_VERIFY_WITH_TIMEOUT(
                (click(closeButton()), panel_->state() == QProcess::NotRunning), patience);
            QCOMPARE(panel_->exitCode(), 0);
        } else {
            endBySignal();
        }
    }

    void downloadsArchive()
    {
        constexpr int rows = 60;
        const ArchiveDevice archive(device(), ArchiveDevice::passages(rows));
        start({QStringLiteral("--archive"), device().address()});
        QTRY_COMPARE_WITH_TIMEOUT(photoNames().size(), rows, patience);
        QCOMPARE(archiveContent(QStringLiteral("tmppassbase.tpp")), archive.records(0, rows - 1));
        QCOMPARE(archiveContent(QStringLiteral("tmppassbase.tpp.index")), archive.index(rows));
        for (int row = 0; row < rows; ++row) {
            QTRY_COMPARE(
                archiveContent(QStringLiteral("tmppassbase.jpegdata/") + archive.photoName(row)),
                archive.photo(row));
        }
        QCOMPARE(device().onLineConnections(), 0);
        endBySignal();
        expectNoArchive();
    }

    void closesDuringDownload_data()
    {
        QTest::addColumn<QString>("state");
        for (const char *state : {"identifier", "silent device", "transfer", "photos",
                                  "error dialog", "error dialog, by the desktop"}) {
            QTest::newRow(state) << QString::fromLatin1(state);
        }
    }
    void closesDuringDownload()
    {
        QFETCH(QString, state);
        const ArchiveDevice archive(device(), ArchiveDevice::passages(60));
        const bool dialog = state.startsWith(QLatin1String("error dialog"));
        QString awaited = DevicePaths::archive();
        if (state == QLatin1String("identifier")) {
            awaited = DevicePaths::streams();
            device().files().remove(awaited);
        } else if (state == QLatin1String("silent device")) {
            awaited = DevicePaths::streams();
            device().faults().add(Fault::silent());
        } else if (state == QLatin1String("transfer")) {
            device().faults().add(Fault::trickle(4, 1).on(awaited));
        } else if (state == QLatin1String("photos")) {
            awaited = archive.remotePhoto(30);
            device().faults().add(Fault::silent().on(awaited));
        } else {
            device().files().remove(awaited);
        }
        start({device().address(), QStringLiteral("--archive")});
        QTRY_VERIFY_WITH_TIMEOUT(device().journal().countRequests(awaited) > 0, patience);
        if (dialog) {
            QTRY_VERIFY_WITH_TIMEOUT(isShown(QStringLiteral("^Error$")), patience);
        }
        if (state.endsWith(QLatin1String("desktop"))) {
            endByDesktop();
        } else {
            endBySignal();
        }
        expectNoArchive();
    }

private:
    DeviceHost &device() { return devices_->first(); }
    static QString program() { return QStringLiteral(STALLO_PROGRAM); }

    void start(const QStringList &arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home_->path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"),
                           home_->filePath(QStringLiteral(".config")));
        panel_->setProcessEnvironment(environment);
        panel_->setProcessChannelMode(QProcess::ForwardedChannels);
        panel_->start(program(), arguments);
        QVERIFY(panel_->waitForStarted());
    }

    // What a task bar or a session asks of a window: WM_DELETE_WINDOW, here also while a dialog
    // blocks it.
    void endByDesktop()
    {
        QProcess search;
        search.start(QStringLiteral("xdotool"),
                     {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                      QStringLiteral("--name"), QStringLiteral("^Stallo")});
        QVERIFY(search.waitForFinished());
        const auto window = static_cast<xcb_window_t>(
            search.readAllStandardOutput().trimmed().split('\n').first().toUInt());
        QVERIFY(window != 0);
        QElapsedTimer clock;
        clock.start();
        xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
        xcb_client_message_event_t request = {};
        request.response_type = XCB_CLIENT_MESSAGE;
        request.format = 32;
        request.window = window;
        request.type = atom(connection, "WM_PROTOCOLS");
        request.data.data32[0] = atom(connection, "WM_DELETE_WINDOW");
        xcb_send_event(connection, 0, window, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char *>(&request));
        xcb_flush(connection);
        expectEnd(clock);
        xcb_disconnect(connection);
    }
    static xcb_atom_t atom(xcb_connection_t *connection, const char *name)
    {
        const auto cookie =
            xcb_intern_atom(connection, 0, static_cast<uint16_t>(qstrlen(name)), name);
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
        return reply ? reply->atom : 0;
    }

    // Dialogs have windows of their own.
    static bool isShown(const QString &title)
    {
        return QProcess::execute(QStringLiteral("xdotool"),
                                 {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                  QStringLiteral("--name"), title}) == 0;
    }

    void enterDialogState(const QString &state)
    {
        if (state == QLatin1String("burst")) {
            QVector<OnLine> many;
            for (int n = 0; n < 1000; ++n) {
                many.append(record(n));
            }
            device().pushAll(many);
            QTRY_VERIFY_WITH_TIMEOUT(fileSize(QStringLiteral("tmponline.tpp")) > 5 * Scan::size,
                                     patience);
        } else if (state == QLatin1String("loaders")) {
            device().push(record(1));
            QTRY_VERIFY_WITH_TIMEOUT(device().journal().countRequests(record(1).fileName()) > 1,
                                     patience);
        } else if (state == QLatin1String("error dialog")) {
            QTRY_VERIFY_WITH_TIMEOUT((click(barrierButton()), device().barrierCount() > 0),
                                     patience);
            device().setOnLineListening(false);
            click(barrierButton());
            QTRY_VERIFY_WITH_TIMEOUT(isShown(QStringLiteral("^Error$")), patience);
        } else if (state == QLatin1String("address dialog")) {
            QTRY_VERIFY_WITH_TIMEOUT(
                (click(selectButton()),
                 isShown(QStringLiteral("^Vask-parking devices configurator$"))),
                patience);
        }
    }

    // What the operator would press, on the smallest window at the screen's corner.
    static QPoint barrierButton() { return QPoint(146, 230); }
    static QPoint selectButton() { return QPoint(88, 183); }
    static QPoint closeButton() { return QPoint(994, 31); }

    static void click(const QPoint &place)
    {
        QProcess::execute(QStringLiteral("xdotool"),
                          {QStringLiteral("mousemove"), QString::number(place.x()),
                           QString::number(place.y()), QStringLiteral("click"),
                           QStringLiteral("1")});
    }
    static void key(const char *name)
    {
        QProcess::execute(QStringLiteral("xdotool"),
                          {QStringLiteral("key"), QString::fromLatin1(name)});
    }

    void endBySignal()
    {
        QElapsedTimer clock;
        clock.start();
        ::kill(static_cast<pid_t>(panel_->processId()), SIGTERM);
        expectEnd(clock);
    }
    void endByCloseButton()
    {
        QElapsedTimer clock;
        clock.start();
        click(closeButton());
        expectEnd(clock);
    }
    void expectEnd(const QElapsedTimer &clock)
    {
        QVERIFY(panel_->waitForFinished(patience));
        const qint64 taken = clock.elapsed();
        QCOMPARE(panel_->exitStatus(), QProcess::NormalExit);
        QCOMPARE(panel_->exitCode(), 0);
        QVERIFY2(taken < 2000, qPrintable(QStringLiteral("took %1 ms").arg(taken)));
    }

    QByteArray content(const QString &name) const
    {
        QFile file(home_->filePath(QStringLiteral("Stallo/OnLineTemp/")) + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    qint64 fileSize(const QString &name) const
    {
        return QFileInfo(home_->filePath(QStringLiteral("Stallo/OnLineTemp/")) + name).size();
    }
    QString archiveFolder() const { return home_->filePath(QStringLiteral("Stallo/ArchiveTemp/")); }
    QByteArray archiveContent(const QString &name) const
    {
        return ArchivePage::content(archiveFolder() + name);
    }
    QStringList photoNames() const
    {
        return QDir(archiveFolder() + QStringLiteral("tmppassbase.jpegdata"))
            .entryList({QStringLiteral("*.jpeg")}, QDir::Files);
    }
    // The program went the whole way to its end: what it had downloaded is gone.
    void expectNoArchive() const
    {
        QDirIterator files(archiveFolder(), QDir::Files | QDir::Hidden,
                           QDirIterator::Subdirectories);
        QVERIFY2(!files.hasNext(), qPrintable(files.next()));
    }
    QString settingsFile() const
    {
        return home_->filePath(QStringLiteral(".config/Dorvel Ltd/Stallo.conf"));
    }
    QByteArray settingsText() const
    {
        QFile file(settingsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void storeOnLinePort(quint16 port)
    {
        QSettings(settingsFile(), QSettings::IniFormat)
            .setValue(QStringLiteral("Global/VaskParkingPort"), port);
    }

    std::unique_ptr<QTemporaryDir> home_;
    std::unique_ptr<Devices> devices_;
    std::unique_ptr<QProcess> panel_;
};

STALLO_TEST_MAIN(TestWholeProgram)
#include "tst_wholeprogram.moc"
