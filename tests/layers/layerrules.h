// SPDX-License-Identifier: MIT
#pragma once

#include "tests/layers/sourcetree.h"

#include <QHash>
#include <QString>
#include <QStringList>

// Which room of the program stands on which floor, and what breaks the order of the floors.
//
// A room is a class: its header, source and form, named by their common path without the ending.
// It may include only rooms of strictly lower floors, always by the path from the root of the
// tree. A form includes the headers of the widgets that it places.
class LayerRules
{
public:
    // Lines "room floor"; "#" begins a comment.
    explicit LayerRules(const QString &floors);

    // The folders that have rooms.
    QStringList folders() const;

    // What is wrong with the table itself and with the files, one line each; empty when all is
    // well.
    QStringList violations(const QVector<SourceFile> &files) const;

private:
    QStringList ofFile(const SourceFile &file) const;
    QString ofInclude(const QString &room, const QString &included) const;

    QHash<QString, int> floors_;
    QStringList mistakes_;
};
