// SPDX-License-Identifier: MIT
#include "pages/accesseditor.h"

#include "records/localtime.h"
#include "records/vasksettings.h"

#include <QDateEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimeEdit>

namespace
{

void set(QDateEdit *dateEdit, QTimeEdit *timeEdit, const QDateTime &time)
{
    dateEdit->setDate(time.date());
    timeEdit->setTime(time.time());
}

// What is changed stays within what an entry can hold; beyond it a time would be read as the end of
// all times.
QDateTime moment(const QDateEdit *dateEdit, const QTimeEdit *timeEdit, const QDateTime &shown)
{
    const QDateTime time = LocalTime::moment(dateEdit->date(), timeEdit->time(), shown);
    const auto first = QDateTime::fromSecsSinceEpoch(0);
    const auto last = QDateTime::fromSecsSinceEpoch(noTime - 1);
    return time == shown ? time : qBound(first, time, last);
}

} // namespace

void AccessEditor::setFields(const Fields &fields)
{
    fields_ = fields;
    for (const QDateTimeEdit *edit : {static_cast<const QDateTimeEdit *>(fields.dateFrom),
                                      static_cast<const QDateTimeEdit *>(fields.timeFrom),
                                      static_cast<const QDateTimeEdit *>(fields.dateTill),
                                      static_cast<const QDateTimeEdit *>(fields.timeTill)}) {
        connect(edit, &QDateTimeEdit::editingFinished, this, &AccessEditor::settleTimes);
    }
    clear();
}

QDateTime AccessEditor::from() const
{
    return moment(fields_.dateFrom, fields_.timeFrom, shownFrom_);
}

QDateTime AccessEditor::till() const
{
    return moment(fields_.dateTill, fields_.timeTill, shownTill_);
}

QString AccessEditor::translatedNumber() const
{
    return VaskSettings::translateFromLocal(fields_.number->text());
}

void AccessEditor::show(const Access &access)
{
    fields_.id->setText(QString::number(access.id()));
    fields_.number->setText(access.number());
    set(fields_.dateFrom, fields_.timeFrom, access.dateTimeFrom());
    set(fields_.dateTill, fields_.timeTill, access.dateTimeTill());
    fields_.key->setText(access.accessKey());
    fields_.comment->setPlainText(access.comment());
    keepShown(access.dateTimeFrom(), access.dateTimeTill());
}

void AccessEditor::clear()
{
    for (QLineEdit *edit : {fields_.id, fields_.number, fields_.key}) {
        edit->clear();
    }
    fields_.comment->clear();
    for (QDateEdit *edit : {fields_.dateFrom, fields_.dateTill}) {
        edit->setDate(QDate::currentDate());
    }
    for (QTimeEdit *edit : {fields_.timeFrom, fields_.timeTill}) {
        edit->setTime(QTime(0, 0));
    }
    keepShown(QDateTime(), QDateTime());
}

void AccessEditor::settleTimes() const
{
    set(fields_.dateFrom, fields_.timeFrom, from());
    set(fields_.dateTill, fields_.timeTill, till());
}

void AccessEditor::takeTexts(Access *access) const
{
    access->setNumber(translatedNumber());
    access->setAccessKey(fields_.key->text());
    access->setComment(fields_.comment->toPlainText());
}

void AccessEditor::takeChanges(Access *access) const
{
    if (fields_.number->text() != shownNumber_) {
        access->setNumber(translatedNumber());
    }
    if (fields_.key->text() != shownKey_) {
        access->setAccessKey(fields_.key->text());
    }
    if (fields_.comment->toPlainText() != shownComment_) {
        access->setComment(fields_.comment->toPlainText());
    }
    if (from() != shownFrom_) {
        access->setDateTimeFrom(from());
    }
    if (till() != shownTill_) {
        access->setDateTimeTill(till());
    }
}

void AccessEditor::keepShown(const QDateTime &from, const QDateTime &till)
{
    shownNumber_ = fields_.number->text();
    shownKey_ = fields_.key->text();
    shownComment_ = fields_.comment->toPlainText();
    shownFrom_ = from;
    shownTill_ = till;
}
