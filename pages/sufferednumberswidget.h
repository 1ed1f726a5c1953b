// SPDX-License-Identifier: MIT
#pragma once

#include "pages/accesseditor.h"
#include "pages/accesstransfer.h"
#include "pages/jobrunner.h"
#include "pages/rowremoval.h"
#include "pages/tablecolumns.h"
#include "pages/tablehandover.h"
#include "pages/tableorigin.h"

#include <QWidget>

#include <memory>

class AccessModel;
class NumberFilter;
class QMenu;
class QModelIndex;
class Ui_SufferedNumbersWidgetClass;

// The access list page: the numbers that a device lets through, with their dates, keys and
// comments. A list is fetched from a device, edited entry by entry, and sent back; or loaded from
// and saved to files. Every change is in the list's file at once. The panel's own list, in which
// what was fetched lies, outlives the program and is opened at the start.
//
// GUI thread. Fetching, sending, loading and saving run one at a time in threads of their own,
// behind the busy face; they ask for the table to be bound (TableHandover). Entries that come from
// other pages meanwhile wait for their end. After an entry was appended to a device's list the busy
// face stays; the rest of the program goes on. The destructor calls the jobs off and waits.
class SufferedNumbersWidget : public QWidget
{
    Q_OBJECT

public:
    explicit SufferedNumbersWidget(QWidget *parent = nullptr);
    ~SufferedNumbersWidget() override;

    // Fetches the list of the device, after the jobs that are waiting; without an address asks for
    // one.
    void loadTableFromNet(const QString &host);

    // The row of the new entry, negative when there is no room or no table for it.
    int insertRecord(const Access &access);
    // For entries from other pages: inserted when no job runs. Tells the operator when it cannot
    // be.
    void appendSufferedRecord(const Access &access);

    // Names the list's device in the title bar.
    void setDeviceString();

    // Bodies of the jobs; the text to show, empty when nothing went wrong. Called in the GUI
    // thread they take the table as it is now.
    QString getTableFromNetwork(QString host);
    QString putTableToNetwork(QString host);
    QString appendRecordToVask(QString host);
    QString loadTableFromDatFile(QString name);
    QString loadTableFromCSVFile(QString name);
    QString saveTableToDatFile(QString name);
    QString saveTableToCSVFile(QString name);
    // Saves the dump in a folder of its name in the working directory, then empties the table.
    QString saveTableToDatFileAndClear(QString name);

    // Tells the device to use the list that it has been sent. In a job.
    static void reloadVaskPassbase(const QString &host) { AccessTransfer::reload(host); }

public Q_SLOTS:
    void newTable();
    void newRecord();
    void deleteRecord();
    void applyRecord();
    // Leaves the page without a table; removeFile deletes the panel's own list.
    void clearTable(bool removeFile);
    void loadTableFromFile();
    void loadTableFromNet();
    void saveTableToFile();
    void saveTableToNet();
    // Adds the current entry to the list of a device.
    void appendToVask();
    void enableFilter(int state);
    void setFilter();
    void showRecord(const QModelIndex &index);
    void menuRequested(const QPoint &position);
    void loadThreadFinished() { showResult(); }
    void saveThreadFinished() { showResult(); }
    // Binds the table to the list; an empty name leaves the page without one.
    void setTable(const QString &name);

Q_SIGNALS:
    void setTableThreaded(const QString &name);

protected:
    void showEvent(QShowEvent *event) override;

private:
    using Runner = JobRunner<SufferedNumbersWidget>;

    void createTable();
    void wire();
    void wireEditor();

    Runner::Job *start(Runner::Job::Method method, const QString &argument, Runner::Finish finish);
    QString askDevice();
    QString createTableFile(QString name);
    QString removeRows(QString);
    void removeThreadFinished()
    {
        removal_.restoreCurrent();
        showResult();
    }
    void showResult();
    void enableApply();
    void reportFailedInsertion();
    void refreshDeviceString();
    // -1 while there is none.
    int currentRow() const;
    QString listOfJob() const;

    std::unique_ptr<Ui_SufferedNumbersWidgetClass> ui_;
    AccessModel *model_ = nullptr;   // a child
    NumberFilter *filter_ = nullptr; // a child
    QMenu *menu_ = nullptr;          // a child of the table
    AccessEditor editor_;
    TableColumns columns_;

    // Written before a job starts, read by it.
    QString jobList_;
    QStringList jobTitles_;
    Access jobEntry_;
    RowRemoval removal_;

    TableOrigin origin_;
    TableHandover handover_;
    Runner runner_; // last: its end waits for a job that uses the rest
};
