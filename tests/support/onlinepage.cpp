// SPDX-License-Identifier: MIT
#include "tests/support/onlinepage.h"

#include "app/settings.h"
#include "net/events.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scan.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"
#include "simulator/filetree.h"
#include "simulator/livefeed.h"
#include "tests/support/testmain.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QStackedWidget>

namespace
{

constexpr int refusedPort = 1;
constexpr int frameMsec = 100;

} // namespace

void OnlinePage::prepare()
{
    Settings *settings = TestSurroundings::freshSettings();
    settings->setVaskParkingPort(refusedPort);
    settings->setFileTransferPort(refusedPort);
    settings->setVideoTimeout(frameMsec);
    QDir(settings->workingDirectory()).removeRecursively();
    if (!QDir().mkpath(folder() + QStringLiteral("/jpegdata")) ||
        !QDir().mkpath(settings->videoTempDirectory())) {
        qFatal("cannot make the temporary folders");
    }
}

OnlinePage::OnlinePage()
    : page_(std::make_unique<OnLineWidget>())
{
    page_->resize(1280, 700);
    page_->show();
    if (!QTest::qWaitForWindowExposed(page_.get())) {
        qFatal("the page does not appear");
    }
}

OnlinePage::~OnlinePage() = default;

qint64 OnlinePage::end()
{
    QElapsedTimer clock;
    clock.start();
    page_.reset();
    return clock.elapsed();
}

QPushButton *OnlinePage::button(const char *name) const
{
    auto *found = page_->findChild<QPushButton *>(QString::fromLatin1(name));
    if (found == nullptr) {
        qFatal("the page has no button %s", name);
    }
    return found;
}

void OnlinePage::press(const char *name) const
{
    QPushButton *pressed = button(name);
    if (!pressed->isVisible() || !pressed->isEnabled()) {
        qWarning("the button %s cannot be pressed", name);
    }
    QTest::mouseClick(pressed, Qt::LeftButton);
}

QTableView *OnlinePage::table() const
{
    return page_->findChild<QTableView *>(QStringLiteral("tableViewOnLine"));
}

int OnlinePage::rows() const
{
    return table()->model()->rowCount();
}

int OnlinePage::currentRow() const
{
    return table()->currentIndex().row();
}

void OnlinePage::clickRow(int row) const
{
    const QModelIndex index = table()->model()->index(row, ScanModel::NumberColumn);
    table()->scrollTo(index);
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table()->visualRect(index).center());
}

QString OnlinePage::cell(int row, int column) const
{
    return table()->model()->index(row, column).data().toString();
}

ProportionalSclaleWidget *OnlinePage::viewIn(const char *place) const
{
    const auto *label = page_->findChild<QLabel *>(QString::fromLatin1(place));
    return label->findChild<ProportionalSclaleWidget *>();
}

ProportionalSclaleWidget *OnlinePage::photo() const
{
    return viewIn("labelPhoto");
}

ProportionalSclaleWidget *OnlinePage::camera(int channel) const
{
    return viewIn(channel == 0 ? "labelPhoto0" : "labelPhoto1");
}

bool OnlinePage::isBusy() const
{
    const auto *stack = page_->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
    return stack->currentWidget()->objectName() == QLatin1String("busyPage");
}

void OnlinePage::tellPassage(const OnLine &record, const QString &host, const QString &vaskId,
                             bool repost)
{
    OnLineEvent event(host, record, pictureFile(record), vaskId, repost);
    QCoreApplication::sendEvent(page_.get(), &event);
}

void OnlinePage::tellPipe(int state, const QString &message, int channel)
{
    PipeEvent event;
    event.state = state;
    event.message = message;
    event.channel = channel;
    QCoreApplication::sendEvent(page_.get(), &event);
}

void OnlinePage::tellFrame(const QString &host, const QString &file, int channel)
{
    VideoEvent event(host, file, channel);
    QCoreApplication::sendEvent(page_.get(), &event);
}

QString OnlinePage::folder()
{
    return Settings::instance()->onLineTempDirectory();
}

QByteArray OnlinePage::tableBytes()
{
    return content(folder() + QStringLiteral("/tmponline.tpp"));
}

QByteArray OnlinePage::indexBytes()
{
    return content(folder() + QStringLiteral("/tmponline.tpp.index"));
}

QByteArray OnlinePage::content(const QString &file)
{
    QFile from(file);
    return from.open(QIODevice::ReadOnly) ? from.readAll() : QByteArray("no such file");
}

void OnlinePage::write(const QString &file, const QByteArray &content)
{
    QFile to(file);
    if (!to.open(QIODevice::WriteOnly) || to.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(file));
    }
}

QString OnlinePage::pictureFile(const OnLine &record)
{
    return folder() + QStringLiteral("/jpegdata/") + VaskSettings::picFileName(record);
}

QByteArray OnlinePage::tableOf(const QVector<OnLine> &records)
{
    QByteArray bytes;
    for (const OnLine &record : records) {
        bytes.append(Scan(record).data(), Scan::size);
    }
    return bytes;
}

QByteArray OnlinePage::indexOf(const QStringList &vaskIds)
{
    QByteArray bytes;
    for (const QString &id : vaskIds) {
        const QByteArray entry = id.toLatin1().left(31);
        bytes += entry + QByteArray(32 - entry.size(), '\0');
    }
    return bytes;
}

OnLine OnlinePage::record(int n)
{
    const QDateTime begin(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC);
    return SampleRecords::plain(QStringLiteral("A%1BC77").arg(n % 1000, 3, 10, QLatin1Char('0')),
                                begin.addSecs(n));
}

QVector<OnLine> OnlinePage::records(int count, int first)
{
    QVector<OnLine> all;
    for (int n = 0; n < count; ++n) {
        all.append(record(first + n));
    }
    return all;
}

QByteArray OnlinePage::jpeg(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG");
    return bytes;
}
