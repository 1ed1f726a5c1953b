// SPDX-License-Identifier: MIT
#include "records/recordfile.h"

#include "records/scan.h"
#include "tests/support/killedrun.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTemporaryDir>

namespace
{

constexpr int size = Scan::size;

QByteArray recordsOf(const QByteArray &fills)
{
    QByteArray all;
    for (const char fill : fills) {
        all += QByteArray(size, fill);
    }
    return all;
}

} // namespace

// Removals that are cut off at any moment.
class TestRecordFileKilled : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void removesAllOrNothing_data();
    void removesAllOrNothing();

private:
    // Without what a killed run has left beside: the next one would choose the same name for it.
    void fill(const QByteArray &bytes) const
    {
        const QStringList files = QDir(folder_.path()).entryList(QDir::Files);
        for (const QString &each : files) {
            QFile::remove(folder_.filePath(each));
        }
        QFile file(name());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write the table");
        }
    }
    QByteArray content() const
    {
        QFile file(name());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }
    QString name() const { return folder_.filePath(QStringLiteral("table.tpp")); }

    const QTemporaryDir folder_;
};

void TestRecordFileKilled::removesAllOrNothing_data()
{
    QTest::addColumn<QVector<int>>("rows");
    QTest::addColumn<QByteArray>("left");
    using Rows = QVector<int>;
    QTest::newRow("first") << Rows{0} << recordsOf("bcdef") + "part";
    QTest::newRow("in the midst") << Rows{2, 3} << recordsOf("abef") + "part";
    QTest::newRow("apart") << Rows{0, 2, 5} << recordsOf("bde") + "part";
    QTest::newRow("last") << Rows{5} << recordsOf("abcde") + "ffff";
    QTest::newRow("all") << Rows{0, 1, 2, 3, 4, 5} << QByteArray("aaaa");
}

void TestRecordFileKilled::removesAllOrNothing()
{
    QFETCH(QVector<int>, rows);
    QFETCH(QByteArray, left);
    const QByteArray before = recordsOf("abcdef") + "part";
    auto end = KilledRun::End::Killed;
    for (int call = 0; end != KilledRun::End::Finished; ++call) {
        fill(before);
        end = KilledRun::before(call, [&] {
            RecordFile file(name(), size);
            if (!file.open() || !file.remove(rows)) {
                qFatal("cannot remove");
            }
        });
        if (end == KilledRun::End::NotAllowed) {
            QSKIP("a process may not be followed here");
        }
        const QByteArray found = content();
        QVERIFY2(found == left || (found == before && end == KilledRun::End::Killed),
                 qPrintable(QStringLiteral("killed before call %1").arg(call)));
    }
}

STALLO_TEST_MAIN(TestRecordFileKilled)
#include "tst_recordfilekilled.moc"
