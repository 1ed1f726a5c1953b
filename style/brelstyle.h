// SPDX-License-Identifier: MIT
#pragma once

#include "style/dialogedge.h"
#include "style/filedialogs.h"

#include <QFont>
#include <QHash>
#include <QPalette>
#include <QProxyStyle>

// The look of the program: Fusion in dark, calm colours, with everything that is pressed at least
// 44 px large, and every text at 7:1 against what it stands on. Only what differs from Fusion is
// drawn here; keyboard and wheel stay the toolkit's.
//
// Set as the application's style (which then owns it), with standardPalette() as the application's
// palette. Fonts below 11 points are raised while it is the application's style. Colours that a
// model gives to its cells keep their hue and get lighter until they can be read, on selected rows
// too. GUI thread only.
class BrelStyle : public QProxyStyle
{
    Q_OBJECT

public:
    BrelStyle();

    QPalette standardPalette() const override;

    void polish(QApplication *application) override;
    void unpolish(QApplication *application) override;
    void polish(QWidget *widget) override;
    void unpolish(QWidget *widget) override;
    // Named here, or the overloads above would hide it.
    void polish(QPalette &palette) override;

    int pixelMetric(PixelMetric metric, const QStyleOption *option = nullptr,
                    const QWidget *widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption *option = nullptr,
                  const QWidget *widget = nullptr,
                  QStyleHintReturn *returnData = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget = nullptr) const override;
    QRect subElementRect(SubElement element, const QStyleOption *option,
                         const QWidget *widget = nullptr) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                         SubControl subControl, const QWidget *widget = nullptr) const override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget = nullptr) const override;

private:
    // The application's fonts as they were, by widget class; the empty name is the common one.
    QHash<QByteArray, QFont> formerFonts_;
    QPalette formerToolTip_;
    DialogEdge dialogEdge_;
    FileDialogs fileDialogs_;
};
