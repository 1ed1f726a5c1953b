// SPDX-License-Identifier: MIT
#include "tests/support/testmain.h"
#include "tests/translations/keyletters.h"
#include "tests/translations/panelforms.h"

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>

using KeyLetters::physical;

namespace
{

QString textOf(const QWidget *widget)
{
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
        return button->text();
    }
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        return label->buddy() != nullptr ? label->text() : QString();
    }
    const auto *group = qobject_cast<const QGroupBox *>(widget);
    return group != nullptr ? group->title() : QString();
}

// The keys that work in the form, each with what it does. The two devices of a page have the same
// texts and the same keys.
QMap<QString, QStringList> keysOf(const QWidget *form)
{
    QMap<QString, QStringList> keys;
    const auto add = [&keys](const QKeySequence &sequence, const QString &what) {
        QStringList &uses = keys[physical(sequence)];
        if (!sequence.isEmpty() && !uses.contains(what)) {
            uses.append(what);
        }
    };
    for (const QWidget *widget : form->findChildren<QWidget *>()) {
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        if (widget->isVisibleTo(form)) {
            add(button != nullptr ? button->shortcut() : QKeySequence::mnemonic(textOf(widget)),
                textOf(widget));
        }
    }
    for (const QShortcut *shortcut : form->findChildren<QShortcut *>()) {
        add(shortcut->key(), QStringLiteral("shortcut ") + shortcut->key().toString());
    }
    for (const QAction *action : form->findChildren<QAction *>()) {
        add(action->shortcut(), action->text());
    }
    keys.remove(QString());
    return keys;
}

// Whether the underlined letter stands for another key with it, as Alt+Shift and the letter.
bool hasOtherKey(const QWidget *widget, const QString &letter)
{
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    const QString key = button != nullptr ? physical(button->shortcut()) : QString();
    return key != letter && key.endsWith(letter.right(1));
}

// The letters that are underlined, each with the texts that it is in.
QMap<QString, QStringList> lettersOf(const QWidget *form)
{
    QMap<QString, QStringList> letters;
    for (const QWidget *widget : form->findChildren<QWidget *>()) {
        const QString text = textOf(widget);
        const QString letter = QKeySequence::mnemonic(text).toString().toUpper();
        if (!letter.isEmpty() && widget->isVisibleTo(form) && !hasOtherKey(widget, letter) &&
            !letters[letter].contains(text)) {
            letters[letter].append(text);
        }
    }
    return letters;
}

// The texts in which a letter is underlined that does nothing, since the button has another key.
QStringList idleLettersOf(const QWidget *form)
{
    QStringList texts;
    for (const QAbstractButton *button : form->findChildren<QAbstractButton *>()) {
        if (!KeyLetters::isLetterOf(button->shortcut(), button->text())) {
            texts.append(button->text());
        }
    }
    return texts;
}

QStringList shared(const QMap<QString, QStringList> &uses)
{
    QStringList found;
    for (auto use = uses.begin(); use != uses.end(); ++use) {
        if (use.value().size() > 1) {
            found.append(use.key() + QStringLiteral(": ") +
                         use.value().join(QStringLiteral(" | ")));
        }
    }
    return found;
}

} // namespace

// In the language of the locale: no key means two things in one form, and no letter is underlined
// that does nothing.
class TestMnemonics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { forms_ = std::make_unique<PanelForms>(); }
    void cleanupTestCase() { forms_.reset(); }

    void speaksTheLanguage();
    void areUnique_data() { forms(); }
    void areUnique();
    void workAsUnderlined_data() { forms(); }
    void workAsUnderlined();
    void keysOfPages_data();
    void keysOfPages();
    void findsShared();
    void findsIdleLetters();

private:
    static void forms();

    std::unique_ptr<PanelForms> forms_;
};

void TestMnemonics::speaksTheLanguage()
{
    // Or the rest would say nothing about the language.
    QCOMPARE(PanelForms::language(), qEnvironmentVariable("STALLO_LANGUAGE"));
}

void TestMnemonics::forms()
{
    QTest::addColumn<QString>("form");
    for (const QString &name : PanelForms::names()) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void TestMnemonics::areUnique()
{
    QFETCH(QString, form);
    const QWidget *shown = forms_->show(form);
    QVERIFY(shown != nullptr);
    const QStringList keys = shared(keysOf(shown));
    QVERIFY2(keys.isEmpty(), qPrintable(keys.join(QLatin1Char('\n'))));
    const QStringList letters = shared(lettersOf(shown));
    QVERIFY2(letters.isEmpty(), qPrintable(letters.join(QLatin1Char('\n'))));
}

void TestMnemonics::workAsUnderlined()
{
    QFETCH(QString, form);
    const QWidget *shown = forms_->show(form);
    QVERIFY(shown != nullptr);
    const QStringList idle = idleLettersOf(shown);
    QVERIFY2(idle.isEmpty(), qPrintable(idle.join(QLatin1Char('\n'))));
}

void TestMnemonics::keysOfPages_data()
{
    QTest::addColumn<QString>("form");
    // Keys that are the same in every language.
    QTest::addColumn<QStringList>("keys");
    const QString alt = QStringLiteral("ALT+");
    const QStringList pages = {alt + QLatin1Char('1'), alt + QLatin1Char('2'),
                               alt + QLatin1Char('3')};
    QTest::newRow("archive") << QStringLiteral("archive") << pages;
    QTest::newRow("access list") << QStringLiteral("access list")
                                 << pages + QStringList{QStringLiteral("CTRL+N"),
                                                        QStringLiteral("CTRL+R"),
                                                        QStringLiteral("CTRL+RETURN"),
                                                        QStringLiteral("ALT+SHIFT+W")};
    QTest::newRow("on-line") << QStringLiteral("on-line")
                             << pages + QStringList{alt + QLatin1Char('D'), alt + QLatin1Char('S')};
}

void TestMnemonics::keysOfPages()
{
    QFETCH(QString, form);
    QFETCH(QStringList, keys);
    const auto found = keysOf(forms_->show(form));
    for (const QString &key : keys) {
        QVERIFY2(found.contains(key), qPrintable(key));
    }
    QVERIFY(found.size() > keys.size());
}

void TestMnemonics::findsShared()
{
    QWidget form;
    QLineEdit field(&form);
    QLabel label(QString::fromUtf8("&Ввод"), &form);
    QAbstractButton *button = new QPushButton(QStringLiteral("&Save"), &form);
    QCOMPARE(shared(keysOf(&form)), QStringList());
    // Without the field beside it the letter of a label does nothing.
    button->setShortcut(QKeySequence(QStringLiteral("Alt+D")));
    QCOMPARE(shared(keysOf(&form)), QStringList());
    label.setBuddy(&field);
    QCOMPARE(shared(keysOf(&form)).size(), 1);
    QCOMPARE(shared(lettersOf(&form)), QStringList());
    label.setText(QStringLiteral("&Select"));
    QCOMPARE(shared(lettersOf(&form)).size(), 1);
}

void TestMnemonics::findsIdleLetters()
{
    QWidget form;
    QAbstractButton *button = new QPushButton(QString::fromUtf8("&Выбрать"), &form);
    QCOMPARE(idleLettersOf(&form), QStringList());
    // The same key as the letter.
    button->setShortcut(QKeySequence(QStringLiteral("Alt+Shift+D")));
    QCOMPARE(idleLettersOf(&form), QStringList());
    button->setShortcut(QKeySequence(QStringLiteral("Alt+S")));
    QCOMPARE(idleLettersOf(&form), QStringList{button->text()});
    button->setShortcut(QKeySequence());
    QCOMPARE(idleLettersOf(&form), QStringList{button->text()});
}

STALLO_TEST_MAIN(TestMnemonics)
#include "tst_mnemonics.moc"
