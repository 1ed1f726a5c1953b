// SPDX-License-Identifier: MIT
#include "records/accessmodel.h"

#include "records/vasksettings.h"
#include "tests/records/recordbytes.h"
#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace
{

using Ids = QVector<qint16>;
using Mode = QAbstractItemModelTester::FailureReportingMode;

Access entry(int id)
{
    Access access;
    access.setId(static_cast<qint16>(id));
    access.setNumber(QStringLiteral("A%1BC77").arg(qAbs(id) % 1000, 3, 10, QLatin1Char('0')));
    access.setDateTimeFrom(QDateTime::fromSecsSinceEpoch(1700000000 + id));
    return access;
}

// Ids one behind the other.
Ids upTo(int last, int first = 1)
{
    Ids ids;
    for (int id = first; id <= last; ++id) {
        ids.append(static_cast<qint16>(id));
    }
    return ids;
}

} // namespace

class TestAccessModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { VaskSettings::init(); }

    void isEmptyWithoutFile();
    void bindsAtOnce();
    void hasHeaders();
    void obeysModelRules();
    void showsColumns();
    void saysEmptyCells();
    void showsNothingElse();
    void showsEveryTime_data();
    void showsEveryTime();
    void readsLongTexts();
    void cachesNothing();
    void translatesStoredNumbers();
    void storesNothingBehindTheFile();
    void givesIds_data();
    void givesIds();
    void translatesAppendedNumbers();
    void countsUpAndFillsHolesLast();
    void announcesOneRowThatIsNeverSeenEmpty();
    void refusesEntryBeyondAThousand_data();
    void refusesEntryBeyondAThousand();
    void appendsAllOrNothingOnFullDisk();
    void overwritesHalfAnEntry();

private:
    void write(const QByteArray &bytes) const
    {
        QFile file(name_);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }
    void write(const Ids &ids) const
    {
        QByteArray bytes;
        for (const qint16 id : ids) {
            bytes += bytesOf(entry(id));
        }
        write(bytes);
    }
    QByteArray content() const
    {
        QFile file(name_);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }
    static QString text(const AccessModel &model, int row, int column)
    {
        return model.index(row, column).data().toString();
    }

    std::unique_ptr<QTemporaryDir> folder_;
    QString name_;
};

void TestAccessModel::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
}

void TestAccessModel::init()
{
    folder_ = std::make_unique<QTemporaryDir>();
    name_ = folder_->filePath(QStringLiteral("list.tpa"));
}

void TestAccessModel::isEmptyWithoutFile()
{
    AccessModel model(nullptr);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 6);
    QCOMPARE(model.columnCount(QModelIndex()), 6);
    QCOMPARE(model.fileName(), QString());
    QVERIFY(!model.append(entry(1)));
    QVERIFY(!model.setValue(0, entry(1)));
    QVERIFY(!model.removeRows(0, 0));
    QVERIFY(!model.value(0).isValid());
}

void TestAccessModel::bindsAtOnce()
{
    write(upTo(3));
    QObject parent;
    auto *model = new AccessModel(name_, &parent);
    QCOMPARE(model->QObject::parent(), &parent);
    QCOMPARE(model->fileName(), name_);
    QCOMPARE(model->rowCount(), 3);
    QCOMPARE(bytesOf(model->value(1)), bytesOf(entry(2)));
    // A list that is not there yet is made; one that cannot be made leaves the table without one.
    model->setFileName(folder_->filePath(QStringLiteral("new.tpa")));
    QVERIFY(QFile::exists(folder_->filePath(QStringLiteral("new.tpa"))));
    model->setFileName(folder_->path());
    QCOMPARE(model->fileName(), QString());
    QCOMPARE(model->rowCount(), 0);
}

void TestAccessModel::hasHeaders()
{
    const AccessModel model(nullptr);
    const QStringList titles = {QStringLiteral("Id"),        QStringLiteral("Number"),
                                QStringLiteral("Date from"), QStringLiteral("Date till"),
                                QStringLiteral("Key"),       QStringLiteral("Comment")};
    for (int column = 0; column < titles.size(); ++column) {
        QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::DisplayRole),
                 QVariant(titles.at(column)));
    }
    for (const int beside : {-1, 6, 7}) {
        QVERIFY(!model.headerData(beside, Qt::Horizontal, Qt::DisplayRole).isValid());
    }
    QCOMPARE(model.headerData(0, Qt::Vertical, Qt::DisplayRole), QVariant(1));
    QCOMPARE(model.headerData(999, Qt::Vertical, Qt::DisplayRole), QVariant(1000));
    for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
        QCOMPARE(model.headerData(1, orientation, Qt::TextAlignmentRole),
                 QVariant(int(Qt::AlignCenter)));
        QVERIFY(!model.headerData(1, orientation, Qt::ToolTipRole).isValid());
        QVERIFY(!model.headerData(1, orientation, Qt::DecorationRole).isValid());
    }
}

void TestAccessModel::obeysModelRules()
{
    AccessModel model(name_, nullptr);
    QAbstractItemModelTester tester(&model, Mode::QtTest);
    for (int n = 0; n < 5; ++n) {
        QVERIFY(model.append(entry(-1)));
    }
    QVERIFY(model.setValue(2, entry(9)));
    QVERIFY(model.removeRows(1, 3));
    QVERIFY(model.insertRows(0, 5, QModelIndex()));
    QCOMPARE(model.rowCount(), 3);
    model.setFileName(QString());
    model.setFileName(name_);
    QCOMPARE(model.rowCount(), 3);
}

void TestAccessModel::showsColumns()
{
    Access access = entry(17);
    access.setNumber(QStringLiteral("A123BC77"));
    access.setDateTimeFrom(QDateTime(QDate(2026, 3, 5), QTime(4, 7, 9)));
    access.setDateTimeTill(QDateTime(QDate(2027, 11, 21), QTime(23, 59, 58)));
    access.setAccessKey(QStringLiteral("  00 42 "));
    access.setComment(QStringLiteral("\tNovak; flat 12  "));
    write(bytesOf(entry(1)) + bytesOf(access));
    const AccessModel model(name_, nullptr);
    const QVariant id = model.index(1, 0).data();
    QCOMPARE(id.type(), QVariant::Int);
    QCOMPARE(id, QVariant(17));
    QCOMPARE(text(model, 1, 1), QStringLiteral("A123BC77"));
    QCOMPARE(text(model, 1, 2), QStringLiteral("05 March 2026 04:07:09"));
    QCOMPARE(text(model, 1, 3), QStringLiteral("21 November 2027 23:59:58"));
    QCOMPARE(text(model, 1, 4), QStringLiteral("00 42"));
    QCOMPARE(text(model, 1, 5), QStringLiteral("Novak; flat 12"));
    QCOMPARE(model.index(1, 2).data(Qt::EditRole), QVariant(access.dateTimeFrom()));
    QCOMPARE(model.index(1, 3).data(Qt::EditRole), QVariant(access.dateTimeTill()));
    const auto spoken = [&model](int column) {
        return model.index(1, column).data(Qt::AccessibleTextRole).toString();
    };
    QCOMPARE(spoken(0), QStringLiteral("Id: 17"));
    QCOMPARE(spoken(1), QStringLiteral("Number: A123BC77"));
    QCOMPARE(spoken(3), QStringLiteral("Date till: 21 November 2027 23:59:58"));
}

void TestAccessModel::saysEmptyCells()
{
    write(bytesOf(Access()));
    const AccessModel model(name_, nullptr);
    QCOMPARE(model.index(0, 5).data(Qt::AccessibleTextRole).toString(),
             QStringLiteral("Comment: empty"));
    QVERIFY(!model.data(QModelIndex(), Qt::AccessibleTextRole).isValid());
}

void TestAccessModel::showsNothingElse()
{
    write(upTo(2));
    AccessModel model(name_, nullptr);
    QVERIFY(!model.data(QModelIndex(), Qt::DisplayRole).isValid());
    QVERIFY(!model.data(QModelIndex(), Qt::EditRole).isValid());
    for (int column = 0; column < model.columnCount(); ++column) {
        const QModelIndex cell = model.index(1, column);
        QVERIFY(cell.data(Qt::DisplayRole).isValid());
        QCOMPARE(cell.data(Qt::EditRole).isValid(), column == 2 || column == 3);
        for (const int role : {int(Qt::ForegroundRole), int(Qt::TextAlignmentRole),
                               int(Qt::ToolTipRole), int(Qt::UserRole)}) {
            QVERIFY(!cell.data(role).isValid());
        }
        QVERIFY(!model.setData(cell, QStringLiteral("x"), Qt::EditRole));
    }
    QVERIFY(!model.index(2, 0).isValid());
    QVERIFY(!model.index(0, 6).isValid());
}

void TestAccessModel::showsEveryTime_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const char *bytes, const char *shown) {
        QTest::newRow(name) << QByteArray(bytes, 4) << QString::fromLatin1(shown);
    };
    row("zero", "\0\0\0\0", "01 January 1970 00:00:00");
    row("default end", "\xFF\xFF\xFF\x7F", "19 January 2038 03:14:07");
    row("behind the sign", "\0\0\0\x80", "19 January 2038 03:14:08");
    row("no time elsewhere", "\xFF\xFF\xFF\xFF", "07 February 2106 06:28:15");
}

void TestAccessModel::showsEveryTime()
{
    QFETCH(QByteArray, word);
    write(bytesOf(recordWith<Access>(12, word + word)));
    const AccessModel model(name_, nullptr);
    QTEST(text(model, 0, 2), "shown");
    QTEST(text(model, 0, 3), "shown");
    const QVariant edited = model.index(0, 2).data(Qt::EditRole);
    QTEST(edited.toDateTime().toString(accessModelDateTimeFormat), "shown");
}

// The last byte of a field is not shown, and nothing of the next one.
void TestAccessModel::readsLongTexts()
{
    const QByteArray all = QByteArray(2, '\x01') + QByteArray(10, 'n') + QByteArray(8, '\x01') +
                           QByteArray(32, 'k') + QByteArray(64, 'c');
    write(all + all);
    const AccessModel model(name_, nullptr);
    for (const int row : {0, 1}) {
        QCOMPARE(text(model, row, 0), QStringLiteral("257"));
        QCOMPARE(text(model, row, 1), QString(9, QLatin1Char('n')));
        QCOMPARE(text(model, row, 4), QString(31, QLatin1Char('k')));
        QCOMPARE(text(model, row, 5), QString(63, QLatin1Char('c')));
    }
}

void TestAccessModel::cachesNothing()
{
    write(upTo(2));
    const AccessModel model(name_, nullptr);
    QCOMPARE(text(model, 1, 1), QStringLiteral("A002BC77"));
    // Another handle writes one field.
    QFile file(name_);
    QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    QVERIFY(file.seek(Access::size + 2));
    QCOMPARE(file.write("X999YZ199"), 9);
    QCOMPARE(text(model, 1, 1), QStringLiteral("X999YZ199"));
    QCOMPARE(text(model, 1, 0), QStringLiteral("2"));
    QVERIFY(file.seek(2 * Access::size));
    QCOMPARE(file.write(bytesOf(entry(3))), qint64(Access::size));
    QCOMPARE(model.rowCount(QModelIndex()), 3);
}

void TestAccessModel::translatesStoredNumbers()
{
    VaskSettings::localSymbols = QString::fromUtf8("\xD0\x90\xD0\x92"); // А and В
    VaskSettings::latinSymbols = QStringLiteral("AB");
    write(upTo(2));
    AccessModel model(name_, nullptr);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    Access local = entry(40);
    local.setNumber(QString::fromUtf8("\xD0\x90\x31\xD0\x92x"));
    local.setComment(QString::fromUtf8("\xD0\x90"));
    QVERIFY(model.setValue(1, local));
    QCOMPARE(model.value(1).number(), QStringLiteral("A1BX"));
    QCOMPARE(model.value(1).comment(), local.comment());
    QCOMPARE(int(model.value(1).id()), 40); // which is not given anew
    QCOMPARE(content().left(Access::size), bytesOf(entry(1)));
    QCOMPARE(content().size(), int(2 * Access::size));
    QCOMPARE(changed.count(), 6);
    for (int column = 0; column < 6; ++column) {
        QCOMPARE(changed.at(column).first().toModelIndex(), model.index(1, column));
    }
}

void TestAccessModel::storesNothingBehindTheFile()
{
    write(upTo(2));
    AccessModel model(name_, nullptr);
    QVERIFY(!model.setValue(-1, entry(3)));
    const QByteArray before = content();
    {
        const FileLimit fullDisk(2 * Access::size);
        QVERIFY(!model.setValue(2, entry(3)));
    }
    QCOMPARE(content(), before);
}

void TestAccessModel::givesIds_data()
{
    QTest::addColumn<Ids>("ids");
    QTest::addColumn<int>("own");
    QTest::addColumn<int>("given");
    const auto row = [](const char *name, const Ids &ids, int own, int given) {
        QTest::newRow(name) << ids << own << given;
    };
    row("empty list", {}, 77, 1);
    row("one entry", {1}, 77, 2);
    row("gap below", {1, 2, 5}, 77, 6);
    row("out of order", {5, 1, 3}, 77, 6);
    row("largest is 999", {999}, 77, 1000);
    row("largest is 1000, gap", {1, 2, 1000}, 77, 3);
    row("first of two gaps", {1, 4, 6, 1000}, 77, 2);
    row("gap, out of order", {1000, 2, 1}, 77, 3);
    row("gap right below the largest", {998, 1000}, 77, 999);
    row("never below the smallest", {400, 401, 1000}, 77, 402);
    row("no gap", upTo(1000, 500), 77, 77);
    row("no gap, default", upTo(1000, 500), -1, -1);
    row("only the largest", {1000}, 77, 77);
    row("beyond the largest", {1001, 1002}, 77, 77);
    row("gap beyond the largest", {1000, 1002}, 77, 1001);
    row("twice the same", {7, 7, 1000}, 77, 8);
    row("twice the same, no gap", {1000, 1000}, 77, 77);
    row("largest there is", {32767}, 77, 77);
    row("from the smallest to the largest", {-32768, 32767}, 77, -32767);
    row("without id", {-1}, 77, 0);
    row("negative", {-5, -9}, 77, -4);
    row("zero", {0}, 77, 1);
}

void TestAccessModel::givesIds()
{
    QFETCH(Ids, ids);
    QFETCH(int, own);
    QFETCH(int, given);
    write(ids);
    const QByteArray before = content();
    AccessModel model(name_, nullptr);
    QVERIFY(model.append(entry(own)));
    Access expected = entry(own);
    expected.setId(static_cast<qint16>(given));
    QCOMPARE(content(), before + bytesOf(expected));
    QCOMPARE(model.rowCount(), ids.size() + 1);
}

void TestAccessModel::translatesAppendedNumbers()
{
    VaskSettings::localSymbols = QString::fromUtf8("\xD0\x90"); // А
    VaskSettings::latinSymbols = QStringLiteral("A");
    AccessModel model(name_, nullptr);
    Access local = entry(5);
    local.setNumber(QString::fromUtf8("\xD0\x90\x31\x32\x33"
                                      "bc"));
    QVERIFY(model.append(local));
    QCOMPARE(content().mid(2, 10), QByteArray("A123BC\0\0\0\0", 10));
}

void TestAccessModel::countsUpAndFillsHolesLast()
{
    AccessModel model(name_, nullptr);
    const auto append = [&model] {
        return model.append(entry(-1)) ? int(model.value(model.rowCount() - 1).id()) : -1;
    };
    for (int id = 1; id <= 500; ++id) {
        QCOMPARE(append(), id);
    }
    QVERIFY(model.removeRows(9, 9)); // id 10
    QCOMPARE(append(), 501);
    QVERIFY(model.removeRows(499, 499));
    QCOMPARE(append(), 501); // the largest that there is counts
    for (int id = 502; id <= 1000; ++id) {
        QCOMPARE(append(), id);
    }
    QCOMPARE(model.rowCount(), 999);
    QCOMPARE(append(), 10);
    QCOMPARE(append(), -1);
}

void TestAccessModel::announcesOneRowThatIsNeverSeenEmpty()
{
    write(upTo(2));
    AccessModel model(name_, nullptr);
    QString seen;
    connect(&model, &QAbstractItemModel::rowsInserted, &model,
            [&](const QModelIndex &, int first, int last) {
                QCOMPARE(first, 2);
                QCOMPARE(last, 2);
                seen = text(model, first, 1);
            });
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.append(entry(7)));
    QCOMPARE(seen, QStringLiteral("A007BC77"));
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(changed.count(), 6);
}

void TestAccessModel::refusesEntryBeyondAThousand_data()
{
    QTest::addColumn<Ids>("ids");
    QTest::newRow("full") << upTo(1000);
    QTest::newRow("ids left") << Ids(1000, 1);
    QTest::newRow("overfull") << upTo(1001);
}

void TestAccessModel::refusesEntryBeyondAThousand()
{
    QFETCH(Ids, ids);
    write(ids);
    const QByteArray before = content();
    AccessModel model(name_, nullptr);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QVERIFY(!model.append(entry(-1)));
    QCOMPARE(content(), before);
    QCOMPARE(inserted.count(), 0);
    // An entry less, and there is place for one.
    QVERIFY(model.removeRows(998, ids.size() - 1));
    QVERIFY(model.append(entry(-1)));
    QVERIFY(model.append(entry(-1)));
    QVERIFY(!model.append(entry(-1)));
    QCOMPARE(model.rowCount(), 1000);
}

void TestAccessModel::appendsAllOrNothingOnFullDisk()
{
    write(upTo(3));
    AccessModel model(name_, nullptr);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    {
        const FileLimit fullDisk(3 * Access::size + 70);
        QVERIFY(!model.append(entry(-1)));
    }
    QCOMPARE(inserted.count(), 0);
    QCOMPARE(content(), bytesOf(entry(1)) + bytesOf(entry(2)) + bytesOf(entry(3)));
    QVERIFY(model.append(entry(-1)));
    QCOMPARE(int(model.value(3).id()), 4);
}

void TestAccessModel::overwritesHalfAnEntry()
{
    write(bytesOf(entry(1)) + "half an entry");
    AccessModel model(name_, nullptr);
    QCOMPARE(model.rowCount(), 1);
    QVERIFY(model.append(entry(-1)));
    QCOMPARE(model.rowCount(), 2);
    Access second = entry(-1);
    second.setId(2);
    QCOMPARE(content().left(2 * Access::size), bytesOf(entry(1)) + bytesOf(second));
}

STALLO_TEST_MAIN(TestAccessModel)
#include "tst_accessmodel.moc"
