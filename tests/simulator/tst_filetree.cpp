// SPDX-License-Identifier: MIT
#include "simulator/filetree.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class FileTreeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatIsSet();
    void tellsEmptyFromMissing();
    void asksTheMakerOfAPathOrFolder();
    void hidesAndRestoresWhatAMakerMakes();
    void letsLateFilesComeInTime();
    void servesARootFolder();
    void writesUploadsBelowTheRoot();
    void staysBelowTheRoot();
    void aTransferKeepsTheContentItBeganWith();
};

namespace
{

const QString path = QStringLiteral("/mnt/usb/a");

FileTree::Maker makerOf(const QByteArray &bytes)
{
    return [bytes](const QString &) { return FileTree::contentOf(bytes); };
}

} // namespace

void FileTreeTest::keepsWhatIsSet()
{
    FileTree tree;
    tree.set(path, "one");
    QCOMPARE(tree.get(path), QByteArray("one"));
    tree.set(path, "two");
    QCOMPARE(tree.get(path), QByteArray("two"));
    QCOMPARE(tree.paths(), QStringList{path});
    QCOMPARE(tree.open(path)->size(), qint64(3));
    QCOMPARE(tree.open(path)->read(1, 10), QByteArray("wo"));
}

void FileTreeTest::tellsEmptyFromMissing()
{
    FileTree tree;
    QVERIFY(tree.get(path).isNull());
    QVERIFY(!tree.contains(path));
    tree.set(path, QByteArray());
    QVERIFY(tree.contains(path));
    QVERIFY(!tree.get(path).isNull());
    QVERIFY(tree.get(path).isEmpty());
}

void FileTreeTest::asksTheMakerOfAPathOrFolder()
{
    FileTree tree;
    tree.setMaker(QStringLiteral("/mnt/usb/"), [](const QString &asked) {
        return asked.endsWith(QLatin1String("none")) ? nullptr
                                                     : FileTree::contentOf(asked.toLatin1());
    });
    tree.setMaker(QStringLiteral("/etc/x"), makerOf("x"));
    QCOMPARE(tree.get(path), QByteArray("/mnt/usb/a"));
    QVERIFY(tree.get(QStringLiteral("/mnt/usb/none")).isNull());
    QCOMPARE(tree.get(QStringLiteral("/etc/x")), QByteArray("x"));
    QVERIFY(tree.get(QStringLiteral("/etc/xy")).isNull());
    tree.setMaker(QStringLiteral("/etc/x"), makerOf("another"));
    QCOMPARE(tree.get(QStringLiteral("/etc/x")), QByteArray("another"));
}

void FileTreeTest::hidesAndRestoresWhatAMakerMakes()
{
    FileTree tree;
    tree.setMaker(path, makerOf("made"));
    tree.set(path, "set");
    QCOMPARE(tree.get(path), QByteArray("set"));
    tree.remove(path);
    QVERIFY(!tree.contains(path));
    tree.restore(path);
    QCOMPARE(tree.get(path), QByteArray("made"));
}

void FileTreeTest::letsLateFilesComeInTime()
{
    FileTree tree;
    tree.set(path, "late");
    tree.setLate(path, 200);
    QVERIFY(!tree.contains(path));
    QTRY_COMPARE(tree.get(path), QByteArray("late"));
    tree.setLate(path, 100000);
    QVERIFY(!tree.contains(path));
    tree.set(path, "now");
    QCOMPARE(tree.get(path), QByteArray("now"));
}

void FileTreeTest::servesARootFolder()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("mnt/usb")));
    QFile file(folder.filePath(QStringLiteral("mnt/usb/a")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("from the disk");
    file.close();
    FileTree tree;
    tree.setMaker(path, makerOf("made"));
    tree.setRoot(folder.path());
    QCOMPARE(tree.get(path), QByteArray("from the disk"));
    QCOMPARE(tree.open(path)->read(5, 3), QByteArray("the"));
    QVERIFY(tree.get(QStringLiteral("/mnt")).isNull()); // a folder is no file
}

void FileTreeTest::writesUploadsBelowTheRoot()
{
    const QTemporaryDir folder;
    FileTree tree;
    tree.setRoot(folder.path());
    QVERIFY(tree.store(path, "uploaded"));
    FileTree later;
    later.setRoot(folder.path());
    QCOMPARE(later.get(path), QByteArray("uploaded"));
}

void FileTreeTest::staysBelowTheRoot()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("root")));
    QFile secret(folder.filePath(QStringLiteral("secret")));
    QVERIFY(secret.open(QIODevice::WriteOnly));
    secret.write("secret");
    secret.close();
    FileTree tree;
    tree.setRoot(folder.filePath(QStringLiteral("root")));
    QVERIFY(tree.get(QStringLiteral("/../secret")).isNull());
    QVERIFY(!tree.store(QStringLiteral("/../secret"), "changed"));
    QVERIFY(secret.open(QIODevice::ReadOnly));
    QCOMPARE(secret.readAll(), QByteArray("secret"));
}

void FileTreeTest::aTransferKeepsTheContentItBeganWith()
{
    FileTree tree;
    tree.set(path, "old content");
    const auto content = tree.open(path);
    tree.set(path, "new");
    QCOMPARE(content->size(), qint64(11));
    QCOMPARE(content->read(0, 11), QByteArray("old content"));
}

STALLO_TEST_MAIN(FileTreeTest)
#include "tst_filetree.moc"
