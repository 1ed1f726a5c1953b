// SPDX-License-Identifier: MIT
#include "records/filewrite.h"

#include <QByteArray>
#include <QIODevice>

bool FileWrite::all(QIODevice &file, const QByteArray &bytes)
{
    for (int done = 0; done < bytes.size();) {
        const qint64 taken = file.write(bytes.constData() + done, bytes.size() - done);
        if (taken <= 0) {
            return false;
        }
        done += static_cast<int>(taken);
    }
    return true;
}
