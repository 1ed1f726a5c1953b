// SPDX-License-Identifier: MIT
#pragma once

#include <QStyleOption>

// Makes the text of an item view's cell legible on the ground that it will be painted on.
namespace ReadableItem
{

// The item with its text colours changed as far as needed, in hue never. A cell that its model has
// coloured keeps that colour while it is selected; any other takes the palette's. widget is the
// view, whose palette tells the one from the other; null means the application's palette.
QStyleOptionViewItem of(const QStyleOptionViewItem &item, const QWidget *widget);

} // namespace ReadableItem
