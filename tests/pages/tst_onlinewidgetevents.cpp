// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "net/events.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scanmodel.h"
#include "simulator/livefeed.h"
#include "tests/pages/photogate.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QAbstractSocket>

Q_DECLARE_METATYPE(OnLine)

namespace
{

using Page = OnlinePage;

OnLine opened(const QString &key)
{
    OnLine one = Page::record(1);
    one.setNumber(QStringLiteral("O000OO00"));
    one.setAccessKey(key);
    one.setComment(QString());
    return one;
}

} // namespace

// The On-line page and what its clients tell it. The slots are assigned to addresses where no
// device is, so the test alone tells the page anything about them.
class TestOnLineWidgetEvents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Page::prepare();
        page_ = std::make_unique<Page>();
        page_->page().selectDevice(host_);
    }
    void cleanup()
    {
        const QStringList unexpected = page_->answers().unexpected();
        const int left = page_->answers().left();
        page_.reset();
        QCOMPARE(unexpected, QStringList());
        QCOMPARE(left, 0);
    }

    void appendsPassage();
    void ignoresPassage_data();
    void ignoresPassage();
    void appendsTheSameSecondTwice();
    void cutsLongIdentifier();
    void beginsIndexAnew();
    void keepsNoPhotoWithoutRow();
    void followsFromTheLastRowOnly();
    void showsRowByMouse();
    void showsLines_data();
    void showsLines();
    void keepsPhotoButtonWithoutRow();
    void showsLatePictureOfCurrentRow();
    void showsLatePicture_data();
    void showsLatePicture();
    void followsPipe_data();
    void followsPipe();
    void keepsSlotAfterLoss();
    void showsFrames();
    void holdsTokenUntilFrameIsRead();
    void ignoresFrame_data();
    void ignoresFrame();
    void ignoresOtherEvents();

private:
    void tell(const OnLine &record) { page_->tellPassage(record, host_); }

    const QString host_ = Page::nowhere();
    std::unique_ptr<Page> page_;
};

void TestOnLineWidgetEvents::appendsPassage()
{
    QVERIFY(!page_->button("buttonSave")->isEnabled());
    page_->tellPassage(Page::record(1), host_, QStringLiteral("north gate"));
    QCOMPARE(page_->rows(), 1);
    QCOMPARE(page_->currentRow(), 0);
    QVERIFY(page_->button("buttonSave")->isEnabled());
    QVERIFY(!page_->button("buttonSavePhoto")->isEnabled());
    QCOMPARE(page_->cell(0, ScanModel::NumberColumn), Page::record(1).number());
    QCOMPARE(page_->cell(0, ScanModel::DeviceColumn), QStringLiteral("north gate"));
    QCOMPARE(page_->cell(0, ScanModel::KeyColumn), QStringLiteral("00012345"));
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::records(1, 1)));
    QCOMPARE(Page::indexBytes(), Page::indexOf({QStringLiteral("north gate")}));
}

void TestOnLineWidgetEvents::ignoresPassage_data()
{
    QTest::addColumn<OnLine>("record");
    QTest::addColumn<QString>("host");

    QTest::newRow("unknown host") << Page::record(1) << QStringLiteral("127.0.0.77");
    QTest::newRow("no host, as an unassigned slot has") << Page::record(1) << QString();
    QTest::newRow("no time") << SampleRecords::withoutTime(QStringLiteral("A001BC77")) << host_;
}

void TestOnLineWidgetEvents::ignoresPassage()
{
    QFETCH(OnLine, record);
    QFETCH(QString, host);
    page_->tellPassage(record, host);
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(Page::tableBytes(), QByteArray());
    QCOMPARE(Page::indexBytes(), QByteArray());
    QVERIFY(!page_->button("buttonSave")->isEnabled());
}

void TestOnLineWidgetEvents::appendsTheSameSecondTwice()
{
    OnLine other = Page::record(1);
    other.setNumber(QStringLiteral("B777BB99"));
    const QVector<OnLine> told =
        Page::list(Page::record(1), Page::record(1), other, Page::record(0));
    for (const OnLine &record : told) {
        tell(record);
    }
    QCOMPARE(Page::tableBytes(), Page::tableOf(told));
    QCOMPARE(page_->rows(), 4);
}

void TestOnLineWidgetEvents::cutsLongIdentifier()
{
    const QString digits = QStringLiteral("0123456789012345678901234567890123456789");
    page_->tellPassage(Page::record(1), host_, digits);
    page_->tellPassage(Page::record(2), host_, QString());
    page_->tellPassage(Page::record(3), host_, QStringLiteral("x"));
    const QByteArray index = Page::indexBytes();
    QCOMPARE(index.size(), 3 * 32);
    QCOMPARE(index.left(32), QByteArray("0123456789012345678901234567890\0", 32));
    QCOMPARE(index.mid(32, 32), QByteArray(32, '\0'));
    QCOMPARE(index.mid(64), QByteArray("x").append(31, '\0'));
    QCOMPARE(page_->cell(0, ScanModel::DeviceColumn), digits.left(31));
}

void TestOnLineWidgetEvents::beginsIndexAnew()
{
    // What another program left behind the page's back goes with the first passage of a run.
    Page::write(Page::folder() + QStringLiteral("/tmponline.tpp.index"), QByteArray(320, 'x'));
    page_->tellPassage(Page::record(1), host_, QStringLiteral("one"));
    QCOMPARE(Page::indexBytes(), Page::indexOf({QStringLiteral("one")}));
    page_->tellPassage(Page::record(2), host_, QStringLiteral("two"));
    QCOMPARE(Page::indexBytes(), Page::indexOf({QStringLiteral("one"), QStringLiteral("two")}));
}

void TestOnLineWidgetEvents::keepsNoPhotoWithoutRow()
{
    OnLine timeless = Page::record(1);
    timeless.setDateTime(QDateTime());
    Page::write(Page::pictureFile(timeless), Page::jpeg(40, 30));
    tell(timeless);
    QCOMPARE(page_->rows(), 0);
    QVERIFY(!QFile::exists(Page::pictureFile(timeless)));
}

void TestOnLineWidgetEvents::followsFromTheLastRowOnly()
{
    for (int n = 0; n < 3; ++n) {
        tell(Page::record(n));
        QCOMPARE(page_->currentRow(), n);
    }
    page_->clickRow(1);
    QCOMPARE(page_->currentRow(), 1);
    const QStringList lines = page_->photo()->lines();
    tell(Page::record(3));
    tell(Page::record(4));
    QCOMPARE(page_->currentRow(), 1);
    QCOMPARE(page_->photo()->lines(), lines);
    QCOMPARE(page_->rows(), 5);
    page_->clickRow(4);
    tell(Page::record(5));
    QCOMPARE(page_->currentRow(), 5);
    QCOMPARE(page_->photo()->lines().first(), QStringLiteral("Number: A005BC77"));
}

void TestOnLineWidgetEvents::showsRowByMouse()
{
    for (int n = 0; n < 3; ++n) {
        tell(Page::record(n));
    }
    page_->clickRow(0);
    QCOMPARE(page_->photo()->lines().first(), QStringLiteral("Number: A000BC77"));
    QTest::keyClick(page_->table(), Qt::Key_Down);
    QCOMPARE(page_->currentRow(), 1);
    QCOMPARE(page_->photo()->lines().first(), QStringLiteral("Number: A001BC77"));
    QTRY_VERIFY(!page_->photo()->isLoading());
    // Activation shows a row again, and with it a photo that came meanwhile.
    Page::write(Page::pictureFile(Page::record(1)), Page::jpeg(40, 30));
    QTRY_VERIFY(!page_->photo()->isLoading());
    QVERIFY(page_->photo()->pixmap().isNull());
    QTest::keyClick(page_->table(), Qt::Key_Return);
    QTRY_COMPARE(page_->photo()->photoSize(), QSize(40, 30));
    QVERIFY(page_->button("buttonSavePhoto")->isEnabled());
}

void TestOnLineWidgetEvents::showsLines_data()
{
    QTest::addColumn<OnLine>("record");
    QTest::addColumn<QStringList>("expected"); // without the date

    const auto lines = [](const char *number, const char *access, const char *comment,
                          const char *key) {
        const auto text = [](const char *bytes) { return QString::fromLatin1(bytes); };
        return QStringList{text(number),
                           text(access),
                           text("The number is registered"),
                           text("The thoroughfare is granted"),
                           text(comment),
                           text(key)};
    };
    constexpr char automatic[] = "Access: granted automatically";
    constexpr char comment[] = "Comment: Novak, flat 12";
    constexpr char key[] = "Access key: 00012345";
    OnLine marks = Page::record(1);
    marks.setNumber(QStringLiteral("A?12*"));
    OnLine denied = Page::record(1);
    denied.setInAccessList(false);
    denied.setAccessGranted(false);
    QStringList deniedLines = lines("Number: A001BC77", automatic, comment, key);
    deniedLines[2] = QStringLiteral("The number is not registered");
    deniedLines[3] = QStringLiteral("The thoroughfare is not granted");

    QTest::newRow("plain") << Page::record(1) << lines("Number: A001BC77", automatic, comment, key);
    QTest::newRow("marks") << marks << lines("Number: A#12#", automatic, comment, key);
    QTest::newRow("by hand") << opened(QString())
                             << lines("Number: O000OO00", "Access: granted manually",
                                      "Comment: ", "Access key: ");
    QTest::newRow("by card") << opened(QStringLiteral("777"))
                             << lines("Number: O000OO00", "Access: granted by card",
                                      "Comment: ", "Access key: 777");
    QTest::newRow("denied") << denied << deniedLines;
}

void TestOnLineWidgetEvents::showsLines()
{
    QFETCH(OnLine, record);
    QFETCH(QStringList, expected);
    expected.insert(1, QStringLiteral("Date: ") +
                           record.dateTime().toString(QStringLiteral("hh:mm:ss dd.MM.yyyy")));
    tell(record);
    QCOMPARE(page_->photo()->lines(), expected);
}

void TestOnLineWidgetEvents::keepsPhotoButtonWithoutRow()
{
    const OnLine record = Page::record(1);
    Page::write(Page::pictureFile(record), Page::jpeg(40, 30));
    tell(record);
    QVERIFY(page_->button("buttonSavePhoto")->isEnabled());
    QTRY_COMPARE(page_->photo()->photoSize(), QSize(40, 30));
    page_->page().showRecord(QModelIndex());
    QCOMPARE(page_->currentRow(), -1);
    QVERIFY(page_->photo()->pixmap().isNull());
    QCOMPARE(page_->photo()->lines(), QStringList());
    QCOMPARE(page_->photo()->emptyText(), QStringLiteral("No Photo"));
    QVERIFY(page_->button("buttonSavePhoto")->isEnabled());
    // Nothing is current, but the table is not empty: the page does not follow.
    tell(Page::record(2));
    QCOMPARE(page_->currentRow(), -1);
    QCOMPARE(page_->rows(), 2);
}

void TestOnLineWidgetEvents::showsLatePictureOfCurrentRow()
{
    const OnLine record = Page::record(1);
    tell(record);
    QTRY_VERIFY(!page_->photo()->isLoading());
    QVERIFY(page_->photo()->pixmap().isNull());
    Page::write(Page::pictureFile(record), Page::jpeg(40, 30));
    page_->tellPassage(record, host_, QStringLiteral("other"), true);
    QTRY_COMPARE(page_->photo()->photoSize(), QSize(40, 30));
    QVERIFY(page_->button("buttonSavePhoto")->isEnabled());
    QCOMPARE(page_->rows(), 1);
    QCOMPARE(Page::tableBytes(), Page::tableOf(Page::list(record)));
    QCOMPARE(Page::indexBytes(), Page::indexOf({QStringLiteral("gate")}));
}

void TestOnLineWidgetEvents::showsLatePicture_data()
{
    QTest::addColumn<QVector<int>>("rows"); // seconds of the passages
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("late"); // second of the late one
    QTest::addColumn<bool>("shown");

    QTest::newRow("older current row") << QVector<int>{1, 2, 3} << 0 << 1 << true;
    QTest::newRow("another row") << QVector<int>{1, 2, 3} << 2 << 1 << false;
    QTest::newRow("same second, the first one") << QVector<int>{1, 2, 2, 3} << 1 << 2 << true;
    QTest::newRow("same second, the last one") << QVector<int>{1, 2, 2, 3} << 2 << 2 << true;
    QTest::newRow("behind an earlier one") << QVector<int>{5, 1, 6} << 0 << 5 << false;
    QTest::newRow("not in the table") << QVector<int>{1, 3} << 1 << 2 << false;
}

void TestOnLineWidgetEvents::showsLatePicture()
{
    QFETCH(QVector<int>, rows);
    QFETCH(int, current);
    QFETCH(int, late);
    QFETCH(bool, shown);
    for (const int second : qAsConst(rows)) {
        tell(Page::record(second));
    }
    page_->clickRow(current);
    QTRY_VERIFY(!page_->photo()->isLoading());
    // The picture of the row on view: whether it appears tells whether the row was shown again.
    Page::write(Page::pictureFile(Page::record(rows.at(current))), Page::jpeg(40, 30));
    page_->tellPassage(Page::record(late), host_, QString(), true);
    QTRY_VERIFY(!page_->photo()->isLoading());
    QCOMPARE(!page_->photo()->pixmap().isNull(), shown);
    QCOMPARE(page_->currentRow(), current);
    QCOMPARE(page_->rows(), rows.size());
}

void TestOnLineWidgetEvents::followsPipe_data()
{
    QTest::addColumn<bool>("bothAssigned");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("channel");
    QTest::addColumn<int>("connected"); // the slot that becomes so, or -1

    const QString none;
    const QString error = QStringLiteral("Connection refused");
    constexpr int lost = QAbstractSocket::UnconnectedState;
    constexpr int there = QAbstractSocket::ConnectedState;
    QTest::newRow("connected, first") << true << there << none << 0 << 0;
    QTest::newRow("connected, second") << true << there << none << 1 << 1;
    QTest::newRow("connected, no slot told") << true << there << none << -1 << 1;
    QTest::newRow("connected, slot 7") << true << there << none << 7 << 1;
    QTest::newRow("connected with a text") << true << there << error << 0 << 0;
    QTest::newRow("unconnected without a text") << true << lost << none << 0 << 0;
    QTest::newRow("connecting") << true << 2 << error << 0 << 0;
    QTest::newRow("failed, first") << true << lost << error << 0 << -1;
    QTest::newRow("failed, second") << true << lost << error << 1 << -1;
    QTest::newRow("failed, no slot told") << true << lost << error << -1 << -1;
    QTest::newRow("unassigned second") << false << there << none << 1 << -1;
    QTest::newRow("unassigned, no slot told") << false << there << none << -1 << -1;
}

void TestOnLineWidgetEvents::followsPipe()
{
    QFETCH(bool, bothAssigned);
    QFETCH(int, state);
    QFETCH(QString, message);
    QFETCH(int, channel);
    QFETCH(int, connected);
    const QString second = QStringLiteral("127.0.0.8");
    if (bothAssigned) {
        Settings::instance()->setAddressList({second});
        page_->answers().expect(ModalAnswers::pressing("buttonOk"));
        page_->press("buttonSelectDevice2");
    }
    page_->tellPipe(state, message, channel);
    const QString hosts[] = {host_, bothAssigned ? second : QString()};
    for (int slot = 0; slot < 2; ++slot) {
        const bool on = slot == connected;
        const bool assigned = !hosts[slot].isEmpty();
        QCOMPARE(page_->button(slot == 0 ? "buttonDisconnect1" : "buttonDisconnect2")->isEnabled(),
                 on);
        QCOMPARE(
            page_->button(slot == 0 ? "buttonOpenBarrier1" : "buttonOpenBarrier2")->isEnabled(),
            on);
        const QStringList waiting =
            assigned ? QStringList(QStringLiteral("Connecting to %1 ...").arg(hosts[slot]))
                     : QStringList();
        QCOMPARE(page_->camera(slot)->lines(), on ? QStringList(hosts[slot]) : waiting);
        QCOMPARE(page_->camera(slot)->objectName(), hosts[slot]);
    }
}

void TestOnLineWidgetEvents::keepsSlotAfterLoss()
{
    page_->tellPipe(QAbstractSocket::ConnectedState, QString(), 0);
    page_->tellPipe(QAbstractSocket::UnconnectedState, QStringLiteral("gone"), -1);
    page_->tellPipe(QAbstractSocket::UnconnectedState, QStringLiteral("gone"), 0);
    QCOMPARE(page_->camera(0)->objectName(), host_);
    QCOMPARE(page_->camera(0)->lines(), QStringList(host_));
    QVERIFY(page_->button("buttonDisconnect1")->isEnabled());
    tell(Page::record(1));
    QCOMPARE(page_->rows(), 1);
}

void TestOnLineWidgetEvents::showsFrames()
{
    const QString file = Settings::instance()->videoTempFile(0);
    Page::write(file, Page::jpeg(64, 48));
    page_->tellFrame(host_, file, 0);
    QTRY_VERIFY(!page_->camera(0)->isLoading());
    QCOMPARE(page_->camera(0)->photoSize(), QSize(64, 48));
    QCOMPARE(page_->camera(0)->lines(),
             QStringList(QStringLiteral("Connecting to %1 ...").arg(host_)));
    // No news and an unreadable picture leave the last one.
    page_->tellFrame(host_, QString(), 0);
    QTRY_VERIFY(!page_->camera(0)->isLoading());
    QCOMPARE(page_->camera(0)->photoSize(), QSize(64, 48));
    Page::write(file, Page::jpeg(100, 50).left(20));
    page_->tellFrame(host_, file, 0);
    QTRY_VERIFY(!page_->camera(0)->isLoading());
    QCOMPARE(page_->camera(0)->photoSize(), QSize(64, 48));
    Page::write(file, Page::jpeg(100, 50));
    page_->tellFrame(host_, file, 0);
    QTRY_VERIFY(!page_->camera(0)->isLoading());
    QCOMPARE(page_->camera(0)->photoSize(), QSize(100, 50));
    QVERIFY(page_->camera(1)->pixmap().isNull());
}

// The next frame may be written only when this one has been read.
void TestOnLineWidgetEvents::holdsTokenUntilFrameIsRead()
{
    const auto isFree = [] { return !VideoFrameToken::take([] { return true; }).isNull(); };
    const QString file = Settings::instance()->videoTempFile(0);
    Page::write(file, Page::jpeg(64, 48));
    PhotoGate gate;
    const auto tell = [&](const QString &host) {
        VideoEvent event(host, file, 0, VideoFrameToken::take([] { return false; }));
        QCoreApplication::sendEvent(&page_->page(), &event);
    };
    tell(QStringLiteral("127.0.0.77"));
    QVERIFY(isFree());
    tell(host_);
    QVERIFY(!isFree());
    gate.open();
    QTRY_VERIFY(isFree());
    QTRY_COMPARE(page_->camera(0)->photoSize(), QSize(64, 48));
}

void TestOnLineWidgetEvents::ignoresFrame_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("channel");

    QTest::newRow("other host") << QStringLiteral("127.0.0.77") << 0;
    QTest::newRow("no host") << QString() << 0;
    QTest::newRow("the other slot's host") << host_ << 1;
    QTest::newRow("unassigned slot without a host") << QString() << 1;
    QTest::newRow("slot 2") << host_ << 2;
    QTest::newRow("slot -1") << host_ << -1;
}

void TestOnLineWidgetEvents::ignoresFrame()
{
    QFETCH(QString, host);
    QFETCH(int, channel);
    const QString file = Settings::instance()->videoTempFile(0);
    Page::write(file, Page::jpeg(64, 48));
    page_->tellFrame(host, file, channel);
    QVERIFY(!page_->camera(0)->isLoading());
    QVERIFY(!page_->camera(1)->isLoading());
    QVERIFY(page_->camera(0)->pixmap().isNull());
    QVERIFY(page_->camera(1)->pixmap().isNull());
}

void TestOnLineWidgetEvents::ignoresOtherEvents()
{
    for (int number = QEvent::User; number < QEvent::User + 20; ++number) {
        if (number < 1001 || number > 1004 || number == 1003) {
            QEvent event{QEvent::Type(number)};
            QCoreApplication::sendEvent(&page_->page(), &event);
        }
    }
    QCOMPARE(page_->rows(), 0);
    QCOMPARE(page_->camera(0)->lines(),
             QStringList(QStringLiteral("Connecting to %1 ...").arg(host_)));
}

STALLO_TEST_MAIN(TestOnLineWidgetEvents)
#include "tst_onlinewidgetevents.moc"
