// SPDX-License-Identifier: MIT
#pragma once

#include "records/access.h"

class Ui_SufferedNumbersWidgetClass;

// The fields in which an access entry is edited. They belong to the page's form, which outlives
// this. GUI thread.
class AccessEditor
{
public:
    explicit AccessEditor(Ui_SufferedNumbersWidgetClass *form);

    void show(const Access &access);
    // Empty, with today's dates.
    void clear();

    // What is typed into an entry; the id is not edited. The number is translated while it is
    // whole: in some encodings a local number is too long for its field.
    void takeTexts(Access *access) const;
    void takeTimes(Access *access) const;

private:
    Ui_SufferedNumbersWidgetClass *form_;
};
