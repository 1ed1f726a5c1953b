// SPDX-License-Identifier: MIT
#pragma once

#include "tests/layers/sourcetree.h"

#include <QStringList>

// How long a file and a function may be before nobody reads them as a whole any more.
//
// Functions are found by their braces in the first column, which is how the formatter sets them;
// those written inside a class are not seen.
namespace SizeRules
{

constexpr int longestFile = 500;
constexpr int longestFunction = 60;

// What is too long, one line each.
QStringList violations(const QVector<SourceFile> &files);

} // namespace SizeRules
