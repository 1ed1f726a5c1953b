// SPDX-License-Identifier: MIT
#include "netsetup/fileset.h"

#include "netsetup/dlgsetupnetwork.h"
#include "tests/netsetup/networkfiles.h"
#include "tests/support/flushcalls.h"
#include "tests/support/killedrun.h"
#include "tests/support/testmain.h"

#include <sys/stat.h>

namespace
{

using Contents = QList<QByteArray>;

const QString mark = QStringLiteral("./set.new");

} // namespace

// Files that are replaced together.
class TestFileSet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        files_.reset(); // which leaves its folder
        files_ = std::make_unique<NetworkFiles>();
        NetworkFiles::writeAll();
    }
    void cleanup() { files_.reset(); }

    void replacesAll();
    void replacesNoneWhenOneFails_data();
    void replacesNoneWhenOneFails();
    void putsBackWhatWasReplaced();
    void tellsFailedFlush_data();
    void tellsFailedFlush();
    void isRepairedWhereverItIsCut_data();
    void isRepairedWhereverItIsCut();
    void isRepairedOnceItCanBe();

private:
    static QString commit()
    {
        FileSet set(mark);
        for (const QString &name : NetworkFiles::all()) {
            set.add(name, "new " + name.toLatin1());
        }
        return set.commit();
    }
    static Contents replaced()
    {
        Contents all;
        for (const QString &name : NetworkFiles::all()) {
            all << "new " + name.toLatin1();
        }
        return all;
    }

    std::unique_ptr<NetworkFiles> files_;
};

void TestFileSet::replacesAll()
{
    QCOMPARE(chmod("cfg-common.cfg", 0640), 0);
    QVERIFY(QFile::rename(NetworkFiles::resolver(), QStringLiteral("real.cfg")));
    QVERIFY(QFile::link(QStringLiteral("real.cfg"), NetworkFiles::resolver()));
    QVERIFY(QFile::remove(NetworkFiles::interface()));
    QCOMPARE(commit(), QString());
    QCOMPARE(NetworkFiles::contents(), replaced());
    QVERIFY(QFileInfo(NetworkFiles::resolver()).isSymLink());
    QVERIFY((QFile::permissions(NetworkFiles::common()) & QFile::ReadOther) == 0);
    QCOMPARE(TextFile::names(), NetworkFiles::all() << QStringLiteral("real.cfg"));
}

void TestFileSet::replacesNoneWhenOneFails_data()
{
    QTest::addColumn<int>("place");
    for (const int place : {0, 1, 2}) {
        QTest::addRow("file %d", place) << place;
    }
}

void TestFileSet::replacesNoneWhenOneFails()
{
    QFETCH(int, place);
    const QString name = NetworkFiles::all().at(place);
    QVERIFY(QFile::remove(name));
    QVERIFY(QDir().mkdir(name));
    const Contents before = NetworkFiles::contents();
    QCOMPARE(commit(), QStringLiteral("Is a directory"));
    QCOMPARE(NetworkFiles::contents(), before);
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

void TestFileSet::putsBackWhatWasReplaced()
{
    // What nobody may do is noticed when two are in place already.
    FileSet set(mark);
    set.add(NetworkFiles::common(), "new");
    QVERIFY(QFile::remove(NetworkFiles::interface()));
    set.add(NetworkFiles::interface(), "new");
    QVERIFY(QFile::remove(NetworkFiles::resolver()));
    set.add(NetworkFiles::resolver(), "new");
    QVERIFY(QDir().mkdir(NetworkFiles::resolver()));
    QCOMPARE(set.commit(), QStringLiteral("Is a directory"));
    QCOMPARE(TextFile::content(NetworkFiles::common()), NetworkFiles::commonText());
    QCOMPARE(TextFile::names(), (QStringList{NetworkFiles::common(), NetworkFiles::resolver()}));
}

void TestFileSet::tellsFailedFlush_data()
{
    QTest::addColumn<int>("failing");
    QTest::newRow("files") << int(FlushCalls::Fail::Files);
    QTest::newRow("folder") << int(FlushCalls::Fail::Folders);
}

void TestFileSet::tellsFailedFlush()
{
    QFETCH(int, failing);
    const FlushCalls disk{static_cast<FlushCalls::Fail>(failing)};
    QCOMPARE(commit(), QStringLiteral("Input/output error"));
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

void TestFileSet::isRepairedWhereverItIsCut_data()
{
    QTest::addColumn<bool>("byDialog");
    QTest::addColumn<bool>("markIsLeft");
    QTest::newRow("by repair()") << false << false;
    QTest::newRow("by repair(), after one that failed") << false << true;
    QTest::newRow("by the dialog's model") << true << false;
}

void TestFileSet::isRepairedWhereverItIsCut()
{
    QFETCH(bool, byDialog);
    QFETCH(bool, markIsLeft);
    using Model = DlgSetupNetwork::ModelSettings;
    const Contents after = byDialog ? NetworkFiles::asSaved() : replaced();
    bool wasReplaced = false;
    auto end = KilledRun::End::Killed;
    for (int call = 0; end != KilledRun::End::Finished; ++call) {
        init();
        if (markIsLeft) {
            TextFile::write(mark, QByteArray());
        }
        end = KilledRun::before(call, [byDialog] {
            if (byDialog) {
                Model model;
                for (int column = 0; column < Model::SectionCount; ++column) {
                    model.data(model.index(0, column));
                }
                model.sync();
            } else {
                commit();
            }
        });
        if (end == KilledRun::End::NotAllowed) {
            QSKIP("a process may not be followed here");
        }
        // Whoever reads before the repair misses none.
        QVERIFY(!NetworkFiles::contents().contains(TextFile::content(QStringLiteral("missing"))));
        if (byDialog) {
            const Model nextStart;
        } else {
            FileSet::repair(mark, NetworkFiles::all());
        }
        const Contents found = NetworkFiles::contents();
        wasReplaced = found == after;
        QVERIFY2(wasReplaced ||
                     (found == NetworkFiles::asWritten() && end == KilledRun::End::Killed),
                 qPrintable(QStringLiteral("killed before call %1").arg(call)));
        QCOMPARE(TextFile::names(), NetworkFiles::all());
    }
    QVERIFY(wasReplaced);
}

void TestFileSet::isRepairedOnceItCanBe()
{
    // Cut off when the first one was in place.
    const QString interfaceNew = NetworkFiles::interface() + QStringLiteral(".new");
    const QString resolverNew = NetworkFiles::resolver() + QStringLiteral(".new");
    TextFile::write(interfaceNew, "new interface");
    TextFile::write(resolverNew, "new resolver");
    TextFile::write(mark, QByteArray());
    QVERIFY(QFile::remove(NetworkFiles::interface()));
    QVERIFY(QDir().mkdir(NetworkFiles::interface()));
    FileSet::repair(mark, NetworkFiles::all());
    QCOMPARE(TextFile::content(NetworkFiles::resolver()), QByteArray("new resolver"));
    QVERIFY(QFile::exists(mark));
    QVERIFY(QFile::exists(interfaceNew));
    QVERIFY(QDir().rmdir(NetworkFiles::interface()));
    FileSet::repair(mark, NetworkFiles::all());
    QCOMPARE(TextFile::content(NetworkFiles::interface()), QByteArray("new interface"));
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

STALLO_TEST_MAIN(TestFileSet)
#include "tst_fileset.moc"
