// SPDX-License-Identifier: MIT
#include "tests/pages/numberfiltercase.h"

#include <QTranslator>

// The filter under the Russian catalogue: what is typed in the Russian layout finds the same as
// what is typed in the Latin one.
class TestLocalFilter : public NumberFilterCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(translator_.load(QStringLiteral(STALLO_CATALOGUES "/vaskparking_ru.qm")));
        QVERIFY(QCoreApplication::installTranslator(&translator_));
        VaskSettings::init(); // before the group is made, which takes the patterns
    }

    void finds_data();
    void finds();
    void refusesOtherLetters();

private:
    QTranslator translator_;
};

void TestLocalFilter::finds_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("latin");
    QTest::addColumn<QString>("local");
    QTest::addColumn<QString>("found");
    const auto row = [](int mode, const char *latin, const char *local, const char *found) {
        QTest::addRow("%d, %s", mode, latin)
            << mode << QString::fromLatin1(latin) << QString::fromUtf8(local)
            << QString::fromLatin1(found);
    };
    row(whole, "a123bc", "а123вс", "A123BC77 A123BC177");
    row(whole, "K", "К", "K123MM99");
    row(whole, "a1", "А1", "A123BC77 A123BC177");
    row(symbols, "abc", "авс", "A123BC77 A123BC177 A456BC77");
    row(symbols, "*mm", "*мм", "K123MM99");
    row(symbols, "a456bc77", "а456вс77", "A123BC77 A123BC177 A456BC77");
    row(numbers, "k456mm99", "к456мм99", "A456BC77");
}

void TestLocalFilter::finds()
{
    QFETCH(int, mode);
    QFETCH(QString, latin);
    QFETCH(QString, local);
    click(group_->on);
    choose(static_cast<VaskSettings::NumFilterMode>(mode));
    for (const QString &text : {latin, local}) {
        // Test keys are Latin only; an input method brings the others.
        group_->text.clear();
        group_->text.insert(text);
        QCOMPARE(group_->text.text(), text);
        QTEST(shown(), "found");
    }
}

void TestLocalFilter::refusesOtherLetters()
{
    click(group_->on);
    group_->text.insert(QString::fromUtf8("ж"));
    QCOMPARE(group_->text.text(), QString());
    QCOMPARE(shown(), all());
}

STALLO_TEST_MAIN(TestLocalFilter)
#include "tst_localfilter.moc"
