// SPDX-License-Identifier: MIT
#include "tests/packaging/toolrun.h"
#include "tests/support/testmain.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

namespace
{

const QStringList programs = {QStringLiteral(STALLO_PROGRAM), QStringLiteral(STALLO_DEVICE),
                              QStringLiteral(STALLO_NETSETUP)};

QString fieldOf(const QJsonValue &object, const char *name)
{
    return object.toObject().value(QLatin1String(name)).toString();
}

QStringList neededBy(const QString &program)
{
    const ToolRun run = ToolRun::of(QStringLiteral("readelf"), {QStringLiteral("-d"), program});
    const QRegularExpression line(QStringLiteral("\\(NEEDED\\).*\\[(.*)\\]"));
    QStringList result;
    for (auto found = line.globalMatch(QString::fromUtf8(run.output)); found.hasNext();) {
        result += found.next().captured(1);
    }
    return result;
}

} // namespace

// The list of what the programs are linked with, made of those of this build.
class TestSbom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sameProgramsGiveTheSameList();
    void structure();
    void packagesAreInstalledOnes();
    void relationsMeanSomething();
    void everyLibraryIsAccountedFor_data();
    void everyLibraryIsAccountedFor();
    void filesAreThoseOfThisBuild();
    void refusesWhatItCannotTrace();

private:
    QByteArray made(const QString &name, const QStringList &of = programs);
    QJsonArray part(const char *name) const
    {
        return document_.value(QLatin1String(name)).toArray();
    }

    QTemporaryDir folder_;
    ToolRun run_;
    QByteArray text_;
    QJsonObject document_;
};

QByteArray TestSbom::made(const QString &name, const QStringList &of)
{
    const QString path = folder_.filePath(name);
    run_ =
        ToolRun::of(QStringLiteral("python3"),
                    QStringList{sourceFile("packaging/sbom.py"), QStringLiteral("--version"),
                                QStringLiteral(STALLO_VERSION), QStringLiteral("--output"), path} +
                        of,
                    {QStringLiteral("SOURCE_DATE_EPOCH=1795305600")});
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestSbom::initTestCase()
{
    text_ = made(QStringLiteral("first.json"));
    QCOMPARE(run_.errors, QByteArray());
    QCOMPARE(run_.code, 0);
    QJsonParseError error;
    document_ = QJsonDocument::fromJson(text_, &error).object();
    QCOMPARE(error.error, QJsonParseError::NoError);
}

void TestSbom::sameProgramsGiveTheSameList()
{
    QCOMPARE(made(QStringLiteral("second.json")), text_);
}

void TestSbom::structure()
{
    const QJsonValue document = document_;
    QCOMPARE(fieldOf(document, "spdxVersion"), QStringLiteral("SPDX-2.3"));
    QCOMPARE(fieldOf(document, "dataLicense"), QStringLiteral("CC0-1.0"));
    QCOMPARE(fieldOf(document, "SPDXID"), QStringLiteral("SPDXRef-DOCUMENT"));
    QVERIFY(!fieldOf(document, "name").isEmpty());
    QVERIFY(fieldOf(document, "documentNamespace").startsWith(QLatin1String("https://")));
    QVERIFY(!fieldOf(document, "documentNamespace").contains(QLatin1Char('#')));
    const QJsonValue creation = document_.value(QLatin1String("creationInfo"));
    QCOMPARE(fieldOf(creation, "created"), QStringLiteral("2026-11-22T00:00:00Z"));
    QVERIFY(!creation.toObject().value(QLatin1String("creators")).toArray().isEmpty());

    QSet<QString> ids;
    const QRegularExpression form(QStringLiteral("^SPDXRef-[A-Za-z0-9.-]+$"));
    for (const char *kind : {"packages", "files"}) {
        QVERIFY(!part(kind).isEmpty());
        for (const QJsonValue &each : part(kind)) {
            const QString id = fieldOf(each, "SPDXID");
            QVERIFY2(form.match(id).hasMatch() && !ids.contains(id), qPrintable(id));
            ids.insert(id);
            for (const char *field : {"licenseConcluded", "copyrightText"}) {
                QVERIFY2(!fieldOf(each, field).isEmpty(), qPrintable(id));
            }
        }
    }
}

void TestSbom::packagesAreInstalledOnes()
{
    for (const QJsonValue &each : part("packages")) {
        const QString name = fieldOf(each, "name");
        QVERIFY2(!fieldOf(each, "licenseDeclared").isEmpty(), qPrintable(name));
        QVERIFY2(!fieldOf(each, "downloadLocation").isEmpty(), qPrintable(name));
        if (name == QLatin1String("stallo")) {
            QCOMPARE(fieldOf(each, "versionInfo"), QStringLiteral(STALLO_VERSION));
            continue;
        }
        const ToolRun query =
            ToolRun::of(QStringLiteral("dpkg-query"), {QStringLiteral("-W"), QStringLiteral("-f"),
                                                       QStringLiteral("${Version}\n"), name});
        QVERIFY2(query.output.split('\n').contains(fieldOf(each, "versionInfo").toUtf8()),
                 qPrintable(name));
    }
}

void TestSbom::relationsMeanSomething()
{
    QSet<QString> ids = {QStringLiteral("SPDXRef-DOCUMENT")};
    for (const char *kind : {"packages", "files"}) {
        for (const QJsonValue &each : part(kind)) {
            ids.insert(fieldOf(each, "SPDXID"));
        }
    }
    QSet<QString> described;
    for (const QJsonValue &each : part("relationships")) {
        QVERIFY(ids.contains(fieldOf(each, "spdxElementId")));
        QVERIFY(ids.contains(fieldOf(each, "relatedSpdxElement")));
        if (fieldOf(each, "relationshipType") == QLatin1String("DESCRIBES")) {
            described.insert(fieldOf(each, "relatedSpdxElement"));
        }
    }
    QVERIFY(described.contains(QStringLiteral("SPDXRef-Package-stallo")));
}

void TestSbom::everyLibraryIsAccountedFor_data()
{
    QTest::addColumn<QString>("program");
    for (const QString &program : programs) {
        QTest::newRow(qPrintable(QFileInfo(program).fileName())) << program;
    }
}

void TestSbom::everyLibraryIsAccountedFor()
{
    QFETCH(QString, program);
    const QString file = QStringLiteral("SPDXRef-File-") + QFileInfo(program).fileName();
    QSet<QString> linked;
    for (const QJsonValue &each : part("relationships")) {
        if (fieldOf(each, "spdxElementId") == file &&
            fieldOf(each, "relationshipType") == QLatin1String("DYNAMIC_LINK")) {
            linked.insert(fieldOf(each, "relatedSpdxElement"));
        }
    }
    QStringList supplied;
    for (const QJsonValue &each : part("packages")) {
        if (linked.contains(fieldOf(each, "SPDXID"))) {
            supplied += fieldOf(each, "comment").split(QLatin1Char(' '));
        }
    }
    const QStringList needed = neededBy(program);
    QVERIFY(needed.size() > 3);
    for (const QString &library : needed) {
        QVERIFY2(supplied.contains(library), qPrintable(library));
    }
}

void TestSbom::filesAreThoseOfThisBuild()
{
    QCOMPARE(part("files").size(), programs.size());
    for (const QString &program : programs) {
        QFile file(program);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray hash =
            QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
        QVERIFY2(text_.contains(hash), qPrintable(program));
    }
}

// A list with holes would look like one without.
void TestSbom::refusesWhatItCannotTrace()
{
    const QString lost = folder_.filePath(QStringLiteral("lost"));
    QVERIFY(QFile::copy(QStringLiteral("/bin/sh"), lost));
    // Same length, so that nothing moves.
    QFile file(lost);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray content = file.readAll();
    QVERIFY(content.contains("libc.so.6"));
    content.replace("libc.so.6", "libz.so.9");
    QVERIFY(file.seek(0) && file.write(content) == content.size());
    file.close();
    QCOMPARE(made(QStringLiteral("lost.json"), {lost}), QByteArray());
    QVERIFY(run_.code > 0);
    QVERIFY2(run_.errors.contains("libz.so.9"), run_.errors.constData());
}

STALLO_TEST_MAIN(TestSbom)
#include "tst_sbom.moc"
