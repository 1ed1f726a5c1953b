// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

// Every size and colour of the look. Sizes are device-independent pixels: the toolkit scales them,
// nothing here knows the screen's pixel ratio. The panel is read at arm's length and worked with a
// finger, sometimes gloved, so no control is smaller than touchSize in either direction.
namespace Metrics
{

// Sizes.
inline constexpr int touchSize = 44;
inline constexpr int margin = 8;
inline constexpr int spacing = 6;
inline constexpr int radius = 4;
inline constexpr int padding = 10;
inline constexpr int fieldPadding = 6;
inline constexpr int focusWidth = 2;
inline constexpr int indicatorSize = 26;
inline constexpr int scrollHandleLength = 64;
inline constexpr int menuWidth = 160;
inline constexpr int sliderLength = touchSize;
// How far a finger trembles while it rests.
inline constexpr int dragDistance = 14;
inline constexpr int messageIcon = 48;
inline constexpr int smallIcon = 24;
inline constexpr int groupTitleGap = 2;
inline constexpr int groupMargin = 6;

// Frame window.
inline constexpr int edge = 6;
inline constexpr int corner = 24;
inline constexpr int titleBarHeight = 50;
inline constexpr int windowButtonWidth = 48;
inline constexpr int windowIcon = 20;
inline constexpr int fadeWidth = 24;

// Dialogs.
inline constexpr int fileDialogWidth = 900;
inline constexpr int fileDialogHeight = 466;
inline constexpr int errorDialogWidth = 512;
inline constexpr int errorDialogHeight = 384;

// Progress ring.
inline constexpr int pieSize = 200;
inline constexpr int pieMinimum = 96;

// Fonts, in points.
inline constexpr double fontPoints = 12.0;
inline constexpr double smallestFontPoints = 11.0;

// Contrast ratios: of what must be read, and of what tells that it cannot be used now.
inline constexpr double textContrast = 7.0;
inline constexpr double disabledContrast = 4.5;
// Of the lines by which the parts of a control are told from their ground.
inline constexpr double partContrast = 3.0;

// Grounds, from the darkest to the lightest.
inline constexpr QColor bar{13, 18, 22};
inline constexpr QColor base{17, 22, 26};
inline constexpr QColor alternateBase{24, 31, 37};
inline constexpr QColor window{28, 35, 41};
inline constexpr QColor disabledButton{32, 39, 45};
inline constexpr QColor button{43, 54, 63};
inline constexpr QColor buttonHover{50, 62, 72};
inline constexpr QColor highlight{21, 66, 108};
inline constexpr QColor pressed{14, 46, 78};
inline constexpr QColor toolTip{52, 60, 40};

// Lines.
inline constexpr QColor line{121, 136, 148};
inline constexpr QColor quietLine{66, 78, 88};
inline constexpr QColor accent{106, 182, 240};

// Texts.
inline constexpr QColor text{240, 244, 247};
inline constexpr QColor brightText{255, 255, 255};
inline constexpr QColor disabledText{152, 163, 172};
inline constexpr QColor placeholder{163, 174, 183};
inline constexpr QColor link{140, 200, 255};
inline constexpr QColor visitedLink{205, 184, 255};

} // namespace Metrics
