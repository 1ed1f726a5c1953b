// SPDX-License-Identifier: MIT
#include "pages/archiveintervaldialog.h"

#include "ui_archiveintervaldialog.h"

#include <QSignalBlocker>

namespace
{

constexpr int shortestSeconds = 3600;

QDateTime wholeMinute(const QDateTime &time)
{
    return QDateTime(time.date(), QTime(time.time().hour(), time.time().minute()));
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
    }
}

ArchiveIntervalDialog::~ArchiveIntervalDialog() = default;

bool ArchiveIntervalDialog::allArchive() const
{
    return ui_->rbAllArchive->isChecked();
}

QDateTime ArchiveIntervalDialog::fromTime() const
{
    return QDateTime(ui_->deFrom->date(), ui_->teFrom->time());
}

QDateTime ArchiveIntervalDialog::toTime() const
{
    return QDateTime(ui_->deTo->date(), ui_->teTo->time());
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
    setTimes(now.addDays(-1), now);
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
}
