// SPDX-License-Identifier: MIT
// makeseeds FOLDER: writes the seeds of the fuzz targets into FOLDER/<target>/, in the code page of
// the locale. What a device sends comes from the simulated one, the panel's own files from the
// panel's code.
#include "simulator/livefeed.h"
#include "simulator/photopainter.h"
#include "simulator/samplefiles.h"

#include "records/accesscsv.h"
#include "records/csv.h"
#include "records/deviceindex.h"
#include "records/passagecsv.h"

#include <QBuffer>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>

namespace
{

QDir top;

void save(const QString &target, const QString &name, const QByteArray &bytes)
{
    top.mkpath(target);
    QFile file(top.filePath(target + QLatin1Char('/') + name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("cannot write %s", qPrintable(file.fileName()));
    }
}

QDateTime someTime()
{
    return QDateTime::fromSecsSinceEpoch(1700000000);
}

QVector<Scan> passages()
{
    QVector<Scan> scans;
    for (const OnLine &record : SampleRecords::all(someTime())) {
        scans.append(Scan(record));
    }
    return scans;
}

QVector<Access> residents()
{
    const QByteArray list = LiveFeed::makeAccessList(4, 1);
    QVector<Access> entries(list.size() / Access::size);
    for (int i = 0; i < entries.size(); ++i) {
        std::copy_n(list.constData() + i * Access::size, Access::size, entries[i].data());
    }
    return entries;
}

void saveTables()
{
    const CSV codec;
    QByteArray lines = "Date;Number\n";
    for (const Scan &scan : passages()) {
        lines += codec.encodeRecord(PassageCsv::fields(scan)).toLocal8Bit() + '\n';
    }
    save(QStringLiteral("passagecsv"), QStringLiteral("table"), lines);
    save(QStringLiteral("passagecsv"), QStringLiteral("short"),
         "Date\n01.02.2024 10:11:12\n;;;\n\n");
    lines = "Id;Number";
    for (const Access &entry : residents()) {
        lines += '\n' + codec.encodeRecord(AccessCsv::fields(entry)).toLocal8Bit();
    }
    save(QStringLiteral("accesscsv"), QStringLiteral("list"), lines);
    save(QStringLiteral("accesscsv"), QStringLiteral("textdate"),
         "Id\n1;A123BC77;Tue Nov 14 22:13:20 2023;Wed Nov 15 22:13:20 2023;key;\"a; \"\"b\"\"\"\n");
}

void saveLines()
{
    const QString csv = QStringLiteral("csvline");
    const CSV codec;
    save(csv, QStringLiteral("passage"),
         codec.encodeRecord(PassageCsv::fields(passages().constFirst())).toUtf8());
    save(csv, QStringLiteral("quotes"), R"("a;b";"say ""so""";"""";"open)");
    save(csv, QStringLiteral("ends"), "a;b;\r\nnot this");
    save(csv, QStringLiteral("separators"), ";;");
    const QString answer = QStringLiteral("answer");
    save(answer, QStringLiteral("size"), "File size=41234\r\n");
    save(answer, QStringLiteral("error"), "Error=No such file\r\n");
    save(answer, QStringLiteral("negative"), "File size=-1\r\n");
    save(answer, QStringLiteral("huge"), "File size=99999999999999999999\n");
}

void saveRecords()
{
    int number = 0;
    for (const OnLine &record : SampleRecords::all(someTime())) {
        const QString name = QStringLiteral("live%1").arg(++number, 2, 10, QLatin1Char('0'));
        save(QStringLiteral("records"), name, SampleRecords::bytes(record));
    }
    const Scan scan = passages().constFirst();
    save(QStringLiteral("records"), QStringLiteral("passage"), QByteArray(scan.data(), Scan::size));
    const Access entry = residents().constFirst();
    save(QStringLiteral("records"), QStringLiteral("access"),
         QByteArray(entry.data(), Access::size));
    save(QStringLiteral("records"), QStringLiteral("allset"), QByteArray(OnLine::size, '\xff'));
}

void saveIdentities()
{
    const QString streams = QStringLiteral("streams");
    save(streams, QStringLiteral("plain"), SampleFiles::streams(QStringLiteral("VASK-0001")));
    save(streams, QStringLiteral("comma"), SampleFiles::streamsWithComma());
    save(streams, QStringLiteral("cp1251"), SampleFiles::streamsInCp1251());
    save(streams, QStringLiteral("variant"), SampleFiles::streamsWithVariant());
    save(streams, QStringLiteral("long"), SampleFiles::streamsWithLongId());
    const QString index = QStringLiteral("deviceindex");
    const QByteArray entries =
        DeviceIndex::entry(QStringLiteral("VASK-0001")) + DeviceIndex::entry(QString()) +
        DeviceIndex::entry(QString::fromUtf8("Въезд")) + QByteArray(DeviceIndex::entrySize, 'x');
    save(index, QStringLiteral("entries"), entries);
    save(index, QStringLiteral("partial"), entries.chopped(10));
    save(index, QStringLiteral("more"), entries.repeated(3));
}

QByteArray jpeg(const QImage &image, int quality, bool progressive)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(quality);
    writer.setProgressiveScanWrite(progressive);
    writer.setOptimizedWrite(progressive);
    writer.write(image);
    return bytes;
}

// Small ones, in every way in which the encoder writes them: changing a byte of these is likely to
// be a change of what the decoder does.
void savePhotos()
{
    const PhotoPainter painter(QStringLiteral("VASK-0001"), 1);
    const QByteArray whole = painter.photo(QStringLiteral("A123BC77"), someTime());
    const QImage small = QImage::fromData(whole).scaled(48, 36);
    const QImage grey = small.convertToFormat(QImage::Format_Grayscale8);
    for (const QString &target : {QStringLiteral("photoheader"), QStringLiteral("photo")}) {
        save(target, QStringLiteral("baseline"), jpeg(small, 60, false));
        save(target, QStringLiteral("fine"), jpeg(small, 100, false));
        save(target, QStringLiteral("progressive"), jpeg(small, 60, true));
        save(target, QStringLiteral("grey"), jpeg(grey, 60, false));
        save(target, QStringLiteral("greyprogressive"), jpeg(grey, 60, true));
        save(target, QStringLiteral("cut"), PhotoPainter::cut(jpeg(small, 60, false), 70));
        save(target, QStringLiteral("giant"), PhotoPainter::giant());
        save(target, QStringLiteral("nopicture"), PhotoPainter::notAPicture().left(200));
    }
    // The beginning of one as a device sends it.
    save(QStringLiteral("photoheader"), QStringLiteral("device"), whole.left(1024));
}

void saveTransfers()
{
    const auto exchange = [](int pieceSize, int end, const QByteArray &answer) {
        return QByteArray(1, char(pieceSize)) + QByteArray(1, char(end)) + answer;
    };
    const QString get = QStringLiteral("get");
    const QByteArray blocks(2 * 1024, 'b');
    save(get, QStringLiteral("whole"), exchange(0, 0, "File size=5\r\nphoto"));
    save(get, QStringLiteral("pieces"), exchange(1, 0, "File size=5\r\nphoto"));
    save(get, QStringLiteral("blocks"), exchange(100, 0, "File size=2048\r\n" + blocks));
    save(get, QStringLiteral("short"), exchange(0, 0, "File size=2049\r\n" + blocks));
    save(get, QStringLiteral("blockmissing"), exchange(0, 0, "File size=3072\r\n" + blocks));
    save(get, QStringLiteral("memory"), exchange(0, 0x80, "File size=5\r\nphoto"));
    save(get, QStringLiteral("toolarge"), exchange(0, 0x80, "File size=2048\r\n" + blocks));
    save(get, QStringLiteral("refusal"), exchange(0, 0, "Error=No such file\r\n"));
    save(get, QStringLiteral("silent"), exchange(0, 2, "File size=5\r\npho"));
    save(get, QStringLiteral("reset"), exchange(3, 1, "File size=5\r\npho"));
    save(get, QStringLiteral("empty"), exchange(0, 0, "\r\n"));
    const QString put = QStringLiteral("put");
    // The size of the file goes in front of the answer.
    save(put, QStringLiteral("empty"), exchange(0, 0, QByteArray(1, '\0') + "OK\r\n"));
    save(put, QStringLiteral("blocks"), exchange(0, 0, "2OK\r\n"));
    save(put, QStringLiteral("pieces"), exchange(1, 0, "\x11OK\r\n"));
    save(put, QStringLiteral("refusal"), exchange(0, 0, "2Error=Read only\r\n"));
    save(put, QStringLiteral("silent"), exchange(0, 2, "2O"));
    save(put, QStringLiteral("reset"), exchange(0, 1, "2OK\r\n"));
}

void saveStreams()
{
    const QString live = QStringLiteral("live");
    QByteArray all;
    for (const OnLine &record : SampleRecords::all(someTime())) {
        all += SampleRecords::bytes(record);
    }
    const QByteArray two = all.left(2 * OnLine::size);
    // Size of the pieces, then bits: 1 hangs up, 2 has no photos.
    save(live, QStringLiteral("two"), QByteArray("\0\0", 2) + two);
    save(live, QStringLiteral("all"), QByteArray("\0\1", 2) + all);
    save(live, QStringLiteral("pieces"), QByteArray("\x07\0", 2) + two);
    save(live, QStringLiteral("cut"), QByteArray("\xbf\1", 2) + two.chopped(1));
    save(live, QStringLiteral("nophotos"), QByteArray("\0\2", 2) + two);
}

void saveFiles()
{
    const QString network = QStringLiteral("network");
    save(network, QStringLiteral("common"), "# panel\nHOSTNAME=gate\nDOMAINNAME = park.lan\n");
    save(network, QStringLiteral("interface"),
         "DEVICE=eth0\nDHCP=0\nIPADDR=10.0.0.2\nNETMASK=255.0.0.0\nOPTS=a=b\n  # end");
    save(network, QStringLiteral("resolver"),
         "nameserver 10.0.0.5\nsearch lan\nnameserver\t10.0.0.6\n\n__comment__0=x\r\n");
    const QString settings = QStringLiteral("settings");
    save(settings, QStringLiteral("plain"),
         "[AddressList]\nAddresses=127.0.0.1, gate-2\n\n[Global]\nFileTransferPort=5058\n"
         "MinReservedFreeSpace=2097152\nVaskParkingPort=3333\nWorkingDirectory=/tmp/Stallo\n");
    save(settings, QStringLiteral("window"),
         "[General]\nLastWindowPosition=@Point(10 20)\nLastWindowScreen=0\n"
         "LastWindowSize=@Size(1280 800)\nWindowMaximized=true\n");
    save(settings, QStringLiteral("wrong"),
         "[Global]\nVideoTimeout=@ByteArray(x)\nVaskDataPath=\\x442\\0\nWorkingDirectory=\n"
         "LastSavedPhoto=@Rect(1 2 3 4)\n[AddressList]\nAddresses=@Invalid()\n");
}

void saveTexts()
{
    const QString title = QStringLiteral("title");
    save(title, QStringLiteral("device"),
         "<b>VASK-0001</b> <font color=\"#404040\">10.0.0.3</font>");
    save(title, QStringLiteral("window"), "<i>Stallo </i>");
    save(title, QStringLiteral("sizes"),
         "<h1 align=right>a</h1><p style=\"font-size:40pt\">b&amp;&#1234;");
    save(title, QStringLiteral("list"), "<ul><li>a<ol start=3><li>b</ul><hr><pre> c </pre>");
    const QString box = QStringLiteral("errorbox");
    save(box, QStringLiteral("plain"), "/media/stick/a<b>.csv: No such file");
    save(box, QStringLiteral("lines"), "Error=1\r\nThe file <b>cannot</b> be read\n<i>at all");
    save(box, QStringLiteral("table"),
         "<table border=1><tr><td rowspan=2 colspan=2>a</td><td width=50%>b</td></tr></table>");
    save(box, QStringLiteral("picture"), "<img src=\"/etc/passwd\" width=9><a href=\"x:y\">z</a>");
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    LocalText::useCodecOfLocale();
    if (argc != 2) {
        qFatal("usage: stallo_fuzz_seeds FOLDER");
    }
    top = QDir(QFile::decodeName(argv[1]));
    saveLines();
    saveTables();
    saveRecords();
    saveIdentities();
    savePhotos();
    saveTransfers();
    saveStreams();
    saveFiles();
    saveTexts();
    return 0;
}
