// SPDX-License-Identifier: MIT
#include "style/brelwindow.h"

#include "app/addressdialog.h"
#include "style/brelwindowtitle.h"
#include "style/metrics.h"
#include "tests/style/windowmouse.h"
#include "tests/support/testmain.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QScreen>

#include <memory>

// The frame on a bare X server, as a panel without a desktop runs it: nobody moves, sizes or
// maximises windows there.
class TestNoWindowManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void movesAndResizes();
    void maximizesByDoubleClick();
    void startsMaximized();
    void minimizingLosesNothing();
    void keypadReachesADialog();
    void pressedWindowGetsTheKeyboard();

private:
    QPoint barPlace() const;
    void show();

    std::unique_ptr<BrelWindow> window_;
    std::unique_ptr<WindowMouse> mouse_;
    const QRect start_{60, 40, 1024, 512};
};

void TestNoWindowManager::init()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    window_ = std::make_unique<BrelWindow>();
    window_->setCentralWidget(new QWidget);
    window_->setMinimumSize(800, 400);
    window_->setGeometry(start_);
    mouse_ = std::make_unique<WindowMouse>(*window_);
}

void TestNoWindowManager::cleanup()
{
    window_.reset();
}

QPoint TestNoWindowManager::barPlace() const
{
    return window_->mapToGlobal(QPoint(200, Metrics::edge + Metrics::titleBarHeight / 2));
}

void TestNoWindowManager::show()
{
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    QTRY_COMPARE(window_->geometry(), start_);
}

void TestNoWindowManager::movesAndResizes()
{
    show();
    mouse_->drag(barPlace(), QPoint(100, 200));
    QTRY_COMPARE(window_->geometry(), start_.translated(100, 200));
    const QPoint corner = window_->geometry().bottomRight() - QPoint(1, 1);
    mouse_->drag(corner, QPoint(60, 50));
    QTRY_COMPARE(window_->geometry(), start_.translated(100, 200).adjusted(0, 0, 60, 50));
    // The server has it there too.
    QTRY_COMPARE(window_->windowHandle()->geometry(), window_->geometry());
}

void TestNoWindowManager::maximizesByDoubleClick()
{
    show();
    const QRect whole = window_->screen()->availableGeometry();
    for (int round = 0; round < 2; ++round) {
        mouse_->doubleClick(barPlace());
        QTRY_COMPARE(window_->geometry(), whole);
        QVERIFY(window_->isMaximized());
        QTRY_COMPARE(window_->brelWindowTitle()->width(), whole.width());
        mouse_->doubleClick(barPlace());
        QTRY_COMPARE(window_->geometry(), start_);
        QVERIFY(!window_->isMaximized());
    }
}

void TestNoWindowManager::startsMaximized()
{
    window_->showMaximized();
    QTRY_COMPARE(window_->geometry(), window_->screen()->availableGeometry());
    QVERIFY(window_->isMaximized());
    window_->showNormal();
    QTRY_COMPARE(window_->geometry(), start_);
}

void TestNoWindowManager::minimizingLosesNothing()
{
    show();
    QTest::mouseClick(window_->findChild<QAbstractButton *>(QStringLiteral("buttonMinimize")),
                      Qt::LeftButton);
    // Nobody could bring it back, so it stays where it is and keeps working.
    QVERIFY(window_->isVisible());
    QTRY_VERIFY(window_->windowHandle()->isExposed());
    mouse_->doubleClick(barPlace());
    QTRY_COMPARE(window_->geometry(), window_->screen()->availableGeometry());
}

void TestNoWindowManager::keypadReachesADialog()
{
    show();
    QTRY_VERIFY(window_->isActiveWindow());
    {
        AddressDialog dialog(window_.get());
        dialog.open();
        QTRY_VERIFY(dialog.isActiveWindow());
        auto *editor = dialog.findChild<QLineEdit *>(QStringLiteral("lineEditAddress"));
        QTest::mouseClick(editor, Qt::LeftButton);
        editor->setFocus();
        editor->clear();
        for (const char *key : {"pb1", "pb0", "pbComma", "pb7"}) {
            QTest::mouseClick(dialog.findChild<QAbstractButton *>(QLatin1String(key)),
                              Qt::LeftButton);
        }
        QCOMPARE(editor->text(), QStringLiteral("10.7"));
    }
    QTRY_VERIFY(window_->isActiveWindow());
}

void TestNoWindowManager::pressedWindowGetsTheKeyboard()
{
    show();
    QTRY_VERIFY(window_->isActiveWindow());
    QWidget other;
    other.resize(100, 100);
    other.show();
    QTRY_VERIFY(other.isActiveWindow());
    QTest::mouseClick(window_->centralWidget(), Qt::LeftButton);
    QTRY_VERIFY(window_->isActiveWindow());
}

STALLO_TEST_MAIN(TestNoWindowManager)
#include "tst_nowindowmanager.moc"
