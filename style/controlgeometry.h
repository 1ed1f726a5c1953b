// SPDX-License-Identifier: MIT
#pragma once

#include <QStyle>
#include <QStyleOption>

// Where the parts of the controls lie that the style lays out itself. All rectangles are in the
// coordinates of the option's own rectangle and not yet mirrored for right-to-left layouts.
namespace ControlGeometry
{

// Two arrows side by side at the right, each of the touch size; the field takes the rest.
QRect spinBox(const QStyleOptionSpinBox &option, QStyle::SubControl part);

// The arrow at the right, of the touch size.
QRect comboBox(const QStyleOptionComboBox &option, QStyle::SubControl part);

// A groove without line buttons, so the whole length can be pulled.
QRect scrollBar(const QStyleOptionSlider &option, QStyle::SubControl part);

// The title above the frame; a checkable title is a whole touch size high.
QRect groupBox(const QStyleOptionGroupBox &option, QStyle::SubControl part);
int groupTitleHeight(const QStyleOptionGroupBox &option);

// The size of a control around its contents, from what Fusion makes of it.
QSize sizeOf(QStyle::ContentsType type, const QStyleOption *option, const QSize &contents,
             const QSize &fusion);

} // namespace ControlGeometry
