// SPDX-License-Identifier: MIT
#pragma once

#include "tests/soak/driver/guiping.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>

class QSocketNotifier;
class QStackedWidget;
class QWidget;

// The operator of a soak run: sits in the panel's own process and presses its buttons. Takes
// commands as lines on standard input, one at a time, with "|" between their words, and answers
// each by "ok" or "failed REASON" on standard output when the page has done what was asked.
//
//     online|SLOT|ADDRESS      chooses a device for slot 1 or 2
//     archive|ADDRESS          empties the archive table and downloads the whole archive
//     fetch|ADDRESS            fetches the device's access list
//     send|ADDRESS             sends the list to the device
//     edit|ROW|NUMBER|COMMENT  changes an entry
//     add|NUMBER|KEY|COMMENT   makes a new one
//     delete|ROW               deletes one
//     look|ROW                 chooses a row of the live table; -1 is the newest
//
// Dialogs are answered as they come; a message that nobody expects is passed on as "box TEXT" and
// closed. Finds widgets by their names only and needs nothing of the panel's code. The end of
// standard input ends the panel, so none outlives its soak run. GUI thread.
class PanelDriver : public QObject
{
    Q_OBJECT

public:
    explicit PanelDriver(QObject *parent = nullptr);
    ~PanelDriver() override;

private:
    void onInput();
    void execute(const QStringList &words);
    void executeOnList(const QStringList &words);
    // Every 30 ms: answers the dialog that is open, and looks whether the command has ended.
    void attend();
    void answerDialog(QWidget *dialog);
    void say(const QString &line);

    // Turns to the page and presses its button; the answer is due when the page is back from its
    // busy face.
    void startJob(const QString &page, const QString &button);
    void showPage(const QString &page);
    bool choose(const QString &page, const QString &table, int row);

    QSocketNotifier *input_ = nullptr; // a child
    QTimer attend_;
    QByteArray pending_; // the beginning of a line
    QString address_;    // for the address dialog
    QStackedWidget *faces_ = nullptr;
    bool wasBusy_ = false;
    int patience_ = 0; // looks until a job that does not begin is given up
    bool expectsQuestion_ = false;
    std::unique_ptr<GuiPing> ping_;
};
