// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "tests/docs/document.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QImageReader>
#include <QRegularExpression>

#include <algorithm>

namespace
{

const QString root = QStringLiteral(STALLO_SOURCE_DIR "/");
const QString english = QStringLiteral("docs/operator-guide.md");
const QString russian = QStringLiteral("docs/operator-guide.ru.md");
const QString install = QStringLiteral("docs/install.md");
const QString catalogue = root + QStringLiteral("translations/vaskparking_ru.ts");

Document document(const QString &name)
{
    return Document(root + name);
}

// Of the toolkit, or not translated on purpose: none of our catalogues has them.
bool isOfTheToolkit(const QString &message)
{
    static const QStringList texts = {QStringLiteral("Connection refused"),
                                      QStringLiteral("Отказано в соединении"),
                                      QStringLiteral("Host not found"),
                                      QStringLiteral("Узел не найден"),
                                      QStringLiteral("Network unreachable"),
                                      QStringLiteral("Сеть недоступна"),
                                      QStringLiteral("The remote host closed the connection"),
                                      QStringLiteral("Удалённый узел закрыл соединение"),
                                      QStringLiteral("No space left on device"),
                                      QStringLiteral("Нет свободного места на устройстве"),
                                      QStringLiteral("Permission denied"),
                                      QStringLiteral("Доступ запрещён"),
                                      QStringLiteral("No such file or directory"),
                                      QStringLiteral("Файл или каталог не существует"),
                                      QStringLiteral("Timeout when reading file from vask")};
    return texts.contains(message);
}

// As it stands, as the beginning of a text, or with "…" for a part of it.
bool isOnScreen(const QString &quoted, const QStringList &texts)
{
    const QStringList pieces = quoted.split(QChar(0x2026));
    return std::any_of(texts.begin(), texts.end(), [&pieces](const QString &text) {
        return text.startsWith(pieces.first().trimmed()) &&
               std::all_of(pieces.begin(), pieces.end(), [&text](const QString &piece) {
                   return text.contains(piece.trimmed());
               });
    });
}

// The texts between quotation marks in the first column of the table of messages.
QStringList messages(const QString &guide, const QString &heading)
{
    QStringList cells = document(guide).firstCells(heading);
    for (QString &cell : cells) {
        cell = cell.mid(1, cell.size() - 2);
    }
    return cells;
}

QStringList englishMessages()
{
    return messages(english, QStringLiteral("Messages"));
}

} // namespace

class TestGuides : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySettingIsNamed_data();
    void everySettingIsNamed();
    void everyNamedSettingIs();
    void defaultsAreThose_data();
    void defaultsAreThose();
    void twinsHaveTheSameHeadings();
    void picturesAreThere_data();
    void picturesAreThere();
    void twinsHaveTheSamePictures();
    void linksLead_data();
    void linksLead();
    void everyQuotedTextIs_data();
    void everyQuotedTextIs();
    void everyMessageIs();
    void everyMessageIsNamed();
    void russianMessagesAreThoseOnTheScreen();

private:
    static QStringList settingKeys();
};

QStringList TestGuides::settingKeys()
{
    const QRegularExpression key(
        QStringLiteral("constexpr char \\w+\\[\\] = \"(?:\\w+/)?(\\w+)\""));
    QStringList keys;
    for (const char *source : {"app/settings.cpp", "app/startup.cpp"}) {
        auto matches = key.globalMatch(document(QLatin1String(source)).text());
        while (matches.hasNext()) {
            keys.append(matches.next().captured(1));
        }
    }
    return keys;
}

void TestGuides::everySettingIsNamed_data()
{
    QTest::addColumn<QString>("key");

    const QStringList keys = settingKeys();
    QVERIFY(keys.size() > 25);
    for (const QString &key : keys) {
        QTest::newRow(qPrintable(key)) << key;
    }
}

void TestGuides::everySettingIsNamed()
{
    QFETCH(QString, key);
    const QStringList cells = document(install).firstCells(QStringLiteral("Settings"));
    QVERIFY(cells.join(QLatin1Char('\n')).contains(QLatin1Char('`') + key + QLatin1Char('`')));
}

void TestGuides::everyNamedSettingIs()
{
    const QStringList keys = settingKeys();
    const QStringList cells = document(install).firstCells(QStringLiteral("Settings"));
    QVERIFY(cells.size() > 20);
    for (const QString &cell : cells) {
        auto names = QRegularExpression(QStringLiteral("`(\\w+)`")).globalMatch(cell);
        QVERIFY2(names.hasNext(), qPrintable(cell));
        while (names.hasNext()) {
            const QString name = names.next().captured(1);
            QVERIFY2(keys.contains(name), qPrintable(name));
        }
    }
}

// The table of the keys in [Global]: key or keys, type, default, whether the first start writes it,
// meaning. Numbers and the word "home" stand as they are, all else between backquotes with "~" for
// the home directory.
void TestGuides::defaultsAreThose_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("fallback");
    QTest::addColumn<bool>("written");

    int rows = 0;
    for (const QStringList &row : document(install).rows(QStringLiteral("Settings"))) {
        if (row.size() != 5) {
            continue; // the other keys
        }
        QString fallback = row.at(2);
        fallback.remove(QLatin1Char('`')).replace(QLatin1String("~"), QDir::homePath());
        fallback = row.at(2) == QLatin1String("home") ? QDir::homePath() : fallback;
        auto keys = QRegularExpression(QStringLiteral("`(\\w+)`")).globalMatch(row.first());
        while (keys.hasNext()) {
            const QString key = keys.next().captured(1);
            QTest::newRow(qPrintable(key))
                << key << fallback << (row.at(3) == QLatin1String("yes"));
            ++rows;
        }
    }
    QVERIFY(rows > 20);
}

void TestGuides::defaultsAreThose()
{
    QFETCH(QString, key);
    QFETCH(QString, fallback);
    QFETCH(bool, written);
    const Settings *settings = TestSurroundings::freshSettings();
    const QString path = QStringLiteral("Global/") + key;
    QCOMPARE(settings->contains(path), written);
    const QString unwritten = key == QLatin1String("MinReservedFreeSpace")
                                  ? QString::number(settings->minReservedFreeSpace())
                                  : QString();
    QCOMPARE(settings->value(path, unwritten).toString(), fallback);
}

void TestGuides::twinsHaveTheSameHeadings()
{
    const auto levels = [](const QString &guide) {
        QStringList all;
        for (const QString &heading : document(guide).headings()) {
            all.append(heading.section(QLatin1Char(' '), 0, 0));
        }
        return all;
    };
    QVERIFY(levels(english).size() > 10);
    QCOMPARE(levels(russian), levels(english));
}

void TestGuides::picturesAreThere_data()
{
    QTest::addColumn<QString>("guide");
    QTest::addColumn<QString>("folder");

    QTest::newRow("english") << english << QStringLiteral("pictures/en/");
    QTest::newRow("russian") << russian << QStringLiteral("pictures/ru/");
}

void TestGuides::picturesAreThere()
{
    constexpr int largest = 200 * 1024;
    QFETCH(QString, guide);
    QFETCH(QString, folder);
    const QStringList pictures = document(guide).pictures();
    QVERIFY(pictures.size() > 5);
    for (const QString &picture : pictures) {
        QVERIFY2(picture.startsWith(folder), qPrintable(picture));
        const QString path = root + QStringLiteral("docs/") + picture;
        QVERIFY2(QImageReader(path).canRead(), qPrintable(picture));
        QVERIFY2(QFileInfo(path).size() < largest, qPrintable(picture));
    }
    const QStringList there = QDir(root + QStringLiteral("docs/") + folder).entryList(QDir::Files);
    for (const QString &name : there) {
        QVERIFY2(pictures.contains(folder + name), qPrintable(name + QStringLiteral(" is unused")));
    }
}

void TestGuides::twinsHaveTheSamePictures()
{
    QStringList ofTheTwin = document(russian).pictures();
    ofTheTwin.replaceInStrings(QStringLiteral("/ru/"), QStringLiteral("/en/"));
    QCOMPARE(ofTheTwin, document(english).pictures());
}

void TestGuides::linksLead_data()
{
    QTest::addColumn<QString>("name");

    int documents = 0;
    for (const char *folder : {"", "docs/"}) {
        const QDir directory(root + QLatin1String(folder));
        for (const QString &name : directory.entryList({QStringLiteral("*.md")})) {
            const QString path = QLatin1String(folder) + name;
            QTest::newRow(qPrintable(path)) << path;
            ++documents;
        }
    }
    QVERIFY(documents >= 10);
}

void TestGuides::linksLead()
{
    QFETCH(QString, name);
    const Document page = document(name);
    QVERIFY(!page.headings().isEmpty());
    const QDir folder = QFileInfo(root + name).dir();
    for (const QString &link : page.links()) {
        if (link.startsWith(QLatin1String("https://"))) {
            continue;
        }
        const QString file = link.section(QLatin1Char('#'), 0, 0);
        const QString place = link.section(QLatin1Char('#'), 1);
        const QString path = file.isEmpty() ? root + name : folder.filePath(file);
        QVERIFY2(QFileInfo::exists(path), qPrintable(link));
        QVERIFY2(place.isEmpty() || Document(path).places().contains(place), qPrintable(link));
    }
}

void TestGuides::everyQuotedTextIs_data()
{
    QTest::addColumn<QString>("guide");
    QTest::addColumn<QString>("quotes");
    QTest::addColumn<QStringList>("texts");

    const QMultiMap<QString, QString> texts = catalogueTexts(catalogue);
    QTest::newRow("english") << english << QStringLiteral("\"([^\"]*)\"")
                             << QStringList(texts.keys());
    QTest::newRow("russian") << russian << QStringLiteral("«([^»]*)»")
                             << QStringList(texts.values());
    QTest::newRow("faults") << QStringLiteral("docs/faults.md") << QStringLiteral("\"([^\"]*)\"")
                            << QStringList(texts.keys());
}

// What stands in quotation marks is on the screen.
void TestGuides::everyQuotedTextIs()
{
    QFETCH(QString, guide);
    QFETCH(QString, quotes);
    QFETCH(QStringList, texts);
    QVERIFY(!texts.isEmpty());
    QVERIFY(!texts.contains(QString()));
    auto matches = QRegularExpression(quotes).globalMatch(document(guide).text().simplified());
    QVERIFY(matches.hasNext());
    while (matches.hasNext()) {
        const QString text = matches.next().captured(1);
        QVERIFY2(isOfTheToolkit(text) || isOnScreen(text, texts), qPrintable(text));
    }
}

// What the guide tells of is what the program says.
void TestGuides::everyMessageIs()
{
    const QMultiMap<QString, QString> texts = catalogueTexts(catalogue);
    const QStringList told = englishMessages();
    QVERIFY(told.size() > 15);
    for (const QString &message : told) {
        QVERIFY2(texts.contains(message) || isOfTheToolkit(message), qPrintable(message));
    }
}

// What the program says is told of. These contexts have messages and nothing else; of the pages'
// own texts, messages are those that say so by their form.
void TestGuides::everyMessageIsNamed()
{
    const QStringList told = englishMessages();
    QStringList said =
        catalogueTexts(catalogue, {QStringLiteral("AccessFiles"), QStringLiteral("AccessTransfer"),
                                   QStringLiteral("DumpFolder"), QStringLiteral("GetFile"),
                                   QStringLiteral("PhotoFiles"), QStringLiteral("QAbstractSocket"),
                                   QStringLiteral("TableLoad"), QStringLiteral("TableSave"),
                                   QStringLiteral("WholeFile")})
            .keys();
    QVERIFY(said.size() > 10);
    said +=
        catalogueTexts(catalogue, {QStringLiteral("ArchiveWidget"), QStringLiteral("OnLineWidget"),
                                   QStringLiteral("main"), QStringLiteral("SufferedNumbersWidget")})
            .keys()
            .filter(QRegularExpression(QStringLiteral("^Can't|[.!]$")));
    for (const QString &message : qAsConst(said)) {
        QVERIFY2(told.contains(message), qPrintable(message));
    }
}

void TestGuides::russianMessagesAreThoseOnTheScreen()
{
    const QMultiMap<QString, QString> texts = catalogueTexts(catalogue);
    const QStringList told = englishMessages();
    const QStringList twin = messages(russian, QStringLiteral("Сообщения"));
    QCOMPARE(twin.size(), told.size());
    for (int row = 0; row < told.size(); ++row) {
        const QStringList translations = texts.values(told.at(row));
        QVERIFY2(!translations.isEmpty() || isOfTheToolkit(told.at(row)), qPrintable(told.at(row)));
        for (const QString &translation : translations) {
            QCOMPARE(twin.at(row), translation);
        }
    }
}

STALLO_TEST_MAIN(TestGuides)
#include "tst_guides.moc"
