// SPDX-License-Identifier: MIT
#include "pages/sourceguard.h"

#include <QFileDevice>

SourceGuard::SourceGuard(const QFileDevice &file)
    : file_(file)
{
    fstat(file.handle(), &before_);
}

QString SourceGuard::error() const
{
    struct stat now = {};
    const bool same = fstat(file_.handle(), &now) == 0 && now.st_size == before_.st_size &&
                      now.st_mtim.tv_sec == before_.st_mtim.tv_sec &&
                      now.st_mtim.tv_nsec == before_.st_mtim.tv_nsec;
    return same ? QString() : changed();
}
