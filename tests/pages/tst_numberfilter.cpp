// SPDX-License-Identifier: MIT
#include "tests/pages/numberfiltercase.h"

Q_DECLARE_METATYPE(VaskSettings::NumFilterMode)

// What can be typed into the filter, and what it then finds.
class TestNumberFilter : public NumberFilterCase
{
    Q_OBJECT

private Q_SLOTS:
    void beginsSwitchedOff();
    void takesUpAFormThatIsSwitchedOn();
    void finds_data();
    void finds();
    void looksAtTheNumberOnly();
    void followsTheTyping();
    void lettersOfEitherSize();
    void boxEnablesTheText();
    void switchedOffShowsAll();
    void validatorFollowsTheMode();
    void refusesWhatCannotBeTyped_data();
    void refusesWhatCannotBeTyped();
    void modeClearsARefusedText_data();
    void modeClearsARefusedText();
    void clearedTextFiltersNoMore();
    void textFromTheProgramIsCheckedToo();

private:
    static QRegExp patternOf(VaskSettings::NumFilterMode mode)
    {
        return mode == whole     ? VaskSettings::numPattern
               : mode == symbols ? VaskSettings::numPatternSymbols
                                 : VaskSettings::numPatternNumbers;
    }
};

void TestNumberFilter::beginsSwitchedOff()
{
    QVERIFY(!group_->text.isEnabled());
    QCOMPARE(shown(), all());
    QCOMPARE(proxy()->filterKeyColumn(), numberColumn);
    QVERIFY(proxy()->dynamicSortFilter());
    QCOMPARE(group_->table.model(), proxy());
    QCOMPARE(proxy()->columnCount(), int(ScanModel::columns));
}

void TestNumberFilter::takesUpAFormThatIsSwitchedOn()
{
    group_ = std::make_unique<FilterGroup>();
    group_->on.setChecked(true);
    group_->text.setText(QStringLiteral("456"));
    group_->numbers.setChecked(true);
    group_->make(model_.get());
    QVERIFY(group_->text.isEnabled());
    QCOMPARE(shown(), QStringLiteral("A456BC77"));
}

void TestNumberFilter::finds_data()
{
    QTest::addColumn<VaskSettings::NumFilterMode>("mode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("found");
    const auto row = [](VaskSettings::NumFilterMode mode, const char *typed, const char *found) {
        QTest::addRow("%d, %s", mode, typed)
            << mode << QString::fromLatin1(typed) << QString::fromLatin1(found);
    };
    row(whole, "A123BC77", "A123BC77");
    row(whole, "A123BC", "A123BC77 A123BC177");
    row(whole, "A", "A123BC77 A123BC177 A456BC77 A#23B#77");
    row(whole, "X000XX00", "");
    row(symbols, "ABC", "A123BC77 A123BC177 A456BC77");
    row(symbols, "A**", "A123BC77 A123BC177 A456BC77 A#23B#77");
    row(symbols, "*MM", "K123MM99");
    row(symbols, "K", "K123MM99");
    row(symbols, "A456BC77", "A123BC77 A123BC177 A456BC77");
    row(numbers, "123", "A123BC77 A123BC177 K123MM99");
    row(numbers, "23", "A123BC77 A123BC177 K123MM99 A#23B#77");
    row(numbers, "9", "");
    row(numbers, "K456MM99", "A456BC77");
}

void TestNumberFilter::finds()
{
    QFETCH(VaskSettings::NumFilterMode, mode);
    QFETCH(QString, typed);
    QFETCH(QString, found);
    click(group_->on);
    choose(mode);
    type(typed);
    QCOMPARE(group_->text.text(), typed);
    QCOMPARE(shown(), found);
    QCOMPARE(proxy()->filterRegExp(), VaskSettings::numFilter(typed, mode));
    type(QString());
    QCOMPARE(proxy()->filterRegExp(), VaskSettings::numFilter(QString(), mode));
}

void TestNumberFilter::looksAtTheNumberOnly()
{
    click(group_->on);
    type(QStringLiteral("Z999ZZ99"));
    QCOMPARE(shown(), QString());
}

void TestNumberFilter::followsTheTyping()
{
    click(group_->on);
    QCOMPARE(shown(), all());
    type(QStringLiteral("A4"));
    QCOMPARE(shown(), QStringLiteral("A456BC77"));
    QTest::keyClick(&group_->text, Qt::Key_Backspace);
    QCOMPARE(shown(), QStringLiteral("A123BC77 A123BC177 A456BC77 A#23B#77"));
    // Another way to mean the same text.
    type(QStringLiteral("A123BC77"));
    QCOMPARE(shown(), QStringLiteral("A123BC77"));
    choose(numbers);
    QCOMPARE(shown(), QStringLiteral("A123BC77 A123BC177 K123MM99"));
    choose(symbols);
    QCOMPARE(shown(), QStringLiteral("A123BC77 A123BC177 A456BC77"));
    choose(whole);
    QCOMPARE(shown(), QStringLiteral("A123BC77"));
}

void TestNumberFilter::lettersOfEitherSize()
{
    click(group_->on);
    type(QStringLiteral("a456bc77"));
    QCOMPARE(shown(), QStringLiteral("A456BC77"));
    choose(symbols);
    QCOMPARE(shown(), QStringLiteral("A123BC77 A123BC177 A456BC77"));
}

void TestNumberFilter::boxEnablesTheText()
{
    for (const bool on : {true, false, true}) {
        click(group_->on);
        QCOMPARE(group_->on.isChecked(), on);
        QCOMPARE(group_->text.isEnabled(), on);
    }
}

void TestNumberFilter::switchedOffShowsAll()
{
    click(group_->on);
    type(QStringLiteral("A4"));
    QCOMPARE(proxy()->rowCount(), 1);
    click(group_->on);
    QCOMPARE(shown(), all());
    QVERIFY(proxy()->filterRegExp().isEmpty());
    // The other ways change nothing while it is off.
    choose(numbers);
    QCOMPARE(shown(), all());
    choose(whole);
    click(group_->on);
    QCOMPARE(group_->text.text(), QStringLiteral("A4"));
    QCOMPARE(shown(), QStringLiteral("A456BC77"));
}

void TestNumberFilter::validatorFollowsTheMode()
{
    const auto current = [this] {
        const auto *validator = qobject_cast<const QRegExpValidator *>(group_->text.validator());
        return validator != nullptr ? validator->regExp() : QRegExp();
    };
    QCOMPARE(current(), patternOf(whole));
    click(group_->on);
    for (const auto mode : {numbers, symbols, whole, symbols, numbers, whole}) {
        choose(mode);
        QCOMPARE(current(), patternOf(mode));
    }
    QVERIFY(current() != patternOf(symbols) && current() != patternOf(numbers));
}

void TestNumberFilter::refusesWhatCannotBeTyped_data()
{
    QTest::addColumn<VaskSettings::NumFilterMode>("mode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("left");
    const auto row = [](VaskSettings::NumFilterMode mode, const char *typed, const char *left) {
        QTest::addRow("%d, %s", mode, typed)
            << mode << QString::fromLatin1(typed) << QString::fromLatin1(left);
    };
    row(whole, "1", "");
    row(whole, "*", "");
    row(whole, "A123BC1777", "A123BC177");
    row(whole, "A12C3", "A123");
    row(symbols, "*B*", "*B*");
    row(symbols, "1A", "A");
    row(symbols, "ABCD", "ABC");
    row(numbers, "1234", "123");
    row(numbers, "*12", "12");
    row(numbers, "A12", "A12");
}

void TestNumberFilter::refusesWhatCannotBeTyped()
{
    QFETCH(VaskSettings::NumFilterMode, mode);
    QFETCH(QString, typed);
    QFETCH(QString, left);
    click(group_->on);
    choose(mode);
    type(typed);
    QCOMPARE(group_->text.text(), left);
    QCOMPARE(proxy()->filterRegExp(), VaskSettings::numFilter(left, mode));
}

void TestNumberFilter::modeClearsARefusedText_data()
{
    QTest::addColumn<VaskSettings::NumFilterMode>("from");
    QTest::addColumn<VaskSettings::NumFilterMode>("to");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("stays");
    const auto row = [](VaskSettings::NumFilterMode from, VaskSettings::NumFilterMode to,
                        const char *typed, bool stays) {
        QTest::addRow("%s from %d to %d", typed, from, to)
            << from << to << QString::fromLatin1(typed) << stays;
    };
    for (const auto from : {whole, symbols, numbers}) {
        for (const auto to : {whole, symbols, numbers}) {
            row(from, to, "A123BC77", true);
            row(from, to, "A12", true); // to be a whole number
        }
    }
    row(symbols, whole, "ABC", false);
    row(symbols, numbers, "ABC", false);
    row(symbols, whole, "A**", false);
    row(symbols, numbers, "*", false);
    row(numbers, whole, "123", false);
    row(numbers, symbols, "1", false);
}

void TestNumberFilter::modeClearsARefusedText()
{
    QFETCH(VaskSettings::NumFilterMode, from);
    QFETCH(VaskSettings::NumFilterMode, to);
    QFETCH(QString, typed);
    QFETCH(bool, stays);
    click(group_->on);
    choose(from);
    type(typed);
    QCOMPARE(group_->text.text(), typed);
    choose(to);
    const QString left = stays ? typed : QString();
    QCOMPARE(group_->text.text(), left);
    QCOMPARE(proxy()->filterRegExp(), VaskSettings::numFilter(left, to));
    QVERIFY(group_->text.isEnabled());
}

void TestNumberFilter::clearedTextFiltersNoMore()
{
    click(group_->on);
    choose(symbols);
    type(QStringLiteral("KMM"));
    QCOMPARE(shown(), QStringLiteral("K123MM99"));
    choose(whole);
    QCOMPARE(shown(), all());
}

void TestNumberFilter::textFromTheProgramIsCheckedToo()
{
    click(group_->on);
    group_->text.setText(QStringLiteral("A4"));
    QCOMPARE(shown(), QStringLiteral("A456BC77"));
    group_->text.setText(QStringLiteral("no number"));
    QCOMPARE(group_->text.text(), QString());
    QCOMPARE(shown(), all());
}

STALLO_TEST_MAIN(TestNumberFilter)
#include "tst_numberfilter.moc"
