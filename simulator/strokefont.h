// SPDX-License-Identifier: MIT
#pragma once

#include <QPainterPath>
#include <QRectF>
#include <QString>

// Letters made of straight strokes, for what is written in a photo. Needs no font of the system and
// no graphical application object, so a photo is the same on every machine and can be drawn in any
// thread.
//
// Has Latin capitals, digits and a little punctuation; cyrillic letters that look the same are
// drawn as the Latin ones, lower case as capitals, and anything else as a box.
namespace StrokeFont
{
// The strokes of a text as a path to be drawn with a round pen: characters side by side, filling
// the box from top to bottom, from its left edge on; narrowed where the text would be too wide.
QPainterPath text(const QString &text, const QRectF &box);

// The cell of the character at a place of that text.
QRectF cell(int place, int length, const QRectF &box);
} // namespace StrokeFont
