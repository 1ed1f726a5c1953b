// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

#include <vector>

class QWidget;

// Asks the operator under which name to save something. The ending that belongs to the chosen
// filter is added to a name that does not end so; if that name is another file's, which the toolkit
// could not ask about, he is asked whether to replace it. Runs modally. GUI thread.
class SaveFileDialog
{
    Q_DECLARE_TR_FUNCTIONS(SaveFileDialog)

public:
    struct Form {
        QString filter;
        QString ending;
    };
    // The name is empty when the operator gave it up.
    struct Choice {
        QString name;
        int form = 0;
    };

    // start is a folder or a path; the first form is chosen at first.
    static Choice ask(QWidget *page, const QString &title, const QString &start,
                      const std::vector<Form> &forms);

private:
    static bool mayReplace(QWidget *page, const QString &name);
};
