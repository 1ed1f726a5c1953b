// SPDX-License-Identifier: MIT
#include "pages/indexaside.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

namespace
{

// Over what stands there.
bool move(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

} // namespace

IndexAside::IndexAside(const QString &index)
    : index_(QFileInfo(index).canonicalFilePath()) // of a link the file that it names
    , aside_(index_ + QLatin1Char('~'))
{
    if (!index_.isEmpty() && !move(index_, aside_)) {
        error_ = qt_error_string(errno);
        index_.clear();
    }
}

IndexAside::~IndexAside()
{
    if (!index_.isEmpty()) {
        move(aside_, index_);
    }
}

void IndexAside::drop()
{
    if (!index_.isEmpty()) {
        QFile::remove(aside_);
        index_.clear();
    }
}
