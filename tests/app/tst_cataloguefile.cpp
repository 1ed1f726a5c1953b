// SPDX-License-Identifier: MIT
#include "app/cataloguefile.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>
#include <QtEndian>

namespace
{

QByteArray word(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray block(char kind, const QByteArray &content)
{
    return kind + word(static_cast<quint32>(content.size())) + content;
}

const QByteArray magic = QByteArray::fromHex("3cb86418caef9c95cd211cbf60a1bddd");
// A translation of two letters, and the end.
const QByteArray message = block(3, QByteArray("\0O\0K", 4)) + '\1';

QByteArray catalogue(const QByteArray &hashes, const QByteArray &messages)
{
    return magic + block(0x42, hashes) + block(0x69, messages);
}

} // namespace

class TestCatalogueFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isSound_data();
    void isSound();
    void real_data();
    void real();
    void find_data();
    void find();

private:
    QString write(const QString &name, const QByteArray &bytes)
    {
        QFile file(folder_.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()
                   ? file.fileName()
                   : QString();
    }

    QTemporaryDir folder_;
};

void TestCatalogueFile::isSound_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("sound");
    const QByteArray first = word(1) + word(0);
    const QByteArray self = QByteArray(word(8)) + QByteArray("\0s\0e\0l\0f", 8);

    QTest::newRow("one message") << catalogue(first, message) << true;
    QTest::newRow("nothing in it") << magic << true;
    QTest::newRow("a message without an end")
        << catalogue(first, message.left(message.size() - 1)) << true;
    QTest::newRow("no translation") << catalogue(first, '\3' + word(0xFFFFFFFFU)) << true;
    QTest::newRow("contexts") << magic + block(0x2f, QByteArray("\0\1\0\1\0\0\1a\0", 9)) << true;

    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("no catalogue") << QByteArray("This is a text and nothing else") << false;
    QTest::newRow("a section beyond the end") << catalogue(first, message).chopped(1) << false;
    QTest::newRow("half an entry") << catalogue(first + word(2), message) << false;
    QTest::newRow("a place behind the messages") << catalogue(word(1) + word(10), message) << false;
    QTest::newRow("a translation beyond the end")
        << catalogue(first, '\3' + word(6) + QByteArray(4, 'a')) << false;
    QTest::newRow("a negative length")
        << catalogue(first, '\3' + word(0xFFFFFFF0U) + QByteArray(40, 'a')) << false;
    QTest::newRow("no room for a length") << catalogue(first, QByteArray("\6\0\0", 3)) << false;
    QTest::newRow("no contexts") << magic + block(0x2f, QByteArray(4, '\0')) << false;
    QTest::newRow("contexts beyond the end")
        << magic + block(0x2f, QByteArray("\0\1\0\x70\0\0\1a\0", 9)) << false;
    QTest::newRow("depends on itself") << magic + block(char(0x96), self) << false;
    QTest::newRow("depends on what is not there")
        << magic + block(char(0x96), word(2) + QByteArray("\0x", 2)) << false;
}

void TestCatalogueFile::isSound()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, sound);
    QCOMPARE(CatalogueFile::isSound(write(QStringLiteral("self.qm"), bytes)), sound);
}

void TestCatalogueFile::real_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"vaskparking_ru.qm", "vaskparking_en.qm", "small.qm"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void TestCatalogueFile::real()
{
    QFETCH(const QString, name);
    QVERIFY(CatalogueFile::isSound(QStringLiteral(STALLO_CATALOGUES "/") + name));
}

void TestCatalogueFile::find_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("found");
    QTest::newRow("with its ending") << QStringLiteral("a_ru") << QStringLiteral("a_ru.qm");
    QTest::newRow("cut shorter") << QStringLiteral("a_ru_RU") << QStringLiteral("a_ru.qm");
    QTest::newRow("without an ending") << QStringLiteral("b.c_de") << QStringLiteral("b");
    QTest::newRow("none") << QStringLiteral("c_ru_RU") << QString();
    QTest::newRow("no name") << QString() << QString();
}

void TestCatalogueFile::find()
{
    QFETCH(const QString, name);
    QFETCH(const QString, found);
    write(QStringLiteral("a_ru.qm"), "a");
    write(QStringLiteral("b"), "b");
    QCOMPARE(QFileInfo(CatalogueFile::find(name, folder_.path())).fileName(), found);
}

STALLO_TEST_MAIN(TestCatalogueFile)
#include "tst_cataloguefile.moc"
