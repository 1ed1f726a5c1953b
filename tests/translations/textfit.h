// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QWidget;

// Tells what of a form that is on view cannot be read or touched: a text that is wider or higher
// than the place that the style draws it in, a control beyond its parent's edge or on top of
// another one, and a control that is too small for a finger. One line each; empty when all is well.
//
// Texts that are typed, and those that a device or the operator gives, are not looked at, except
// that dates, times and ports must have room for the longest one.
namespace TextFit
{

QStringList faults(const QWidget *form);

} // namespace TextFit
