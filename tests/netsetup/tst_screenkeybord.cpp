// SPDX-License-Identifier: MIT
#include "netsetup/screenkeybord.h"

#include "style/brelstyle.h"
#include "style/metrics.h"
#include "tests/support/testmain.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSpinBox>
#include <QVBoxLayout>

#include <memory>

namespace
{

// What arrived at a focus widget, in order.
class KeyLog : public QObject
{
public:
    struct Key {
        QEvent::Type type;
        int key;
        QString text;
        Qt::KeyboardModifiers modifiers;
        bool autoRepeat;
        int count;
        bool spontaneous;
    };

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
            const auto *key = static_cast<QKeyEvent *>(event);
            keys.append({key->type(), key->key(), key->text(), key->modifiers(),
                         key->isAutoRepeat(), key->count(), key->spontaneous()});
        }
        return QObject::eventFilter(watched, event);
    }

    QVector<Key> keys;
};

} // namespace

class TestScreenKeybord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void fourteenButtons();
    void keys_data();
    void keys();
    void otherKeysHaveNoText();
    void typesAnAddress();
    void edits();
    void respectsAValidator();
    void typesIntoASpinBox();
    void nothingWithoutFocusWidget();
    void holdingRepeats();
    void focusIsNeverTaken();

private:
    QPushButton *button(const QString &name) const;
    void press(const QString &name) const;

    std::unique_ptr<QWidget> window_;
    QLineEdit *edit_ = nullptr;
    ScreenKeybord *keypad_ = nullptr;
};

void TestScreenKeybord::initTestCase()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestScreenKeybord::init()
{
    window_ = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout(window_.get());
    edit_ = new QLineEdit(window_.get());
    keypad_ = new ScreenKeybord(window_.get());
    column->addWidget(edit_);
    column->addWidget(keypad_);
    window_->show();
    QVERIFY(QTest::qWaitForWindowActive(window_.get()));
    edit_->setFocus();
    QCOMPARE(QApplication::focusWidget(), edit_);
}

void TestScreenKeybord::cleanup()
{
    window_.reset();
}

QPushButton *TestScreenKeybord::button(const QString &name) const
{
    return keypad_->findChild<QPushButton *>(name);
}

void TestScreenKeybord::press(const QString &name) const
{
    QTest::mouseClick(button(name), Qt::LeftButton);
}

void TestScreenKeybord::fourteenButtons()
{
    QCOMPARE(keypad_->windowTitle(), QStringLiteral("Form"));
    QVERIFY(!keypad_->isWindow());
    const auto buttons = keypad_->findChildren<QPushButton *>();
    QCOMPARE(buttons.size(), 14);
    for (const QPushButton *one : buttons) {
        QCOMPARE(one->focusPolicy(), Qt::NoFocus);
        QVERIFY(one->autoRepeat());
        QVERIFY(!one->autoDefault());
        QVERIFY(one->font().bold());
        QCOMPARE(one->font().family(), QStringLiteral("Sans Serif"));
        QVERIFY(!one->accessibleName().isEmpty());
        QVERIFY(one->width() >= Metrics::touchSize && one->height() >= Metrics::touchSize);
        QVERIFY(keypad_->rect().contains(one->geometry()));
        QVERIFY(one->width() >= one->sizeHint().width());
        for (const QPushButton *other : buttons) {
            QVERIFY(one == other || !one->geometry().intersects(other->geometry()));
        }
    }
}

void TestScreenKeybord::keys_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    for (int digit = 0; digit <= 9; ++digit) {
        const QString text = QString::number(digit);
        QTest::newRow(qPrintable(text)) << QStringLiteral("pb") + text << Qt::Key_0 + digit << text;
    }
    QTest::newRow("space") << QStringLiteral("pbSpace") << 32 << QStringLiteral(" ");
    QTest::newRow("comma") << QStringLiteral("pbComma") << 44 << QStringLiteral(".");
    QTest::newRow("backspace") << QStringLiteral("pbBackSpace")
                               << static_cast<int>(Qt::Key_Backspace) << QString();
    QTest::newRow("delete") << QStringLiteral("pbDel") << static_cast<int>(Qt::Key_Delete)
                            << QString();
}

void TestScreenKeybord::keys()
{
    QFETCH(const QString, name);
    QFETCH(const int, key);
    QFETCH(const QString, text);
    KeyLog log;
    edit_->installEventFilter(&log);
    // Typed when the button goes down, and nothing more when it is let go.
    QTest::mousePress(button(name), Qt::LeftButton);
    QCOMPARE(log.keys.size(), 1);
    QTest::mouseRelease(button(name), Qt::LeftButton);
    QCOMPARE(log.keys.size(), 1);
    const KeyLog::Key &seen = log.keys.constFirst();
    QCOMPARE(seen.type, QEvent::KeyPress);
    QCOMPARE(seen.key, key);
    QCOMPARE(seen.text, text);
    QCOMPARE(seen.modifiers, Qt::KeyboardModifiers(Qt::NoModifier));
    QVERIFY(!seen.autoRepeat);
    QCOMPARE(seen.count, 1);
}

void TestScreenKeybord::otherKeysHaveNoText()
{
    KeyLog log;
    edit_->installEventFilter(&log);
    for (const int key : {47, 58, 43, 31, static_cast<int>(Qt::Key_A)}) {
        keypad_->buttonPressed(key);
    }
    QCOMPARE(log.keys.size(), 5);
    for (const KeyLog::Key &seen : qAsConst(log.keys)) {
        QVERIFY(seen.text.isEmpty());
    }
    QVERIFY(edit_->text().isEmpty());
}

void TestScreenKeybord::typesAnAddress()
{
    for (const char *name : {"pb1", "pb9", "pb2", "pbComma", "pb1", "pb6", "pb8", "pbComma", "pb0",
                             "pbComma", "pb3"}) {
        press(QLatin1String(name));
    }
    QCOMPARE(edit_->text(), QStringLiteral("192.168.0.3"));
}

void TestScreenKeybord::edits()
{
    edit_->setText(QStringLiteral("abc"));
    press(QStringLiteral("pbBackSpace"));
    QCOMPARE(edit_->text(), QStringLiteral("ab"));
    edit_->setCursorPosition(0);
    press(QStringLiteral("pbDel"));
    QCOMPARE(edit_->text(), QStringLiteral("b"));
    press(QStringLiteral("pbSpace"));
    QCOMPARE(edit_->text(), QStringLiteral(" b"));
}

void TestScreenKeybord::respectsAValidator()
{
    const QRegularExpression address(QStringLiteral("\\d{1,3}\\.\\d{1,3}\\.\\d{1,3}\\.\\d{1,3}"));
    const QRegularExpressionValidator validator(address);
    edit_->setValidator(&validator);
    for (const char *name : {"pb1", "pb9", "pb2", "pbComma"}) {
        press(QLatin1String(name));
    }
    QCOMPARE(edit_->text(), QStringLiteral("192."));
    press(QStringLiteral("pbComma"));
    press(QStringLiteral("pbSpace"));
    QCOMPARE(edit_->text(), QStringLiteral("192."));
    edit_->setValidator(nullptr);
}

void TestScreenKeybord::typesIntoASpinBox()
{
    auto *spin = new QSpinBox(window_.get());
    spin->setRange(1, 65535);
    spin->setValue(3333);
    window_->layout()->addWidget(spin);
    spin->show();
    spin->setFocus();
    spin->selectAll();
    for (const char *name : {"pb4", "pb0", "pb5"}) {
        press(QLatin1String(name));
    }
    QCOMPARE(spin->value(), 405);
    press(QStringLiteral("pbBackSpace"));
    QCOMPARE(spin->value(), 40);
}

void TestScreenKeybord::nothingWithoutFocusWidget()
{
    edit_->setText(QStringLiteral("kept"));
    edit_->clearFocus();
    QVERIFY(QApplication::focusWidget() == nullptr);
    KeyLog log;
    qApp->installEventFilter(&log);
    for (const QPushButton *one : keypad_->findChildren<QPushButton *>()) {
        press(one->objectName());
    }
    qApp->removeEventFilter(&log);
    QCOMPARE(log.keys.size(), 0);
    QCOMPARE(edit_->text(), QStringLiteral("kept"));
}

void TestScreenKeybord::holdingRepeats()
{
    edit_->setText(QStringLiteral("a text to be erased"));
    QPushButton *back = button(QStringLiteral("pbBackSpace"));
    QTest::mousePress(back, Qt::LeftButton);
    QTRY_VERIFY(edit_->text().isEmpty());
    QTest::mouseRelease(back, Qt::LeftButton);
}

void TestScreenKeybord::focusIsNeverTaken()
{
    for (const QPushButton *one : keypad_->findChildren<QPushButton *>()) {
        press(one->objectName());
        QCOMPARE(QApplication::focusWidget(), edit_);
    }
    QTest::keyClick(edit_, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), edit_);
}

STALLO_TEST_MAIN(TestScreenKeybord)
#include "tst_screenkeybord.moc"
