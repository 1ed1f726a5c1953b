// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

// The one error dialog of all pages: a scrolling text and a button. A text with tags is shown as
// HTML, its line ends as breaks; any other as plain text, so that a "<" from a device or a file
// name stays a "<", and so is one whose tags ask for too much. Links and pictures in the text are
// not followed.
//
// Lives on the stack of error(), which returns when the operator closes it. GUI thread.
class ErrorBrowser : public QDialog
{
    Q_OBJECT

public:
    ErrorBrowser(const QString &title, const QString &text, QWidget *parent);

    static void error(const QString &title, const QString &text, QWidget *parent);
    // What a job returned; nothing where it is empty. Devices put "Error=" before their texts.
    static void jobError(QString result, QWidget *parent);
    // One line of text for each entry.
    static void error(const QString &title, const QStringList &lines, QWidget *parent);
};
