// SPDX-License-Identifier: MIT
#include "records/regularfile.h"

#include "records/recordfile.h"
#include "tests/support/bounded.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTemporaryDir>

#include <atomic>

#include <sys/stat.h>

namespace
{

const QString otherKind = QStringLiteral("This is not a regular file");
const QString missing = QStringLiteral("No such file or directory");

} // namespace

class TestRegularFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        write("file", "content");
        QCOMPARE(mkfifo(QFile::encodeName(below("pipe")).constData(), 0600), 0);
        QVERIFY(QFile::link(below("file"), below("link to file")));
        QVERIFY(QFile::link(below("pipe"), below("link to pipe")));
        QVERIFY(QDir(folder_->path()).mkdir(QStringLiteral("folder")));
    }

    void opens_data();
    void opens();
    void makesMissingFile();
    void readsAndWrites();
    void recordFileTakesNothingElse();
    void isNotHeldUpByWhatTakesItsPlace();

private:
    QString below(const char *name) const { return folder_->filePath(QLatin1String(name)); }
    void write(const char *name, const QByteArray &bytes) const
    {
        QFile file(below(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

void TestRegularFile::opens_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("error");
    const auto rows = [](const char *name, const QString &error) {
        QTest::addRow("%s, read", name) << QByteArray(name) << int(QIODevice::ReadOnly) << error;
        QTest::addRow("%s, written", name)
            << QByteArray(name) << int(QIODevice::ReadWrite | QIODevice::ExistingOnly) << error;
    };
    rows("file", QString());
    rows("link to file", QString());
    rows("pipe", otherKind);
    rows("link to pipe", otherKind);
    rows("folder", otherKind);
    rows("/dev/null", otherKind);
    rows("/dev/zero", otherKind);
    rows("missing", missing);
    rows("missing/file", missing);
}

void TestRegularFile::opens()
{
    QFETCH(QByteArray, name);
    QFETCH(int, mode);
    QFETCH(QString, error);
    const QString path = name.startsWith('/') ? QString::fromLatin1(name) : below(name.constData());
    QFile file(path);
    const QString text = Bounded::text(
        [&] { return RegularFile::open(file, static_cast<QIODevice::OpenMode>(mode)); });
    QCOMPARE(text, error);
    QCOMPARE(file.isOpen(), error.isEmpty());
    if (file.isOpen()) {
        QCOMPARE(file.readAll(), QByteArray("content"));
        QCOMPARE(file.isWritable(), (mode & QIODevice::WriteOnly) != 0);
    }
}

void TestRegularFile::makesMissingFile()
{
    QFile read(below("new"));
    QCOMPARE(RegularFile::open(read, QIODevice::ReadOnly), missing);
    QFile written(below("new"));
    QCOMPARE(RegularFile::open(written, QIODevice::ReadWrite), QString());
    QVERIFY(QFile::exists(below("new")));
}

void TestRegularFile::readsAndWrites()
{
    QFile file(below("file"));
    QCOMPARE(RegularFile::open(file, QIODevice::ReadWrite | QIODevice::Unbuffered), QString());
    QCOMPARE(file.size(), qint64(7));
    QVERIFY(file.seek(3));
    QCOMPARE(file.write("TENT!"), qint64(5));
    QCOMPARE(file.size(), qint64(8));
    QVERIFY(file.resize(6));
    QVERIFY(file.seek(0));
    QCOMPARE(file.readAll(), QByteArray("conTEN"));
}

void TestRegularFile::recordFileTakesNothingElse()
{
    for (const char *name : {"pipe", "folder"}) {
        RecordFile file(below(name), 116);
        QVERIFY(!file.open());
        QCOMPARE(file.errorString(), otherKind);
    }
}

// A pipe comes and goes under the name; opening it blind would wait for somebody to write to it.
void TestRegularFile::isNotHeldUpByWhatTakesItsPlace()
{
    const QByteArray place = QFile::encodeName(below("file"));
    const QByteArray pipe = QFile::encodeName(below("pipe"));
    std::atomic<bool> ended{false};
    const std::unique_ptr<QThread> other(QThread::create([&] {
        for (int n = 0; !ended; ++n) {
            ::rename(place.constData(), (place + ".aside").constData());
            ::rename(pipe.constData(), place.constData());
            ::rename(place.constData(), pipe.constData());
            ::rename((place + ".aside").constData(), place.constData());
        }
    }));
    other->start();
    const QString text = Bounded::text([&] {
        for (int n = 0; n < 20000; ++n) {
            QFile file(QFile::decodeName(place));
            const QString error = RegularFile::open(file, QIODevice::ReadOnly);
            if (error.isEmpty() && file.isSequential()) {
                return QStringLiteral("a pipe was opened");
            }
        }
        return QString();
    });
    ended = true;
    QVERIFY(other->wait(10000));
    QCOMPARE(text, QString());
}

STALLO_TEST_MAIN(TestRegularFile)
#include "tst_regularfile.moc"
