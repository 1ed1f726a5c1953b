// SPDX-License-Identifier: MIT
#include "records/scanmodel.h"

#include "app/settings.h"
#include "records/deviceindex.h"
#include "records/vasksettings.h"
#include "tests/support/filelimit.h"
#include "tests/support/testmain.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QPalette>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>

#include <algorithm>
#include <vector>

namespace
{

const QDateTime start = QDateTime(QDate(2026, 11, 21), QTime(8, 0), Qt::UTC);

Scan passage(int n)
{
    Scan scan;
    scan.setDateTime(start.addSecs(60 * n));
    scan.setNumber(QStringLiteral("A%1BC77").arg(n, 3, 10, QLatin1Char('0')));
    return scan;
}

} // namespace

class TestScanModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        name_ = folder_->filePath(QStringLiteral("table.week.tpp"));
    }

    void namesIndexAfterFirstDot()
    {
        QCOMPARE(ScanModel::indexFileOf(QStringLiteral("/data/archive.dat")),
                 QStringLiteral("/data/archive.tpp.index"));
        ScanModel model(name_, nullptr);
        QCOMPARE(model.indexFile(), folder_->filePath(QStringLiteral("table.tpp.index")));
        QVERIFY(QFile::exists(model.indexFile()));
        QCOMPARE(QFileInfo(model.indexFile()).size(), 0);
    }

    void isEmptyWithoutFile()
    {
        ScanModel model(nullptr);
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.columnCount(), 7);
        QVERIFY(!model.append(passage(1)));
        QVERIFY(!model.setValue(0, passage(1)));
        QVERIFY(!model.removeRows(0, 0));
        QVERIFY(!model.insertRows(0, 1, QModelIndex()));
        QVERIFY(!model.value(0).isValid());
        QVERIFY(!model.index(0, 0).isValid());
        QVERIFY(QDir(folder_->path()).isEmpty());
    }

    void bindsInOneReset()
    {
        write({passage(1), passage(2)});
        ScanModel model(nullptr);
        QTableView view;
        view.setModel(&model);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy columns(&model, &QAbstractItemModel::columnsInserted);
        model.setFileName(name_);
        QCOMPARE(reset.count(), 1);
        QCOMPARE(inserted.count() + columns.count(), 0);
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.index(1, 3).row(), 1);
    }

    void dropsAllWhenFileCannotBeOpened()
    {
        ScanModel model(name_, nullptr);
        QVERIFY(model.append(passage(1)));
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        model.setFileName(folder_->path());
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.fileName(), QString());
        QCOMPARE(model.indexFile(), QString());
        QVERIFY(reset.count() >= 1);
    }

    void obeysModelRules()
    {
        ScanModel model(name_, nullptr);
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        for (int n = 0; n < 5; ++n) {
            QVERIFY(model.append(passage(n)));
        }
        QVERIFY(model.setValue(2, passage(9)));
        QVERIFY(model.removeRows(1, 3));
        QVERIFY(model.insertRows(0, 5, QModelIndex()));
        QCOMPARE(model.rowCount(), 3);
        model.setFileName(QString());
        model.setFileName(name_);
        QCOMPARE(model.rowCount(), 3);
    }

    void announcesOneRowThatIsNeverSeenEmpty()
    {
        ScanModel model(name_, nullptr);
        QString seen;
        connect(&model, &QAbstractItemModel::rowsInserted, &model,
                [&](const QModelIndex &, int first, int last) {
                    QCOMPARE(first, last);
                    seen = model.index(first, ScanModel::NumberColumn).data().toString();
                });
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QVERIFY(model.append(passage(7)));
        QCOMPARE(seen, QStringLiteral("A007BC77"));
        QCOMPARE(changed.count(), 7);
    }

    void refusesRowsOnFullDisk()
    {
        ScanModel model(name_, nullptr);
        QVERIFY(model.append(passage(1)));
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        {
            const FileLimit fullDisk(Scan::size + 50);
            QVERIFY(!model.append(passage(2)));
            QVERIFY(!model.insertRows(0, 1, QModelIndex()));
        }
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(inserted.count(), 0);
        QCOMPARE(QFileInfo(name_).size(), qint64(Scan::size));
        QVERIFY(model.append(passage(2)));
        QCOMPARE(model.value(1).number(), QStringLiteral("A002BC77"));
    }

    // The disk fills between the trial and the announced write.
    void keepsOldRowsWhenTheDiskFillsMeanwhile_data()
    {
        QTest::addColumn<bool>("empty");
        QTest::newRow("insert") << true;
        QTest::newRow("append") << false;
    }
    void keepsOldRowsWhenTheDiskFillsMeanwhile()
    {
        QFETCH(bool, empty);
        write({passage(0), passage(1), passage(2)});
        ScanModel model(name_, nullptr);
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::Warning);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        std::unique_ptr<FileLimit> fullDisk;
        connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, &model,
                [&] { fullDisk = std::make_unique<FileLimit>(3 * Scan::size); });
        QVERIFY(empty ? !model.insertRows(0, 1, QModelIndex()) : !model.append(passage(3)));
        fullDisk.reset();
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.value(2).number(), passage(2).number());
        QCOMPARE(reset.count(), 1);
    }

    void endsFailedRemovalWithReset()
    {
        write({passage(0), passage(1), passage(2)});
        ScanModel model(name_, nullptr);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        {
            const FileLimit fullDisk(50);
            QVERIFY(!model.removeRows(0, 0));
        }
        QCOMPARE(removed.count(), 1);
        QCOMPARE(reset.count(), 1);
        QCOMPARE(model.rowCount(), 3);
    }

    void isFlatAndNotEditedByCell()
    {
        write({passage(0)});
        ScanModel model(name_, nullptr);
        const QModelIndex row = model.index(0, 0);
        QVERIFY(!model.setData(row, 1, Qt::EditRole));
        QVERIFY(!model.parent(row).isValid());
        QVERIFY(!model.index(0, 0, row).isValid());
        QVERIFY(!model.index(0, 7).isValid());
        QVERIFY(!model.index(-1, 0).isValid());
        QVERIFY(!model.value(1).isValid());
        QVERIFY(!model.value(-1).isValid());
    }

    void removesInclusiveRange_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<bool>("removed");
        QTest::addColumn<QList<int>>("left");
        QTest::newRow("third") << 2 << 2 << true << QList<int>{0, 1, 3, 4};
        QTest::newRow("all") << 0 << 4 << true << QList<int>{};
        QTest::newRow("last") << 4 << 4 << true << QList<int>{0, 1, 2, 3};
        QTest::newRow("backwards") << 3 << 2 << false << QList<int>{0, 1, 2, 3, 4};
        QTest::newRow("behind the end") << 3 << 5 << false << QList<int>{0, 1, 2, 3, 4};
        QTest::newRow("before the beginning") << -1 << 2 << false << QList<int>{0, 1, 2, 3, 4};
    }
    void removesInclusiveRange()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(QList<int>, left);
        write({passage(0), passage(1), passage(2), passage(3), passage(4)});
        ScanModel model(name_, nullptr);
        QTEST(model.removeRows(first, last), "removed");
        QCOMPARE(model.rowCount(), left.size());
        for (int row = 0; row < left.size(); ++row) {
            QCOMPARE(model.value(row).number(), passage(left.at(row)).number());
        }
    }

    void showsColumns()
    {
        Scan scan = passage(1);
        scan.setNumber(QStringLiteral("a?23b*77"));
        scan.setComment(QStringLiteral("red van"));
        scan.setAccessKey(QStringLiteral("0042"));
        scan.setInAccessList(false);
        scan.setAccessGranted(true);
        write({scan});
        writeIndex({QStringLiteral("gate 1")});
        ScanModel model(name_, nullptr);
        const auto text = [&model](int column) { return model.index(0, column).data().toString(); };
        QCOMPARE(text(0), scan.dateTime().toString(QStringLiteral("dd MMMM yyyy hh:mm:ss")));
        QCOMPARE(text(1), QStringLiteral("A#23B#77"));
        QCOMPARE(text(2), QStringLiteral("No"));
        QCOMPARE(text(3), QStringLiteral("Yes"));
        QCOMPARE(text(4), QStringLiteral("gate 1"));
        QCOMPARE(text(5), QStringLiteral("red van"));
        QCOMPARE(text(6), QStringLiteral("0042"));
        const auto edit = [&model](int column) {
            return model.index(0, column).data(Qt::EditRole);
        };
        QCOMPARE(edit(0).toDateTime(), scan.dateTime());
        QCOMPARE(edit(2), QVariant(false));
        QCOMPARE(edit(3), QVariant(true));
        for (const int column : {1, 4, 5, 6}) {
            QVERIFY(!edit(column).isValid());
        }
    }

    // Whoever hears a cell does not see its title, nor that a verdict is red.
    void saysCellsWithTheirTitles()
    {
        Scan scan = passage(1);
        scan.setInAccessList(false);
        scan.setAccessGranted(true);
        scan.setComment(QStringLiteral("%1 %2"));
        scan.setAccessKey(QString());
        write({scan});
        writeIndex({QStringLiteral("gate 1")});
        const ScanModel model(name_, nullptr);
        QStringList spoken;
        for (int column = 0; column < ScanModel::columns; ++column) {
            spoken << model.index(0, column).data(Qt::AccessibleTextRole).toString();
        }
        const QString time = model.index(0, 0).data().toString();
        QCOMPARE(
            spoken,
            QStringList({QStringLiteral("Date: ") + time, QStringLiteral("Number: A001BC77"),
                         QStringLiteral("In access list: No"),
                         QStringLiteral("Access granted: Yes"), QStringLiteral("Vask ID: gate 1"),
                         QStringLiteral("Comment: %1 %2"), QStringLiteral("Key: empty")}));
        QVERIFY(!model.index(0, 0).data(Qt::AccessibleDescriptionRole).isValid());
        QVERIFY(!model.data(QModelIndex(), Qt::AccessibleTextRole).isValid());
    }

    void coloursVerdictsOnly()
    {
        Scan good = passage(1);
        good.setInAccessList(true);
        good.setAccessGranted(true);
        write({good, passage(2)});
        ScanModel model(name_, nullptr);
        const QColor plain = QGuiApplication::palette().color(QPalette::WindowText);
        for (int column = 0; column < 7; ++column) {
            const bool coloured = column == 2 || column == 3;
            const QVariant first = model.index(0, column).data(Qt::ForegroundRole);
            const QVariant second = model.index(1, column).data(Qt::ForegroundRole);
            QCOMPARE(first.isValid(), coloured);
            QCOMPARE(second.isValid(), coloured);
            if (coloured) {
                QCOMPARE(first.value<QColor>(), plain);
                QCOMPARE(second.value<QColor>(), QColor(Qt::red));
            }
        }
    }

    void hasHeaders()
    {
        const ScanModel model(nullptr);
        const QStringList titles = {QStringLiteral("Date"),
                                    QStringLiteral("Number"),
                                    QStringLiteral("In access list"),
                                    QStringLiteral("Access granted"),
                                    QStringLiteral("Vask ID"),
                                    QStringLiteral("Comment"),
                                    QStringLiteral("Key")};
        for (int column = 0; column < titles.size(); ++column) {
            QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(),
                     titles.at(column));
        }
        QVERIFY(!model.headerData(7, Qt::Horizontal, Qt::DisplayRole).isValid());
        QCOMPARE(model.headerData(0, Qt::Vertical, Qt::DisplayRole), QVariant(1));
        QCOMPARE(model.headerData(41, Qt::Vertical, Qt::DisplayRole), QVariant(42));
        QCOMPARE(model.headerData(0, Qt::Vertical, Qt::TextAlignmentRole),
                 QVariant(int(Qt::AlignCenter)));
        QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
    }

    void readsIdentifiers_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QString>("shown");
        QTest::newRow("short") << QByteArray("gate") << QStringLiteral("gate");
        QTest::newRow("blanks") << QByteArray("  gate ") << QStringLiteral("gate");
        QTest::newRow("full") << QByteArray(32, 'g') << QString(31, QLatin1Char('g'));
        QTest::newRow("empty") << QByteArray() << QString();
    }
    void readsIdentifiers()
    {
        QFETCH(QByteArray, entry);
        write({passage(1)});
        entry.append(32 - entry.size(), '\0');
        writeFile(ScanModel::indexFileOf(name_), entry);
        const ScanModel model(name_, nullptr);
        QTEST(model.index(0, 4).data().toString(), "shown");
    }

    void keepsOldIdentifierWhereIndexEnds()
    {
        write({passage(1), passage(2)});
        writeIndex({QStringLiteral("gate 1")});
        const ScanModel model(name_, nullptr);
        QCOMPARE(model.index(1, 4).data().toString(), QString());
        QCOMPARE(model.index(0, 4).data().toString(), QStringLiteral("gate 1"));
        QCOMPARE(model.index(1, 4).data().toString(), QStringLiteral("gate 1"));
    }

    void readsRowOnce()
    {
        write({passage(1), passage(2)});
        ScanModel model(name_, nullptr);
        const QString first = model.index(0, 1).data().toString();
        QVERIFY(model.setValue(0, passage(5)));
        QCOMPARE(model.index(0, 1).data().toString(), first); // from the cache
        QCOMPARE(model.index(1, 1).data().toString(), passage(2).number());
        QCOMPARE(model.index(0, 1).data().toString(), passage(5).number());
    }

    void translatesNumbersForDisplayOnly()
    {
        write({passage(1)});
        ScanModel model(name_, nullptr);
        VaskSettings::localSymbols = QStringLiteral("A");
        VaskSettings::latinSymbols = QStringLiteral("X");
        QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("X001BC77"));
        QCOMPARE(model.value(0).number(), QStringLiteral("A001BC77"));
        VaskSettings::init();
    }

    void searchesByTime()
    {
        write({passage(0), passage(10), passage(10), passage(20)});
        const ScanModel model(name_, nullptr);
        const auto lower = [&model](int minute) {
            return std::lower_bound(model.begin(), model.end(), start.addSecs(60 * minute),
                                    indexLessThanDateTime)
                .row();
        };
        const auto upper = [&model](int minute) {
            return std::upper_bound(model.begin(), model.end(), start.addSecs(60 * minute),
                                    dateTimeLessThanIndex)
                .row();
        };
        QCOMPARE(lower(-1), 0);
        QCOMPARE(lower(10), 1);
        QCOMPARE(lower(21), 4);
        QCOMPARE(upper(-1), 0);
        QCOMPARE(upper(10), 3);
        QCOMPARE(upper(20), 4);
        QVERIFY(isIndexEqualDateTime(model.index(1, 4), start.addSecs(600)));
        QVERIFY(!isIndexEqualDateTime(model.index(0, 0), start.addSecs(600)));
        QVERIFY(isIndexEqualDateTime(QModelIndex(), QDateTime()));
        QVERIFY(!(*ScanModel::Iterator()).isValid());
    }

private:
    void writeFile(const QString &name, const QByteArray &bytes)
    {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }
    void write(const std::vector<Scan> &scans)
    {
        QByteArray bytes;
        for (const Scan &scan : scans) {
            bytes.append(scan.data(), Scan::size);
        }
        writeFile(name_, bytes);
    }
    void writeIndex(const QStringList &ids)
    {
        QByteArray bytes;
        for (const QString &id : ids) {
            bytes += DeviceIndex::entry(id);
        }
        writeFile(ScanModel::indexFileOf(name_), bytes);
    }

    std::unique_ptr<QTemporaryDir> folder_;
    QString name_;
};

STALLO_TEST_MAIN(TestScanModel)
#include "tst_scanmodel.moc"
