// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QDialog>

#include <memory>

class Ui_ArchiveIntervalDialog;

// Asks which passages of a device's archive are wanted: all, or those between two moments of local
// time, both included. While the operator changes an edit, the end stays at least an hour behind
// the begin; the end that he does not touch gives way. What the program sets is taken as it is.
//
// Made with its page, kept hidden and run again and again, so it keeps what was chosen last. GUI
// thread.
class ArchiveIntervalDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ArchiveIntervalDialog(QWidget *parent);
    ~ArchiveIntervalDialog() override;

    bool allArchive() const;
    QDateTime fromTime() const;
    QDateTime toTime() const;
    void setFromTime(const QDateTime &time);
    void setToTime(const QDateTime &time);
    // The whole archive; the edits stand at the day that ends now.
    void clearDates();

private Q_SLOTS:
    void onTimeChanged();

private:
    // Without a word to onTimeChanged().
    void setTimes(const QDateTime &from, const QDateTime &to);
    // Shows what is meant by times that the clocks leave out.
    void settleTimes();

    std::unique_ptr<Ui_ArchiveIntervalDialog> ui_;
    // Last set; where a time comes twice, the edits alone do not tell which one it is.
    QDateTime from_;
    QDateTime to_;
};
