// SPDX-License-Identifier: MIT
#include "style/brelwindow.h"

#include "style/brelstyle.h"
#include "style/brelwindowtitle.h"
#include "style/metrics.h"
#include "tests/style/windowmouse.h"
#include "tests/support/testmain.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QScreen>

#include <memory>

class CloseWatch : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        closings += event->type() == QEvent::Close ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
    int closings = 0;
};

class TestBrelWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void isFrameless();
    void titles_data();
    void titles();
    void centralWidgetFills();
    void centralWidgetDiesFirst();
    void frameTakesItsCentralWidgetAlong();
    void replacedCentralWidgetIsHandedBack();
    void globalFrame();

    void movesByItsBar();
    void smallTremorDoesNotMove();
    void doesNotMoveByItsContents();
    void otherButtonsDoNotMove();
    void doubleClickMaximizes();
    void resizes_data();
    void resizes();
    void keepsToItsLimits_data();
    void keepsToItsLimits();
    void maximizedHasNoEdges();
    void maximizedDoesNotMove();
    void cursorTellsTheEdges();
    void windowButtons();

private:
    QPoint barPlace() const;

    std::unique_ptr<BrelWindow> window_;
    std::unique_ptr<WindowMouse> mouse_;
    const QRect start_{60, 40, 600, 400};
};

void TestBrelWindow::initTestCase()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestBrelWindow::init()
{
    window_ = std::make_unique<BrelWindow>();
    window_->setCentralWidget(new QWidget);
    window_->setMinimumSize(400, 300);
    window_->setGeometry(start_);
    window_->show();
    QVERIFY(QTest::qWaitForWindowActive(window_.get()));
    QCOMPARE(window_->geometry(), start_);
    mouse_ = std::make_unique<WindowMouse>(*window_);
}

void TestBrelWindow::cleanup()
{
    window_.reset();
}

// A place on the bar that is no button.
QPoint TestBrelWindow::barPlace() const
{
    return window_->mapToGlobal(QPoint(200, Metrics::edge + Metrics::titleBarHeight / 2));
}

void TestBrelWindow::isFrameless()
{
    QVERIFY(window_->isWindow());
    QVERIFY((window_->windowFlags() & Qt::FramelessWindowHint) != 0);
    QCOMPARE(window_->brelWindowTitle()->window(), window_.get());
}

void TestBrelWindow::titles_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("plain");
    QTest::newRow("plain") << QStringLiteral("Stallo") << QStringLiteral("Stallo");
    QTest::newRow("italic") << QStringLiteral("<i>Stallo </i>") << QStringLiteral("Stallo");
    QTest::newRow("entity") << QStringLiteral("<b>A &amp; B</b>") << QStringLiteral("A & B");
    QTest::newRow("no tag") << QStringLiteral("1 < 2") << QStringLiteral("1 < 2");
    QTest::newRow("empty") << QString() << QString();
}

void TestBrelWindow::titles()
{
    QFETCH(const QString, given);
    QFETCH(const QString, plain);
    window_->setWindowTitle(given);
    QCOMPARE(window_->windowTitle(), plain);
    QCOMPARE(window_->brelWindowTitle()->title(), given);
}

void TestBrelWindow::centralWidgetFills()
{
    const QWidget *central = window_->centralWidget();
    const BrelWindowTitle *bar = window_->brelWindowTitle();
    const QRect place(central->mapTo(window_.get(), QPoint()), central->size());
    QCOMPARE(place.top(), bar->geometry().bottom() + 1);
    QCOMPARE(place.left(), Metrics::edge);
    QCOMPARE(place.right(), window_->width() - 1 - Metrics::edge);
    QCOMPARE(place.bottom(), window_->height() - 1 - Metrics::edge);
}

void TestBrelWindow::centralWidgetDiesFirst()
{
    {
        QWidget onTheStack;
        std::unique_ptr<QWidget>(window_->centralWidget()).reset();
        window_->setCentralWidget(&onTheStack);
        QCOMPARE(window_->centralWidget(), &onTheStack);
        QTRY_VERIFY(onTheStack.isVisible());
    }
    QVERIFY(window_->centralWidget() == nullptr);
    // The frame goes on without it.
    window_->resize(500, 320);
    QVERIFY(!window_->grab().isNull());
}

void TestBrelWindow::frameTakesItsCentralWidgetAlong()
{
    const QPointer<QWidget> central = window_->centralWidget();
    window_.reset();
    QVERIFY(central.isNull());
}

void TestBrelWindow::replacedCentralWidgetIsHandedBack()
{
    const std::unique_ptr<QWidget> former(window_->centralWidget());
    auto *next = new QLineEdit;
    window_->setCentralWidget(next);
    QCOMPARE(window_->centralWidget(), next);
    QTRY_VERIFY(next->isVisible());
    QVERIFY(former->parentWidget() == nullptr);
    QVERIFY(!former->isVisible());
    window_->setCentralWidget(nullptr);
    QVERIFY(window_->centralWidget() == nullptr);
    delete next;
}

void TestBrelWindow::globalFrame()
{
    QVERIFY(topLevelBrelWindow == nullptr);
    topLevelBrelWindow = window_.get();
    {
        const BrelWindow other;
    }
    QCOMPARE(topLevelBrelWindow, window_.get());
    window_.reset();
    QVERIFY(topLevelBrelWindow == nullptr);
}

void TestBrelWindow::movesByItsBar()
{
    mouse_->drag(barPlace(), QPoint(35, 22));
    QCOMPARE(window_->geometry(), start_.translated(35, 22));
    mouse_->drag(barPlace(), QPoint(-50, -30));
    QCOMPARE(window_->geometry(), start_.translated(-15, -8));
    // Let go, it stays.
    mouse_->moveTo(barPlace() + QPoint(100, 100));
    QCOMPARE(window_->geometry(), start_.translated(-15, -8));
}

void TestBrelWindow::smallTremorDoesNotMove()
{
    mouse_->drag(barPlace(), QPoint(2, 1));
    QCOMPARE(window_->geometry(), start_);
}

void TestBrelWindow::doesNotMoveByItsContents()
{
    mouse_->drag(window_->mapToGlobal(QPoint(200, 200)), QPoint(60, 60));
    QCOMPARE(window_->geometry(), start_);
}

void TestBrelWindow::otherButtonsDoNotMove()
{
    const QPoint place = window_->windowHandle()->mapFromGlobal(barPlace());
    QTest::mousePress(window_->windowHandle(), Qt::RightButton, {}, place);
    mouse_->moveTo(barPlace() + QPoint(50, 50));
    QTest::mouseRelease(window_->windowHandle(), Qt::RightButton, {}, place);
    QCOMPARE(window_->geometry(), start_);
}

void TestBrelWindow::doubleClickMaximizes()
{
    mouse_->doubleClick(barPlace());
    QTRY_VERIFY(window_->isMaximized());
    QTRY_COMPARE(window_->geometry(), window_->screen()->availableGeometry());
    mouse_->doubleClick(barPlace());
    QTRY_VERIFY(!window_->isMaximized());
    QTRY_COMPARE(window_->geometry(), start_);
    // Not so a double click on the contents.
    mouse_->doubleClick(window_->mapToGlobal(QPoint(200, 200)));
    QVERIFY(!window_->isMaximized());
}

void TestBrelWindow::resizes_data()
{
    QTest::addColumn<QPoint>("grip");
    QTest::addColumn<QRect>("expected");
    const QPoint way(30, 20);
    const int right = start_.width() - 2;
    const int bottom = start_.height() - 2;
    const auto row = [&](const char *name, const QPoint &grip, int left, int top, int r, int b) {
        QTest::newRow(name) << grip
                            << start_.adjusted(left * way.x(), top * way.y(), r * way.x(),
                                               b * way.y());
    };
    row("left", QPoint(1, 200), 1, 0, 0, 0);
    row("right", QPoint(right, 200), 0, 0, 1, 0);
    row("top", QPoint(300, 1), 0, 1, 0, 0);
    row("bottom", QPoint(300, bottom), 0, 0, 0, 1);
    row("top left", QPoint(1, 1), 1, 1, 0, 0);
    row("top right", QPoint(right, 1), 0, 1, 1, 0);
    row("bottom left", QPoint(1, bottom), 1, 0, 0, 1);
    row("bottom right", QPoint(right, bottom), 0, 0, 1, 1);
    row("near the corner", QPoint(right - Metrics::corner + 3, bottom), 0, 0, 1, 1);
}

void TestBrelWindow::resizes()
{
    QFETCH(const QPoint, grip);
    QFETCH(const QRect, expected);
    mouse_->drag(window_->mapToGlobal(grip), QPoint(30, 20));
    QCOMPARE(window_->geometry(), expected);
}

void TestBrelWindow::keepsToItsLimits_data()
{
    QTest::addColumn<QPoint>("grip");
    QTest::addColumn<QPoint>("way");
    QTest::addColumn<QRect>("expected");
    const QRect &s = start_;
    const QSize least(400, 300);
    QTest::newRow("smaller, from the right")
        << QPoint(598, 398) << QPoint(-900, -900) << QRect(s.topLeft(), least);
    QTest::newRow("smaller, from the left")
        << QPoint(1, 1) << QPoint(900, 900)
        << QRect(QPoint(s.right() - 399, s.bottom() - 299), least);
    QTest::newRow("larger, from the right")
        << QPoint(598, 398) << QPoint(900, 900) << QRect(s.topLeft(), QSize(700, 500));
}

void TestBrelWindow::keepsToItsLimits()
{
    QFETCH(const QPoint, grip);
    QFETCH(const QPoint, way);
    QFETCH(const QRect, expected);
    window_->setMaximumSize(700, 500);
    mouse_->drag(window_->mapToGlobal(grip), way);
    QCOMPARE(window_->geometry(), expected);
}

void TestBrelWindow::maximizedHasNoEdges()
{
    window_->showMaximized();
    const QRect whole = window_->screen()->availableGeometry();
    QTRY_COMPARE(window_->geometry(), whole);
    QTRY_COMPARE(window_->brelWindowTitle()->geometry().topLeft(), QPoint(0, 0));
    QCOMPARE(window_->brelWindowTitle()->width(), whole.width());
    mouse_->drag(QPoint(whole.right(), whole.bottom()), QPoint(-100, -100));
    QCOMPARE(window_->geometry(), whole);
    window_->showNormal();
    QTRY_COMPARE(window_->brelWindowTitle()->geometry().topLeft(),
                 QPoint(Metrics::edge, Metrics::edge));
}

void TestBrelWindow::maximizedDoesNotMove()
{
    window_->showMaximized();
    const QRect whole = window_->screen()->availableGeometry();
    QTRY_COMPARE(window_->geometry(), whole);
    mouse_->drag(barPlace(), QPoint(40, 60));
    QCOMPARE(window_->geometry(), whole);
    QVERIFY(window_->isMaximized());
}

void TestBrelWindow::cursorTellsTheEdges()
{
    const auto shapeAt = [this](const QPoint &place) {
        mouse_->moveTo(window_->mapToGlobal(place));
        return window_->cursor().shape();
    };
    QCOMPARE(shapeAt(QPoint(1, 200)), Qt::SizeHorCursor);
    QCOMPARE(shapeAt(QPoint(300, 398)), Qt::SizeVerCursor);
    QCOMPARE(shapeAt(QPoint(598, 398)), Qt::SizeFDiagCursor);
    QCOMPARE(shapeAt(QPoint(1, 398)), Qt::SizeBDiagCursor);
    // What lies inside must not inherit the edge's pointer.
    QCOMPARE(window_->centralWidget()->cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(window_->brelWindowTitle()->cursor().shape(), Qt::ArrowCursor);
}

void TestBrelWindow::windowButtons()
{
    const auto button = [this](const char *name) {
        return window_->findChild<QAbstractButton *>(QLatin1String(name));
    };
    auto *maximize = button("buttonMaximize");
    QTest::mouseClick(maximize, Qt::LeftButton);
    QTRY_VERIFY(window_->isMaximized());
    QCOMPARE(maximize->accessibleName(), QStringLiteral("Restore"));
    QTest::mouseClick(maximize, Qt::LeftButton);
    QTRY_VERIFY(!window_->isMaximized());
    QCOMPARE(maximize->accessibleName(), QStringLiteral("Maximize"));
    QTRY_COMPARE(window_->geometry(), start_);

    QTest::mouseClick(button("buttonMinimize"), Qt::LeftButton);
    QTRY_VERIFY(window_->isMinimized());
    window_->showNormal();

    // Closed as the program ends by it: the widget is told, and hidden when it agrees.
    CloseWatch watch;
    window_->installEventFilter(&watch);
    QTest::mouseClick(button("buttonClose"), Qt::LeftButton);
    QCOMPARE(watch.closings, 1);
    QVERIFY(!window_->isVisible());
}

STALLO_TEST_MAIN(TestBrelWindow)
#include "tst_brelwindow.moc"
