// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

// Index and photos of a dump are named by its name up to the first dot, so "01.03.tpp" and
// "01.04.tpp" in one folder would share them, and each save would give the other dump wrong
// devices. Capitals count as small letters, as they do on a stick; there the name of a dump in
// other letters is the dump itself.
//
// Any thread.
class DumpNeighbour
{
    Q_DECLARE_TR_FUNCTIONS(DumpNeighbour)

public:
    // Why no dump may be saved under this name, with a name that is free; empty when it may. A dump
    // that is replaced is no neighbour of itself.
    static QString refusal(const QString &name);

private:
    static bool hasNeighbour(const QString &name);
    static QString freeName(const QString &name);
};
