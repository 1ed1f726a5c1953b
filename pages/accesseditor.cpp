// SPDX-License-Identifier: MIT
#include "pages/accesseditor.h"

#include "records/vasksettings.h"

#include <QDateEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimeEdit>

namespace
{

// Within what an entry can hold; beyond it a time would be read as the end of all times.
QDateTime bounded(const QDate &date, const QTime &time)
{
    const auto first = QDateTime::fromSecsSinceEpoch(0);
    const auto last = QDateTime::fromSecsSinceEpoch(noTime - 1);
    return qBound(first, QDateTime(date, time), last);
}

} // namespace

void AccessEditor::show(const Access &access)
{
    id->setText(QString::number(access.id()));
    number->setText(access.number());
    dateFrom->setDate(access.dateTimeFrom().date());
    timeFrom->setTime(access.dateTimeFrom().time());
    dateTill->setDate(access.dateTimeTill().date());
    timeTill->setTime(access.dateTimeTill().time());
    key->setText(access.accessKey());
    comment->setPlainText(access.comment());
}

void AccessEditor::clear()
{
    for (QLineEdit *edit : {id, number, key}) {
        edit->clear();
    }
    comment->clear();
    for (QDateEdit *edit : {dateFrom, dateTill}) {
        edit->setDate(QDate::currentDate());
    }
    for (QTimeEdit *edit : {timeFrom, timeTill}) {
        edit->setTime(QTime(0, 0));
    }
}

void AccessEditor::takeTexts(Access *access) const
{
    access->setNumber(VaskSettings::translateFromLocal(number->text()));
    access->setAccessKey(key->text());
    access->setComment(comment->toPlainText());
}

void AccessEditor::takeTimes(Access *access) const
{
    access->setDateTimeFrom(bounded(dateFrom->date(), timeFrom->time()));
    access->setDateTimeTill(bounded(dateTill->date(), timeTill->time()));
}
