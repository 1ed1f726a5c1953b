// SPDX-License-Identifier: MIT
#pragma once

#include "records/access.h"

class QDateEdit;
class QLineEdit;
class QPlainTextEdit;
class QTimeEdit;

// The fields in which an access entry is edited. They belong to the page's form, which outlives
// this. GUI thread.
struct AccessEditor {
    QLineEdit *id = nullptr;
    QLineEdit *number = nullptr;
    QDateEdit *dateFrom = nullptr;
    QTimeEdit *timeFrom = nullptr;
    QDateEdit *dateTill = nullptr;
    QTimeEdit *timeTill = nullptr;
    QLineEdit *key = nullptr;
    QPlainTextEdit *comment = nullptr;

    void show(const Access &access);
    // Empty, with today's dates.
    void clear();

    // What is typed into an entry; the id is not edited. The number is translated while it is
    // whole: in some encodings a local number is too long for its field.
    void takeTexts(Access *access) const;
    void takeTimes(Access *access) const;
};
