// SPDX-License-Identifier: MIT
#include "tests/pages/listcase.h"

#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace
{

using Page = ListPage;

const QString tooLong = QStringLiteral("Error|The access list is longer than 100,000 entries");
const QString noFile = QStringLiteral("Error|This is not a regular file");
const QString noList = QStringLiteral("Error|The file is not an access list");
const QString damaged = QStringLiteral("Error|The access list of Vask is damaged.");

// Longer than a list that is filtered between two keys.
constexpr int manyEntries = 50001;

QByteArray longList(int entries)
{
    QByteArray list = ListPage::list(1000).repeated(entries / 1000 + 1);
    list.truncate(entries * int(Access::size));
    return list;
}

} // namespace

Q_DECLARE_METATYPE(Fault)

// Lists that are refused, and what becomes of the list on view and of what is typed meanwhile.
class TestSufferedNumbersLimits : public ListCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ListCase::init();
        stick_ = std::make_unique<QTemporaryDir>();
    }
    void cleanup()
    {
        ListCase::cleanup();
        stick_.reset();
    }

    void refusesFiles_data();
    void refusesFiles();
    void refusesDevicesLists_data();
    void refusesDevicesLists();
    void refusesLongListAtStart();
    void opensAndFetchesTheLongest();
    void keepsWhatIsTypedWhileLongListIsFiltered();
    void disablesApplyWhenLongListLosesItsEntry();

private:
    // The second entry is chosen and half edited.
    void openAndType()
    {
        open(Page::list(3));
        page_->clickRow(1);
        type("lineEditKey", QStringLiteral("typed"));
    }
    // Neither the list nor what is done to it has changed.
    void expectUntouched() const
    {
        QCOMPARE(ownList(), Page::list(3));
        QCOMPARE(page_->rows(), 3);
        QCOMPARE(page_->currentRow(), 1);
        QCOMPARE(page_->find<QLineEdit>("lineEditId")->text(), QStringLiteral("2"));
        QCOMPARE(page_->edited().accessKey(), QStringLiteral("typed"));
    }
    void filter(const QString &text)
    {
        choose("checkBoxFilter");
        type("lineEditFilter", text);
    }

    std::unique_ptr<QTemporaryDir> stick_;
};

void TestSufferedNumbersLimits::refusesFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::newRow("dump, one too many")
        << QStringLiteral("list.tpa") << longList(100001) << tooLong;
    QTest::newRow("csv, one too many")
        << QStringLiteral("list.csv") << "titles" + QByteArray("\n1;A001BC77").repeated(100001)
        << tooLong;
    QTest::newRow("csv without an id")
        << QStringLiteral("list.csv") << QByteArray("titles\nA;B;C\n;;") << noList;
    QTest::newRow("empty csv") << QStringLiteral("list.csv") << QByteArray() << noList;
    QTest::newRow("dump, pipe") << QStringLiteral("pipe.tpa") << QByteArray() << noFile;
    QTest::newRow("csv, pipe") << QStringLiteral("pipe.csv") << QByteArray() << noFile;
}

void TestSufferedNumbersLimits::refusesFiles()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    const QString file = stick_->filePath(name);
    Settings::instance()->setLastLoadedSufferedFile(Page::folder());
    openAndType();
    Page::write(file, content);
    const bool isPipe = name.startsWith(QLatin1String("pipe"));
    QTEST(errorAfter([&] {
              page_->answers().expect([&](QWidget *window) {
                  Page::opening(file)(window);
                  if (isPipe) {
                      QFile::remove(file);
                      QCOMPARE(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
                  }
              });
              page_->press("buttonLoad");
          }),
          "error");
    expectUntouched();
    QCOMPARE(Settings::instance()->lastLoadedSufferedFile(), Page::folder());
}

void TestSufferedNumbersLimits::refusesDevicesLists_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QString>("error");
    QTest::newRow("one too many") << longList(100001) << tooLong;
    QTest::newRow("half an entry more") << Page::list(40) + "half an entry" << damaged;
    QTest::newRow("a byte less") << Page::list(40).chopped(1) << damaged;
}

void TestSufferedNumbersLimits::refusesDevicesLists()
{
    QFETCH(QByteArray, list);
    device().files().set(DevicePaths::accessList(), list);
    openAndType();
    QTEST(errorAfter([this] { page_->fetch(host()); }), "error");
    expectUntouched();
}

void TestSufferedNumbersLimits::refusesLongListAtStart()
{
    const QByteArray list = longList(100001);
    Page::write(Page::ownList(), list);
    QString heading;
    QString text;
    ModalAnswers answers;
    answers.expect(ModalAnswers::reading(&heading, &text));
    SufferedNumbersWidget page;
    page.show();
    QTRY_COMPARE_WITH_TIMEOUT(answers.left(), 0, patience);
    QCOMPARE(heading + QLatin1Char('|') + text, tooLong);
    QCOMPARE(page.findChild<QTableView *>()->model()->rowCount(), 0);
    QVERIFY(ownList() == list);
}

void TestSufferedNumbersLimits::opensAndFetchesTheLongest()
{
    const QString file = stick_->filePath(QStringLiteral("list.tpa"));
    const QByteArray list = longList(100000);
    Page::write(file, list + "half an entry");
    open(Page::list(3));
    page_->load(file);
    QVERIFY(page_->becomesIdle());
    QCOMPARE(page_->rows(), 100000);
    device().files().set(DevicePaths::accessList(), list);
    page_->fetch(host());
    QVERIFY(page_->becomesIdle());
    QCOMPARE(page_->rows(), 100000);
    QVERIFY(ownList() == list);
}

void TestSufferedNumbersLimits::keepsWhatIsTypedWhileLongListIsFiltered()
{
    open(longList(manyEntries));
    page_->clickRow(7);
    type("lineEditKey", QStringLiteral("typed"));
    page_->find<QPlainTextEdit>("textEditComment")->setPlainText(QStringLiteral("also"));
    filter(QStringLiteral("A007"));
    const int shown = manyEntries / 1000;
    QCOMPARE(page_->rows(), manyEntries); // not between two keys
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), shown, patience);
    QCOMPARE(page_->currentRow(), 0);
    const auto compareTyped = [this] {
        QCOMPARE(page_->edited().accessKey(), QStringLiteral("typed"));
        QCOMPARE(page_->edited().comment(), QStringLiteral("also"));
        QCOMPARE(page_->edited().number(), QStringLiteral("A007BC77"));
    };
    compareTyped();
    choose("checkBoxFilter");
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), manyEntries, patience);
    QCOMPARE(page_->currentRow(), 7);
    compareTyped();
    // It is still the entry that is changed, and the others are shown when they are chosen.
    page_->press("buttonApply");
    Access edited = listed(7);
    edited.setAccessKey(QStringLiteral("typed"));
    edited.setComment(QStringLiteral("also"));
    QCOMPARE(ownList().mid(7 * Access::size, Access::size), Page::bytes(edited));
    page_->clickRow(9);
    expectEdited(listed(9));
}

void TestSufferedNumbersLimits::disablesApplyWhenLongListLosesItsEntry()
{
    open(longList(manyEntries));
    page_->clickRow(7);
    type("lineEditKey", QStringLiteral("typed"));
    filter(QStringLiteral("A008"));
    QVERIFY(page_->find<QPushButton>("buttonApply")->isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), manyEntries / 1000, patience);
    QCOMPARE(page_->currentRow(), -1);
    QVERIFY(!page_->find<QPushButton>("buttonApply")->isEnabled());
    QCOMPARE(page_->edited().accessKey(), QStringLiteral("typed"));
}

STALLO_TEST_MAIN(TestSufferedNumbersLimits)
#include "tst_sufferednumberslimits.moc"
