// SPDX-License-Identifier: MIT
#include "pages/archiveintervaldialog.h"

#include "records/localtime.h"
#include "ui_archiveintervaldialog.h"

#include <QSignalBlocker>

#include <tuple>

namespace
{

constexpr int shortestSeconds = 3600;

QDateTime wholeMinute(const QDateTime &time)
{
    return time.addMSecs(
        -QTime(0, 0, time.time().second(), time.time().msec()).msecsSinceStartOfDay());
}

} // namespace

ArchiveIntervalDialog::ArchiveIntervalDialog(QWidget *parent)
    : QDialog(parent)
    , ui_(std::make_unique<Ui_ArchiveIntervalDialog>())
{
    ui_->setupUi(this);
    // Not before its fields are made: those that begin disabled are no fields to a screen reader.
    ui_->groupBox->setEnabled(false);
    // Made with its page, before the program's look is set; the plain look's buttons have icons.
    for (QAbstractButton *button : ui_->buttonBox->buttons()) {
        button->setIcon(QIcon());
    }
    clearDates();
    for (const QDateTimeEdit *edit :
         {static_cast<QDateTimeEdit *>(ui_->deFrom), static_cast<QDateTimeEdit *>(ui_->teFrom),
          static_cast<QDateTimeEdit *>(ui_->deTo), static_cast<QDateTimeEdit *>(ui_->teTo)}) {
        connect(edit, &QDateTimeEdit::dateTimeChanged, this, &ArchiveIntervalDialog::onTimeChanged);
        connect(edit, &QDateTimeEdit::editingFinished, this, &ArchiveIntervalDialog::settleTimes);
    }
    connect(this, &QDialog::accepted, this, &ArchiveIntervalDialog::settleTimes);
}

ArchiveIntervalDialog::~ArchiveIntervalDialog()
{
    // The one that has the keyboard tells its end when the window goes, which is behind this.
    for (const QDateTimeEdit *edit : findChildren<QDateTimeEdit *>()) {
        disconnect(edit, nullptr, this, nullptr);
    }
}

bool ArchiveIntervalDialog::allArchive() const
{
    return ui_->rbAllArchive->isChecked();
}

QDateTime ArchiveIntervalDialog::fromTime() const
{
    return LocalTime::moment(ui_->deFrom->date(), ui_->teFrom->time(), from_);
}

QDateTime ArchiveIntervalDialog::toTime() const
{
    return LocalTime::moment(ui_->deTo->date(), ui_->teTo->time(), to_);
}

void ArchiveIntervalDialog::setFromTime(const QDateTime &time)
{
    setTimes(time, toTime());
}

void ArchiveIntervalDialog::setToTime(const QDateTime &time)
{
    setTimes(fromTime(), time);
}

void ArchiveIntervalDialog::clearDates()
{
    const QDateTime now = QDateTime::currentDateTime();
    setTimes(LocalTime::moment(now.date().addDays(-1), now.time()), now);
    ui_->rbAllArchive->setChecked(true);
}

void ArchiveIntervalDialog::onTimeChanged()
{
    const bool isEnd = sender() == ui_->deTo || sender() == ui_->teTo;
    // What the operator has set is what he sees; the edits also keep the seconds of clearDates().
    const QDateTime from = isEnd ? fromTime() : wholeMinute(fromTime());
    const QDateTime to = isEnd ? wholeMinute(toTime()) : toTime();
    if (from <= to.addSecs(-shortestSeconds)) {
        setTimes(from, to);
    } else if (isEnd) {
        setTimes(to.addSecs(-shortestSeconds), to);
    } else {
        setTimes(from, from.addSecs(shortestSeconds));
    }
}

void ArchiveIntervalDialog::setTimes(const QDateTime &from, const QDateTime &to)
{
    const QSignalBlocker blockers[] = {QSignalBlocker(ui_->deFrom), QSignalBlocker(ui_->teFrom),
                                       QSignalBlocker(ui_->deTo), QSignalBlocker(ui_->teTo)};
    Q_UNUSED(blockers)
    if (fromTime() != from) {
        ui_->deFrom->setDate(from.date());
        ui_->teFrom->setTime(from.time());
    }
    if (toTime() != to) {
        ui_->deTo->setDate(to.date());
        ui_->teTo->setTime(to.time());
    }
    from_ = from;
    to_ = to;
}

void ArchiveIntervalDialog::settleTimes()
{
    for (const auto &[date, time, meant] : {std::make_tuple(ui_->deFrom, ui_->teFrom, fromTime()),
                                            std::make_tuple(ui_->deTo, ui_->teTo, toTime())}) {
        const QSignalBlocker dateBlocker(date);
        const QSignalBlocker timeBlocker(time);
        date->setDate(meant.date());
        time->setTime(meant.time());
    }
}
