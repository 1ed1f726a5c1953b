// SPDX-License-Identifier: MIT
#include "pages/onlinewidget.h"

#include "app/addressdialog.h"
#include "app/errorbrowser.h"
#include "app/settings.h"
#include "app/shellaccess.h"
#include "net/events.h"
#include "pages/devicetitle.h"
#include "pages/onlinechannel.h"
#include "pages/passagedetails.h"
#include "pages/passagequeue.h"
#include "pages/passagetable.h"
#include "pages/photofiles.h"
#include "pages/proportionalsclalewidget.h"
#include "pages/tablefiledialog.h"
#include "pages/temporarydata.h"
#include "records/photoclaims.h"
#include "records/photoname.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"
#include "ui_onlinewidget.h"

#include <QAbstractSocket>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QScopedValueRollback>

namespace
{

constexpr int mostFreeingMsec = 20;

QString tableFile()
{
    return Settings::instance()->absolute(Settings::instance()->onLineTempFile());
}

} // namespace

OnLineWidget::OnLineWidget(QWidget *parent)
    : QWidget(parent)
    , ui_(std::make_unique<Ui_OnLineWidgetClass>())
{
    if (!RecoveredTables::isLeftInPlace()) {
        clearTempData(); // before anything else, so that every run starts with an empty table
    }
    ui_->setupUi(this);
    passages_ = std::make_unique<PassageQueue>(
        [this](const OnLineEvent &event) { handlePassage(event); }, [this] { showFollowed(); });
    createTable();
    createViews();
    ui_->buttomNetworkSetup->hide();
    wire();
}

OnLineWidget::~OnLineWidget()
{
    if (save_) {
        save_->requestInterruption();
        save_.reset();
    }
}

void OnLineWidget::createTable()
{
    model_ = new ScanModel(tableFile(), this);
    ui_->tableViewOnLine->setModel(model_);
    menu_ = PassageTable::createMenu(ui_->tableViewOnLine, [this] { addToSuffered(); });
    ui_->buttonSave->setEnabled(model_->rowCount() > 0);
    ui_->buttonSavePhoto->setEnabled(false);
}

void OnLineWidget::createViews()
{
    photo_ = PassageTable::createPhotoView(ui_->labelPhoto);
    channels_[0] = std::make_unique<OnlineChannel>(0, this, ui_->labelPhoto0,
                                                   ui_->buttonDisconnect1, ui_->buttonOpenBarrier1);
    channels_[1] = std::make_unique<OnlineChannel>(1, this, ui_->labelPhoto1,
                                                   ui_->buttonDisconnect2, ui_->buttonOpenBarrier2);
    for (const auto &channel : channels_) {
        connect(channel.get(), &OnlineChannel::barrierFailed, this, &OnLineWidget::reportBarrier);
    }
}

void OnLineWidget::wire()
{
    const QTableView *table = ui_->tableViewOnLine;
    connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &OnLineWidget::showRecord);
    connect(table, &QTableView::activated, this, &OnLineWidget::showRecord);
    connect(table, &QTableView::clicked, this, &OnLineWidget::showRecord);
    connect(table, &QTableView::customContextMenuRequested, this, &OnLineWidget::menuRequested);
    connect(ui_->buttonSave, &QPushButton::clicked, this, &OnLineWidget::saveTableToFile);
    connect(ui_->buttonSavePhoto, &QPushButton::clicked, this, &OnLineWidget::savePhoto);
    connect(ui_->buttonNewTable, &QPushButton::clicked, this, &OnLineWidget::newTable);
    for (const QPushButton *select : {ui_->buttonSelectDevice1, ui_->buttonSelectDevice2}) {
        connect(select, &QPushButton::clicked, this, qOverload<>(&OnLineWidget::selectDevice));
    }
    for (const QPushButton *release : {ui_->buttonDisconnect1, ui_->buttonDisconnect2}) {
        connect(release, &QPushButton::clicked, this, &OnLineWidget::disconnectFromDevice);
    }
    for (const QPushButton *barrier : {ui_->buttonOpenBarrier1, ui_->buttonOpenBarrier2}) {
        connect(barrier, &QPushButton::clicked, this, &OnLineWidget::openBarrier);
    }
}

int OnLineWidget::senderChannel(const QAbstractButton *first, const QAbstractButton *second) const
{
    const QObject *button = sender();
    return button == first ? 0 : button == second ? 1 : -1;
}

void OnLineWidget::selectDevice()
{
    selectDevice(QString());
}

void OnLineWidget::selectDevice(const QString &address)
{
    const int button = senderChannel(ui_->buttonSelectDevice1, ui_->buttonSelectDevice2);
    QString chosen = address;
    if (chosen.isEmpty() && button >= 0) {
        AddressDialog dialog(this);
        dialog.exec();
        chosen = dialog.result();
    }
    if (!chosen.isEmpty()) {
        channels_[static_cast<std::size_t>(qMax(0, button))]->assign(chosen);
        refreshDeviceString();
    }
}

void OnLineWidget::disconnectFromDevice()
{
    const int channel = senderChannel(ui_->buttonDisconnect1, ui_->buttonDisconnect2);
    if (channel >= 0) {
        channels_[static_cast<std::size_t>(channel)]->release();
        refreshDeviceString();
    }
}

void OnLineWidget::openBarrier()
{
    const int channel = senderChannel(ui_->buttonOpenBarrier1, ui_->buttonOpenBarrier2);
    if (channel < 0) {
        return;
    }
    channels_[static_cast<std::size_t>(channel)]->openBarrier();
}

void OnLineWidget::reportBarrier(const QString &error)
{
    // Whoever presses again and again at a device that is gone reads of it once.
    if (reportingBarrier_) {
        return;
    }
    const QScopedValueRollback<bool> reporting(reportingBarrier_, true);
    ErrorBrowser::error(tr("Error"), error, this);
}

void OnLineWidget::customEvent(QEvent *event)
{
    switch (static_cast<int>(event->type())) {
    case EventNumber::OnLine:
        passages_->add(*static_cast<OnLineEvent *>(event));
        break;
    case EventNumber::Pipe:
        handlePipe(*static_cast<PipeEvent *>(event));
        break;
    case EventNumber::Video: {
        const auto &frame = *static_cast<VideoEvent *>(event);
        if (frame.channel() == 0 || frame.channel() == 1) {
            channels_[static_cast<std::size_t>(frame.channel())]->showFrame(frame);
        }
        break;
    }
    default:
        break;
    }
}

bool OnLineWidget::isWatched(const QString &host) const
{
    return !host.isEmpty() && (host == channels_[0]->host() || host == channels_[1]->host());
}

void OnLineWidget::handlePassage(const OnLineEvent &event)
{
    if (!event.onLine().isValid()) {
        QFile::remove(event.fileName()); // no row will ever have this photo, nor make room of it
        return;
    }
    if (!isWatched(event.hostName())) {
        return;
    }
    if (event.repost()) {
        showLatePicture(event);
        return;
    }
    if (twins_.isRepeated(event.channel(), event.onLine(), event.hostName(),
                          channels_[0]->host() == channels_[1]->host())) {
        return;
    }
    // The identifier first: a row never stands without its entry.
    bool indexed = writeIndex(event.vaskId());
    recovered_.makeRoom(mostFreeingMsec); // what a former run left goes before what comes now
    model_->freeSpace();
    if (!indexed) {
        indexed = writeIndex(event.vaskId()); // there may be room now
    }
    if (indexed) {
        appendPassage(Scan(event.onLine()));
    } else {
        showFollowed(); // the box may stay open for long
        reportFullDisk();
    }
}

bool OnLineWidget::writeIndex(const QString &vaskId)
{
    return (index_.isOpen() || index_.open(model_->indexFile(), QIODevice::ReadWrite)) &&
           index_.write(model_->rowCount(), vaskId);
}

void OnLineWidget::showFollowed()
{
    if (following_) {
        following_ = false;
        showRecord(model_->index(model_->rowCount() - 1, 0));
    }
}

void OnLineWidget::showLatePicture(const OnLineEvent &event)
{
    const QDateTime time = event.onLine().dateTime();
    const QModelIndex current = ui_->tableViewOnLine->currentIndex();
    const std::optional<Scan> shown = model_->read(current.row());
    // Of another device's passage in the same second, the photo has another name.
    if (!shown || shown->dateTime() != time ||
        QFileInfo(photoPath(current.row(), *shown)).fileName() !=
            QFileInfo(event.fileName()).fileName()) {
        return;
    }
    // Among the newest rows only: the search ends at the first one that is older.
    for (int row = model_->rowCount() - 1; row > current.row(); --row) {
        const std::optional<Scan> scan = model_->read(row);
        if (scan && scan->dateTime() < time) {
            return;
        }
    }
    showRecord(current);
}

void OnLineWidget::handlePipe(const PipeEvent &event)
{
    const bool lost = event.state == QAbstractSocket::UnconnectedState && !event.message.isEmpty();
    OnlineChannel &channel = *channels_[event.channel == 0 ? 0 : 1];
    // Word of a connection may be late: the slot may have another address by now.
    if (!lost && (event.hostName.isEmpty() || event.hostName == channel.host())) {
        channel.showConnected();
    }
    refreshDeviceString();
}

void OnLineWidget::insertRecord(const Scan &scan)
{
    appendPassage(scan);
    showFollowed();
}

void OnLineWidget::appendPassage(const Scan &scan)
{
    const int rows = model_->rowCount();
    // In an empty table there is no current row: -1 is then the last row as well.
    const int current = ui_->tableViewOnLine->currentIndex().row();
    const bool follow = following_ || current == rows - 1;
    const bool appended = model_->append(scan);
    if (current >= 0 && !ui_->tableViewOnLine->currentIndex().isValid()) {
        showRecord(
            model_->index(current, 0)); // the table was read anew; the operator stays where he was
    }
    if (!appended) {
        if (index_.isOpen()) {
            index_.cut(rows);
        }
        showFollowed(); // the box may stay open for long
        reportFullDisk();
        return;
    }
    ui_->buttonSave->setEnabled(true);
    following_ = follow;
}

void OnLineWidget::reportFullDisk()
{
    // Passages go on coming while the box is open; one box tells it all.
    if (reportingFullDisk_) {
        return;
    }
    const QScopedValueRollback<bool> reporting(reportingFullDisk_, true);
    QMessageBox::critical(this, tr("Data error"), tr("It is not enoth space on disk!"),
                          QMessageBox::Ok);
}

void OnLineWidget::showRecord(const QModelIndex &index)
{
    if (settingCurrent_) {
        return; // announced by the change of the current row below
    }
    if (index != ui_->tableViewOnLine->currentIndex()) {
        const QScopedValueRollback<bool> setting(settingCurrent_, true);
        ui_->tableViewOnLine->setCurrentIndex(index);
    }
    if (!index.isValid()) {
        photo_->clear();
        return;
    }
    const std::optional<Scan> scan = model_->read(index.row());
    const QString photo = scan ? photoPath(index.row(), *scan) : QString();
    photo_->setLayers(photo, PassageDetails::onLineLines(scan));
    ui_->buttonSavePhoto->setEnabled(PhotoName::isThere(photo));
}

QString OnLineWidget::photoPath(int row, const Scan &scan) const
{
    return PhotoFiles::path(QFileInfo(model_->indexFile()).absolutePath(),
                            VaskSettings::picFileDir(), scan, model_->deviceOf(row));
}

void OnLineWidget::setDeviceString()
{
    const bool connected = channels_[0]->isConnected() || channels_[1]->isConnected();
    ShellAccess::showDeviceName(
        DeviceTitle::onLine(tr("Online"), channels_[0]->host(), channels_[1]->host(), connected));
}

void OnLineWidget::refreshDeviceString()
{
    if (isVisible()) {
        setDeviceString();
    }
}

void OnLineWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    columns_.fit(ui_->tableViewOnLine, PassageTable::widestTexts(ui_->tableViewOnLine));
    setDeviceString();
}

void OnLineWidget::menuRequested(const QPoint &position)
{
    menu_->popup(ui_->tableViewOnLine->viewport()->mapToGlobal(position));
}

void OnLineWidget::addToSuffered()
{
    const int row = ui_->tableViewOnLine->currentIndex().row();
    if (const auto scan = PassageTable::read(*model_, row, this)) {
        PassageTable::addToAccessList(*scan);
    }
}

void OnLineWidget::newTable()
{
    clearTable();
    clearTempData();
    RecoveredTables::forgetLeft();
    // Its files were deleted under it.
    model_->setFileName(tableFile());
}

void OnLineWidget::clearTable()
{
    photo_->clear();
    index_.close(); // the next passage starts it anew
    model_->removeRows(0, qMax(0, model_->rowCount() - 1));
    ui_->buttonSave->setEnabled(false);
    ui_->buttonSavePhoto->setEnabled(false);
}

void OnLineWidget::clearTempData()
{
    if (const Settings *settings = Settings::instance()) {
        PhotoClaims::forget();
        TemporaryData::clear(settings->absolute(settings->onLineTempDirectory()));
    }
}

void OnLineWidget::saveTableToFile()
{
    const TableFileDialog dialog(this, tr("Save on-line table to file"),
                                 Settings::instance()->lastSavedOnLineFile(),
                                 VaskSettings::passbaseSuffix());
    const auto [name, isCsv] = dialog.save(TableFileDialog::First::Csv);
    if (!name.isEmpty()) {
        startSave(isCsv ? &OnLineWidget::saveTableToCSVFile : &OnLineWidget::saveTableToDatFile,
                  name);
    }
}

void OnLineWidget::startSave(SaveThread::Method method, const QString &name)
{
    showBusy(true);
    saving_ = TableSnapshot::of(*model_);
    save_ = std::make_unique<SaveThread>(this, method, name);
    connect(save_.get(), &QThread::finished, this, &OnLineWidget::threadFinished);
    save_->start();
}

void OnLineWidget::threadFinished()
{
    if (!save_ || sender() != save_.get()) {
        return;
    }
    save_->wait();
    const QString result = save_->result();
    const bool wasPhoto = !savedPhoto_.isEmpty();
    savedPhoto_.clear();
    save_.reset();
    showBusy(false);
    if (result.contains(QStringLiteral("Error=")) || (wasPhoto && !result.isEmpty())) {
        ErrorBrowser::error(tr("Error"), result, this);
    } else if (!result.isEmpty()) {
        ErrorBrowser::error(
            tr("Error"),
            tr("Vask is busy now. Please try again later.") + QLatin1Char('\n') + result, this);
    }
}

TableSnapshot OnLineWidget::savedTable() const
{
    return QThread::currentThread() == thread() ? TableSnapshot::of(*model_) : saving_;
}

QString OnLineWidget::saveTableToDatFile(QString name)
{
    const QString error = TableSave::dump(savedTable(), name);
    if (!error.isEmpty()) {
        return error;
    }
    const QString folder = QFileInfo(name).absolutePath();
    Settings::instance()->setLastSavedOnLineFile(folder);
    return copyPhotos(folder);
}

QString OnLineWidget::saveTableToCSVFile(QString name)
{
    const QString error = TableSave::plainCsv(savedTable(), name);
    if (error.isEmpty()) {
        Settings::instance()->setLastSavedOnLineFile(QFileInfo(name).absolutePath());
    }
    return error;
}

QString OnLineWidget::createPhotoDirs(const QString &folder)
{
    return PhotoFiles::makeFolder(folder, VaskSettings::picFileDir()) ? QString()
                                                                      : tr("Can't create dir");
}

QString OnLineWidget::copyPhotos(const QString &folder)
{
    const QString error = createPhotoDirs(folder);
    if (!error.isEmpty()) {
        return error;
    }
    const TableSnapshot table = savedTable();
    const QString pictures = QLatin1Char('/') + VaskSettings::picFileDir();
    return TableSave::photos(table, QFileInfo(table.indexFile).absolutePath() + pictures,
                             folder + pictures);
}

void OnLineWidget::savePhoto()
{
    const int row = ui_->tableViewOnLine->currentIndex().row();
    const std::optional<Scan> scan = PassageTable::read(*model_, row, this);
    if (!scan) {
        return;
    }
    const QString photo = photoPath(row, *scan);
    const QString name = PassageTable::askPhotoName(this, *scan);
    if (name.isEmpty()) {
        return;
    }
    savedPhoto_ = photo;
    startSave(&OnLineWidget::savePhotoToFile, name);
}

QString OnLineWidget::savePhotoToFile(QString name)
{
    return PhotoFiles::copyFlushed(savedPhoto_, name);
}

void OnLineWidget::showBusy(bool busy)
{
    ui_->stackedWidget->setCurrentWidget(busy ? ui_->busyPage : ui_->basePage);
}
