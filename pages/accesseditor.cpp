// SPDX-License-Identifier: MIT
#include "pages/accesseditor.h"

#include "records/vasksettings.h"
#include "ui_sufferednumberswidget.h"

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

AccessEditor::AccessEditor(Ui_SufferedNumbersWidgetClass *form)
    : form_(form)
{
}

void AccessEditor::show(const Access &access)
{
    form_->lineEditId->setText(QString::number(access.id()));
    form_->lineEditNumber->setText(access.number());
    form_->dateEditFrom->setDate(access.dateTimeFrom().date());
    form_->timeEditFrom->setTime(access.dateTimeFrom().time());
    form_->dateEditTill->setDate(access.dateTimeTill().date());
    form_->timeEditTill->setTime(access.dateTimeTill().time());
    form_->lineEditKey->setText(access.accessKey());
    form_->textEditComment->setPlainText(access.comment());
}

void AccessEditor::clear()
{
    for (QLineEdit *edit : {form_->lineEditId, form_->lineEditNumber, form_->lineEditKey}) {
        edit->clear();
    }
    form_->textEditComment->clear();
    for (QDateEdit *edit : {form_->dateEditFrom, form_->dateEditTill}) {
        edit->setDate(QDate::currentDate());
    }
    for (QTimeEdit *edit : {form_->timeEditFrom, form_->timeEditTill}) {
        edit->setTime(QTime(0, 0));
    }
}

void AccessEditor::takeTexts(Access *access) const
{
    access->setNumber(VaskSettings::translateFromLocal(form_->lineEditNumber->text()));
    access->setAccessKey(form_->lineEditKey->text());
    access->setComment(form_->textEditComment->toPlainText());
}

void AccessEditor::takeTimes(Access *access) const
{
    access->setDateTimeFrom(bounded(form_->dateEditFrom->date(), form_->timeEditFrom->time()));
    access->setDateTimeTill(bounded(form_->dateEditTill->date(), form_->timeEditTill->time()));
}
