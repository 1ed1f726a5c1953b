// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QSaveFile>
#include <QString>

// A file that appears under its name when all of it is written, and not before; what stood there
// is replaced. Each step returns the text of what went wrong, empty when nothing did.
//
// Used by one thread.
class WholeFile
{
    Q_DECLARE_TR_FUNCTIONS(WholeFile)

public:
    explicit WholeFile(const QString &name);

    QString open();
    QString write(const QByteArray &bytes);
    QString commit();

    // Opens it and writes so many bytes of the source, or all that there are; the commit is left
    // to the caller. Ends with a text when the thread is interrupted.
    QString copyBeginning(const QString &source, qint64 bytes);

private:
    QString reason() const;

    QSaveFile file_;
};
