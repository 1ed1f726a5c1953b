// SPDX-License-Identifier: MIT
#include "app/shellaccess.h"
#include "pages/proportionalsclalewidget.h"
#include "records/csv.h"
#include "records/deviceindex.h"
#include "records/scanmodel.h"
#include "simulator/archive.h"
#include "tests/endtoend/entryreceiver.h"
#include "tests/endtoend/letterscase.h"
#include "tests/support/archivepage.h"
#include "tests/support/listpage.h"

#include <QCheckBox>
#include <QLineEdit>

// A device's archive in cyrillic letters, downloaded, filtered, saved and opened again.
class TestArchiveLetters : public LettersCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void keepsTheDevicesBytes();
    void showsLatinNumbers();
    void findsPhotos();
    void filters_data();
    void filters();
    void comesBackFromDump();
    void comesBackFromCsv();
    void readsNumbersTypedInCsv();
    void handsNumberOver();
    void bearsAnyBytes();

private:
    using Page = ArchivePage;
    static constexpr int rows = 12;

    void download();
    QByteArray archive() { return device().files().get(DevicePaths::archive()); }
    Scan passage(int row) { return recordIn<Scan>(archive(), row); }
    // The device's number in Latin letters, its marks as the table shows them.
    QString shownNumber(int row);
    QStringList numbers() const;
    void save(const QString &name, const char *filter);
    void load(const QString &name);

    std::unique_ptr<Page> page_;
};

void TestArchiveLetters::init()
{
    LettersCase::init();
    Page::prepare();
    Settings *settings = Settings::instance();
    settings->setArchiveTempDirectory(working() + QStringLiteral("/Архив"));
    settings->setArchiveTempFile(Page::folder() + QStringLiteral("/tmppassbase.tpp"));
    QVERIFY(QDir().mkpath(Page::folder()));
    startDevice(rows);
    page_ = std::make_unique<Page>();
}

void TestArchiveLetters::cleanup()
{
    const QStringList unexpected = page_->answers().unexpected();
    const int left = page_->answers().left();
    page_.reset();
    ShellAccess::setMainWindow(nullptr);
    LettersCase::cleanup();
    QCOMPARE(unexpected, QStringList());
    QCOMPARE(left, 0);
}

void TestArchiveLetters::download()
{
    page_->download(host(), Page::wholeArchive());
    QVERIFY(page_->becomesIdle());
}

QString TestArchiveLetters::shownNumber(int row)
{
    QString number = texts_.text(passage(row), ScanLayout::number);
    for (QChar &letter : number) {
        const int place = LocalLetters::local().indexOf(letter);
        letter = place >= 0                   ? LocalLetters::latin().at(place)
                 : letter == QLatin1Char('?') ? QLatin1Char('#')
                                              : letter;
    }
    return number;
}

QStringList TestArchiveLetters::numbers() const
{
    QStringList all;
    for (int row = 0; row < page_->rows(); ++row) {
        all << page_->cell(row, ScanModel::NumberColumn);
    }
    return all;
}

void TestArchiveLetters::save(const QString &name, const char *filter)
{
    page_->answers().expect(ModalAnswers::savingAs(name, QString::fromLatin1(filter)));
    page_->press("buttonSave");
    QVERIFY(page_->becomesIdle());
}

void TestArchiveLetters::load(const QString &name)
{
    Settings::instance()->setLastLoadedArchiveFile(folder_); // the dialog begins there
    page_->answers().expect(ListPage::opening(name));
    page_->press("buttonLoad");
    QVERIFY(page_->becomesIdle());
}

void TestArchiveLetters::keepsTheDevicesBytes()
{
    download();
    QCOMPARE(Page::content(Page::recordFile()), archive());
    QCOMPARE(Page::content(Page::indexFile()),
             local(deviceId()).leftJustified(DeviceIndex::entrySize, '\0').repeated(rows));
    QVERIFY(archive().contains(local(QStringLiteral("Проезд "))));
    QVERIFY(archive().contains(local(QStringLiteral("Ключ "))));
}

void TestArchiveLetters::showsLatinNumbers()
{
    download();
    QCOMPARE(page_->rows(), rows);
    int known = 0;
    for (int row = 0; row < rows; ++row) {
        const QString number = page_->cell(row, ScanModel::NumberColumn);
        QCOMPARE(number, shownNumber(row));
        QCOMPARE(number, QString::fromLatin1(number.toLatin1()));
        QCOMPARE(page_->cell(row, ScanModel::DeviceColumn), deviceId());
        const bool isKnown = passage(row).isInAccessList();
        known += isKnown ? 1 : 0;
        QCOMPARE(page_->cell(row, ScanModel::CommentColumn),
                 isKnown ? QStringLiteral("Проезд %1").arg(row) : QString());
        QCOMPARE(page_->cell(row, ScanModel::KeyColumn),
                 texts_.text(passage(row), ScanLayout::accessKey));
    }
    QVERIFY(known > 0 && known < rows);
}

void TestArchiveLetters::findsPhotos()
{
    download();
    QList<QByteArray> asked;
    const auto requests = device().journal().entries(JournalEntry::Kind::Request);
    for (const JournalEntry &entry : requests) {
        if (entry.text.startsWith(DevicePaths::photoFolder())) {
            asked << entry.data.mid(entry.data.lastIndexOf('/') + 1);
        }
    }
    QCOMPARE(asked.size(), rows);
    // By the device's own number, in its code page: that is how it names them. And so on the disk.
    for (int row = 0; row < rows; ++row) {
        const QByteArray number =
            DeviceTexts::fieldBytes(passage(row), ScanLayout::number).replace('?', '-');
        QVERIFY(asked.at(rows - 1 - row).endsWith('_' + number + ".jpeg"));
    }
    std::sort(asked.begin(), asked.end());
    QCOMPARE(namesIn(local(Page::photoFolder())), asked);
    for (int row = 0; row < rows; ++row) {
        page_->clickRow(row);
        QTRY_COMPARE(page_->photo()->photoSize(), QSize(32, 24));
        QVERIFY(page_->find<QPushButton>("buttonSavePhoto")->isEnabled());
    }
    page_->answers().expect(ModalAnswers::savingAs(named("Снимок")));
    page_->press("buttonSavePhoto");
    QTRY_VERIFY(!page_->isBusy());
    QCOMPARE(namesIn(local(folder_)), QList<QByteArray>{local(QStringLiteral("Снимок.jpeg"))});
}

void TestArchiveLetters::filters_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("isLatin");
    const QString whole = QStringLiteral("radioButtonFull");
    QTest::newRow("whole, Latin") << whole << true;
    QTest::newRow("whole, cyrillic") << whole << false;
    QTest::newRow("letters, cyrillic") << QStringLiteral("radioButtonNotRegionalSymbols") << false;
    QTest::newRow("digits, cyrillic") << QStringLiteral("radioButtonNotRegionalNumbers") << false;
}

void TestArchiveLetters::filters()
{
    QFETCH(QString, mode);
    QFETCH(bool, isLatin);
    download();
    int row = 0;
    while (row < rows - 1 && shownNumber(row).contains(QLatin1Char('#'))) {
        ++row;
    }
    const QString wanted = shownNumber(row);
    const QString number = (isLatin ? wanted : texts_.plate(wanted)).toLower();
    page_->find<QCheckBox>("checkBoxFilter")->setChecked(true);
    page_->press(mode.toLatin1().constData());
    auto *edit = page_->find<QLineEdit>("lineEditFilter");
    LocalLetters::type(edit, number);
    QCOMPARE(edit->text(), number);
    QVERIFY(page_->rows() < rows);
    if (isUtf8() && mode.endsWith(QLatin1String("Numbers"))) {
        return; // it looks for a region, which numbers in two-byte letters have lost
    }
    QVERIFY2(numbers().contains(wanted), qPrintable(numbers().join(QLatin1Char(' '))));
}

void TestArchiveLetters::comesBackFromDump()
{
    download();
    const QStringList shown = numbers();
    save(named("Дамп"), "Dump");
    const QList<QByteArray> files{local(QStringLiteral("Дамп.jpegdata")),
                                  local(QStringLiteral("Дамп.tpp")),
                                  local(QStringLiteral("Дамп.tpp.index"))};
    QCOMPARE(namesIn(local(folder_)), files);
    QCOMPARE(Page::content(named("Дамп.tpp")), archive());
    QCOMPARE(namesIn(local(named("Дамп.jpegdata"))), namesIn(local(Page::photoFolder())));
    page_->press("buttonNewTable");
    QTRY_COMPARE(page_->rows(), 0);
    load(named("Дамп.tpp"));
    QCOMPARE(numbers(), shown);
    QCOMPARE(page_->cell(0, ScanModel::DeviceColumn), deviceId());
    page_->clickRow(rows - 1);
    QTRY_COMPARE(page_->photo()->photoSize(), QSize(32, 24));
    QCOMPARE(Page::content(named("Дамп.tpp")), archive());
}

void TestArchiveLetters::comesBackFromCsv()
{
    download();
    const QStringList shown = numbers();
    save(named("Таблица"), "Comma");
    const QByteArray written = Page::content(named("Таблица.csv"));
    const QList<QByteArray> lines = written.split('\n');
    QCOMPARE(lines.size(), rows + 1);
    for (int row = 0; row < rows; ++row) {
        // With the marks of the device, so that the number comes back as it was.
        const QByteArray number = shownNumber(row).toLatin1().replace('#', '?');
        QCOMPARE(lines.at(row + 1).split(';').at(1), number);
        const QByteArray end = ';' + DeviceTexts::fieldBytes(passage(row), ScanLayout::comment) +
                               ';' + DeviceTexts::fieldBytes(passage(row), ScanLayout::accessKey);
        QVERIFY(lines.at(row + 1).endsWith(end));
    }
    page_->press("buttonNewTable");
    QTRY_COMPARE(page_->rows(), 0);
    load(named("Таблица.csv"));
    QCOMPARE(numbers(), shown);
    const QByteArray read = Page::content(Page::recordFile());
    for (int row = 0; row < rows; ++row) {
        const Scan scan = recordIn<Scan>(read, row);
        for (const RecordField &field :
             {ScanLayout::dateTime, ScanLayout::inAccessList, ScanLayout::accessGranted,
              ScanLayout::comment, ScanLayout::accessKey}) {
            QCOMPARE(bytesOf(scan, field), bytesOf(passage(row), field));
        }
    }
}

void TestArchiveLetters::readsNumbersTypedInCsv()
{
    Page::write(named("Список.csv"),
                local(QStringLiteral("Дата;Номер\n21.11.2026 12:30:00;а123вс777;1;1;1;"
                                     "\"гараж; 3\";ключ\n")));
    load(named("Список.csv"));
    QCOMPARE(numbers(), QStringList{QStringLiteral("A123BC777")});
    QCOMPARE(page_->cell(0, ScanModel::CommentColumn), QStringLiteral("гараж; 3"));
    QCOMPARE(page_->cell(0, ScanModel::KeyColumn), QStringLiteral("ключ"));
}

void TestArchiveLetters::handsNumberOver()
{
    download();
    int row = 0;
    while (row < rows - 1 && !passage(row).isInAccessList()) {
        ++row;
    }
    page_->clickRow(row);
    EntryReceiver mainWindow;
    ShellAccess::setMainWindow(&mainWindow);
    page_->page().addToSuffered();
    QTRY_COMPARE(mainWindow.entries.size(), 1);
    Access entry = mainWindow.entries.first();
    QCOMPARE(bytesOf(entry, AccessLayout::comment), bytesOf(passage(row), ScanLayout::comment));
    QCOMPARE(bytesOf(entry, AccessLayout::accessKey), bytesOf(passage(row), ScanLayout::accessKey));
    // The list translates what it takes up.
    entry.translateFromLocal();
    QCOMPARE(VaskSettings::readableNumber(entry.number()), shownNumber(row));
}

void TestArchiveLetters::bearsAnyBytes()
{
    QByteArray passages;
    for (int first = 1; first < 256; first += 31) {
        Scan scan;
        scan.setDateTime(QDateTime({2026, 11, 21}, {12, 0}, Qt::UTC).addSecs(first));
        QByteArray bytes;
        for (int byte = first; byte < std::min(first + 31, 256); ++byte) {
            bytes += static_cast<char>(byte);
        }
        // Full fields too, without a zero.
        DeviceTexts::putBytes(&scan, ScanLayout::number, bytes);
        DeviceTexts::putBytes(&scan, ScanLayout::comment, bytes.repeated(3));
        DeviceTexts::putBytes(&scan, ScanLayout::accessKey, bytes + bytes);
        passages.append(scan.data(), Scan::size);
    }
    device().files().set(DevicePaths::archive(), passages);
    download();
    QCOMPARE(Page::content(Page::recordFile()), passages);
    const int count = page_->rows();
    QCOMPARE(count, passages.size() / Scan::size);
    for (int row = 0; row < count; ++row) {
        page_->clickRow(row);
    }
    save(named("Байты"), "Dump");
    QCOMPARE(Page::content(named("Байты.tpp")), passages);
    save(named("Строки"), "Comma");
    load(named("Строки.csv"));
    load(named("Байты.tpp"));
    QCOMPARE(page_->rows(), count);
    QCOMPARE(Page::content(named("Байты.tpp")), passages);
}

STALLO_TEST_MAIN(TestArchiveLetters)
#include "tst_archiveletters.moc"
