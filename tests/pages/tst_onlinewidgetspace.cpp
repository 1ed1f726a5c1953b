// SPDX-License-Identifier: MIT
#include "app/settings.h"
#include "records/diskspace.h"
#include "records/scanmodel.h"
#include "tests/support/devices.h"
#include "tests/support/ext4disk.h"
#include "tests/support/onlinepage.h"
#include "tests/support/plainuser.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTemporaryDir>

#include <numeric>

#include <unistd.h>

namespace
{

using Page = OnlinePage;

constexpr int patience = 30000;
constexpr int photoSize = 100 * 1024;
// So many cars at a time: their photos are less than what is made sure of for the next passage.
constexpr int atOnce = 5;
// What photos may take of the disk beside the table and the reserve.
constexpr int diskMegabytes = 10;

void giveTo(uid_t user, const QStringList &paths)
{
    for (const QString &path : paths) {
        if (chown(QFile::encodeName(path).constData(), user, static_cast<gid_t>(-1)) != 0) {
            qFatal("cannot give away %s", qPrintable(path));
        }
    }
}

} // namespace

// The On-line page on a panel with a small disk, left alone: the photos of the newest passages are
// there, whatever came before them, and no passage is lost.
class TestOnLineWidgetSpace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Whoever gives up his rights must still get at it.
        QFile::setPermissions(TestSurroundings::home(), QFile::permissions(QDir::tempPath()));
    }
    void init()
    {
        Page::prepare();
        devices_ = std::make_unique<Devices>();
        device().files().setMaker(DevicePaths::photoFolder(),
                                  [](const QString &) { return FileTree::contentOf(photo()); });
    }
    void cleanup()
    {
        page_.reset();
        devices_.reset();
    }

    void keepsNewestPhotos_data();
    void keepsNewestPhotos();

private:
    DeviceHost &device() { return devices_->first(); }
    static QByteArray photo()
    {
        QByteArray bytes = Page::jpeg(32, 24);
        return bytes.append(photoSize - bytes.size(), '\0');
    }
    // Passages of earlier days.
    static QByteArray rowsWithoutPhotos(int count)
    {
        const Scan pattern(Page::record(0));
        QByteArray bytes = QByteArray(pattern.data(), Scan::size).repeated(count);
        const quint32 end = qFromLittleEndian<quint32>(pattern.data());
        for (int row = 0; row < count; ++row) {
            qToLittleEndian(end - static_cast<quint32>(count - row),
                            bytes.data() + qint64(row) * Scan::size);
        }
        return bytes;
    }
    void beginWith(const QByteArray &rows);
    void letPass(const QVector<OnLine> &cars);

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<Page> page_;
};

// The page begins with an empty table; the rows come into it afterwards.
void TestOnLineWidgetSpace::beginWith(const QByteArray &rows)
{
    page_ = std::make_unique<Page>();
    auto *model = qobject_cast<ScanModel *>(page_->table()->model());
    QVERIFY(model != nullptr);
    Page::write(model->fileName(), rows);
    model->setFileName(model->fileName());
    QCOMPARE(page_->rows(), rows.size() / Scan::size);
    page_->page().selectDevice(device().address());
    QTRY_VERIFY_WITH_TIMEOUT(page_->button("buttonDisconnect1")->isEnabled(), patience);
    QTRY_COMPARE(device().onLineConnections(), 1);
}

void TestOnLineWidgetSpace::letPass(const QVector<OnLine> &cars)
{
    const int rows = page_->rows();
    device().pushAll(cars);
    QTRY_COMPARE_WITH_TIMEOUT(page_->rows(), rows + cars.size(), patience);
    for (const OnLine &car : cars) {
        QVERIFY2(Page::content(Page::pictureFile(car)) == photo(),
                 qPrintable(Page::pictureFile(car)));
    }
}

void TestOnLineWidgetSpace::keepsNewestPhotos_data()
{
    QTest::addColumn<int>("before");
    for (const int rows : {0, 5000, 36000, 100000, 200000}) {
        QTest::addRow("%d rows without photos", rows) << rows;
    }
}

void TestOnLineWidgetSpace::keepsNewestPhotos()
{
    QFETCH(int, before);
    const QByteArray rows = rowsWithoutPhotos(before);
    const Ext4Disk disk(Page::folder(), (diskMegabytes + rows.size() * 5 / (4 << 20)) * 100 /
                                            (100 - Ext4Disk::keptPercent));
    if (!disk.whyNot().isEmpty()) {
        QSKIP(qPrintable(disk.whyNot()));
    }
    const QString photos = Page::folder() + QStringLiteral("/jpegdata");
    QVERIFY(QDir().mkpath(photos));
    giveTo(PlainUser::user(), {Page::folder(), photos, Settings::instance()->videoTempDirectory()});
    const PlainUser user;
    QVERIFY(PlainUser::isOne());
    beginWith(rows);

    const qint64 reserve = Settings::instance()->minReservedFreeSpace();
    const qint64 room = DiskSpace::of(photos).available;
    QVERIFY(room > reserve + 10 * photoSize);
    const int count = static_cast<int>(room / photoSize / atOnce + 8) * atOnce;
    QVector<OnLine> sent;
    while (sent.size() < count) {
        const QVector<OnLine> cars = Page::records(atOnce, sent.size() + 1);
        letPass(cars);
        sent += cars;
    }
    QCOMPARE(Page::tableBytes(), rows + Page::tableOf(sent));
    QCOMPARE(Page::indexBytes().mid(before * 32),
             Page::indexOf({device().deviceId()}).repeated(sent.size()));
    // Room was made to the last passage but the photos that came with it.
    QVERIFY2(DiskSpace::of(photos).available >= reserve - atOnce * (photoSize + 1024),
             qPrintable(QString::number(DiskSpace::of(photos).available)));
    // The newest, without a gap, and about as many as there is room for.
    const int left = QDir(photos).entryList(QDir::Files).size();
    QVERIFY2(left < count && left > (room - reserve) / photoSize - 2 * atOnce,
             qPrintable(QString::number(left)));
    for (int n = count - left; n < count; ++n) {
        QVERIFY(QFile::exists(Page::pictureFile(sent.at(n))));
    }
    QCOMPARE(page_->answers().unexpected(), QStringList());
    page_.reset();
}

int main(int argc, char *argv[])
{
    SmallDisk::prepare();
    TestSurroundings surroundings(argc, argv);
    TestOnLineWidgetSpace test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_onlinewidgetspace.moc"
