// SPDX-License-Identifier: MIT
#pragma once

#include "net/threadrun.h"
#include "pages/recoveredtables.h"
#include "pages/tablecolumns.h"
#include "pages/tablesave.h"
#include "pages/twinlines.h"
#include "records/deviceindex.h"

#include <QWidget>

#include <array>
#include <memory>

class OnLineEvent;
class OnlineChannel;
class PassageQueue;
class PipeEvent;
class ProportionalSclaleWidget;
class QAbstractButton;
class QMenu;
class QModelIndex;
class ScanModel;
class Ui_OnLineWidgetClass;

// The On-line page: up to two devices at once. It shows their cameras, appends every passage that
// they report to a table kept in a record file, shows the chosen passage with photo and verdict,
// opens barriers, and saves the table and single photos. Every run of the program begins with an
// empty table.
//
// The operator stays where he is: the page follows new passages only from the newest row. A passage
// that the disk has no room for is lost, with a message; the table keeps its rows. Events of
// devices that no slot holds are dropped.
//
// GUI thread. The clients post to this page; a save runs in a thread of its own, on the files as
// they were when it began. The destructor ends all of them.
class OnLineWidget : public QWidget
{
    Q_OBJECT

public:
    explicit OnLineWidget(QWidget *parent = nullptr);
    ~OnLineWidget() override;

    // Appends a passage to the table, or tells the operator that the disk is full.
    void insertRecord(const Scan &scan);

    // Names the watched devices in the title bar.
    void setDeviceString();

    // Bodies of the save threads, and what they are made of; the text of what went wrong, empty
    // when nothing did. Called in the GUI thread they take the table as it is now.
    QString saveTableToDatFile(QString name);
    QString saveTableToCSVFile(QString name);
    QString savePhotoToFile(QString name);
    QString createPhotoDirs(const QString &folder);
    QString copyPhotos(const QString &folder);

public Q_SLOTS:
    void selectDevice();
    // Without a button behind the call the first slot; an empty address then does nothing.
    void selectDevice(const QString &address);
    // The next two serve their buttons only.
    void disconnectFromDevice();
    void openBarrier();

    void clearTable();
    static void clearTempData();
    void saveTableToFile();
    void savePhoto();
    void showRecord(const QModelIndex &index);
    void menuRequested(const QPoint &position);
    void addToSuffered();
    // Of a save.
    void threadFinished();

protected:
    void customEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    using SaveThread = ThreadRun<OnLineWidget, QString, QString>;

    void createTable();
    void createViews();
    void wire();

    void newTable();
    // Of the page that is shown.
    void refreshDeviceString();
    void handlePassage(const OnLineEvent &event);
    void handlePipe(const PipeEvent &event);
    void showLatePicture(const OnLineEvent &event);
    // The entry of the next row.
    bool writeIndex(const QString &vaskId);
    void appendPassage(const Scan &scan);
    // The newest row, where the page follows; not each of a slice, which nobody would see.
    void showFollowed();
    void reportBarrier(const QString &error);
    void reportFullDisk();
    bool isWatched(const QString &host) const;
    // -1 unless the slot's sender is one of the two.
    int senderChannel(const QAbstractButton *first, const QAbstractButton *second) const;

    QString photoPath(int row, const Scan &scan) const;
    // Of the running save, or of this moment.
    TableSnapshot savedTable() const;
    void startSave(SaveThread::Method method, const QString &name);
    void showBusy(bool busy);

    std::unique_ptr<Ui_OnLineWidgetClass> ui_;
    ProportionalSclaleWidget *photo_ = nullptr; // in the form
    ScanModel *model_ = nullptr;                // a child
    std::array<std::unique_ptr<OnlineChannel>, 2> channels_;
    QMenu *menu_ = nullptr; // a child of the table
    DeviceIndex index_;     // opened by the first passage
    RecoveredTables recovered_;
    TableSnapshot saving_; // written before a save starts, read by it
    QString savedPhoto_;   // likewise; empty while it is not a photo that is saved
    std::unique_ptr<SaveThread> save_;
    bool settingCurrent_ = false;
    bool reportingFullDisk_ = false;
    bool reportingBarrier_ = false;
    bool following_ = false; // the newest row is to be shown
    TwinLines twins_;
    std::unique_ptr<PassageQueue> passages_;
    TableColumns columns_;
};
