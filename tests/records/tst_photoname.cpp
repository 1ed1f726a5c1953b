// SPDX-License-Identifier: MIT
#include "records/photoname.h"

#include "records/deviceindex.h"
#include "records/photoclaims.h"
#include "records/photoowners.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace
{

const QString picture = QStringLiteral("2026-11-21_12-00-00_O000OO00.jpeg");

Scan passage(int second, const QString &number)
{
    Scan scan;
    scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC).addSecs(second));
    scan.setNumber(number);
    return scan;
}

} // namespace

// Whose file is whose when two devices report one number in one second.
class TestPhotoName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void namesOfDevices_data();
    void namesOfDevices();
    void takesOwnFileFirst();
    void emptyFileIsNoPhoto();
    void discards();
    void firstHasTheName_data();
    void firstHasTheName();
    void remembersSoMany();
    void ownersByTheirIndex();

private:
    QString at(const QString &name) const { return folder_->filePath(name); }
    void write(const QString &path, const QByteArray &content) const
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("cannot write");
        }
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

void TestPhotoName::init()
{
    folder_ = std::make_unique<QTemporaryDir>();
    PhotoClaims::forget();
}

void TestPhotoName::namesOfDevices_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("part");

    const QString full(31, QLatin1Char('#'));
    QTest::newRow("plain") << QStringLiteral("VASK-0001") << QStringLiteral("VASK-0001");
    QTest::newRow("all that stays") << QStringLiteral("aZ09._-") << QStringLiteral("aZ09._-");
    QTest::newRow("blank") << QStringLiteral("gate 1") << QStringLiteral("gate%201");
    QTest::newRow("path") << QStringLiteral("../x/y") << QStringLiteral("..%2Fx%2Fy");
    QTest::newRow("marks") << QStringLiteral("a~%*?") << QStringLiteral("a%7E%25%2A%3F");
    QTest::newRow("control") << QStringLiteral("a\nb") << QStringLiteral("a%0Ab");
    QTest::newRow("as the index gives it back")
        << QStringLiteral("  gate ") << QStringLiteral("gate");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("full") << full << QStringLiteral("%23").repeated(31);
    QTest::newRow("longer than an entry") << full + full << QStringLiteral("%23").repeated(31);
}

void TestPhotoName::namesOfDevices()
{
    QFETCH(QString, id);
    QFETCH(QString, part);
    const QString name = PhotoName::ofDevice(picture, id);
    QCOMPARE(name, QStringLiteral("2026-11-21_12-00-00_O000OO00-%1.jpeg").arg(part));
    QVERIFY(QFile::encodeName(name).size() < 255);
}

void TestPhotoName::takesOwnFileFirst()
{
    const QString common = at(picture);
    const QString own = at(PhotoName::ofDevice(picture, QStringLiteral("gate 2")));
    const auto path = [this](const char *id) {
        return PhotoName::path(folder_->path(), picture, QString::fromLatin1(id));
    };
    QCOMPARE(path("gate 2"), common);
    write(common, "photo");
    QCOMPARE(path("gate 2"), common);
    PhotoName::reserve(own);
    QCOMPARE(path("gate 2"), own);
    QCOMPARE(path("gate 1"), common);
    QCOMPARE(path(""), common);
}

void TestPhotoName::emptyFileIsNoPhoto()
{
    const QString file = at(picture);
    QVERIFY(!PhotoName::isThere(file));
    PhotoName::reserve(file);
    QVERIFY(QFile::exists(file));
    QVERIFY(!PhotoName::isThere(file));
    write(file, "photo");
    QVERIFY(PhotoName::isThere(file));
    PhotoName::reserve(file); // what is there stays
    QVERIFY(PhotoName::isThere(file));
}

void TestPhotoName::discards()
{
    const QString own = at(PhotoName::ofDevice(picture, QStringLiteral("gate 2")));
    const auto discard = [this](const char *id) {
        return PhotoName::discard(folder_->path(), picture, QString::fromLatin1(id));
    };
    QVERIFY(!discard("gate 1"));
    write(at(picture), "first");
    write(own, "second");
    QVERIFY(discard("gate 2"));
    QCOMPARE(QFileInfo(at(picture)).size(), 5);
    // Its row does not fall back to the other's photo, which frees no room either.
    QVERIFY(QFile::exists(own));
    QVERIFY(!PhotoName::isThere(own));
    QVERIFY(!discard("gate 2"));
    QVERIFY(discard("gate 1"));
    QVERIFY(!QFile::exists(at(picture)));
}

void TestPhotoName::firstHasTheName_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("file");

    const QString second = QStringLiteral("127.0.0.2");
    const QString own = QStringLiteral("2026-11-21_12-00-00_O000OO00-gate%202.jpeg");
    QTest::newRow("the same device")
        << QStringLiteral("127.0.0.1") << QStringLiteral("gate 1") << picture;
    QTest::newRow("the same with another identifier")
        << QStringLiteral("127.0.0.1") << QStringLiteral("gate 7") << picture;
    QTest::newRow("another device") << second << QStringLiteral("gate 2") << own;
    QTest::newRow("another with the same identifier")
        << second << QStringLiteral("gate 1") << QString();
    QTest::newRow("the same but for what is not stored")
        << second << QStringLiteral(" gate 1 ") << QString();
}

void TestPhotoName::firstHasTheName()
{
    QFETCH(QString, host);
    QFETCH(QString, id);
    QFETCH(QString, file);
    const QString common = at(picture);
    QCOMPARE(PhotoClaims::claim(common, QStringLiteral("127.0.0.1"), QStringLiteral("gate 1")),
             common);
    QVERIFY(!QFile::exists(common));
    const QString claimed = PhotoClaims::claim(common, host, id);
    QCOMPARE(claimed, file.isEmpty() ? QString() : at(file));
    QCOMPARE(PhotoClaims::claim(common, host, id), claimed);
    // At once, whatever becomes of its photo.
    QCOMPARE(QFile::exists(claimed), claimed != common && !claimed.isEmpty());
    PhotoClaims::forget();
    QCOMPARE(PhotoClaims::claim(common, host, id), common);
}

void TestPhotoName::remembersSoMany()
{
    const QString gate = QStringLiteral("gate");
    for (int n = 0; n < 16384; ++n) {
        PhotoClaims::claim(at(QString::number(n)), QStringLiteral("127.0.0.1"), gate);
    }
    const QString other = QStringLiteral("127.0.0.2");
    QCOMPARE(PhotoClaims::claim(at(QStringLiteral("0")), other, gate), QString());
    PhotoClaims::claim(at(QStringLiteral("one more")), other, gate);
    QCOMPARE(PhotoClaims::claim(at(QStringLiteral("1")), other, gate), QString());
    QCOMPARE(PhotoClaims::claim(at(QStringLiteral("0")), other, gate), at(QStringLiteral("0")));
}

void TestPhotoName::ownersByTheirIndex()
{
    const QVector<Scan> rows = {passage(0, QStringLiteral("A")), passage(1, QStringLiteral("A?1")),
                                passage(2, QStringLiteral("A")), passage(2, QStringLiteral("A")),
                                passage(3, QStringLiteral("A")), passage(3, QStringLiteral("A")),
                                passage(4, QStringLiteral("A"))};
    const QStringList ids = {QStringLiteral("one"),
                             QStringLiteral("one"),
                             QStringLiteral("one"),
                             QStringLiteral("two"),
                             QStringLiteral("two"),
                             QStringLiteral("one"),
                             QString()};
    QByteArray records;
    QByteArray index;
    for (int row = 0; row < rows.size(); ++row) {
        records.append(rows[row].data(), Scan::size);
        index += DeviceIndex::entry(ids[row]);
    }
    write(at(QStringLiteral("t.tpp")), records);
    write(at(QStringLiteral("t.tpp.index")), index);
    const PhotoOwners owners(at(QStringLiteral("t.tpp")), at(QStringLiteral("t.tpp.index")),
                             rows.size(), QStringLiteral(" two "));
    QVERIFY(owners.isOfAnother(passage(0, QStringLiteral("A"))));
    QVERIFY(!owners.isOfAnother(passage(0, QStringLiteral("B"))));
    QVERIFY(owners.isOfAnother(passage(1, QStringLiteral("A*1")))); // the same name
    QVERIFY(owners.isOfAnother(passage(2, QStringLiteral("A"))));
    QVERIFY(!owners.isOfAnother(passage(3, QStringLiteral("A"))));
    QVERIFY(!owners.isOfAnother(passage(4, QStringLiteral("A")))); // nobody's
    QVERIFY(!owners.isOfAnother(passage(5, QStringLiteral("A"))));
    const PhotoOwners none(at(QStringLiteral("t.tpp")), at(QStringLiteral("t.tpp.index")), 0,
                           QStringLiteral("two"));
    QVERIFY(!none.isOfAnother(passage(0, QStringLiteral("A"))));
}

STALLO_TEST_MAIN(TestPhotoName)
#include "tst_photoname.moc"
