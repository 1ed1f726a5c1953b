// SPDX-License-Identifier: MIT
#pragma once

#include <QStyleOption>

class QPainter;

// Draws the parts of the look that differ from Fusion. Colours come from the option's palette, so
// a widget with a palette of its own keeps it; states are told by ground and line, never by colour
// of text alone. Every function leaves the painter as it found it.
namespace ControlPainter
{

// A push or tool button without its label. flat ones show a ground only while hovered or pressed.
void button(QPainter &painter, const QStyleOption &option, bool flat);
// The ground and line of something that is typed into.
void field(QPainter &painter, const QStyleOption &option, bool framed);
void focusFrame(QPainter &painter, const QRect &rect);
// Around an area that scrolls or belongs together.
void quietFrame(QPainter &painter, const QRect &rect);

void checkIndicator(QPainter &painter, const QStyleOption &option);
void radioIndicator(QPainter &painter, const QStyleOption &option);

void chevron(QPainter &painter, const QRect &rect, Qt::ArrowType type, const QColor &color);
void spinArrow(QPainter &painter, const QStyleOptionSpinBox &option, bool up, const QRect &rect);
void scrollBar(QPainter &painter, const QStyleOptionSlider &option, const QRect &slider);
void headerSection(QPainter &painter, const QStyleOptionHeader &option);
void tab(QPainter &painter, const QStyleOptionTab &option);
void comboBox(QPainter &painter, const QStyleOptionComboBox &option, const QRect &arrow);
void groupTitle(QPainter &painter, const QStyleOptionGroupBox &option, const QRect &label);

} // namespace ControlPainter
