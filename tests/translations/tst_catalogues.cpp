// SPDX-License-Identifier: MIT
#include "app/catalogue.h"
#include "records/vasksettings.h"
#include "tests/support/testmain.h"
#include "tests/translations/messages.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegExpValidator>
#include <QSet>
#include <QTemporaryDir>
#include <QTranslator>

Q_DECLARE_METATYPE(Message)

namespace
{

const QString catalogues = QStringLiteral(STALLO_CATALOGUES);

QString sourceOf(const QString &language)
{
    return QStringLiteral(STALLO_SOURCE_DIR "/translations/vaskparking_%1.ts").arg(language);
}

QStringList forms()
{
    QStringList files;
    for (const QString &folder : QStringLiteral(STALLO_TEXT_FOLDERS).split(QLatin1Char(' '))) {
        const QDir directory(QStringLiteral(STALLO_SOURCE_DIR "/") + folder);
        for (const QString &form : directory.entryList({QStringLiteral("*.ui")})) {
            files.append(directory.filePath(form));
        }
    }
    return files;
}

QString compiled(const QString &name)
{
    return QStringLiteral("%1/vaskparking_%2.qm").arg(catalogues, name);
}

// What the program says that loads the catalogues: see cataloguespeaker.cpp.
QStringList spoken(const QString &locale, const QString &folder, const QString &home,
                   const QStringList &furtherFolders = {})
{
    QProcess speaker;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"LANG", "LANGUAGE", "LC_MESSAGES", "LC_ALL"}) {
        environment.remove(QString::fromLatin1(name));
    }
    environment.insert(QStringLiteral("LC_ALL"), locale);
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home);
    speaker.setProcessEnvironment(environment);
    speaker.setWorkingDirectory(folder);
    speaker.start(QStringLiteral(STALLO_SPEAKER), furtherFolders);
    if (!speaker.waitForFinished() || speaker.exitCode() != 0) {
        return {speaker.errorString()};
    }
    return QString::fromUtf8(speaker.readAllStandardOutput()).split(QLatin1Char('\n'));
}

enum Line { LocaleName, OwnText, ToolkitText, PlateNumber, FirstFileName };

const QString russianCancel = QString::fromUtf8("Отмена");
const QString englishCancel = QStringLiteral("Cancel");
const QString local = QString::fromUtf8("А123ВС77");
const QString latin = QStringLiteral("A123BC77");

QString everyLetter()
{
    return QString::fromUtf8("авекмнорстух");
}

bool accepts(const QRegExp &pattern, QString text)
{
    const QRegExpValidator validator(pattern);
    int cursor = 0;
    return validator.validate(text, cursor) == QValidator::Acceptable;
}

QSet<QString> keysOf(const QVector<Message> &messages)
{
    QSet<QString> keys;
    for (const Message &message : messages) {
        keys.insert(message.key());
    }
    return keys;
}

} // namespace

// That the catalogues are whole and sound, and that the program finds them.
class TestCatalogues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { VaskSettings::init(); }

    void keepsRules_data();
    void keepsRules();
    void rulesFindFaults_data();
    void rulesFindFaults();
    void rulesKnowShortcuts_data();
    void rulesKnowShortcuts();
    void holdsEveryText();
    void englishHoldsNothingOld();

    void isFound_data();
    void isFound();
    void isFoundInFurtherFolders_data();
    void isFoundInFurtherFolders();
    void toolkitSpeaks();
    void keepsFileNames_data();
    void keepsFileNames();

    void pairsLetters_data() { languages(); }
    void pairsLetters();
    void takesPlatesOfBothAlphabets_data();
    void takesPlatesOfBothAlphabets();

private:
    static void languages()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("en") << QStringLiteral("en");
        QTest::newRow("ru") << QStringLiteral("ru");
    }
};

void TestCatalogues::keepsRules_data()
{
    QTest::addColumn<Message>("message");
    auto messages = Messages::read(sourceOf(QStringLiteral("ru")));
    QVERIFY(messages.size() > 200);
    QCOMPARE(Messages::addShortcuts(messages, forms()), 6);
    int number = 0;
    for (const Message &message : messages) {
        QTest::addRow("%d %s: %s", ++number, qPrintable(message.context),
                      qPrintable(message.source.left(40)))
            << message;
    }
}

void TestCatalogues::keepsRules()
{
    QFETCH(Message, message);
    const QString fault = Messages::fault(message);
    QVERIFY2(fault.isEmpty(), qPrintable(message.translation + QLatin1Char(' ') + fault));
}

void TestCatalogues::rulesFindFaults_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("translation");
    QTest::addColumn<bool>("sound");
    const auto row = [](const char *name, const char *source, const char *translation, bool sound) {
        QTest::newRow(name) << QString::fromUtf8(source) << QString::fromUtf8(translation) << sound;
    };
    row("sound", "&Save", "&Сохранить", true);
    row("nothing", "Save", "", false);
    row("no mnemonic", "&Save", "Сохранить", false);
    row("a mnemonic more", "Save", "&Сохранить", false);
    row("a mnemonic that is no letter", "&Save as", "Сохранить& как", false);
    row("no value", "Connecting to %1", "Подключение", false);
    row("another value", "Connecting to %1", "Подключение к %2", false);
    row("values turned round", "%1 of %2", "из %2: %1", true);
    row("tags", "<h1>Save</h1>", "<h1>Сохранить</h1>", true);
    row("a tag lost", "Save<br>all", "Сохранить всё", false);
    row("a space before", "Save", " Сохранить", false);
    row("a space behind", "Save", "Сохранить ", false);
    row("a colon lost", "Begin:", "Начало", false);
    row("a latin letter in a word", "Archive", "Aрхив", false);
    row("a word of latin letters", "By", "Co", false);
    row("the source's own word", "Use DHCP", "Использовать DHCP", true);
    row("halves of a word", "IP-address", "IP-адрес", true);
    row("a key", "Alt+S", "Alt+С", false);
    row("a format", "H:mm", "Ч:мм", false);
}

void TestCatalogues::rulesFindFaults()
{
    QFETCH(QString, source);
    QFETCH(QString, translation);
    QFETCH(bool, sound);
    Message message{QStringLiteral("Page"), QString(), source, translation, QString(), QString()};
    QCOMPARE(Messages::fault(message).isEmpty(), sound);
    message.type = QStringLiteral("unfinished");
    QVERIFY(!Messages::fault(message).isEmpty());
}

void TestCatalogues::rulesKnowShortcuts_data()
{
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<QString>("translation");
    QTest::addColumn<bool>("sound");
    const auto row = [](const char *name, const char *key, const char *translation, bool sound) {
        QTest::newRow(name) << QString::fromLatin1(key) << QString::fromUtf8(translation) << sound;
    };
    row("nothing underlined", "Alt+D", "Выбрать", true);
    row("the key's letter", "Alt+D", "&Выбрать", true);
    row("the key's letter with another key", "Alt+Shift+D", "&Выбрать", true);
    row("another letter", "Alt+D", "В&ыбрать", false);
    row("a letter too many", "Alt+D", "&Вы&брать", false);
    row("no letter", "Alt+D", "Вы& брать", false);
    row("no key", "", "Выбрать", false);
}

void TestCatalogues::rulesKnowShortcuts()
{
    QFETCH(QString, shortcut);
    QFETCH(QString, translation);
    QFETCH(bool, sound);
    const Message message{QStringLiteral("Page"),
                          QString(),
                          QStringLiteral("&Select"),
                          translation,
                          QString(),
                          shortcut};
    QCOMPARE(Messages::fault(message).isEmpty(), sound);
}

void TestCatalogues::holdsEveryText()
{
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("vaskparking_ru.ts"));
    QVERIFY(QFile::copy(sourceOf(QStringLiteral("ru")), copy));
    QVERIFY(QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner));
    QProcess update;
    update.setWorkingDirectory(QStringLiteral(STALLO_SOURCE_DIR));
    QStringList arguments = QStringLiteral(STALLO_TEXT_FOLDERS).split(QLatin1Char(' '));
    update.start(QStringLiteral(STALLO_LUPDATE),
                 QStringList{QStringLiteral("-silent"), QStringLiteral("-locations"),
                             QStringLiteral("none")} +
                     arguments + QStringList{QStringLiteral("-ts"), copy});
    QVERIFY(update.waitForFinished(60000));
    QCOMPARE(update.exitCode(), 0);
    const auto before = Messages::read(sourceOf(QStringLiteral("ru")));
    const auto after = Messages::read(copy);
    QStringList changed;
    for (const Message &message : after) {
        if (!message.type.isEmpty()) {
            changed.append(message.key() + QStringLiteral(" is ") + message.type);
        }
    }
    QVERIFY2(changed.isEmpty(), qPrintable(changed.join(QLatin1Char('\n'))));
    QCOMPARE(keysOf(after), keysOf(before));
}

void TestCatalogues::englishHoldsNothingOld()
{
    const auto english = Messages::read(sourceOf(QStringLiteral("en")));
    QCOMPARE(english.size(), 2);
    QVERIFY(keysOf(Messages::read(sourceOf(QStringLiteral("ru")))).contains(keysOf(english)));
}

void TestCatalogues::isFound_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<bool>("here");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("number");
    const auto row = [](const char *locale, bool here, const QString &text, const QString &number) {
        QTest::addRow("%s%s", locale, here ? "" : ", started elsewhere")
            << QString::fromLatin1(locale) << here << text << number;
    };
    row("ru_RU.UTF-8", true, russianCancel, latin);
    row("ru_RU.KOI8-R", true, russianCancel, latin);
    row("ru_UA.UTF-8", true, russianCancel, latin);
    row("en_US.UTF-8", true, englishCancel, latin);
    row("en_GB.UTF-8", true, englishCancel, latin);
    row("de_DE.UTF-8", true, englishCancel, local);
    row("C", true, englishCancel, local);
    row("ru_RU.UTF-8", false, englishCancel, local);
    row("en_GB.UTF-8", false, englishCancel, local);
}

void TestCatalogues::isFound()
{
    QFETCH(QString, locale);
    QFETCH(bool, here);
    const QTemporaryDir home;
    const QStringList lines = spoken(locale, here ? catalogues : home.path(), home.path());
    QVERIFY2(lines.size() > FirstFileName, qPrintable(lines.join(QLatin1Char('\n'))));
    QCOMPARE(lines.at(LocaleName), locale.section(QLatin1Char('.'), 0, 0));
    QTEST(lines.at(OwnText), "text");
    QTEST(lines.at(PlateNumber), "number");
}

void TestCatalogues::isFoundInFurtherFolders_data()
{
    // What stands in the current directory, under which name.
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    const QString own = QStringLiteral("vaskparking_ru.qm");
    const QString foreign = QStringLiteral("vaskparking_de.qm");
    QTest::newRow("nothing here") << QString() << QString() << russianCancel;
    QTest::newRow("another language here")
        << compiled(QStringLiteral("en")) << foreign << russianCancel;
    QTest::newRow("one here") << compiled(QStringLiteral("en")) << own << englishCancel;
    QTest::newRow("the country's here") << compiled(QStringLiteral("en"))
                                        << QStringLiteral("vaskparking_ru_RU.qm") << englishCancel;
    QTest::newRow("a damaged one here") << sourceOf(QStringLiteral("ru")) << own << russianCancel;
}

void TestCatalogues::isFoundInFurtherFolders()
{
    QFETCH(QString, content);
    QFETCH(QString, name);
    const QTemporaryDir here;
    if (!name.isEmpty()) {
        QVERIFY(QFile::copy(content, here.filePath(name)));
    }
    const QStringList lines =
        spoken(QStringLiteral("ru_RU.UTF-8"), here.path(), here.path(), {catalogues});
    QVERIFY(lines.size() > FirstFileName);
    QTEST(lines.at(OwnText), "text");
    QCOMPARE(lines.at(PlateNumber), latin); // the letters are in both
}

void TestCatalogues::toolkitSpeaks()
{
    if (!QFile::exists(Catalogue::toolkitFolder() + QStringLiteral("/qt_ru.qm"))) {
        QSKIP("the toolkit's own catalogues are not installed");
    }
    const QTemporaryDir home;
    const QString english =
        spoken(QStringLiteral("en_US.UTF-8"), catalogues, home.path()).value(ToolkitText);
    QCOMPARE(english, QStringLiteral("Look in:"));
    const QString russian =
        spoken(QStringLiteral("ru_RU.UTF-8"), catalogues, home.path()).value(ToolkitText);
    QVERIFY2(!russian.isEmpty() && russian.at(0).script() == QChar::Script_Cyrillic,
             qPrintable(russian));
}

void TestCatalogues::keepsFileNames_data()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("english") << QStringLiteral("en_US.UTF-8");
    QTest::newRow("russian") << QStringLiteral("ru_RU.UTF-8");
}

void TestCatalogues::keepsFileNames()
{
    QFETCH(QString, locale);
    const QTemporaryDir home;
    const auto names = [&home](const QString &in) {
        return spoken(in, catalogues, home.path()).mid(FirstFileName);
    };
    const QStringList plain = names(QStringLiteral("C"));
    QCOMPARE(plain.size(), 7); // with an empty one behind the last line
    QVERIFY(plain.first().endsWith(QStringLiteral("passbase.tpp")));
    QCOMPARE(names(locale), plain);
}

void TestCatalogues::pairsLetters()
{
    QFETCH(QString, language);
    QTranslator translator;
    QVERIFY(translator.load(compiled(language)));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    VaskSettings::init();
    QCOMPARE(VaskSettings::localSymbols, everyLetter().toUpper());
    QCOMPARE(VaskSettings::latinSymbols, QStringLiteral("ABEKMHOPCTYX"));
    const QSet<QChar> different(VaskSettings::localSymbols.begin(),
                                VaskSettings::localSymbols.end());
    QCOMPARE(different.size(), 12);
    QCOMPARE(VaskSettings::translateFromLocal(everyLetter()), VaskSettings::latinSymbols);
    QCOMPARE(VaskSettings::translateFromLocal(local.toLower()), latin);
    QCOMPARE(VaskSettings::translateFromLocal(latin.toLower()), latin);
}

void TestCatalogues::takesPlatesOfBothAlphabets_data()
{
    QTest::addColumn<QString>("text");
    // By the patterns for a whole number, a number with unread places, letters, and digits.
    QTest::addColumn<QString>("accepted");
    const auto row = [](const char *text, const char *accepted) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromLatin1(accepted);
    };
    row("A123BC77", "nqsd");
    row("a123bc777", "nqsd");
    row("а123вс77", "nqsd");
    row("А123ВС777", "nqsd");
    row("a123вC77", "nqsd");
    row("о000ух99", "nqsd");
    row("е123кмн77", "");
    row("ж123вс77", "");
    row("а123яс77", "");
    row("а?23в?77", "q");
    row("?123ух??", "q");
    row("мтр", "s");
    row("м*т", "s");
    row("*123ух77", "s");
    row("ж*т", "");
    row("123", "d");
    row("а12вс77", "");
}

void TestCatalogues::takesPlatesOfBothAlphabets()
{
    QFETCH(QString, text);
    QTranslator translator;
    QVERIFY(translator.load(compiled(QStringLiteral("ru"))));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    VaskSettings::init();
    QString accepted;
    accepted += accepts(VaskSettings::numPattern, text) ? QStringLiteral("n") : QString();
    accepted += accepts(VaskSettings::numPatternQ, text) ? QStringLiteral("q") : QString();
    accepted += accepts(VaskSettings::numPatternSymbols, text) ? QStringLiteral("s") : QString();
    accepted += accepts(VaskSettings::numPatternNumbers, text) ? QStringLiteral("d") : QString();
    QTEST(accepted, "accepted");
}

STALLO_TEST_MAIN(TestCatalogues)
#include "tst_catalogues.moc"
