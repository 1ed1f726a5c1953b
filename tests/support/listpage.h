// SPDX-License-Identifier: MIT
#pragma once

#include "pages/sufferednumberswidget.h"
#include "tests/support/modalanswers.h"

#include <QByteArray>
#include <QPushButton>
#include <QTableView>

#include <memory>

class QAction;
class QMenu;

// The real access list page in a window of its own, with what a test does to it and reads from it,
// and an operator for its dialogs.
class ListPage
{
public:
    // Fresh settings with an empty folder for the panel's own list; ports on which nothing listens.
    // Before devices are made, which store their ports, and before the page.
    static void prepare();

    // The page is still opening its own list.
    ListPage();
    ~ListPage();

    SufferedNumbersWidget &page() { return *page_; }
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
    void clickRow(int row, Qt::KeyboardModifiers keys = Qt::NoModifier) const;
    QString cell(int row, int column) const;
    QMenu *menu() const;

    bool isBusy() const;
    // False when it does not.
    bool becomesIdle() const;

    // Press the button and choose the device; the job has begun.
    void fetch(const QString &host);
    void send(const QString &host);
    // The current entry, by the action of the context menu.
    void append(const QString &host);
    // Open or save a file by its dialog. Without a job when the dialog does not take the name.
    void load(const QString &name);
    void save(const QString &name, const QString &filterStart);

    // Takes the name in a dialog that opens a file.
    static ModalAnswers::Answer opening(const QString &name);

    // Fills the fields of the editor, the keyed ones by typing.
    void edit(const Access &access) const;
    // What the fields of the editor hold.
    Access edited() const;

    // The panel's own list.
    static QString folder();
    static QString ownList();
    static QByteArray content(const QString &file);
    static void write(const QString &file, const QByteArray &content);

    // A plain entry number n, with a number, times, a key and a comment of its own and no id.
    static Access entry(int n);
    static QByteArray bytes(const Access &access);
    // So many plain entries with the ids of a list that only grew.
    static QByteArray list(int entries, int first = 0);

private:
    ModalAnswers answers_;
    std::unique_ptr<SufferedNumbersWidget> page_;
};
