// SPDX-License-Identifier: MIT
#include "tests/packaging/toolrun.h"
#include "tests/support/testmain.h"

#include <QDateTime>
#include <QDir>
#include <QImage>
#include <QLocale>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace
{

const QString applicationId = QStringLiteral("org.stallo.Stallo");

QString product(const QString &name)
{
    return textOf(QStringLiteral(STALLO_PACKAGING_DIR "/") + name);
}

// The value of a key of an entry, null where there is none.
QString valueOf(const QString &entry, const QString &key)
{
    const QRegularExpression line(QStringLiteral("^%1=(.*)$").arg(QRegularExpression::escape(key)),
                                  QRegularExpression::MultilineOption);
    return line.match(entry).captured(1);
}

// An element of the catalogue entry: its name, its text with single blanks, and its attributes.
struct Element {
    QString name;
    QString text;
    QXmlStreamAttributes attributes;

    bool isTranslation() const { return attributes.hasAttribute(QStringLiteral("xml:lang")); }
};

// All elements in their order. Text counts for the innermost element around it.
QVector<Element> elementsOf(const QString &xml)
{
    QVector<Element> result;
    QVector<int> open;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            open.append(result.size());
            result.append({reader.name().toString(), QString(), reader.attributes()});
        } else if (reader.isEndElement()) {
            Element &ended = result[open.takeLast()];
            ended.text = ended.text.simplified();
        } else if (reader.isCharacters() && !open.isEmpty()) {
            result[open.last()].text += reader.text();
        }
    }
    return reader.hasError() ? QVector<Element>() : result;
}

Element firstElement(const QString &name)
{
    for (const Element &each :
         elementsOf(product(applicationId + QStringLiteral(".metainfo.xml")))) {
        if (each.name == name) {
            return each;
        }
    }
    return {};
}

} // namespace

// The desktop's and the distribution's descriptions of the program agree with one another and with
// the build, and speak both languages.
class TestMetadata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void versionsAgree();
    void oneName();
    void startsWhereTheCataloguesAre();
    void kioskStartsAgainAndKeepsToItself();
    void entriesSpeakBothLanguages_data();
    void entriesSpeakBothLanguages();
    void descriptionSpeaksBothLanguages();
    void screenshotsHaveCaptions();
    void icons();
};

void TestMetadata::versionsAgree()
{
    const QString changelog = textOf(sourceFile("debian/changelog"));
    const QRegularExpression head(QStringLiteral("^stallo \\(([^)]*)\\)"));
    QCOMPARE(head.match(changelog).captured(1), QStringLiteral(STALLO_VERSION));
    const QXmlStreamAttributes release = firstElement(QStringLiteral("release")).attributes;
    QCOMPARE(release.value(QStringLiteral("version")).toString(), QStringLiteral(STALLO_VERSION));
    const QRegularExpression trailer(QStringLiteral("^ -- .*>  (.*)$"),
                                     QRegularExpression::MultilineOption);
    const QDateTime written =
        QDateTime::fromString(trailer.match(changelog).captured(1), Qt::RFC2822Date);
    QVERIFY(written.isValid());
    QCOMPARE(release.value(QStringLiteral("date")).toString(),
             written.date().toString(Qt::ISODate));
    const ToolRun device =
        ToolRun::of(QStringLiteral(STALLO_DEVICE), {QStringLiteral("--version")});
    QCOMPARE(device.output, QByteArray("stallo-device " STALLO_VERSION "\n"));
}

void TestMetadata::oneName()
{
    const QString entry = product(applicationId + QStringLiteral(".desktop"));
    QCOMPARE(valueOf(entry, QStringLiteral("Icon")), applicationId);
    QCOMPARE(firstElement(QStringLiteral("id")).text, applicationId);
    QCOMPARE(firstElement(QStringLiteral("launchable")).text,
             applicationId + QStringLiteral(".desktop"));
    QCOMPARE(firstElement(QStringLiteral("icon")).text, applicationId);
    // Windows are told apart by the program's name.
    QCOMPARE(valueOf(entry, QStringLiteral("StartupWMClass")),
             QFileInfo(QStringLiteral(STALLO_PROGRAM)).fileName());
}

void TestMetadata::startsWhereTheCataloguesAre()
{
    const QString entry = product(applicationId + QStringLiteral(".desktop"));
    const QString autostart = product(QStringLiteral("stallo-autostart.desktop"));
    const QString unit = product(QStringLiteral("stallo-kiosk.service"));
    const QString folder = valueOf(entry, QStringLiteral("Path"));
    QVERIFY(folder.startsWith(QLatin1Char('/')));
    QVERIFY(folder.endsWith(QLatin1String("/share/stallo")));
    QCOMPARE(valueOf(autostart, QStringLiteral("Path")), folder);
    QCOMPARE(valueOf(unit, QStringLiteral("WorkingDirectory")), folder);
    QCOMPARE(valueOf(entry, QStringLiteral("Exec")), QStringLiteral("stallo"));
    const QString command = valueOf(unit, QStringLiteral("ExecStart"));
    QVERIFY(command.startsWith(QLatin1Char('/')));
    QVERIFY(command.section(QLatin1Char(' '), 0, 0).endsWith(QLatin1String("/bin/stallo")));
}

void TestMetadata::kioskStartsAgainAndKeepsToItself()
{
    const QString unit = product(QStringLiteral("stallo-kiosk.service"));
    QCOMPARE(valueOf(unit, QStringLiteral("Restart")), QStringLiteral("always"));
    // The manager passes over a key that stands in another section.
    const QString service = unit.section(QStringLiteral("[Service]"), 1);
    QCOMPARE(valueOf(service, QStringLiteral("UMask")), QStringLiteral("0077"));
    const QString before = unit.section(QStringLiteral("[Service]"), 0, 0);
    QCOMPARE(valueOf(before, QStringLiteral("StartLimitIntervalSec")), QStringLiteral("0"));
}

void TestMetadata::entriesSpeakBothLanguages_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("keys");
    QTest::newRow("menu entry") << applicationId + QStringLiteral(".desktop")
                                << QStringList{
                                       QStringLiteral("Name"), QStringLiteral("GenericName"),
                                       QStringLiteral("Comment"), QStringLiteral("Keywords")};
    QTest::newRow("autostart") << QStringLiteral("stallo-autostart.desktop")
                               << QStringList{QStringLiteral("Name"), QStringLiteral("Comment")};
}

void TestMetadata::entriesSpeakBothLanguages()
{
    QFETCH(QString, file);
    QFETCH(QStringList, keys);
    const QString entry = product(file);
    for (const QString &key : keys) {
        QVERIFY2(!valueOf(entry, key).isEmpty(), qPrintable(key));
        const QString russian = key + QStringLiteral("[ru]");
        QVERIFY2(!valueOf(entry, russian).isEmpty(), qPrintable(russian));
    }
}

void TestMetadata::descriptionSpeaksBothLanguages()
{
    const QStringList translated = {QStringLiteral("summary"), QStringLiteral("p"),
                                    QStringLiteral("li"), QStringLiteral("caption")};
    const QVector<Element> elements =
        elementsOf(product(applicationId + QStringLiteral(".metainfo.xml")));
    int pairs = 0;
    for (int n = 0; n < elements.size(); ++n) {
        const Element &each = elements.at(n);
        if (translated.contains(each.name) && !each.isTranslation()) {
            QVERIFY2(n + 1 < elements.size(), qPrintable(each.text));
            const Element &next = elements.at(n + 1);
            QVERIFY2(next.name == each.name && next.isTranslation(), qPrintable(each.text));
            QVERIFY2(!each.text.isEmpty() && !next.text.isEmpty() && next.text != each.text,
                     qPrintable(each.text));
            ++pairs;
        }
    }
    QVERIFY(pairs >= 8);
}

void TestMetadata::screenshotsHaveCaptions()
{
    QStringList names;
    int screenshots = 0;
    int captions = 0;
    for (const Element &each :
         elementsOf(product(applicationId + QStringLiteral(".metainfo.xml")))) {
        screenshots += each.name == QLatin1String("screenshot") ? 1 : 0;
        captions += each.name == QLatin1String("caption") && !each.isTranslation() ? 1 : 0;
        if (each.name == QLatin1String("image")) {
            names += each.text.section(QLatin1Char('/'), -1);
        }
    }
    // The pictures that the panel leaves of its pages.
    QCOMPARE(names, QStringList({QStringLiteral("online.png"), QStringLiteral("archive.png"),
                                 QStringLiteral("suffered.png")}));
    QCOMPARE(screenshots, names.size());
    QCOMPARE(captions, names.size());
}

void TestMetadata::icons()
{
    const QDir folder(sourceFile("resources/icons"));
    const QStringList files = folder.entryList(QDir::Files);
    const QString rules = textOf(sourceFile("packaging/CMakeLists.txt"));
    const QStringList sizes = QRegularExpression(QStringLiteral("foreach\\(size ([0-9 ]+)\\)"))
                                  .match(rules)
                                  .captured(1)
                                  .split(QLatin1Char(' '));
    QCOMPARE(sizes.first(), QStringLiteral("16"));
    QCOMPARE(sizes.last(), QStringLiteral("512"));
    QCOMPARE(files.size(), sizes.size());
    for (const QString &size : sizes) {
        const QImage picture(folder.filePath(size + QStringLiteral(".png")));
        QCOMPARE(picture.size(), QSize(size.toInt(), size.toInt()));
        QVERIFY(picture.hasAlphaChannel());
    }
    QVERIFY(textOf(sourceFile("resources/icon1.svg")).startsWith(QLatin1String("<svg ")));
}

STALLO_TEST_MAIN(TestMetadata)
#include "tst_metadata.moc"
