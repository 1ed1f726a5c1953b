// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings.h"
#include "pages/accesstransfer.h"
#include "records/accessmodel.h"
#include "simulator/filetree.h"
#include "style/brelwindow.h"
#include "style/brelwindowtitle.h"
#include "tests/support/devices.h"
#include "tests/support/listpage.h"
#include "tests/support/testmain.h"

#include <QLineEdit>
#include <QMessageBox>

#include <memory>

// An access list page before a simulated device, with a frame for its title. Each test function
// starts with empty folders, and opens the page by open(). A dialog that came without being
// expected, or that did not come, fails the test.
class ListCase : public QObject
{
    Q_OBJECT

protected:
    static constexpr int patience = 30000;

    // The page with this list as the panel's own, idle.
    void open(const QByteArray &ownList)
    {
        ListPage::write(ListPage::ownList(), ownList);
        reopen();
    }
    // As after a new start of the program.
    void reopen()
    {
        page_.reset();
        page_ = std::make_unique<ListPage>();
        QVERIFY(page_->becomesIdle());
    }
    static QByteArray ownList() { return ListPage::content(ListPage::ownList()); }

    DeviceHost &device() { return devices_->first(); }
    QString host() { return device().address(); }
    // Stored and in force. What the device has seen so far is forgotten.
    void giveDevice(const QByteArray &list)
    {
        device().files().set(DevicePaths::accessList(), list);
        const int before = device().reloadCount();
        AccessTransfer::reload(host());
        QTRY_COMPARE_WITH_TIMEOUT(device().reloadCount(), before + 1, patience);
        QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 0, patience);
        QCOMPARE(device().activeAccessList(), list);
        device().journal().clear();
        reloadsBefore_ = device().reloadCount();
    }
    int reloads() { return device().reloadCount() - reloadsBefore_; }

    // A plain entry, with the id that it has in a plain list; and a list of some.
    static Access listed(int n)
    {
        Access access = ListPage::entry(n);
        access.setId(static_cast<qint16>(n + 1));
        return access;
    }
    static QByteArray listOf(const QVector<int> &entries)
    {
        QByteArray all;
        for (const int n : entries) {
            all += ListPage::bytes(listed(n));
        }
        return all;
    }

    void type(const char *field, const QString &text) const
    {
        auto *edit = page_->find<QLineEdit>(field);
        edit->clear();
        QTest::keyClicks(edit, text);
    }
    // Checks a box or takes a choice, with a finger.
    void choose(const char *name) const
    {
        auto *button = page_->find<QAbstractButton>(name);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(10, button->height() / 2));
    }
    // Presses Delete and says yes.
    void remove() const
    {
        page_->answers().expect([](QWidget *window) {
            auto *box = qobject_cast<QMessageBox *>(window);
            QVERIFY(box != nullptr);
            QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        });
        page_->press("buttonDelete");
    }
    // Of the table on view.
    QString numbers() const
    {
        QStringList all;
        for (int row = 0; row < page_->rows(); ++row) {
            all << page_->cell(row, AccessModel::NumberColumn);
        }
        return all.join(QLatin1Char(' '));
    }
    void expectEdited(const Access &access) const
    {
        QCOMPARE(ListPage::bytes(page_->edited()), ListPage::bytes(access));
    }

    QString title() const { return frame_->brelWindowTitle()->deviceName(); }
    static QString named(const QString &origin)
    {
        return QStringLiteral("<center><font color='white' size='+2'>Suffered numbers - </font>"
                              "<font color='White' size='+2'><I>%1</I></center>")
            .arg(origin);
    }

    // Begins something, and reads the error that comes behind the dialogs that are expected so far:
    // its title and its text.
    QString errorAfter(const std::function<void()> &begin)
    {
        QString heading;
        QString text;
        begin();
        page_->answers().expect(ModalAnswers::reading(&heading, &text));
        [&] { QTRY_COMPARE_WITH_TIMEOUT(page_->answers().left(), 0, patience); }();
        [&] { QTRY_VERIFY(QApplication::activeModalWidget() == nullptr); }();
        [&] { QVERIFY(page_->becomesIdle()); }();
        return heading + QLatin1Char('|') + text;
    }

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<BrelWindow> frame_;
    std::unique_ptr<ListPage> page_;

protected Q_SLOTS:
    void initTestCase()
    {
        // Lists carry UTC, the operator thinks in local time.
        qputenv("TZ", "STT-3");
        tzset();
    }
    void init()
    {
        ListPage::prepare();
        devices_ = std::make_unique<Devices>();
        frame_ = std::make_unique<BrelWindow>();
        topLevelBrelWindow = frame_.get();
    }
    void cleanup()
    {
        QStringList unexpected;
        int left = 0;
        if (page_) {
            unexpected = page_->answers().unexpected();
            left = page_->answers().left();
        }
        page_.reset();
        topLevelBrelWindow = nullptr;
        frame_.reset();
        devices_.reset();
        QCOMPARE(unexpected, QStringList());
        QCOMPARE(left, 0);
    }

private:
    int reloadsBefore_ = 0;
};
