// SPDX-License-Identifier: MIT
#include "pages/archiveintervaldialog.h"

#include "style/brelstyle.h"
#include "style/metrics.h"
#include "tests/support/modalanswers.h"
#include "tests/support/testmain.h"

#include <QDateEdit>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTimeEdit>

using Section = QDateTimeEdit::Section;

namespace
{

// Moments of 4 March 2026 by their time, of other days by day and time.
QDateTime at(const char *moment)
{
    const QString text = QString::fromLatin1(moment);
    const QString day = text.contains(QLatin1Char(' ')) ? QString() : QStringLiteral("4 ");
    return QDateTime::fromString(QStringLiteral("2026 3 ") + day + text,
                                 QStringLiteral("yyyy M d H:mm"));
}

} // namespace

class TestArchiveIntervalDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { dialog_.reset(); }

    void texts();
    void placesInOrder();
    void keyboardOrder();
    void isTouchable();
    void beginsWithTheWholeArchive();
    void selectionEnablesTheGroup();
    void takesWhatTheProgramSets_data();
    void takesWhatTheProgramSets();
    void setsEachEndByItself();
    void keepsAnHourBetween_data();
    void keepsAnHourBetween();
    void typedNumbers_data();
    void typedNumbers();
    void whatStandsThereIsMeant();
    void clearsDates();
    void buttons_data();
    void buttons();
    void keys_data();
    void keys();
    void returnTakesWhatWasTyped();
    void keepsWhatWasChosen();

private:
    template <typename T>
    T *part(const char *name) const
    {
        T *found = dialog_->findChild<T *>(QLatin1String(name));
        if (found == nullptr) {
            qFatal("the dialog has no %s", name);
        }
        return found;
    }
    QDateTimeEdit *edit(const char *name) const { return part<QDateTimeEdit>(name); }
    void select() const
    {
        QTest::mouseClick(part<QRadioButton>("rbBySelection"), Qt::LeftButton);
        QVERIFY(part<QGroupBox>("groupBox")->isEnabled());
    }
    void preset(const char *from, const char *to) const
    {
        dialog_->setFromTime(at(from));
        dialog_->setToTime(at(to));
        compare(from, to);
    }
    void compare(const char *from, const char *to) const
    {
        QCOMPARE(dialog_->fromTime(), at(from));
        QCOMPARE(dialog_->toTime(), at(to));
    }
    QDateTimeEdit *enter(const char *name, Section section) const
    {
        QDateTimeEdit *entered = edit(name);
        entered->setFocus();
        entered->setSelectedSection(section);
        return entered;
    }

    void pressOk() const
    {
        QTest::mouseClick(part<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
        QVERIFY(!dialog_->isVisible());
    }

    std::unique_ptr<ArchiveIntervalDialog> dialog_;
};

void TestArchiveIntervalDialog::initTestCase()
{
    auto *style = new BrelStyle;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
}

void TestArchiveIntervalDialog::init()
{
    dialog_ = std::make_unique<ArchiveIntervalDialog>(nullptr);
    dialog_->show();
    QVERIFY(QTest::qWaitForWindowActive(dialog_.get()));
}

void TestArchiveIntervalDialog::texts()
{
    QCOMPARE(dialog_->windowTitle(), QStringLiteral("Archive time"));
    QCOMPARE(part<QLabel>("label")->text(), QStringLiteral("Select the proper archive data"));
    QCOMPARE(part<QRadioButton>("rbAllArchive")->text(), QStringLiteral("All archive"));
    QCOMPARE(part<QRadioButton>("rbBySelection")->text(), QStringLiteral("By selection"));
    QCOMPARE(part<QLabel>("label_2")->text(), QStringLiteral("Begin:"));
    QCOMPARE(part<QLabel>("label_3")->text(), QStringLiteral("End:"));
    QCOMPARE(part<QGroupBox>("groupBox")->title(), QString());
    preset("9:05", "23:59");
    for (const char *name : {"teFrom", "teTo"}) {
        QCOMPARE(part<QTimeEdit>(name)->displayFormat(), QStringLiteral("H:mm"));
    }
    QCOMPARE(edit("teFrom")->text(), QStringLiteral("9:05"));
    QCOMPARE(edit("teTo")->text(), QStringLiteral("23:59"));
    QCOMPARE(part<QDialogButtonBox>("buttonBox")->standardButtons(),
             QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    // The pairs of edits have names of their own for those who cannot see them.
    QStringList names;
    for (const char *name : {"deFrom", "teFrom", "deTo", "teTo"}) {
        names << edit(name)->accessibleName();
    }
    QCOMPARE(names.removeDuplicates(), 0);
    QVERIFY(!names.contains(QString()));
}

void TestArchiveIntervalDialog::placesInOrder()
{
    const auto *group = part<QGroupBox>("groupBox");
    const QWidget *before = nullptr;
    for (const char *name : {"label", "rbAllArchive", "rbBySelection", "groupBox", "label_2",
                             "deFrom", "teFrom", "label_3", "deTo", "teTo", "buttonBox"}) {
        const auto *each = part<QWidget>(name);
        QVERIFY2(each->isVisible(), name);
        QVERIFY(each->parentWidget()->rect().contains(each->geometry()));
        if (before != nullptr && before != group) {
            const QPoint place = each->mapTo(dialog_.get(), QPoint());
            const QPoint last = before->mapTo(dialog_.get(), QPoint());
            const bool below = place.y() >= last.y() + before->height();
            const bool beside = place.x() >= last.x() + before->width();
            QVERIFY2(below || beside, name);
        }
        before = each;
    }
    for (const char *name : {"label_2", "deFrom", "teFrom", "label_3", "deTo", "teTo"}) {
        QCOMPARE(part<QWidget>(name)->parentWidget(), group);
    }
}

void TestArchiveIntervalDialog::keyboardOrder()
{
    select();
    part<QRadioButton>("rbBySelection")->setFocus();
    for (const char *name : {"deFrom", "teFrom", "deTo", "teTo"}) {
        const QWidget *before = QApplication::focusWidget();
        // An edit's sections come one after the other.
        for (int key = 0; key < 4 && QApplication::focusWidget() == before; ++key) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(QApplication::focusWidget(), edit(name));
    }
}

void TestArchiveIntervalDialog::isTouchable()
{
    QVector<QWidget *> controls;
    for (const char *name : {"rbAllArchive", "rbBySelection", "deFrom", "teFrom", "deTo", "teTo"}) {
        controls << part<QWidget>(name);
    }
    for (QAbstractButton *button : part<QDialogButtonBox>("buttonBox")->buttons()) {
        controls << button;
    }
    QCOMPARE(controls.size(), 8);
    for (const QWidget *each : controls) {
        const QString words = QStringLiteral("%1: %2x%3")
                                  .arg(each->objectName())
                                  .arg(each->width())
                                  .arg(each->height());
        QVERIFY2(each->width() >= 44 && each->height() >= 44, qPrintable(words));
        QVERIFY2(each->width() >= each->sizeHint().width(), qPrintable(words));
    }
    // On the smallest screen, below the title bar.
    QVERIFY(dialog_->width() <= 1024);
    QVERIFY(dialog_->height() <= 512 - Metrics::titleBarHeight);
}

void TestArchiveIntervalDialog::beginsWithTheWholeArchive()
{
    dialog_.reset();
    const QDateTime before = QDateTime::currentDateTime();
    dialog_ = std::make_unique<ArchiveIntervalDialog>(nullptr);
    const QDateTime after = QDateTime::currentDateTime();
    QVERIFY(dialog_->allArchive());
    QVERIFY(!part<QGroupBox>("groupBox")->isEnabled());
    QVERIFY(dialog_->toTime() >= before && dialog_->toTime() <= after);
    QCOMPARE(dialog_->fromTime(), dialog_->toTime().addDays(-1));
}

void TestArchiveIntervalDialog::selectionEnablesTheGroup()
{
    preset("10:00", "12:00");
    for (const bool selection : {true, false, true}) {
        QTest::mouseClick(part<QRadioButton>(selection ? "rbBySelection" : "rbAllArchive"),
                          Qt::LeftButton);
        QCOMPARE(dialog_->allArchive(), !selection);
        QCOMPARE(part<QGroupBox>("groupBox")->isEnabled(), selection);
        QCOMPARE(part<QRadioButton>("rbAllArchive")->isChecked(), !selection);
        for (const char *name : {"deFrom", "teFrom", "deTo", "teTo"}) {
            QCOMPARE(edit(name)->isEnabled(), selection);
        }
        compare("10:00", "12:00");
    }
}

void TestArchiveIntervalDialog::takesWhatTheProgramSets_data()
{
    QTest::addColumn<QDateTime>("from");
    QTest::addColumn<QDateTime>("to");
    const auto row = [](const char *from, const char *to) {
        QTest::addRow("%s to %s", from, to) << at(from) << at(to);
    };
    row("10:00", "12:00");
    row("10:00", "11:00");
    row("0:00", "23:59");
    row("1 23:30", "9 0:10");
    row("10:00", "10:30"); // not the operator's
    row("10:00", "10:00");
    row("12:00", "10:00");
    row("9 10:00", "2 12:00");
    QTest::newRow("seconds") << at("10:00").addMSecs(7001) << at("10:00").addMSecs(8002);
    QTest::newRow("another year") << QDateTime(QDate(2031, 1, 1), QTime())
                                  << QDateTime(QDate(2031, 1, 1), QTime(2, 0));
}

void TestArchiveIntervalDialog::takesWhatTheProgramSets()
{
    QFETCH(QDateTime, from);
    QFETCH(QDateTime, to);
    // From today's times, and from those of a later and an earlier day.
    for (const char *day : {"", "1 0:00", "30 23:00"}) {
        if (*day != '\0') {
            dialog_->setFromTime(at(day));
            dialog_->setToTime(at(day).addSecs(3600));
        }
        dialog_->setFromTime(from);
        dialog_->setToTime(to);
        QCOMPARE(dialog_->fromTime(), from);
        QCOMPARE(dialog_->toTime(), to);
        dialog_->clearDates();
        dialog_->setToTime(to);
        dialog_->setFromTime(from);
        QCOMPARE(dialog_->fromTime(), from);
        QCOMPARE(dialog_->toTime(), to);
    }
}

void TestArchiveIntervalDialog::setsEachEndByItself()
{
    preset("10:00", "12:00");
    dialog_->setFromTime(at("7 15:00"));
    compare("7 15:00", "12:00");
    dialog_->setToTime(at("2 1:00"));
    compare("7 15:00", "2 1:00");
    QCOMPARE(edit("deFrom")->date(), QDate(2026, 3, 7));
    QCOMPARE(edit("teFrom")->time(), QTime(15, 0));
    QCOMPARE(edit("deTo")->date(), QDate(2026, 3, 2));
    QCOMPARE(edit("teTo")->time(), QTime(1, 0));
}

void TestArchiveIntervalDialog::keepsAnHourBetween_data()
{
    QTest::addColumn<QByteArray>("before"); // begin and end
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<Section>("section");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("times");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *before, const char *edit, Section section, Qt::Key key,
                        int times, const char *after) {
        QTest::addRow("%s, %s, %s %d", before, edit, key == Qt::Key_Up ? "up" : "down", times)
            << QByteArray(before) << QByteArray(edit) << section << key << times
            << QByteArray(after);
    };
    const Section hour = QDateTimeEdit::HourSection;
    const Section minute = QDateTimeEdit::MinuteSection;
    const Section day = QDateTimeEdit::DaySection;
    // The end gives way to the begin and the begin to the end.
    row("10:00/12:30", "teTo", hour, Qt::Key_Down, 2, "9:30/10:30");
    row("10:00/12:30", "teFrom", hour, Qt::Key_Up, 2, "12:00/13:00");
    row("10:00/10:31", "teTo", minute, Qt::Key_Down, 1, "9:30/10:30");
    row("11:31/12:31", "teFrom", minute, Qt::Key_Up, 2, "11:33/12:33");
    // An hour is enough, a minute less is not.
    row("10:00/12:00", "teTo", hour, Qt::Key_Down, 1, "10:00/11:00");
    row("10:00/11:00", "teTo", minute, Qt::Key_Up, 5, "10:00/11:05");
    row("10:00/11:01", "teTo", minute, Qt::Key_Down, 1, "10:00/11:00");
    row("10:01/11:02", "teTo", minute, Qt::Key_Down, 2, "10:00/11:00");
    row("10:00/12:00", "teFrom", hour, Qt::Key_Up, 1, "11:00/12:00");
    row("10:58/11:59", "teFrom", minute, Qt::Key_Up, 1, "10:59/11:59");
    row("11:00/12:00", "teFrom", minute, Qt::Key_Up, 1, "11:01/12:01");
    row("10:00/12:00", "teFrom", hour, Qt::Key_Down, 3, "7:00/12:00");
    // Over midnight.
    row("0:10/1:30", "teTo", hour, Qt::Key_Down, 1, "3 23:30/0:30");
    row("22:30/23:45", "teFrom", hour, Qt::Key_Up, 1, "23:30/5 0:30");
    // By days.
    row("10:00/12:00", "deTo", day, Qt::Key_Down, 1, "3 11:00/3 12:00");
    row("10:00/12:00", "deFrom", day, Qt::Key_Up, 1, "5 10:00/5 11:00");
    row("10:00/5 10:30", "deTo", day, Qt::Key_Down, 1, "9:30/10:30");
    row("10:00/5 9:00", "deFrom", day, Qt::Key_Up, 1, "5 10:00/5 11:00");
    row("10:00/12:00", "deTo", day, Qt::Key_Up, 3, "10:00/7 12:00");
    row("10:00/12:00", "deFrom", day, Qt::Key_Down, 3, "1 10:00/12:00");
}

void TestArchiveIntervalDialog::keepsAnHourBetween()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, edit);
    QFETCH(Section, section);
    QFETCH(Qt::Key, key);
    QFETCH(int, times);
    QFETCH(QByteArray, after);
    select();
    preset(before.split('/').first().constData(), before.split('/').last().constData());
    QDateTimeEdit *entered = enter(edit.constData(), section);
    for (int time = 0; time < times; ++time) {
        QTest::keyClick(entered, key);
    }
    compare(after.split('/').first().constData(), after.split('/').last().constData());
}

void TestArchiveIntervalDialog::typedNumbers_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<Section>("section");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *before, const char *edit, Section section, const char *typed,
                        const char *after) {
        QTest::addRow("%s, %s %s", before, edit, typed)
            << QByteArray(before) << QByteArray(edit) << section << QString::fromLatin1(typed)
            << QByteArray(after);
    };
    const Section hour = QDateTimeEdit::HourSection;
    const Section minute = QDateTimeEdit::MinuteSection;
    const Section day = QDateTimeEdit::DaySection;
    row("10:00/12:00", "teTo", hour, "1030", "9:30/10:30");
    row("10:00/12:30", "teFrom", hour, "1200", "12:00/13:00");
    row("10:00/10:30", "teFrom", hour, "9", "9:00/10:30");
    row("10:00/12:30", "teFrom", minute, "45", "10:45/12:30");
    // A number on the way to what is meant moves nothing for good.
    row("10:00/12:30", "teTo", hour, "11", "10:00/11:30");
    row("14:00/15:00", "teTo", hour, "16", "14:00/16:00");
    row("3 10:00/12:30", "deTo", day, "15", "3 10:00/15 12:30");
    row("10:00/9 12:30", "deFrom", day, "2", "2 10:00/9 12:30");
}

void TestArchiveIntervalDialog::typedNumbers()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, edit);
    QFETCH(Section, section);
    QFETCH(QString, typed);
    QFETCH(QByteArray, after);
    select();
    preset(before.split('/').first().constData(), before.split('/').last().constData());
    QDateTimeEdit *entered = enter(edit.constData(), section);
    QTest::keyClicks(entered, typed);
    pressOk();
    QCOMPARE(dialog_->toTime(),
             edit.endsWith("To") ? at(after.split('/').last().constData()) : dialog_->toTime());
    QCOMPARE(dialog_->fromTime(), at(after.split('/').first().constData()));
    QCOMPARE(dialog_->toTime(), at(after.split('/').last().constData()));
}

void TestArchiveIntervalDialog::whatStandsThereIsMeant()
{
    // The dialog was last set to a moment that has seconds, as clearing the dates does.
    select();
    dialog_->setFromTime(at("10:00").addMSecs(26169));
    dialog_->setToTime(at("20:00").addMSecs(26169));
    QTest::keyClicks(enter("teFrom", QDateTimeEdit::HourSection), QStringLiteral("1400"));
    QTest::keyClicks(enter("teTo", QDateTimeEdit::HourSection), QStringLiteral("1600"));
    pressOk();
    QCOMPARE(dialog_->fromTime(), at("14:00"));
    QCOMPARE(dialog_->toTime(), at("16:00"));
}

void TestArchiveIntervalDialog::clearsDates()
{
    select();
    preset("10:00", "12:00");
    const QDateTime before = QDateTime::currentDateTime();
    dialog_->clearDates();
    const QDateTime after = QDateTime::currentDateTime();
    QVERIFY(dialog_->allArchive());
    QVERIFY(!part<QGroupBox>("groupBox")->isEnabled());
    QVERIFY(dialog_->toTime() >= before && dialog_->toTime() <= after);
    QCOMPARE(dialog_->fromTime(), dialog_->toTime().addDays(-1));
}

void TestArchiveIntervalDialog::buttons_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("OK") << int(QDialogButtonBox::Ok) << int(QDialog::Accepted);
    QTest::newRow("Cancel") << int(QDialogButtonBox::Cancel) << int(QDialog::Rejected);
}

void TestArchiveIntervalDialog::buttons()
{
    QFETCH(int, button);
    QFETCH(int, result);
    dialog_->hide();
    ModalAnswers answers;
    answers.expect([&](QWidget *window) {
        QCOMPARE(window, dialog_.get());
        QVERIFY(window->isModal());
        QTest::mouseClick(part<QDialogButtonBox>("buttonBox")
                              ->button(static_cast<QDialogButtonBox::StandardButton>(button)),
                          Qt::LeftButton);
    });
    QCOMPARE(dialog_->exec(), result);
    QVERIFY(!dialog_->isVisible());
}

void TestArchiveIntervalDialog::keys_data()
{
    QTest::addColumn<QByteArray>("in");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("result");
    for (const char *in : {"rbAllArchive", "rbBySelection", "deFrom", "teTo"}) {
        QTest::addRow("%s, escape", in)
            << QByteArray(in) << Qt::Key_Escape << int(QDialog::Rejected);
        QTest::addRow("%s, return", in)
            << QByteArray(in) << Qt::Key_Return << int(QDialog::Accepted);
    }
}

void TestArchiveIntervalDialog::keys()
{
    QFETCH(QByteArray, in);
    QFETCH(Qt::Key, key);
    QFETCH(int, result);
    select();
    preset("10:00", "12:00");
    auto *focus = part<QWidget>(in.constData());
    focus->setFocus();
    dialog_->setResult(-1);
    QTest::keyClick(focus, key);
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(dialog_->result(), result);
    compare("10:00", "12:00");
}

void TestArchiveIntervalDialog::returnTakesWhatWasTyped()
{
    select();
    preset("10:00", "12:00");
    QDateTimeEdit *entered = enter("teTo", QDateTimeEdit::MinuteSection);
    QTest::keyClicks(entered, QStringLiteral("45"));
    QTest::keyClick(entered, Qt::Key_Return);
    QVERIFY(!dialog_->isVisible());
    compare("10:00", "12:45");
}

void TestArchiveIntervalDialog::keepsWhatWasChosen()
{
    select();
    preset("10:00", "12:00");
    QTest::keyClick(dialog_.get(), Qt::Key_Escape);
    dialog_->show();
    compare("10:00", "12:00");
    QVERIFY(!dialog_->allArchive());
    QVERIFY(part<QGroupBox>("groupBox")->isEnabled());
}

STALLO_TEST_MAIN(TestArchiveIntervalDialog)
#include "tst_archiveintervaldialog.moc"
