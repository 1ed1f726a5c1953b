// SPDX-License-Identifier: MIT
#pragma once

#include "records/access.h"

#include <QObject>

class QDateEdit;
class QLineEdit;
class QPlainTextEdit;
class QTimeEdit;

// The fields in which an access entry is edited. They belong to the page's form, which outlives
// this. What the operator has changed is told from what was shown, field by field, so that the
// bytes of the other fields stay as they are stored, also where no field can show them: a time that
// comes twice in a night, a number in local letters, what stands behind the end of a text. A time
// that the clocks leave out is moved when its field is left. GUI thread.
class AccessEditor : public QObject
{
    Q_OBJECT

public:
    struct Fields {
        QLineEdit *id = nullptr;
        QLineEdit *number = nullptr;
        QDateEdit *dateFrom = nullptr;
        QTimeEdit *timeFrom = nullptr;
        QDateEdit *dateTill = nullptr;
        QTimeEdit *timeTill = nullptr;
        QLineEdit *key = nullptr;
        QPlainTextEdit *comment = nullptr;
    };

    // Once, before all else; empties them.
    void setFields(const Fields &fields);

    void show(const Access &access);
    // Empty, with today's dates.
    void clear();

    // The texts into a new entry. The number is translated while it is whole: in some encodings a
    // local number is too long for its field.
    void takeTexts(Access *access) const;
    // What was changed into the entry that was shown; the id is not edited.
    void takeChanges(Access *access) const;

private:
    // Shows what is meant by times that the clocks leave out.
    void settleTimes() const;
    QDateTime from() const;
    QDateTime till() const;
    QString translatedNumber() const;
    void keepShown(const QDateTime &from, const QDateTime &till);

    Fields fields_;
    // As the fields read when they were filled.
    QString shownNumber_;
    QString shownKey_;
    QString shownComment_;
    QDateTime shownFrom_;
    QDateTime shownTill_;
};
