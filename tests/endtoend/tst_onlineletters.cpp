// SPDX-License-Identifier: MIT
#include "app/shellaccess.h"
#include "pages/proportionalsclalewidget.h"
#include "records/deviceindex.h"
#include "records/scanmodel.h"
#include "simulator/livefeed.h"
#include "tests/endtoend/entryreceiver.h"
#include "tests/endtoend/letterscase.h"

// Live passages in cyrillic letters, from the device to the On-line page and what it saves.
class TestOnlineLetters : public LettersCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void catalogueHasTheLetters_data();
    void catalogueHasTheLetters();
    void showsPassage();
    void findsPhotoByTheDevicesName();
    void keepsCommentAndKey_data();
    void keepsCommentAndKey();
    void tellsTheWayOfAccess_data();
    void tellsTheWayOfAccess();
    void savesDump();
    void savesCsv();
    void handsNumberOver();
    void bearsAnyBytes();

private:
    using Page = OnlinePage;

    OnLine passage(const QString &latin, const QString &comment = QStringLiteral("Иванов, кв. 12"),
                   const QString &key = QStringLiteral("Ключ 00012345")) const;
    // Sends it, and waits until it is the last row.
    void push(const OnLine &record);
    void save(const QString &name, const char *filter);
    static QString pictureName() { return QStringLiteral("2026-11-21_09-30-00_%1.jpeg"); }

    std::unique_ptr<Page> page_;
};

namespace
{

const QString wholeNumber = QStringLiteral("A123BC77");

} // namespace

void TestOnlineLetters::init()
{
    LettersCase::init();
    Page::prepare();
    Settings *settings = Settings::instance();
    settings->setOnLineTempDirectory(working() + QStringLiteral("/Проезды"));
    settings->setOnLineTempFile(Page::folder() + QStringLiteral("/tmponline.tpp"));
    QVERIFY(QDir().mkpath(Page::folder() + QStringLiteral("/jpegdata")));
    startDevice();
    page_ = std::make_unique<Page>();
    Settings::instance()->setAddressList({host()});
    page_->answers().expect(ModalAnswers::pressing("buttonOk"));
    page_->press("buttonSelectDevice1");
    QTRY_COMPARE_WITH_TIMEOUT(device().onLineConnections(), 1, patience);
}

void TestOnlineLetters::cleanup()
{
    const QStringList unexpected = page_->answers().unexpected();
    const int left = page_->answers().left();
    page_.reset();
    ShellAccess::setMainWindow(nullptr);
    LettersCase::cleanup();
    QCOMPARE(unexpected, QStringList());
    QCOMPARE(left, 0);
}

OnLine TestOnlineLetters::passage(const QString &latin, const QString &comment,
                                  const QString &key) const
{
    OnLine record = SampleRecords::plain(QString(), QDateTime({2026, 11, 21}, {9, 30}, Qt::UTC));
    texts_.put(&record, OnLineLayout::number, texts_.plate(latin));
    texts_.put(&record, OnLineLayout::fileName,
               DevicePaths::photoFolder() + VaskSettings::picFileName(record));
    texts_.put(&record, OnLineLayout::comment, comment);
    texts_.put(&record, OnLineLayout::accessKey, key);
    return record;
}

void TestOnlineLetters::push(const OnLine &record)
{
    const int rows = page_->rows();
    QCOMPARE(device().push(record), 1);
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), rows + 1, patience);
}

void TestOnlineLetters::save(const QString &name, const char *filter)
{
    page_->answers().expect(ModalAnswers::savingAs(name, QString::fromLatin1(filter)));
    page_->press("buttonSave");
    QTRY_VERIFY_WITH_TIMEOUT(!page_->isBusy(), patience);
}

void TestOnlineLetters::catalogueHasTheLetters_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("en") << QStringLiteral("vaskparking_en.qm");
    QTest::newRow("ru") << QStringLiteral("vaskparking_ru.qm");
}

void TestOnlineLetters::catalogueHasTheLetters()
{
    QFETCH(QString, name);
    QTranslator catalogue;
    QVERIFY(catalogue.load(name, QStringLiteral(STALLO_CATALOGUES)));
    const auto text = [&catalogue](const char *source) {
        return catalogue.translate("QObject", source, "VaskSettings");
    };
    QCOMPARE(text("__"), LocalLetters::local());
    QCOMPARE(text("_"), LocalLetters::latin());
    const QString pattern = text("[a-z]\\d{3,3}[a-z]{2,2}\\d{2,3}");
    if (name.contains(QLatin1String("_ru"))) {
        const QRegExp number(pattern, Qt::CaseInsensitive);
        QVERIFY(number.exactMatch(QStringLiteral("а123вс77")));
        QVERIFY(number.exactMatch(QStringLiteral("A123ВC177")));
    }
}

void TestOnlineLetters::showsPassage()
{
    push(passage(wholeNumber));
    QCOMPARE(page_->cell(0, ScanModel::NumberColumn), fitted(wholeNumber));
    QCOMPARE(page_->cell(0, ScanModel::DeviceColumn), deviceId());
    QCOMPARE(page_->cell(0, ScanModel::CommentColumn), QStringLiteral("Иванов, кв. 12"));
    QCOMPARE(page_->cell(0, ScanModel::KeyColumn), QStringLiteral("Ключ 00012345"));
    QCOMPARE(Page::indexBytes(), local(deviceId()).leftJustified(DeviceIndex::entrySize, '\0'));
    const Scan stored = recordIn<Scan>(Page::tableBytes(), 0);
    QCOMPARE(bytesOf(stored, ScanLayout::number),
             fitted(wholeNumber).toLatin1().leftJustified(10, '\0'));
    const QStringList lines = page_->photo()->lines();
    for (const QString &line :
         {QStringLiteral("Number: ") + fitted(wholeNumber),
          QStringLiteral("Comment: Иванов, кв. 12"), QStringLiteral("Access key: Ключ 00012345"),
          QStringLiteral("The thoroughfare is granted"), QStringLiteral("The number is registered"),
          QStringLiteral("Access: granted automatically")}) {
        QVERIFY2(lines.contains(line), qPrintable(line));
    }
}

void TestOnlineLetters::findsPhotoByTheDevicesName()
{
    const OnLine record = passage(wholeNumber);
    push(record);
    // Asked for in the device's letters, kept under Latin ones.
    const QByteArray asked = DeviceTexts::fieldBytes(record, OnLineLayout::fileName);
    QVERIFY(asked.endsWith(local(fitted(QStringLiteral("А123ВС77"))) + ".jpeg"));
    const auto requests = device().journal().entries(JournalEntry::Kind::Request);
    QVERIFY(std::any_of(requests.begin(), requests.end(), [&](const JournalEntry &entry) {
        return entry.data == "GET_IMMEDIATE_FILE:" + asked;
    }));
    QCOMPARE(namesIn(local(Page::folder()) + "/jpegdata"),
             QList<QByteArray>{pictureName().arg(fitted(wholeNumber)).toLatin1()});
    QTRY_COMPARE(page_->photo()->photoSize(), QSize(32, 24));
    QVERIFY(page_->button("buttonSavePhoto")->isEnabled());
    page_->answers().expect(ModalAnswers::savingAs(named("Снимок")));
    page_->press("buttonSavePhoto");
    QTRY_VERIFY(!page_->isBusy());
    QCOMPARE(namesIn(local(folder_)), QList<QByteArray>{local(QStringLiteral("Снимок.jpeg"))});
    QCOMPARE(Page::content(named("Снимок.jpeg")), Page::jpeg(32, 24));
}

void TestOnlineLetters::keepsCommentAndKey_data()
{
    QTest::addColumn<QString>("comment");
    QTest::addColumn<QString>("key");
    const QString alphabet =
        QStringLiteral("АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмнопрстуфхцчшщъыьэюя");
    QTest::newRow("plain") << QStringLiteral("Петров; \"гараж\", 3") << QStringLiteral("ключ №");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("too long") << alphabet + alphabet << alphabet + alphabet;
    QTest::newRow("odd") << QStringLiteral("1") + alphabet << QStringLiteral("1") + alphabet;
    QTest::newRow("yo") << QStringLiteral("Ёё") << QStringLiteral("Ёё");
}

void TestOnlineLetters::keepsCommentAndKey()
{
    QFETCH(QString, comment);
    QFETCH(QString, key);
    const OnLine record = passage(wholeNumber, comment, key);
    push(record);
    const Scan stored = recordIn<Scan>(Page::tableBytes(), 0);
    QCOMPARE(bytesOf(stored, ScanLayout::comment), bytesOf(record, OnLineLayout::comment));
    QCOMPARE(bytesOf(stored, ScanLayout::accessKey), bytesOf(record, OnLineLayout::accessKey));
    QCOMPARE(page_->cell(0, ScanModel::CommentColumn), texts_.decoded(texts_.fitting(comment, 63)));
    QCOMPARE(page_->cell(0, ScanModel::KeyColumn), texts_.decoded(texts_.fitting(key, 31)));
}

void TestOnlineLetters::tellsTheWayOfAccess_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("way");
    QTest::newRow("button") << QString() << QStringLiteral("Access: granted manually");
    QTest::newRow("card") << QStringLiteral("Ключ 1") << QStringLiteral("Access: granted by card");
}

void TestOnlineLetters::tellsTheWayOfAccess()
{
    QFETCH(QString, key);
    QFETCH(QString, way);
    push(passage(QStringLiteral("O000OO00"), QString(), key));
    // The mark of an opening is a number, and as a whole it does not fit in two-byte letters.
    QVERIFY(page_->photo()->lines().contains(
        isUtf8() ? QStringLiteral("Access: granted automatically") : way));
}

void TestOnlineLetters::savesDump()
{
    push(passage(wholeNumber));
    push(passage(QStringLiteral("K777KK99")));
    save(named("Таблица"), "Dump");
    QCOMPARE(namesIn(local(folder_)),
             (QList<QByteArray>{"jpegdata", local(QStringLiteral("Таблица.tpp")),
                                local(QStringLiteral("Таблица.tpp.index"))}));
    QCOMPARE(Page::content(named("Таблица.tpp")), Page::tableBytes());
    QCOMPARE(Page::content(named("Таблица.tpp.index")), Page::indexBytes());
    QCOMPARE(namesIn(local(folder_) + "/jpegdata"), namesIn(local(Page::folder()) + "/jpegdata"));
    QCOMPARE(namesIn(local(folder_) + "/jpegdata").size(), 2);
}

void TestOnlineLetters::savesCsv()
{
    push(passage(wholeNumber));
    save(named("Таблица"), "Comma");
    const QString expected =
        QStringLiteral("Date;Number;In access list;Access granted;Vask ID;Comment;Key\n"
                       "21.11.2026 12:30:00;%1;1;1;1;Иванов, кв. 12;Ключ 00012345")
            .arg(fitted(wholeNumber));
    QCOMPARE(Page::content(named("Таблица.csv")), local(expected));
}

void TestOnlineLetters::handsNumberOver()
{
    const OnLine record = passage(wholeNumber);
    push(record);
    EntryReceiver mainWindow;
    ShellAccess::setMainWindow(&mainWindow);
    page_->page().addToSuffered();
    QTRY_COMPARE(mainWindow.entries.size(), 1);
    const Access &entry = mainWindow.entries.first();
    QCOMPARE(entry.number(), fitted(wholeNumber));
    QCOMPARE(bytesOf(entry, AccessLayout::comment), bytesOf(record, OnLineLayout::comment));
    QCOMPARE(bytesOf(entry, AccessLayout::accessKey), bytesOf(record, OnLineLayout::accessKey));
}

void TestOnlineLetters::bearsAnyBytes()
{
    QByteArray all;
    for (int byte = 1; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    // Every byte once, in texts that fit their fields.
    for (int first = 0; first < all.size(); first += 31) {
        OnLine record = passage(wholeNumber);
        const QByteArray bytes = all.mid(first, 31);
        DeviceTexts::putBytes(&record, OnLineLayout::number, bytes.left(9));
        DeviceTexts::putBytes(&record, OnLineLayout::comment, bytes + bytes);
        DeviceTexts::putBytes(&record, OnLineLayout::accessKey, bytes);
        const int row = page_->rows();
        push(record);
        const Scan stored = recordIn<Scan>(Page::tableBytes(), row);
        QCOMPARE(bytesOf(stored, ScanLayout::comment), bytesOf(record, OnLineLayout::comment));
        QCOMPARE(bytesOf(stored, ScanLayout::accessKey), bytesOf(record, OnLineLayout::accessKey));
    }
    save(named("bytes"), "Dump");
    QCOMPARE(Page::content(named("bytes.tpp")), Page::tableBytes());
    save(named("bytes"), "Comma");
    QVERIFY(Page::content(named("bytes.csv")).count('\n') >= page_->rows());
}

STALLO_TEST_MAIN(TestOnlineLetters)
#include "tst_onlineletters.moc"
