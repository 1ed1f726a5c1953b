// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "app/shellaccess.h"
#include "net/events.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scanmodel.h"
#include "style/brelwindow.h"
#include "style/brelwindowtitle.h"
#include "tests/support/devices.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QAbstractSocket>
#include <QContextMenuEvent>
#include <QMenu>

namespace
{

using Page = OnlinePage;

constexpr int patience = 15000;

QByteArray bytes(const Access &access)
{
    return QByteArray(access.data(), Access::size);
}

// Takes access entries, as the main window does.
class Receiver : public QWidget
{
public:
    QVector<QByteArray> entries;

protected:
    void customEvent(QEvent *event) override
    {
        if (static_cast<int>(event->type()) == EventNumber::Suffered) {
            entries.append(bytes(static_cast<SufferedEvent *>(event)->access()));
        }
    }
};

QString named(const QString &color, const QString &hosts)
{
    return QStringLiteral("<center><font color='white' size='+2'>Online - </font><font color='") +
           color + QStringLiteral("' size='+2'><I>[") + hosts +
           QStringLiteral("]</I></font></center>");
}

const QString nobody =
    QStringLiteral("<center><font color='white' size='+2'>Online</font></center>");

} // namespace

// What the On-line page tells the frame around it.
class TestOnLineWidgetShell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Page::prepare();
        frame_ = std::make_unique<BrelWindow>();
        receiver_ = new Receiver; // the frame's
        frame_->setCentralWidget(receiver_);
        topLevelBrelWindow = frame_.get();
    }
    void cleanup()
    {
        page_.reset();
        ShellAccess::setMainWindow(nullptr);
        topLevelBrelWindow = nullptr;
        frame_.reset();
        devices_.reset();
    }

    void namesNobodyWhenShown();
    void namesOneHost();
    void forgetsHostReleasedWithoutALine();
    void greysOutAfterChangeToDeadDevice();
    void namesSecondHost();
    void namesTwoHosts();
    void escapesHost();
    void namesHostsOnlyWhileVisible();
    void worksWithoutFrame();
    void handsNumberOver();
    void handsNumberToMainWindowWithoutFrame();
    void handsNothingOver();
    void opensContextMenu();

private:
    QString title() const { return frame_->brelWindowTitle()->deviceName(); }
    void makePage() { page_ = std::make_unique<Page>(); }
    void selectSecond(const QString &address)
    {
        Settings::instance()->setAddressList({address});
        page_->answers().expect(ModalAnswers::pressing("buttonOk"));
        page_->press("buttonSelectDevice2");
    }
    // A loss refreshes the title and does nothing else.
    void tellLoss() { page_->tellPipe(0, QStringLiteral("lost"), -1); }
    static Access expectedEntry(const OnLine &record)
    {
        Access access;
        access.setNumber(record.number());
        access.setAccessKey(record.accessKey());
        access.setComment(record.comment());
        return access;
    }

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<BrelWindow> frame_;
    Receiver *receiver_ = nullptr;
    std::unique_ptr<Page> page_;
};

void TestOnLineWidgetShell::namesNobodyWhenShown()
{
    makePage();
    QCOMPARE(title(), nobody);
}

void TestOnLineWidgetShell::namesOneHost()
{
    devices_ = std::make_unique<Devices>();
    DeviceHost &device = devices_->first();
    device.setOnLineListening(false);
    makePage();
    page_->page().selectDevice(device.address());
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("Grey"), device.address()), patience);
    device.setOnLineListening(true);
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("White"), device.address()), patience);
    device.setOnLineListening(false);
    device.dropOnLine();
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("Grey"), device.address()), patience);
    device.setOnLineListening(true);
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("White"), device.address()), patience);
    page_->press("buttonDisconnect1");
    QTRY_COMPARE_WITH_TIMEOUT(title(), nobody, patience);
}

void TestOnLineWidgetShell::forgetsHostReleasedWithoutALine()
{
    devices_ = std::make_unique<Devices>();
    DeviceHost &device = devices_->first();
    makePage();
    page_->page().selectDevice(device.address());
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("White"), device.address()), patience);
    device.stop();
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("Grey"), device.address()), patience);
    // No line is lost by this, so no event tells of it.
    page_->press("buttonDisconnect1");
    QCOMPARE(title(), nobody);
}

void TestOnLineWidgetShell::greysOutAfterChangeToDeadDevice()
{
    devices_ = std::make_unique<Devices>();
    makePage();
    page_->page().selectDevice(devices_->first().address());
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("White"), devices_->first().address()),
                              patience);
    page_->page().selectDevice(Page::nowhere());
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("Grey"), Page::nowhere()), patience);
}

void TestOnLineWidgetShell::namesSecondHost()
{
    makePage();
    selectSecond(Page::nowhere());
    tellLoss();
    QCOMPARE(title(), named(QStringLiteral("Grey"), Page::nowhere()));
}

void TestOnLineWidgetShell::namesTwoHosts()
{
    devices_ = std::make_unique<Devices>();
    makePage();
    page_->page().selectDevice(Page::nowhere());
    selectSecond(devices_->first().address());
    const QString hosts =
        QStringLiteral("%1 / %2").arg(Page::nowhere(), devices_->first().address());
    // One of two is enough.
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("White"), hosts), patience);
    devices_->first().stop();
    QTRY_COMPARE_WITH_TIMEOUT(title(), named(QStringLiteral("Grey"), hosts), patience);
}

void TestOnLineWidgetShell::escapesHost()
{
    makePage();
    page_->page().selectDevice(QStringLiteral("<b>x & %1 %2"));
    tellLoss();
    QCOMPARE(title(), named(QStringLiteral("Grey"), QStringLiteral("&lt;b&gt;x &amp; %1 %2")));
    QCOMPARE(page_->camera(0)->objectName(), QStringLiteral("<b>x & %1 %2"));
}

void TestOnLineWidgetShell::namesHostsOnlyWhileVisible()
{
    makePage();
    page_->page().selectDevice(Page::nowhere());
    tellLoss();
    page_->page().hide();
    frame_->brelWindowTitle()->setDeviceName(QStringLiteral("another page"));
    tellLoss();
    page_->tellPipe(QAbstractSocket::ConnectedState, QString(), 0);
    QCOMPARE(title(), QStringLiteral("another page"));
    page_->page().show();
    QCOMPARE(title(), named(QStringLiteral("Grey"), Page::nowhere()));
}

void TestOnLineWidgetShell::worksWithoutFrame()
{
    topLevelBrelWindow = nullptr;
    makePage();
    page_->page().selectDevice(Page::nowhere());
    tellLoss();
    QCOMPARE(page_->camera(0)->objectName(), Page::nowhere());
    QCOMPARE(title(), QString());
}

void TestOnLineWidgetShell::handsNumberOver()
{
    makePage();
    Receiver mainWindow;
    ShellAccess::setMainWindow(&mainWindow);
    page_->page().selectDevice(Page::nowhere());
    OnLine odd = Page::record(1);
    odd.setNumber(QStringLiteral("A?12*"));
    odd.setComment(QStringLiteral("a <b>comment</b>; \"quoted\""));
    page_->tellPassage(Page::record(0), Page::nowhere());
    page_->tellPassage(odd, Page::nowhere());
    page_->page().addToSuffered();
    page_->clickRow(0);
    auto *menu = page_->table()->findChild<QMenu *>();
    QCOMPARE(menu->title(), QStringLiteral("Add number to suffered"));
    QCOMPARE(menu->actions().size(), 1);
    QCOMPARE(menu->actions().first()->text(), QStringLiteral("Add number to suffered"));
    menu->actions().first()->trigger();
    // Posted, not called.
    QCOMPARE(receiver_->entries.size(), 0);
    QTRY_COMPARE(receiver_->entries.size(), 2);
    QCOMPARE(receiver_->entries.at(0), bytes(expectedEntry(odd)));
    QCOMPARE(receiver_->entries.at(1), bytes(expectedEntry(Page::record(0))));
    QVERIFY(mainWindow.entries.isEmpty());
}

void TestOnLineWidgetShell::handsNumberToMainWindowWithoutFrame()
{
    topLevelBrelWindow = nullptr;
    makePage();
    Receiver mainWindow;
    ShellAccess::setMainWindow(&mainWindow);
    page_->page().selectDevice(Page::nowhere());
    page_->tellPassage(Page::record(1), Page::nowhere());
    page_->page().addToSuffered();
    QTRY_COMPARE(mainWindow.entries.size(), 1);
    QCOMPARE(mainWindow.entries.first(), bytes(expectedEntry(Page::record(1))));
    QVERIFY(receiver_->entries.isEmpty());
    ShellAccess::setMainWindow(nullptr);
    page_->page().addToSuffered(); // to nobody
}

void TestOnLineWidgetShell::handsNothingOver()
{
    makePage();
    page_->page().addToSuffered();
    page_->page().selectDevice(Page::nowhere());
    page_->tellPassage(Page::record(1), Page::nowhere());
    page_->page().showRecord(QModelIndex());
    page_->page().addToSuffered();
    QCoreApplication::sendPostedEvents(receiver_);
    QVERIFY(receiver_->entries.isEmpty());
}

void TestOnLineWidgetShell::opensContextMenu()
{
    makePage();
    page_->page().selectDevice(Page::nowhere());
    page_->tellPassage(Page::record(1), Page::nowhere());
    QWidget *viewport = page_->table()->viewport();
    // At the left, where the menu has space on every screen.
    const QPoint place(
        4, page_->table()->visualRect(page_->table()->model()->index(0, 0)).center().y());
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
    QCoreApplication::sendEvent(viewport, &event);
    auto *menu = page_->table()->findChild<QMenu *>();
    QVERIFY(menu->isVisible());
    QCOMPARE(menu->pos(), viewport->mapToGlobal(place));
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                      menu->actionGeometry(menu->actions().first()).center());
    QTRY_COMPARE(receiver_->entries.size(), 1);
    QVERIFY(!menu->isVisible());
}

STALLO_TEST_MAIN(TestOnLineWidgetShell)
#include "tst_onlinewidgetshell.moc"
