// SPDX-License-Identifier: MIT
#include "app/mainwindow.h"

#include "app/errorbrowser.h"
#include "app/settings.h"
#include "app/startup.h"
#include "net/events.h"
#include "pages/archivewidget.h"
#include "pages/onlinewidget.h"
#include "pages/sufferednumberswidget.h"
#include "style/brelwindow.h"
#include "style/brelwindowtitle.h"
#include "tests/support/devices.h"
#include "tests/support/modalanswers.h"
#include "tests/support/testmain.h"

#include <QAbstractButton>
#include <QLabel>
#include <QStackedWidget>
#include <QStatusBar>

class TestMainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestSurroundings::freshSettings();
        Startup::initTempDirectories();
        frame_ = std::make_unique<BrelWindow>();
        topLevelBrelWindow = frame_.get();
        QVERIFY(MainWindow::activeWindow() == nullptr);
        window_ = std::make_unique<MainWindow>();
        frame_->setCentralWidget(window_.get());
        frame_->show();
        QVERIFY(QTest::qWaitForWindowActive(frame_.get()));
    }

    void cleanup()
    {
        window_.reset();
        QVERIFY(MainWindow::activeWindow() == nullptr);
        frame_.reset();
        QVERIFY(topLevelBrelWindow == nullptr);
    }

    void noticeStaysOnAllPages()
    {
        const auto *notice = window_->findChild<QLabel *>(QStringLiteral("labelNotice"));
        QVERIFY(notice != nullptr);
        QVERIFY(!notice->isVisible());
        const QString text = QStringLiteral("kept in <b>Recovered</b>");
        window_->showNotice(text);
        for (const auto show :
             {&MainWindow::showArchive, &MainWindow::showSuffered, &MainWindow::showOnLine}) {
            (window_.get()->*show)();
            window_->statusBar()->showMessage(QStringLiteral("what is under the pointer"));
            QVERIFY(notice->isVisible());
            QCOMPARE(notice->text(), text);
            QCOMPARE(notice->textFormat(), Qt::PlainText);
            QVERIFY(window_->statusBar()->rect().contains(notice->geometry()));
        }
        window_->showNotice(QString());
        QVERIFY(!notice->isVisible());
    }

    void beginsOnArchive()
    {
        QCOMPARE(MainWindow::activeWindow(), window_.get());
        QCOMPARE(window_->windowTitle(), QStringLiteral("Stallo"));
        QCOMPARE(window_->objectName(), QStringLiteral("MainWindowClass"));
        QCOMPARE(window_->centralWidget()->objectName(), QStringLiteral("centralWidget"));
        QCOMPARE(window_->statusBar()->objectName(), QStringLiteral("statusBar"));
        QCOMPARE(stack()->count(), 3);
        QVERIFY(qobject_cast<ArchiveWidget *>(stack()->widget(0)));
        QVERIFY(qobject_cast<SufferedNumbersWidget *>(stack()->widget(1)));
        QVERIFY(qobject_cast<OnLineWidget *>(stack()->widget(2)));
        expectPage(0, 0);
    }

    void showsPages_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<QString>("button");
        QTest::newRow("archive") << 0 << QStringLiteral("Archive view");
        QTest::newRow("access list") << 1 << QStringLiteral("Suffered numbers");
        QTest::newRow("on-line") << 2 << QStringLiteral("On-Line");
    }
    void showsPages()
    {
        QFETCH(int, page);
        QTEST(buttons().at(page)->text(), "button");
        QVERIFY(buttons().at(page)->isCheckable());
        QTest::mouseClick(buttons().at(page), Qt::LeftButton);
        expectPage(page, page);
        window_->showArchive();
        expectPage(0, 0);
        QTest::keyClick(window_.get(), static_cast<Qt::Key>(Qt::Key_1 + page), Qt::AltModifier);
        expectPage(page, page);
        // A press on the button of the page that is shown leaves it checked.
        QTest::mouseClick(buttons().at(page), Qt::LeftButton);
        expectPage(page, page);
    }

    void stepsRoundWithoutTouchingButtons()
    {
        window_->showOnLine();
        window_->showNext();
        expectPage(0, 2);
        window_->showNext();
        expectPage(1, 2);
        window_->showArchive();
        window_->showPrevious();
        expectPage(2, 0);
        window_->showPrevious();
        expectPage(1, 0);
    }

    void selectsTabs()
    {
        // Without an address two of the pages ask for one.
        ModalAnswers guard;
        guard.expect(ModalAnswers::pressing("buttonCancel"));
        window_->selectTab(MainWindow::SufferedTab, QString());
        expectPage(1, 1);
        window_->selectTab(MainWindow::OnLineTab, QString());
        expectPage(2, 2);
        guard.expect(ModalAnswers::pressing("buttonCancel"));
        window_->selectTab(MainWindow::ArchiveTab, QString());
        expectPage(0, 0);
        QCOMPARE(guard.left(), 0);
        for (const int unknown : {-1, 3, 100}) {
            window_->selectTab(static_cast<MainWindow::eTabSelector>(unknown),
                               QStringLiteral("127.0.0.9"));
            expectPage(0, 0);
        }
    }

    void titleFollowsPage()
    {
        const auto *title = frame_->brelWindowTitle();
        window_->showOnLine();
        QVERIFY(title->deviceName().contains(QStringLiteral("Online")));
        window_->showArchive();
        QVERIFY(!title->deviceName().contains(QStringLiteral("Online")));
        window_->showSuffered();
        QVERIFY(title->deviceName().contains(QStringLiteral("Suffered numbers")));
    }

    void survivesForeignEvents()
    {
        QCoreApplication::sendEvent(window_.get(), std::make_unique<SufferedEvent>(Access()).get());
        QCoreApplication::sendEvent(window_.get(), std::make_unique<ProgressEvent>(1).get());
        expectPage(0, 0);
    }

    void storesSettingsAtItsEnd()
    {
        Settings *settings = Settings::instance();
        settings->sync();
        settings->setVideoTimeout(4321);
        window_.reset();
        QFile file(settings->fileName());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().contains("VideoTimeout=4321"));
    }

    void closesWithErrorDialogOpen()
    {
        // As the program's start connects it; the toolkit tells of the last window only within
        // exec().
        connect(qApp, &QGuiApplication::lastWindowClosed, frame_.get(), &QCoreApplication::quit);
        window_->showOnLine();
        bool returned = false;
        QTimer::singleShot(0, this, [&] {
            QTimer::singleShot(0, this, [this] {
                QVERIFY(QApplication::activeModalWidget() != nullptr);
                frame_->close();
            });
            ErrorBrowser::error(QStringLiteral("Error"), QStringLiteral("the line is down"),
                                stack()->currentWidget());
            returned = true;
        });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(returned);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

private:
    QStackedWidget *stack() const
    {
        return window_->centralWidget()->findChild<QStackedWidget *>();
    }
    QList<QAbstractButton *> buttons() const
    {
        QList<QAbstractButton *> found;
        for (auto *button : frame_->brelWindowTitle()->findChildren<QAbstractButton *>()) {
            if (button->isCheckable()) {
                found << button;
            }
        }
        std::sort(found.begin(), found.end(), [](auto *a, auto *b) { return a->x() < b->x(); });
        return found;
    }
    void expectPage(int page, int checked)
    {
        QCOMPARE(stack()->currentIndex(), page);
        for (int each = 0; each < 3; ++each) {
            QCOMPARE(buttons().at(each)->isChecked(), each == checked);
        }
    }

    std::unique_ptr<BrelWindow> frame_;
    std::unique_ptr<MainWindow> window_;
};

STALLO_TEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
