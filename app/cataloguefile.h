// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

// Looking at a compiled message catalogue before the toolkit does, whose reader believes every
// length and place that stands in the file: a damaged one would end the program with the first text
// that it is asked for. Functions only; any thread.
namespace CatalogueFile
{

// The file that the toolkit would take for this name in this folder: with the ending first, then
// without, then with the name cut shorter at its last "_" or "."; empty where there is none.
QString find(const QString &name, const QString &folder);

// Whether every text that may be asked for lies within the file, and those that it depends on are
// there, as sound as it is.
bool isSound(const QString &path);

} // namespace CatalogueFile
