// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

#include <sys/stat.h>

class QFileDevice;

// Notices that a file has become longer or shorter, or was written to, while it was read: what was
// read of it then fits nothing. Made when the file has been opened, asked when it has been read;
// the file lives meanwhile. Any thread.
class SourceGuard
{
    Q_DECLARE_TR_FUNCTIONS(SourceGuard)

public:
    explicit SourceGuard(const QFileDevice &file);

    // The text to show; empty while the file is what it was.
    QString error() const;

    static QString changed() { return tr("The file changed while it was being read"); }

private:
    const QFileDevice &file_;
    struct stat before_ = {};
};
