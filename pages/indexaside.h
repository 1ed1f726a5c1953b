// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Keeps the index of a dump out of the way while its record file is replaced, so that at no moment
// the new rows stand beside the former index: it waits under its name with "~" behind, and comes
// back unless it was dropped. Cut off in between, the dump has no index, and its passages show no
// device.
//
// For a worker.
class IndexAside
{
public:
    explicit IndexAside(const QString &index);
    ~IndexAside();
    IndexAside(const IndexAside &) = delete;
    IndexAside &operator=(const IndexAside &) = delete;

    // Why it cannot be moved; empty when it was, or when there is none.
    QString error() const { return error_; }

    // The record file is there: the former index is deleted.
    void drop();

private:
    QString index_; // empty where there is nothing to bring back
    QString aside_;
    QString error_;
};
