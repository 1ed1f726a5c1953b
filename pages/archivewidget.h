// SPDX-License-Identifier: MIT
#pragma once

#include "pages/archivedownload.h"
#include "pages/archivefiles.h"
#include "pages/jobrunner.h"
#include "pages/tablecolumns.h"
#include "pages/tablehandover.h"
#include "pages/tableorigin.h"
#include "pages/tablesave.h"

#include <QWidget>

#include <memory>

class ArchiveIntervalDialog;
class NumberFilter;
class ProportionalSclaleWidget;
class QMenu;
class ScanModel;
class Ui_ArchiveWidgetClass;

// The Archive page: passages downloaded from devices, or a table opened from a file, with the
// photo and the details of the chosen one. Downloads add up in a temporary archive, which no run of
// the program outlives; a table from a file takes its place on view. The photos of a table lie
// beside its file, in a folder named after it.
//
// GUI thread. Downloads, loads and saves run one at a time in threads of their own, behind the busy
// face. They touch no widget: what they need is copied before they start, and they ask for the
// table to be bound (TableHandover). The destructor calls them off and waits.
class ArchiveWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ArchiveWidget(QWidget *parent = nullptr);
    ~ArchiveWidget() override;

    // Downloads the whole archive of the device, after the jobs that are waiting; without an
    // address asks for device and interval.
    void loadTableFromNet(const QString &host);

    // Names the table's device in the title bar.
    void setDeviceString();

    // Bodies of the jobs, and what they are made of; the text to show, empty when nothing went
    // wrong. A download takes what loadTableFromNet() has asked for. The others, called in the GUI
    // thread, take the table as it is now.
    QString getTableFromNetwork(QString host);
    QString loadTableFromDatFile(QString name);
    QString loadTableFromCSVFile(QString name);
    QString saveTableToDatFile(QString name);
    QString saveTableToCSVFile(QString name);
    QString savePhotoToFile(QString name);
    // Saves the dump in a folder of its name in the working directory, then empties the table.
    QString saveTableToDatFileAndClear(QString name);
    // The folder in base for the photos of the table called name; without a name, of this table.
    QString createPhotoDirs(const QString &base, const QString &name);
    // The table's photos to those of the dump.
    QString copyPhotos(const QString &name);

    // Empties the table and forgets where it came from.
    void clearTable();
    // Deletes what was downloaded.
    static void clearTempData() { ArchiveFiles::removeAll(); }

public Q_SLOTS:
    void newTable() { clearTable(); }
    void saveTableToFile();
    void loadTableFromFile();
    void loadTableFromNet();
    void enableFilter(int state);
    void setFilter();
    void savePhoto();
    void showRecord(const QModelIndex &index);
    void menuRequested(const QPoint &position);
    void addToSuffered();
    // Shows the current record again after the rows were read anew.
    void modelDataChanged();
    // The operator calls the running job off.
    void finishThread();
    // Of every job.
    void threadFinished();
    // Binds the table to the record file; an empty name empties it.
    void setTable(const QString &name);

Q_SIGNALS:
    void setTableThreaded(const QString &name);

protected:
    void customEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    using Job = JobRunner<ArchiveWidget>::Job;

    void createTable();
    void wire();
    void wireTable();

    bool askInterval();
    bool beginArchive();
    void beginDownload(const ArchiveRequest &request);
    void start(Job::Method method, const QString &argument);
    void beginJob();
    void postProgress(int percent);
    void refreshDeviceString();
    void forgetTable();
    // Of the running job, or of this moment.
    TableSnapshot tableOfJob() const;
    // -1 while there is none.
    int currentRow() const;

    std::unique_ptr<Ui_ArchiveWidgetClass> ui_;
    ProportionalSclaleWidget *photo_ = nullptr; // in the form
    ScanModel *model_ = nullptr;                // a child
    NumberFilter *filter_ = nullptr;            // a child
    QMenu *menu_ = nullptr;                     // a child of the table
    ArchiveIntervalDialog *interval_ = nullptr; // a child
    QDateTime lastFrom_;
    QDateTime lastTo_;
    QString tableName_; // the file last bound, also while a job has the table unbound
    int shownRow_ = -1; // of the table, not of the filter
    bool settingCurrent_ = false;
    TableColumns columns_;

    // Written before a job starts, read by it.
    TableSnapshot jobTable_;
    QString savedPhoto_;
    ArchiveRequest request_;

    TableOrigin origin_;
    TableHandover handover_;
    JobRunner<ArchiveWidget> runner_; // last: its end waits for a job that uses the rest
};
