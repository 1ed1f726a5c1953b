// SPDX-License-Identifier: MIT
#pragma once

#include "pages/onlinewidget.h"
#include "records/online.h"
#include "tests/support/modalanswers.h"

#include <QByteArray>
#include <QPushButton>
#include <QTableView>
#include <QVector>

#include <memory>

class ProportionalSclaleWidget;

// The real On-line page in a window of its own, with what a test does to it and reads from it, and
// an operator for its dialogs.
class OnlinePage
{
public:
    // Fresh settings with empty temporary folders; ports on which nothing listens. Before devices
    // are made, which store their ports, and before the page.
    static void prepare();

    OnlinePage();
    ~OnlinePage();

    OnLineWidget &page() { return *page_; }
    ModalAnswers &answers() { return answers_; }
    // Deletes the page; how many milliseconds it took.
    qint64 end();

    QPushButton *button(const char *name) const;
    // With the mouse, through whatever dialogs follow.
    void press(const char *name) const;
    QTableView *table() const;
    int rows() const;
    int currentRow() const;
    // With the mouse.
    void clickRow(int row) const;
    QString cell(int row, int column) const;

    // In labelPhoto, and in labelPhoto0 and labelPhoto1.
    ProportionalSclaleWidget *photo() const;
    ProportionalSclaleWidget *camera(int channel) const;
    bool isBusy() const;

    // As the clients tell it.
    void tellPassage(const OnLine &record, const QString &host,
                     const QString &vaskId = QStringLiteral("gate"), bool repost = false);
    void tellPipe(int state, const QString &message, int channel);
    void tellFrame(const QString &host, const QString &file, int channel);

    static QString folder();
    static QByteArray tableBytes();
    static QByteArray indexBytes();
    static QByteArray content(const QString &file);
    static void write(const QString &file, const QByteArray &content);
    // The local picture of a record.
    static QString pictureFile(const OnLine &record);

    // What the table's and the index's file must hold after these records.
    static QByteArray tableOf(const QVector<OnLine> &records);
    static QByteArray indexOf(const QStringList &vaskIds);

    template <typename... Records>
    static QVector<OnLine> list(const Records &...each)
    {
        QVector<OnLine> all;
        (all.append(each), ...);
        return all;
    }

    // A plain record number n, with a time and a number of its own.
    static OnLine record(int n);
    static QVector<OnLine> records(int count, int first = 0);
    // A JPEG of this size.
    static QByteArray jpeg(int width, int height);
    // An address of this machine where no device is.
    static QString nowhere() { return QStringLiteral("127.0.0.9"); }

private:
    ProportionalSclaleWidget *viewIn(const char *place) const;

    ModalAnswers answers_;
    std::unique_ptr<OnLineWidget> page_;
};
