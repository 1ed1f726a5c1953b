// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QString>

// A file that appears under its name when all of it is written and on the disk, and not before;
// what stood there is replaced. Each step returns the text of what went wrong, empty when nothing
// did.
//
// Used by one thread, which may be kept waiting by the disk.
class WholeFile
{
    Q_DECLARE_TR_FUNCTIONS(WholeFile)

public:
    explicit WholeFile(const QString &name);

    QString open();
    QString write(const QByteArray &bytes);
    QString commit();

    // The parts of commit(), for files that are put in place together: what was written is brought
    // onto the disk; then it gets its name. The folder is flushed behind the last one.
    QString flush();
    QString putInPlace();

    // Opens it and writes so many bytes of the source; the commit is left to the caller. Ends with
    // a text when the thread is interrupted, and when the source has fewer.
    QString copyBeginning(const QString &source, qint64 bytes);
    // The same of a source that may grow and shrink, as many as there are.
    QString copyUpTo(const QString &source, qint64 bytes);
    // The same of a source that stays as it is meanwhile; when it does not, that is an error.
    QString copyUnchanged(const QString &source, qint64 bytes);

private:
    QString copy(QFile &source, qint64 bytes, qint64 *missing);
    QString reason() const;

    QSaveFile file_;
};
