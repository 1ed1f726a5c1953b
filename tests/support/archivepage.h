// SPDX-License-Identifier: MIT
#pragma once

#include "pages/archivewidget.h"
#include "tests/support/devices.h"
#include "tests/support/modalanswers.h"

#include <QByteArray>
#include <QDateTime>
#include <QPushButton>
#include <QTableView>

#include <memory>

class ProportionalSclaleWidget;

// The real Archive page in a window of its own, with what a test does to it and reads from it, and
// an operator for its dialogs.
class ArchivePage
{
public:
    // Fresh settings with empty temporary folders. Before devices are made, which store their
    // ports, and before the page.
    static void prepare();

    ArchivePage();
    ~ArchivePage();

    ArchiveWidget &page() { return *page_; }
    ModalAnswers &answers() { return answers_; }
    // Deletes the page; how many milliseconds it took.
    qint64 end();

    template <typename Widget>
    Widget *find(const char *name) const
    {
        auto *found = page_->findChild<Widget *>(QString::fromLatin1(name));
        if (found == nullptr) {
            qFatal("the page has no %s", name);
        }
        return found;
    }
    // With the mouse, through whatever dialogs follow.
    void press(const char *name) const;
    QTableView *table() const;
    int rows() const;
    int currentRow() const;
    // With the mouse.
    void clickRow(int row) const;
    QString cell(int row, int column) const;
    ProportionalSclaleWidget *photo() const;
    bool isBusy() const;
    // Goes on with the events until the running jobs have ended; false when they do not.
    bool becomesIdle() const;
    // What the ring shows.
    int progress() const;

    // The operator chooses the device, answers the dialog of the interval and presses the button;
    // returns when the download has begun.
    void download(const QString &host, const ModalAnswers::Answer &interval);
    // Answers to the dialog of the interval. The moments are taken as they are, in local time.
    static ModalAnswers::Answer wholeArchive();
    static ModalAnswers::Answer between(const QDateTime &from, const QDateTime &to);

    // The temporary archive's folder, file and index; and the photos that lie in its picture
    // folder, sorted by name.
    static QString folder();
    static QString recordFile();
    static QString indexFile();
    static QString photoFolder();
    static QStringList photoNames();
    static QByteArray content(const QString &file);
    static void write(const QString &file, const QByteArray &content);

private:
    ModalAnswers answers_;
    std::unique_ptr<ArchiveWidget> page_;
};
