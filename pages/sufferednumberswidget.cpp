// SPDX-License-Identifier: MIT
#include "pages/sufferednumberswidget.h"

#include "app/addressdialog.h"
#include "app/errorbrowser.h"
#include "app/settings.h"
#include "app/shellaccess.h"
#include "net/socketwait.h"
#include "pages/accessfiles.h"
#include "pages/devicetitle.h"
#include "pages/dumpfolder.h"
#include "pages/listentry.h"
#include "pages/numberfilter.h"
#include "pages/tablefiledialog.h"
#include "records/accessmodel.h"
#include "records/vasksettings.h"
#include "ui_sufferednumberswidget.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QTemporaryDir>

SufferedNumbersWidget::SufferedNumbersWidget(QWidget *parent)
    : QWidget(parent)
    , ui_(std::make_unique<Ui_SufferedNumbersWidgetClass>())
    , handover_([this](const QString &name) { setTable(name); },
                [this](const QString &name) { Q_EMIT setTableThreaded(name); })
    , runner_(this)
{
    ui_->setupUi(this);
    editor_.setFields({ui_->lineEditId, ui_->lineEditNumber, ui_->dateEditFrom, ui_->timeEditFrom,
                       ui_->dateEditTill, ui_->timeEditTill, ui_->lineEditKey,
                       ui_->textEditComment});
    createTable();
    wire();
    wireEditor();
    start(&SufferedNumbersWidget::loadTableFromDatFile, AccessFiles::ownList(),
          &SufferedNumbersWidget::saveThreadFinished);
}

SufferedNumbersWidget::~SufferedNumbersWidget()
{
    handover_.close();
    runner_.stop();
}

void SufferedNumbersWidget::createTable()
{
    model_ = new AccessModel(this);
    filter_ = new NumberFilter({ui_->checkBoxFilter, ui_->lineEditFilter, ui_->radioButtonFull,
                                ui_->radioButtonNotRegionalSymbols,
                                ui_->radioButtonNotRegionalNumbers, ui_->tableViewSuffered},
                               model_, AccessFiles::numbersOf(model_), this);
    connect(filter_, &NumberFilter::filtered, this, &SufferedNumbersWidget::enableApply);
    const QString title = tr("Append to Vask");
    menu_ = new QMenu(title, ui_->tableViewSuffered);
    connect(menu_->addAction(title), &QAction::triggered, this,
            &SufferedNumbersWidget::appendToVask);
}

void SufferedNumbersWidget::wire()
{
    connect(ui_->buttonNewTable, &QPushButton::clicked, this, &SufferedNumbersWidget::newTable);
    connect(ui_->buttonLoadFromNetwork, &QPushButton::clicked, this,
            qOverload<>(&SufferedNumbersWidget::loadTableFromNet));
    connect(ui_->buttonSaveToNetwork, &QPushButton::clicked, this,
            &SufferedNumbersWidget::saveTableToNet);
    connect(ui_->buttonLoad, &QPushButton::clicked, this,
            &SufferedNumbersWidget::loadTableFromFile);
    connect(ui_->buttonSave, &QPushButton::clicked, this, &SufferedNumbersWidget::saveTableToFile);
    connect(ui_->checkBoxFilter, &QCheckBox::stateChanged, this,
            &SufferedNumbersWidget::enableFilter);
    connect(ui_->lineEditFilter, &QLineEdit::textChanged, this, &SufferedNumbersWidget::setFilter);
    for (const QRadioButton *mode : {ui_->radioButtonFull, ui_->radioButtonNotRegionalSymbols,
                                     ui_->radioButtonNotRegionalNumbers}) {
        connect(mode, &QRadioButton::clicked, this, &SufferedNumbersWidget::setFilter);
    }
    connect(this, &SufferedNumbersWidget::setTableThreaded, this, &SufferedNumbersWidget::setTable);
}

void SufferedNumbersWidget::wireEditor()
{
    const QTableView *table = ui_->tableViewSuffered;
    connect(table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &SufferedNumbersWidget::showRecord);
    connect(table, &QTableView::activated, this, &SufferedNumbersWidget::showRecord);
    connect(table, &QTableView::clicked, this, &SufferedNumbersWidget::showRecord);
    connect(table, &QTableView::customContextMenuRequested, this,
            &SufferedNumbersWidget::menuRequested);
    connect(ui_->buttonNew, &QPushButton::clicked, this, &SufferedNumbersWidget::newRecord);
    connect(ui_->buttonDelete, &QPushButton::clicked, this, &SufferedNumbersWidget::deleteRecord);
    connect(ui_->buttonApply, &QPushButton::clicked, this, &SufferedNumbersWidget::applyRecord);
}

SufferedNumbersWidget::Runner::Job *SufferedNumbersWidget::start(Runner::Job::Method method,
                                                                 const QString &argument,
                                                                 Runner::Finish finish)
{
    return runner_.run(method, argument, finish, [this] {
        jobList_ = model_->fileName();
        jobTitles_ = model_->titles();
        ui_->stackedWidget->setCurrentWidget(ui_->busyPage);
    });
}

QString SufferedNumbersWidget::askDevice()
{
    AddressDialog dialog(this);
    dialog.exec();
    return dialog.result();
}

void SufferedNumbersWidget::loadTableFromNet()
{
    loadTableFromNet(QString());
}

void SufferedNumbersWidget::loadTableFromNet(const QString &host)
{
    const QString device = host.isEmpty() ? askDevice() : host;
    if (!device.isEmpty()) {
        start(&SufferedNumbersWidget::getTableFromNetwork, device,
              &SufferedNumbersWidget::loadThreadFinished);
    }
}

QString SufferedNumbersWidget::getTableFromNetwork(QString host)
{
    const QTemporaryDir downloads(AccessFiles::transferTemplate());
    const QString fetched = downloads.filePath(QStringLiteral("list"));
    const QString failure = AccessTransfer(host).fetch(fetched);
    if (!failure.isEmpty()) {
        origin_.set(tr("local"));
        return failure;
    }
    const QString list = AccessFiles::ownList();
    const QString before = listOfJob();
    if (!handover_.rebind(QString())) {
        return QString(); // closing
    }
    const QString error = AccessFiles::copy(fetched, list);
    handover_.rebind(error.isEmpty() ? list : before);
    if (error.isEmpty()) {
        origin_.set(host);
    }
    return error;
}

void SufferedNumbersWidget::saveTableToNet()
{
    const QString device = askDevice();
    if (!device.isEmpty()) {
        start(&SufferedNumbersWidget::putTableToNetwork, device,
              &SufferedNumbersWidget::saveThreadFinished);
    }
}

QString SufferedNumbersWidget::putTableToNetwork(QString host)
{
    const QString error = AccessTransfer(host).send(listOfJob());
    if (error.isEmpty()) {
        reloadVaskPassbase(host);
        origin_.set(host);
    }
    return error;
}

void SufferedNumbersWidget::appendToVask()
{
    const std::optional<Access> entry = ListEntry::read(*model_, currentRow(), this);
    if (!entry) {
        return;
    }
    const QString device = askDevice();
    if (device.isEmpty()) {
        return;
    }
    jobEntry_ = *entry;
    const QObject *job = start(&SufferedNumbersWidget::appendRecordToVask, device, nullptr);
    // There is no such slot, so nothing turns back from the busy face; existing panels do so.
    connect(job, SIGNAL(finished()), this, SLOT(threadFinished()));
}

QString SufferedNumbersWidget::appendRecordToVask(QString host)
{
    const bool inJob = QThread::currentThread() != thread();
    const std::optional<Access> entry = inJob ? jobEntry_ : model_->read(currentRow());
    const QString error = entry ? AccessTransfer(host).append(*entry) : ListEntry::unread();
    if (error.isEmpty()) {
        reloadVaskPassbase(host);
    }
    return error;
}

void SufferedNumbersWidget::showResult()
{
    ErrorBrowser::jobError(runner_.result(), this);
    ui_->stackedWidget->setCurrentWidget(ui_->basePage);
    refreshDeviceString();
}

void SufferedNumbersWidget::setTable(const QString &name)
{
    filter_->rebind([&] { model_->setFileName(name); });
    if (!name.isEmpty()) {
        // What is typed may be meant for this list; the entry that was shown is not of it.
        ui_->lineEditId->clear();
        enableApply();
    }
    handover_.done(name);
}

int SufferedNumbersWidget::currentRow() const
{
    const QModelIndex current = ui_->tableViewSuffered->currentIndex();
    return current.isValid() ? filter_->proxy()->mapToSource(current).row() : -1;
}

void SufferedNumbersWidget::showRecord(const QModelIndex &index)
{
    enableApply();
    if (!index.isValid() || filter_->isAtWork()) {
        return; // what the operator has typed stays
    }
    if (index != ui_->tableViewSuffered->currentIndex()) {
        ui_->tableViewSuffered->setCurrentIndex(index); // which announces it
        return;
    }
    const std::optional<Access> entry = ListEntry::read(*model_, currentRow(), this);
    entry ? editor_.show(*entry) : editor_.clear();
    ui_->buttonApply->setEnabled(entry.has_value());
}

void SufferedNumbersWidget::newRecord()
{
    if (model_->rowCount() >= AccessModel::mostEntries) {
        return;
    }
    Access access;
    access.setId(static_cast<qint16>(model_->rowCount()));
    editor_.takeTexts(&access);
    const int row = insertRecord(access);
    if (row < 0) {
        reportFailedInsertion();
        return;
    }
    // Behind a filter that hides it, "Apply" would go to the entry that was chosen before.
    const QModelIndex entry = model_->index(row, AccessModel::IdColumn);
    if (!filter_->proxy()->mapFromSource(entry).isValid()) {
        ui_->checkBoxFilter->setChecked(false);
    }
    showRecord(filter_->proxy()->mapFromSource(entry));
}

void SufferedNumbersWidget::applyRecord()
{
    const int row = currentRow();
    const std::optional<Access> stored = ListEntry::read(*model_, row, this);
    if (!stored) {
        return;
    }
    Access access = *stored;
    editor_.takeChanges(&access);
    if (!model_->setStored(row, access)) {
        ErrorBrowser::error(tr("Error"), tr("Can't store the record"), this);
    } else if (currentRow() == row) {
        editor_.show(model_->read(row).value_or(access)); // as stored: translated, cut if too long
    }
}

// There is nothing to apply changes to without a current entry.
void SufferedNumbersWidget::enableApply()
{
    ui_->buttonApply->setEnabled(currentRow() >= 0);
}

void SufferedNumbersWidget::deleteRecord()
{
    removal_ = RowRemoval(ui_->tableViewSuffered, filter_);
    if (removal_.rows().isEmpty() ||
        QMessageBox::warning(this, windowTitle(), tr("Do you want to remove this records?"),
                             QMessageBox::Ok, QMessageBox::Cancel) == QMessageBox::Cancel) {
        return;
    }
    if (model_->rowCount() > RowRemoval::longestAtOnce) {
        start(&SufferedNumbersWidget::removeRows, QString(),
              &SufferedNumbersWidget::removeThreadFinished);
    } else if (!removal_.apply([this] { return model_->removeScattered(removal_.rows()); })) {
        ErrorBrowser::error(tr("Error"), tr("Can't remove row"), this);
    }
    enableApply();
}

QString SufferedNumbersWidget::removeRows(QString)
{
    const QString list = listOfJob();
    if (!handover_.rebind(QString())) {
        return QString(); // closing
    }
    const bool removed = AccessFiles::remove(list, removal_.rows());
    handover_.rebind(list);
    return removed ? QString() : tr("Can't remove row");
}

int SufferedNumbersWidget::insertRecord(const Access &access)
{
    return model_->append(access) ? model_->rowCount() - 1 : -1;
}

void SufferedNumbersWidget::appendSufferedRecord(const Access &access)
{
    runner_.afterwards([this, access] {
        if (insertRecord(access) < 0) {
            reportFailedInsertion();
        }
    });
}

void SufferedNumbersWidget::reportFailedInsertion()
{
    ErrorBrowser::error(tr("Error"), tr("Can't add the record"), this);
}

void SufferedNumbersWidget::clearTable(bool removeFile)
{
    if (!handover_.rebind(QString())) {
        return; // closing
    }
    origin_.set(QString());
    if (removeFile) {
        QFile::remove(AccessFiles::ownList());
    }
    // At once in the GUI thread; for a job before its finish slot.
    QMetaObject::invokeMethod(this, [this] {
        editor_.clear();
        refreshDeviceString();
    });
}

void SufferedNumbersWidget::newTable()
{
    const QString name = tr("accessbase_%1%2")
                             .arg(QDateTime::currentDateTime().toString(VaskSettings::dateFormat()),
                                  VaskSettings::accessbaseSuffix());
    start(&SufferedNumbersWidget::createTableFile,
          QDir(Settings::instance()->absoluteWorkingDirectory()).filePath(name),
          &SufferedNumbersWidget::loadThreadFinished);
}

QString SufferedNumbersWidget::createTableFile(QString name)
{
    const QString error = AccessFiles::create(name);
    if (error.isEmpty()) {
        handover_.rebind(name);
        origin_.set(tr("local"));
    }
    return error;
}

void SufferedNumbersWidget::loadTableFromFile()
{
    const TableFileDialog dialog(this, tr("Open suffered table from file"),
                                 Settings::instance()->lastLoadedSufferedFile(),
                                 VaskSettings::accessbaseSuffix());
    const auto [name, isCsv] = dialog.load();
    if (!name.isEmpty()) {
        start(isCsv ? &SufferedNumbersWidget::loadTableFromCSVFile
                    : &SufferedNumbersWidget::loadTableFromDatFile,
              name, &SufferedNumbersWidget::loadThreadFinished);
    }
}

QString SufferedNumbersWidget::loadTableFromDatFile(QString name)
{
    // The panel's own list is made when it is not there yet, and nobody chose its folder.
    const bool isOwn = name == AccessFiles::ownList();
    const QString error = !isOwn || QFile::exists(name) ? AccessFiles::refusal(name) : QString();
    if (!error.isEmpty()) {
        return error;
    }
    if (!isOwn) {
        Settings::instance()->setLastLoadedSufferedFile(QFileInfo(name).absolutePath());
    }
    handover_.rebind(name);
    origin_.set(tr("local"));
    return QString();
}

QString SufferedNumbersWidget::loadTableFromCSVFile(QString name)
{
    const QString list = AccessFiles::ownList();
    const QString before = listOfJob();
    bool released = false;
    const QString error = AccessFiles::loadCsv(name, list, [this, &released] {
        released = handover_.rebind(QString());
        return released;
    });
    if (released) {
        handover_.rebind(error.isEmpty() ? list : before);
    }
    if (error.isEmpty()) {
        Settings::instance()->setLastLoadedSufferedFile(QFileInfo(name).absolutePath());
        origin_.set(tr("local"));
    }
    return error;
}

void SufferedNumbersWidget::saveTableToFile()
{
    const TableFileDialog dialog(this, tr("Save suffered table to file"),
                                 Settings::instance()->lastSavedSufferedFile(),
                                 VaskSettings::accessbaseSuffix());
    const auto [name, isCsv] = dialog.save(TableFileDialog::First::Dump);
    if (!name.isEmpty()) {
        start(isCsv ? &SufferedNumbersWidget::saveTableToCSVFile
                    : &SufferedNumbersWidget::saveTableToDatFile,
              name, &SufferedNumbersWidget::saveThreadFinished);
    }
}

QString SufferedNumbersWidget::saveTableToDatFile(QString name)
{
    const QString error = AccessFiles::copy(listOfJob(), name);
    if (error.isEmpty()) {
        Settings::instance()->setLastSavedSufferedFile(QFileInfo(name).absolutePath());
    }
    return error;
}

QString SufferedNumbersWidget::saveTableToCSVFile(QString name)
{
    const bool inJob = QThread::currentThread() != thread();
    const QString error =
        AccessFiles::saveCsv(listOfJob(), inJob ? jobTitles_ : model_->titles(), name);
    if (error.isEmpty()) {
        Settings::instance()->setLastSavedSufferedFile(QFileInfo(name).absolutePath());
    }
    return error;
}

QString SufferedNumbersWidget::saveTableToDatFileAndClear(QString name)
{
    QString dump;
    QString error = DumpFolder::make(name, &dump);
    if (error.isEmpty()) {
        error = saveTableToDatFile(dump);
    }
    // Nothing is deleted that has not been saved.
    if (!SocketWait::interrupted()) {
        clearTable(error.isEmpty() && listOfJob() == AccessFiles::ownList());
    }
    return error;
}

QString SufferedNumbersWidget::listOfJob() const
{
    return QThread::currentThread() == thread() ? model_->fileName() : jobList_;
}

void SufferedNumbersWidget::menuRequested(const QPoint &position)
{
    menu_->popup(ui_->tableViewSuffered->viewport()->mapToGlobal(position));
}

void SufferedNumbersWidget::enableFilter(int state)
{
    filter_->enable(state);
}

void SufferedNumbersWidget::setFilter()
{
    filter_->apply();
}

void SufferedNumbersWidget::setDeviceString()
{
    ShellAccess::showDeviceName(DeviceTitle::device(tr("Suffered numbers"), origin_.get()));
}

void SufferedNumbersWidget::refreshDeviceString()
{
    if (isVisible()) {
        setDeviceString();
    }
}

void SufferedNumbersWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    const QString time = TableColumns::widestTime(accessModelDateTimeFormat);
    columns_.fit(ui_->tableViewSuffered, {{AccessModel::IdColumn, QStringLiteral("0000")},
                                          {AccessModel::NumberColumn, QStringLiteral("M000MM000")},
                                          {AccessModel::FromColumn, time},
                                          {AccessModel::TillColumn, time}});
    setDeviceString();
}
