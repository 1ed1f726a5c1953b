// SPDX-License-Identifier: MIT
#include "records/accessmodel.h"
#include "records/csv.h"
#include "simulator/livefeed.h"
#include "tests/endtoend/letterscase.h"
#include "tests/support/listpage.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>

// A device's access list in cyrillic letters, fetched, edited, saved, opened and sent back.
class TestListLetters : public LettersCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void showsTheDevicesList();
    void sendsTheDevicesBytesBack();
    void changesOneEntryOnly();
    void takesWhatIsTyped();
    void cutsWhatDoesNotFit();
    void takesOverFromAPassage();
    void appendsToTheDevicesList();
    void filters_data();
    void filters();
    void comesBackFromDump();
    void comesBackFromCsv();
    void bearsAnyBytes();

private:
    using Page = ListPage;
    static constexpr int entries = 10;

    // As made for the device.
    QByteArray list() const { return LiveFeed::makeAccessList(entries, 1, texts_); }
    static QByteArray ownList() { return Page::content(Page::ownList()); }
    void fetch();
    void send();
    void save(const QString &name, const char *filter);
    void load(const QString &name);
    void type(const char *field, const QString &text) const
    {
        LocalLetters::type(page_->find<QLineEdit>(field), text);
    }
    void typeComment(const QString &text) const
    {
        LocalLetters::type(page_->find<QPlainTextEdit>("textEditComment"), text);
    }

    std::unique_ptr<Page> page_;
};

void TestListLetters::init()
{
    LettersCase::init();
    Page::prepare();
    Settings *settings = Settings::instance();
    settings->setSufferedTempDirectory(working() + QStringLiteral("/Список"));
    settings->setSufferedTempFile(Page::folder() + QStringLiteral("/Свой.tpa"));
    QVERIFY(QDir().mkpath(Page::folder()));
    Page::write(Page::ownList(), QByteArray());
    startDevice(0, entries);
    page_ = std::make_unique<Page>();
    QVERIFY(page_->becomesIdle());
}

void TestListLetters::cleanup()
{
    const QStringList unexpected = page_->answers().unexpected();
    const int left = page_->answers().left();
    page_.reset();
    LettersCase::cleanup();
    QCOMPARE(unexpected, QStringList());
    QCOMPARE(left, 0);
}

void TestListLetters::fetch()
{
    page_->fetch(host());
    QVERIFY(page_->becomesIdle());
}

void TestListLetters::send()
{
    const int before = device().reloadCount();
    page_->send(host());
    QVERIFY(page_->becomesIdle());
    QTRY_COMPARE_WITH_TIMEOUT(device().reloadCount(), before + 1, patience);
}

void TestListLetters::save(const QString &name, const char *filter)
{
    page_->save(name, QString::fromLatin1(filter));
    QVERIFY(page_->becomesIdle());
}

void TestListLetters::load(const QString &name)
{
    Settings::instance()->setLastLoadedSufferedFile(folder_); // the dialog begins there
    page_->load(name);
    QVERIFY(page_->becomesIdle());
}

void TestListLetters::showsTheDevicesList()
{
    fetch();
    QCOMPARE(ownList(), list());
    QCOMPARE(page_->rows(), entries);
    for (int row = 0; row < entries; ++row) {
        const Access entry = recordIn<Access>(list(), row);
        // As it is stored, which is what goes back to the device.
        QCOMPARE(page_->cell(row, AccessModel::NumberColumn),
                 texts_.text(entry, AccessLayout::number));
        QCOMPARE(page_->cell(row, AccessModel::KeyColumn),
                 texts_.text(entry, AccessLayout::accessKey));
        const QString comment = page_->cell(row, AccessModel::CommentColumn);
        QCOMPARE(comment, texts_.text(entry, AccessLayout::comment));
        QVERIFY2(comment.contains(QStringLiteral(", кв. ")), qPrintable(comment));
    }
}

void TestListLetters::sendsTheDevicesBytesBack()
{
    fetch();
    device().files().set(DevicePaths::accessList(), QByteArray());
    send();
    QCOMPARE(device().storedAccessList(), list());
    QTRY_COMPARE(device().activeAccessList(), list());
}

void TestListLetters::changesOneEntryOnly()
{
    fetch();
    const Access before = recordIn<Access>(list(), 3);
    page_->clickRow(3);
    page_->press("buttonApply");
    QCOMPARE(ownList(), list()); // nothing was changed
    Access entry = before;
    entry.translateFromLocal();
    type("lineEditNumber", entry.number());
    page_->press("buttonApply");
    QByteArray expected = list();
    expected.replace(3 * Access::size, Access::size, Page::bytes(entry));
    QCOMPARE(ownList(), expected);
    // Only the number has changed, into Latin letters.
    const Access after = recordIn<Access>(ownList(), 3);
    const QByteArray number = DeviceTexts::fieldBytes(after, AccessLayout::number);
    QCOMPARE(texts_.plate(QString::fromLatin1(number)), texts_.text(before, AccessLayout::number));
    QCOMPARE(page_->cell(3, AccessModel::NumberColumn), QString::fromLatin1(number));
    for (const RecordField &field :
         {AccessLayout::id, AccessLayout::dateTimeFrom, AccessLayout::dateTimeTill,
          AccessLayout::accessKey, AccessLayout::comment}) {
        QCOMPARE(bytesOf(after, field), bytesOf(before, field));
    }
    send();
    QCOMPARE(device().storedAccessList(), expected);
}

void TestListLetters::takesWhatIsTyped()
{
    fetch();
    // In two-byte letters the number would not fit, but it is translated while it is whole.
    type("lineEditNumber", QStringLiteral("а123вс777"));
    type("lineEditKey", QStringLiteral("Ключ 7"));
    typeComment(QStringLiteral("Сидоров; \"гараж\", 3"));
    page_->press("buttonNew");
    QCOMPARE(page_->rows(), entries + 1);
    QCOMPARE(page_->cell(entries, AccessModel::NumberColumn), QStringLiteral("A123BC777"));
    QCOMPARE(ownList().left(list().size()), list());
    send();
    const Access sent = recordIn<Access>(device().storedAccessList(), entries);
    QCOMPARE(bytesOf(sent, AccessLayout::number), QByteArray("A123BC777\0", 10));
    QCOMPARE(bytesOf(sent, AccessLayout::accessKey),
             local(QStringLiteral("Ключ 7")).leftJustified(32, '\0'));
    QCOMPARE(bytesOf(sent, AccessLayout::comment),
             local(QStringLiteral("Сидоров; \"гараж\", 3")).leftJustified(64, '\0'));
}

void TestListLetters::cutsWhatDoesNotFit()
{
    fetch();
    page_->clickRow(0);
    const QString alphabet = QStringLiteral("АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмно"
                                            "прстуфхцчшщъыьэюя12");
    page_->find<QLineEdit>("lineEditKey")->setText(alphabet);
    typeComment(alphabet);
    page_->press("buttonApply");
    const Access stored = recordIn<Access>(ownList(), 0);
    const int letterBytes = isUtf8() ? 2 : 1;
    QCOMPARE(DeviceTexts::fieldBytes(stored, AccessLayout::accessKey),
             local(alphabet.left(31 / letterBytes)));
    QCOMPARE(DeviceTexts::fieldBytes(stored, AccessLayout::comment),
             local(alphabet.left(63 / letterBytes)));
    // The editor shows what is left.
    QCOMPARE(page_->find<QLineEdit>("lineEditKey")->text(), alphabet.left(31 / letterBytes));
}

void TestListLetters::takesOverFromAPassage()
{
    Access passage;
    passage.setNumber(QStringLiteral("К777КК99"));
    passage.setAccessKey(QStringLiteral("Ключ"));
    passage.setComment(QStringLiteral("Проезд 5"));
    page_->page().appendSufferedRecord(passage);
    QCOMPARE(page_->rows(), 1);
    QCOMPARE(page_->cell(0, AccessModel::NumberColumn), fitted(QStringLiteral("K777KK99")));
    const Access stored = recordIn<Access>(ownList(), 0);
    QCOMPARE(bytesOf(stored, AccessLayout::accessKey), bytesOf(passage, AccessLayout::accessKey));
    QCOMPARE(bytesOf(stored, AccessLayout::comment), bytesOf(passage, AccessLayout::comment));
}

void TestListLetters::appendsToTheDevicesList()
{
    Access entry;
    entry.setNumber(QStringLiteral("X001XX99"));
    entry.setAccessKey(QStringLiteral("Ключ"));
    entry.setComment(QStringLiteral("Гость"));
    page_->page().appendSufferedRecord(entry);
    page_->clickRow(0);
    page_->append(host());
    QTRY_COMPARE_WITH_TIMEOUT(device().reloadCount(), 1, patience);
    // What was in the list stays as it is.
    QCOMPARE(device().storedAccessList().left(list().size()), list());
    const Access added = recordIn<Access>(device().storedAccessList(), entries);
    for (const RecordField &field :
         {AccessLayout::number, AccessLayout::accessKey, AccessLayout::comment}) {
        QCOMPARE(bytesOf(added, field), bytesOf(entry, field));
    }
}

void TestListLetters::filters_data()
{
    QTest::addColumn<bool>("isLatin");
    QTest::addColumn<QString>("mode");
    for (const char *mode :
         {"radioButtonFull", "radioButtonNotRegionalSymbols", "radioButtonNotRegionalNumbers"}) {
        QTest::addRow("%s, Latin", mode) << true << QString::fromLatin1(mode);
        QTest::addRow("%s, cyrillic", mode) << false << QString::fromLatin1(mode);
    }
}

void TestListLetters::filters()
{
    QFETCH(bool, isLatin);
    QFETCH(QString, mode);
    fetch();
    const Access entry = recordIn<Access>(list(), 4);
    const QString number = texts_.text(entry, AccessLayout::number);
    const QString latin = VaskSettings::translateFromLocal(number);
    page_->find<QCheckBox>("checkBoxFilter")->setChecked(true);
    page_->press(mode.toLatin1().constData());
    type("lineEditFilter", (isLatin ? latin : number).toLower());
    if (isUtf8() && mode == QLatin1String("radioButtonNotRegionalNumbers")) {
        QCOMPARE(page_->rows(), 0); // it looks for a region, which the numbers have lost
        return;
    }
    QCOMPARE(page_->rows(), 1);
    QCOMPARE(page_->cell(0, AccessModel::NumberColumn), number);
    // An entry that is stored anew is found as well.
    page_->clickRow(0);
    type("lineEditNumber", latin);
    page_->press("buttonApply");
    QCOMPARE(page_->rows(), 1);
    QCOMPARE(page_->cell(0, AccessModel::NumberColumn), latin);
}

void TestListLetters::comesBackFromDump()
{
    fetch();
    save(named("Дамп"), "Dump");
    QCOMPARE(namesIn(local(folder_)), QList<QByteArray>{local(QStringLiteral("Дамп.tpa"))});
    QCOMPARE(Page::content(named("Дамп.tpa")), list());
    load(named("Дамп.tpa"));
    QCOMPARE(page_->rows(), entries);
    send();
    QCOMPARE(device().storedAccessList(), list());
    QCOMPARE(Page::content(named("Дамп.tpa")), list());
}

void TestListLetters::comesBackFromCsv()
{
    fetch();
    save(named("Таблица"), "Comma");
    QCOMPARE(namesIn(local(folder_)), QList<QByteArray>{local(QStringLiteral("Таблица.csv"))});
    const QList<QByteArray> lines = Page::content(named("Таблица.csv")).split('\n');
    QCOMPARE(lines.size(), entries + 1);
    for (int row = 0; row < entries; ++row) {
        const Access entry = recordIn<Access>(list(), row);
        QVERIFY(lines.at(row + 1).startsWith(QByteArray::number(row) + ';' +
                                             DeviceTexts::fieldBytes(entry, AccessLayout::number)));
        // A comma in a field has it quoted.
        QVERIFY(lines.at(row + 1).endsWith(
            ';' + DeviceTexts::fieldBytes(entry, AccessLayout::accessKey) + ";\"" +
            DeviceTexts::fieldBytes(entry, AccessLayout::comment) + '"'));
    }
    load(named("Таблица.csv"));
    send();
    const QByteArray sent = device().storedAccessList();
    QCOMPARE(sent.size(), list().size());
    for (int row = 0; row < entries; ++row) {
        const Access entry = recordIn<Access>(list(), row);
        const Access back = recordIn<Access>(sent, row);
        for (const RecordField &field :
             {AccessLayout::id, AccessLayout::accessKey, AccessLayout::comment}) {
            QCOMPARE(bytesOf(back, field), bytesOf(entry, field));
        }
        // Files from elsewhere may have either letters, the list has Latin ones.
        QCOMPARE(back.number(),
                 VaskSettings::translateFromLocal(texts_.text(entry, AccessLayout::number)));
    }
}

void TestListLetters::bearsAnyBytes()
{
    QByteArray odd;
    for (int first = 1; first < 256; first += 31) {
        Access entry;
        entry.setId(static_cast<qint16>(first));
        QByteArray bytes;
        for (int byte = first; byte < std::min(first + 31, 256); ++byte) {
            bytes += static_cast<char>(byte);
        }
        // Full fields too, without a zero.
        DeviceTexts::putBytes(&entry, AccessLayout::number, bytes);
        DeviceTexts::putBytes(&entry, AccessLayout::accessKey, bytes + bytes);
        DeviceTexts::putBytes(&entry, AccessLayout::comment, bytes.repeated(3));
        odd += Page::bytes(entry);
    }
    device().files().set(DevicePaths::accessList(), odd);
    fetch();
    QCOMPARE(ownList(), odd);
    for (int row = 0; row < page_->rows(); ++row) {
        page_->clickRow(row);
    }
    save(named("Байты"), "Dump");
    QCOMPARE(Page::content(named("Байты.tpa")), odd);
    send();
    QCOMPARE(device().storedAccessList(), odd);
    page_->clickRow(2);
    page_->press("buttonApply");
    QCOMPARE(ownList().left(2 * Access::size), odd.left(2 * Access::size));
    QCOMPARE(ownList().mid(3 * Access::size), odd.mid(3 * Access::size));
    save(named("Строки"), "Comma");
    load(named("Строки.csv"));
    QCOMPARE(Page::content(named("Байты.tpa")), odd);
}

STALLO_TEST_MAIN(TestListLetters)
#include "tst_listletters.moc"
