// SPDX-License-Identifier: MIT
#include "pages/accessfiles.h"
#include "records/accessmodel.h"
#include "tests/pages/numberfiltercase.h"
#include "tests/support/localletters.h"

Q_DECLARE_METATYPE(VaskSettings::NumFilterMode)

// The filter under a catalogue for cyrillic plates, with a keyboard that types either alphabet.
class TestNumberFilterLocal : public NumberFilterCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { letters_ = std::make_unique<LocalLetters>(); }
    void cleanupTestCase() { letters_.reset(); }

    void finds_data();
    void finds();
    void keepsLatinTextAsItIs_data();
    void keepsLatinTextAsItIs();
    void refusesOtherLetters();
    void findsLocalLettersInTheTable();
    void followsTheListsRows();
    void withoutLettersNothingIsTranslated();

private:
    std::unique_ptr<LocalLetters> letters_;
};

void TestNumberFilterLocal::finds_data()
{
    QTest::addColumn<VaskSettings::NumFilterMode>("mode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("latin");
    QTest::addColumn<QString>("found");
    const auto row = [](VaskSettings::NumFilterMode mode, const QString &typed,
                        const QString &latin, const QString &found) {
        QTest::addRow("%d, %s", mode, qPrintable(typed)) << mode << typed << latin << found;
    };
    const QString both = QStringLiteral("A123BC77 A123BC177");
    row(whole, QStringLiteral("а123вс77"), QStringLiteral("A123BC77"), QStringLiteral("A123BC77"));
    row(whole, QStringLiteral("А123ВС"), QStringLiteral("A123BC"), both);
    row(whole, QStringLiteral("A123вC"), QStringLiteral("A123BC"), both);
    row(whole, QStringLiteral("к"), QStringLiteral("K"), QStringLiteral("K123MM99"));
    row(symbols, QStringLiteral("авс"), QStringLiteral("ABC"), both + QStringLiteral(" A456BC77"));
    row(symbols, QStringLiteral("*мм"), QStringLiteral("*MM"), QStringLiteral("K123MM99"));
    row(symbols, QStringLiteral("а456вс77"), QStringLiteral("A456BC77"),
        both + QStringLiteral(" A456BC77"));
    row(numbers, QStringLiteral("к456мм99"), QStringLiteral("K456MM99"),
        QStringLiteral("A456BC77"));
}

void TestNumberFilterLocal::finds()
{
    QFETCH(VaskSettings::NumFilterMode, mode);
    QFETCH(QString, typed);
    QFETCH(QString, latin);
    QFETCH(QString, found);
    click(group_->on);
    choose(mode);
    LocalLetters::type(&group_->text, typed);
    QCOMPARE(group_->text.text(), typed);
    QCOMPARE(proxy()->filterRegExp(), VaskSettings::numFilter(latin, mode));
    QCOMPARE(shown(), found);
}

void TestNumberFilterLocal::keepsLatinTextAsItIs_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("small") << QStringLiteral("a123bc77");
    QTest::newRow("capital") << QStringLiteral("A123BC77");
    QTest::newRow("mixed") << QStringLiteral("a123Bc7");
    QTest::newRow("none") << QString();
}

void TestNumberFilterLocal::keepsLatinTextAsItIs()
{
    QFETCH(QString, typed);
    click(group_->on);
    LocalLetters::type(&group_->text, typed);
    QCOMPARE(proxy()->filterRegExp(), VaskSettings::numFilter(typed, whole));
    QCOMPARE(proxy()->filterRegExp().pattern(), typed);
}

void TestNumberFilterLocal::refusesOtherLetters()
{
    click(group_->on);
    LocalLetters::type(&group_->text, QStringLiteral("ж1я"));
    QCOMPARE(group_->text.text(), QString());
    QCOMPARE(shown(), all());
}

void TestNumberFilterLocal::findsLocalLettersInTheTable()
{
    write("local.tpp", {QStringLiteral("К777КК"), QStringLiteral("K777KK"), QStringLiteral("M1")});
    group_->filter->rebind([this] { model_->setFileName(below("local.tpp")); });
    click(group_->on);
    for (const QString &typed : {QStringLiteral("к777"), QStringLiteral("k777")}) {
        LocalLetters::type(&group_->text, typed);
        QCOMPARE(shown(), QStringLiteral("K777KK K777KK"));
    }
}

void TestNumberFilterLocal::followsTheListsRows()
{
    // A list that a device has written shows its numbers as they are stored.
    QFile file(below("list.tpa"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    for (const QString &number : {QStringLiteral("К777КК"), QStringLiteral("M1")}) {
        Access access;
        access.setNumber(number);
        file.write(access.data(), Access::size);
    }
    file.close();
    AccessModel list(file.fileName(), nullptr);
    NumberProxy proxy(AccessFiles::numbersOf(&list), nullptr);
    proxy.setSourceModel(&list);
    QCOMPARE(proxy.rowCount(), 2);
    const QRegExp wanted = VaskSettings::numFilter(QStringLiteral("K777"), whole);
    proxy.change([&] { proxy.setFilterRegExp(wanted); });
    QCOMPARE(proxy.rowCount(), 1);
    QCOMPARE(proxy.index(0, AccessModel::NumberColumn).data().toString(), QStringLiteral("К777КК"));
    // Row by row, as rows change.
    proxy.setFilterRegExp(QRegExp());
    QCOMPARE(proxy.rowCount(), 2);
    proxy.setFilterRegExp(wanted);
    QCOMPARE(proxy.rowCount(), 1);
    QVERIFY(list.setValue(0, list.value(0)));
    QCOMPARE(proxy.rowCount(), 1);
    QCOMPARE(proxy.index(0, AccessModel::NumberColumn).data().toString(), QStringLiteral("K777KK"));
}

void TestNumberFilterLocal::withoutLettersNothingIsTranslated()
{
    VaskSettings::localSymbols.clear();
    click(group_->on);
    LocalLetters::type(&group_->text, QStringLiteral("а1"));
    QCOMPARE(proxy()->filterRegExp().pattern(), QStringLiteral("а1"));
    QCOMPARE(shown(), QString());
}

STALLO_TEST_MAIN(TestNumberFilterLocal)
#include "tst_numberfilterlocal.moc"
