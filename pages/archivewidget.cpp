// SPDX-License-Identifier: MIT
#include "pages/archivewidget.h"

#include "app/addressdialog.h"
#include "app/errorbrowser.h"
#include "app/settings.h"
#include "app/shellaccess.h"
#include "net/events.h"
#include "net/socketwait.h"
#include "pages/archiveintervaldialog.h"
#include "pages/devicetitle.h"
#include "pages/dumpfolder.h"
#include "pages/numberfilter.h"
#include "pages/passagedetails.h"
#include "pages/passagetable.h"
#include "pages/photofiles.h"
#include "pages/proportionalsclalewidget.h"
#include "pages/tablefiledialog.h"
#include "pages/tableload.h"
#include "records/photoname.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"
#include "ui_archivewidget.h"

#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>

namespace
{

QString folderOf(const QString &file)
{
    return QFileInfo(file).absolutePath();
}

} // namespace

ArchiveWidget::ArchiveWidget(QWidget *parent)
    : QWidget(parent)
    , ui_(std::make_unique<Ui_ArchiveWidgetClass>())
    , interval_(new ArchiveIntervalDialog(this))
    , handover_([this](const QString &name) { setTable(name); },
                [this](const QString &name) { Q_EMIT setTableThreaded(name); })
    , runner_(this)
{
    clearTempData();
    ui_->setupUi(this);
    createTable();
    photo_ = PassageTable::createPhotoView(ui_->labelPhoto);
    wire();
    wireTable();
    setTable(QString());
}

ArchiveWidget::~ArchiveWidget()
{
    handover_.close();
    runner_.stop();
    setTable(QString());
    clearTempData();
}

void ArchiveWidget::createTable()
{
    model_ = new ScanModel(this);
    filter_ = new NumberFilter({ui_->checkBoxFilter, ui_->lineEditFilter, ui_->radioButtonFull,
                                ui_->radioButtonNotRegionalSymbols,
                                ui_->radioButtonNotRegionalNumbers, ui_->tableViewArchive},
                               model_, PassageTable::numbersOf(model_), this);
    menu_ = PassageTable::createMenu(ui_->tableViewArchive, [this] { addToSuffered(); });
}

void ArchiveWidget::wire()
{
    connect(ui_->buttonNewTable, &QPushButton::clicked, this, &ArchiveWidget::newTable);
    connect(ui_->buttonLoadFromNetwork, &QPushButton::clicked, this,
            qOverload<>(&ArchiveWidget::loadTableFromNet));
    connect(ui_->buttonLoad, &QPushButton::clicked, this, &ArchiveWidget::loadTableFromFile);
    connect(ui_->buttonSave, &QPushButton::clicked, this, &ArchiveWidget::saveTableToFile);
    connect(ui_->buttonSavePhoto, &QPushButton::clicked, this, &ArchiveWidget::savePhoto);
    connect(ui_->cancelProgress, &QPushButton::clicked, this, &ArchiveWidget::finishThread);
    connect(ui_->checkBoxFilter, &QCheckBox::stateChanged, this, &ArchiveWidget::enableFilter);
    connect(ui_->lineEditFilter, &QLineEdit::textChanged, this, &ArchiveWidget::setFilter);
    for (const QRadioButton *mode : {ui_->radioButtonFull, ui_->radioButtonNotRegionalSymbols,
                                     ui_->radioButtonNotRegionalNumbers}) {
        connect(mode, &QRadioButton::clicked, this, &ArchiveWidget::setFilter);
    }
}

void ArchiveWidget::wireTable()
{
    const QTableView *table = ui_->tableViewArchive;
    connect(table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &ArchiveWidget::showRecord);
    connect(table, &QTableView::activated, this, &ArchiveWidget::showRecord);
    connect(table, &QTableView::clicked, this, &ArchiveWidget::showRecord);
    connect(table, &QTableView::customContextMenuRequested, this, &ArchiveWidget::menuRequested);
    // Of the proxy, which resets with the model: the view, connected before, has then let go of
    // its current row.
    connect(filter_->proxy(), &QAbstractItemModel::modelReset, this,
            &ArchiveWidget::modelDataChanged);
    connect(this, &ArchiveWidget::setTableThreaded, this, &ArchiveWidget::setTable);
}

void ArchiveWidget::loadTableFromNet()
{
    loadTableFromNet(QString());
}

void ArchiveWidget::loadTableFromNet(const QString &host)
{
    QString device = host;
    if (device.isEmpty()) {
        AddressDialog dialog(this);
        dialog.exec();
        device = dialog.result();
        if (device.isEmpty() || !askInterval()) {
            return;
        }
    } else {
        interval_->clearDates();
    }
    ArchiveRequest request;
    request.host = device;
    request.wholeArchive = interval_->allArchive();
    request.from = interval_->fromTime();
    request.to = interval_->toTime();
    runner_.run(&ArchiveWidget::getTableFromNetwork, device, &ArchiveWidget::threadFinished,
                [this, request] { beginDownload(request); });
}

bool ArchiveWidget::askInterval()
{
    if (lastFrom_.isValid() && lastTo_.isValid()) {
        interval_->setFromTime(lastFrom_);
        interval_->setToTime(lastTo_);
    }
    interval_->adjustSize();
    interval_->move(mapToGlobal(rect().center()) - interval_->rect().center());
    return interval_->exec() == QDialog::Accepted;
}

void ArchiveWidget::beginDownload(const ArchiveRequest &request)
{
    const bool adds = PhotoFiles::isSameFile(model_->fileName(), ArchiveFiles::record());
    // What adds to a table is chosen as its first passages were.
    if (!adds || model_->rowCount() == 0 || !lastFrom_.isValid() || !lastTo_.isValid()) {
        lastFrom_ = request.from;
        lastTo_ = request.to;
    }
    if (!adds) {
        setTable(QString());
    }
    request_ = request;
    request_.from = lastFrom_;
    request_.to = lastTo_;
    request_.recordFile = ArchiveFiles::record();
    request_.rows = model_->rowCount();
    beginJob();
}

void ArchiveWidget::start(Job::Method method, const QString &argument)
{
    runner_.run(method, argument, &ArchiveWidget::threadFinished, [this] { beginJob(); });
}

void ArchiveWidget::beginJob()
{
    jobTable_ = TableSnapshot::of(*model_);
    postProgress(0);
    ui_->stackedWidget->setCurrentWidget(ui_->busyPage);
}

QString ArchiveWidget::getTableFromNetwork(QString host)
{
    if (request_.rows == 0 && !beginArchive()) {
        return QString();
    }
    request_.host = host;
    ArchiveDownload download(request_);
    QString error = download.fetch();
    if (!error.isEmpty() || SocketWait::interrupted()) {
        return error;
    }
    if (!handover_.rebind(QString())) {
        return QString(); // closing
    }
    error = download.append();
    handover_.rebind(request_.recordFile);
    if (!error.isEmpty() || (download.added() == 0 && SocketWait::interrupted())) {
        return error;
    }
    const QFileInfo archive(request_.recordFile);
    if (!createPhotoDirs(archive.absolutePath(), archive.baseName()).isEmpty()) {
        return tr("Vask is busy now. Please try again later.");
    }
    if (download.photos(ArchiveFiles::photosOf(request_.recordFile),
                        [this](int done) { postProgress(done); })) {
        origin_.set(host);
    }
    return QString();
}

// Deleting a hundred thousand photos takes its time. False when it was called off.
bool ArchiveWidget::beginArchive()
{
    if (tableOfJob().recordFile.isEmpty()) {
        clearTempData();
    }
    return handover_.rebind(request_.recordFile) && !SocketWait::interrupted();
}

void ArchiveWidget::finishThread()
{
    runner_.cancel();
}

void ArchiveWidget::threadFinished()
{
    ErrorBrowser::jobError(runner_.result(), this);
    ui_->stackedWidget->setCurrentWidget(ui_->basePage);
    if (focusWidget() == ui_->cancelProgress) {
        ui_->tableViewArchive->setFocus(); // while another page is shown the focus stays behind
    }
    modelDataChanged(); // its photo may have come
    refreshDeviceString();
}

void ArchiveWidget::customEvent(QEvent *event)
{
    switch (static_cast<int>(event->type())) {
    case EventNumber::Progress:
        ui_->progressPie->setProgress(static_cast<ProgressEvent *>(event)->value());
        break;
    case EventNumber::Pipe:
        QMessageBox::warning(this, tr("Error"), static_cast<PipeEvent *>(event)->message,
                             QMessageBox::Ok);
        break;
    default:
        break;
    }
}

void ArchiveWidget::postProgress(int percent)
{
    QCoreApplication::postEvent(this, new ProgressEvent(percent));
}

void ArchiveWidget::setTable(const QString &name)
{
    if (!name.isEmpty() && name != tableName_) {
        tableName_ = name;
        shownRow_ = -1; // the row of this number is another passage
    }
    filter_->rebind([&] { model_->setFileName(name); });
    ui_->buttonSave->setEnabled(model_->rowCount() > 0);
    handover_.done(name);
}

void ArchiveWidget::modelDataChanged()
{
    if (filter_->proxy()->sourceModel() == nullptr) {
        return; // shown when the table is back
    }
    if (currentRow() < 0 && shownRow_ >= 0) {
        const QModelIndex row = model_->index(shownRow_, ScanModel::DateColumn);
        ui_->tableViewArchive->setCurrentIndex(filter_->proxy()->mapFromSource(row));
    }
    showRecord(ui_->tableViewArchive->currentIndex());
}

int ArchiveWidget::currentRow() const
{
    const QModelIndex current = ui_->tableViewArchive->currentIndex();
    return current.isValid() ? filter_->proxy()->mapToSource(current).row() : -1;
}

void ArchiveWidget::showRecord(const QModelIndex &index)
{
    if (settingCurrent_) {
        return; // announced by the change of the current row below
    }
    if (index != ui_->tableViewArchive->currentIndex()) {
        const QScopedValueRollback<bool> setting(settingCurrent_, true);
        ui_->tableViewArchive->setCurrentIndex(index);
    }
    const int row = currentRow();
    if (row < 0) {
        photo_->clear();
        ui_->buttonSavePhoto->setEnabled(false);
        return;
    }
    shownRow_ = row;
    const std::optional<Scan> scan = model_->read(row);
    const QString photo =
        scan ? ArchiveFiles::photo(model_->fileName(), *scan, model_->deviceOf(row)) : QString();
    photo_->setLayers(photo, PassageDetails::archiveLines(scan));
    ui_->buttonSavePhoto->setEnabled(PhotoName::isThere(photo));
}

void ArchiveWidget::enableFilter(int state)
{
    filter_->enable(state);
}

void ArchiveWidget::setFilter()
{
    filter_->apply();
}

void ArchiveWidget::menuRequested(const QPoint &position)
{
    menu_->popup(ui_->tableViewArchive->viewport()->mapToGlobal(position));
}

void ArchiveWidget::addToSuffered()
{
    if (const auto scan = PassageTable::read(*model_, currentRow(), this)) {
        PassageTable::addToAccessList(*scan);
    }
}

void ArchiveWidget::clearTable()
{
    handover_.rebind(QString());
    origin_.set(QString());
    ArchiveFiles::removeArchive();
    // At once in the GUI thread; for a job before its finish slot.
    QMetaObject::invokeMethod(this, [this] { forgetTable(); });
}

void ArchiveWidget::forgetTable()
{
    shownRow_ = -1;
    tableName_.clear();
    photo_->clear();
    interval_->clearDates();
    lastFrom_ = QDateTime();
    lastTo_ = QDateTime();
    refreshDeviceString();
}

void ArchiveWidget::loadTableFromFile()
{
    const TableFileDialog dialog(this, tr("Open thoroughfare table from file"),
                                 Settings::instance()->lastLoadedArchiveFile(),
                                 VaskSettings::passbaseSuffix());
    const auto [name, isCsv] = dialog.load();
    if (!name.isEmpty()) {
        start(isCsv ? &ArchiveWidget::loadTableFromCSVFile : &ArchiveWidget::loadTableFromDatFile,
              name);
    }
}

QString ArchiveWidget::loadTableFromDatFile(QString name)
{
    const QString error = TableLoad::refusal(name);
    if (!error.isEmpty()) {
        return error;
    }
    if (!handover_.rebind(name)) {
        return QString(); // closing
    }
    Settings::instance()->setLastLoadedArchiveFile(folderOf(name));
    origin_.set(tr("local"));
    postProgress(100);
    return QString();
}

QString ArchiveWidget::loadTableFromCSVFile(QString name)
{
    const QString before = tableOfJob().recordFile;
    if (!handover_.rebind(QString())) {
        return QString(); // closing
    }
    const QString error = TableLoad::csv(name, ArchiveFiles::record(),
                                         [this](int percent) { postProgress(percent); });
    if (error.isEmpty()) {
        // Another table, though the file may be the same. Comes before the binding.
        QMetaObject::invokeMethod(this, [this] { tableName_.clear(); });
    }
    handover_.rebind(error.isEmpty() ? ArchiveFiles::record() : before);
    if (error.isEmpty()) {
        Settings::instance()->setLastLoadedArchiveFile(folderOf(name));
        origin_.set(tr("local"));
    }
    return error;
}

void ArchiveWidget::saveTableToFile()
{
    const TableFileDialog dialog(this, tr("Save thoroughfare table to file"),
                                 Settings::instance()->lastSavedArchiveFile(),
                                 VaskSettings::passbaseSuffix());
    const auto [name, isCsv] = dialog.save(TableFileDialog::First::Dump);
    if (!name.isEmpty()) {
        start(isCsv ? &ArchiveWidget::saveTableToCSVFile : &ArchiveWidget::saveTableToDatFile,
              name);
    }
}

TableSnapshot ArchiveWidget::tableOfJob() const
{
    return QThread::currentThread() == thread() ? TableSnapshot::of(*model_) : jobTable_;
}

QString ArchiveWidget::saveTableToDatFile(QString name)
{
    const QString error = TableSave::dump(tableOfJob(), name);
    if (!error.isEmpty()) {
        return error;
    }
    Settings::instance()->setLastSavedArchiveFile(folderOf(name));
    postProgress(0);
    return copyPhotos(QFileInfo(name).absoluteFilePath());
}

QString ArchiveWidget::saveTableToCSVFile(QString name)
{
    const QString error =
        TableSave::csv(tableOfJob(), name, [this](int percent) { postProgress(percent); });
    if (error.isEmpty()) {
        Settings::instance()->setLastSavedArchiveFile(folderOf(name));
    }
    return error;
}

QString ArchiveWidget::saveTableToDatFileAndClear(QString name)
{
    QString dump;
    const QString error = DumpFolder::make(name, &dump);
    if (error.isEmpty()) {
        saveTableToDatFile(dump);
        if (SocketWait::interrupted()) {
            return QString(); // half saved; the table stays
        }
    }
    clearTable();
    return error;
}

QString ArchiveWidget::createPhotoDirs(const QString &base, const QString &name)
{
    const QString table = name.isEmpty() ? QFileInfo(tableOfJob().recordFile).baseName() : name;
    return PhotoFiles::makeFolder(base, VaskSettings::picFileDir(table)) ? QString()
                                                                         : tr("Can't create dir");
}

QString ArchiveWidget::copyPhotos(const QString &name)
{
    const QString error = createPhotoDirs(folderOf(name), QFileInfo(name).baseName());
    if (!error.isEmpty()) {
        return error;
    }
    const TableSnapshot table = tableOfJob();
    return TableSave::photos(table, ArchiveFiles::photosOf(table.recordFile),
                             ArchiveFiles::photosOf(name),
                             [this](int percent) { postProgress(percent); });
}

void ArchiveWidget::savePhoto()
{
    const int row = currentRow();
    const std::optional<Scan> scan = PassageTable::read(*model_, row, this);
    if (!scan) {
        return;
    }
    savedPhoto_ = ArchiveFiles::photo(model_->fileName(), *scan, model_->deviceOf(row));
    const QString name = PassageTable::askPhotoName(this, *scan);
    if (!name.isEmpty()) {
        start(&ArchiveWidget::savePhotoToFile, name);
    }
}

QString ArchiveWidget::savePhotoToFile(QString name)
{
    return PhotoFiles::copyFlushed(savedPhoto_, name);
}

void ArchiveWidget::setDeviceString()
{
    ShellAccess::showDeviceName(DeviceTitle::device(tr("Archive view"), origin_.get()));
}

void ArchiveWidget::refreshDeviceString()
{
    if (isVisible()) {
        setDeviceString();
    }
}

void ArchiveWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    columns_.fit(ui_->tableViewArchive, PassageTable::widestTexts(ui_->tableViewArchive));
    setDeviceString();
}
