// SPDX-License-Identifier: MIT
#include "style/controlpainter.h"

#include "style/metrics.h"

#include <QPainter>

using namespace Metrics;

namespace
{

class Saved
{
public:
    explicit Saved(QPainter &painter)
        : painter_(painter)
    {
        painter_.save();
        painter_.setRenderHint(QPainter::Antialiasing);
    }
    ~Saved() { painter_.restore(); }
    Q_DISABLE_COPY(Saved)

private:
    QPainter &painter_;
};

bool has(const QStyleOption &option, QStyle::StateFlag flag)
{
    return (option.state & flag) != 0;
}

bool focusShown(const QStyleOption &option)
{
    return has(option, QStyle::State_HasFocus) && has(option, QStyle::State_KeyboardFocusChange);
}

void plate(QPainter &painter, const QRectF &rect, const QBrush &ground, const QColor &border,
           double width)
{
    const double inset = width / 2.0;
    painter.setPen(QPen(border, width));
    painter.setBrush(ground);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
}

QColor buttonGround(const QStyleOption &option)
{
    const bool enabled = has(option, QStyle::State_Enabled);
    if (enabled && has(option, QStyle::State_Sunken)) {
        return pressed;
    }
    if (has(option, QStyle::State_On)) {
        return enabled ? option.palette.color(QPalette::Highlight) : disabledButton;
    }
    QColor ground = option.palette.color(QPalette::Button);
    if (enabled && has(option, QStyle::State_MouseOver) && ground == Metrics::button) {
        return buttonHover;
    }
    return ground;
}

QColor buttonLine(const QStyleOption &option)
{
    if (!has(option, QStyle::State_Enabled)) {
        return quietLine;
    }
    const bool engaged = has(option, QStyle::State_Sunken) || has(option, QStyle::State_On);
    return engaged ? accent : line;
}

QRectF centred(const QRect &rect, double size)
{
    const QPointF centre = QRectF(rect).center();
    return {centre.x() - size / 2.0, centre.y() - size / 2.0, size, size};
}

// An indicator may have been given a whole touch size to be hit in.
int indicatorExtent(const QRect &rect)
{
    return qMin(qMin(rect.width(), rect.height()), indicatorSize);
}

} // namespace

void ControlPainter::button(QPainter &painter, const QStyleOption &option, bool flat)
{
    const bool engaged = has(option, QStyle::State_Sunken) || has(option, QStyle::State_On);
    const bool hovered = has(option, QStyle::State_MouseOver) && has(option, QStyle::State_Enabled);
    if (flat && !engaged && !hovered) {
        return;
    }
    const Saved saved(painter);
    const double width = engaged && has(option, QStyle::State_Enabled) ? focusWidth : 1;
    plate(painter, option.rect, buttonGround(option), buttonLine(option), width);
}

void ControlPainter::field(QPainter &painter, const QStyleOption &option, bool framed)
{
    if (!framed) {
        painter.fillRect(option.rect, option.palette.brush(QPalette::Base));
        return;
    }
    const Saved saved(painter);
    const bool enabled = has(option, QStyle::State_Enabled);
    const bool focused = enabled && has(option, QStyle::State_HasFocus);
    plate(painter, option.rect, option.palette.brush(QPalette::Base),
          focused ? accent : (enabled ? line : quietLine), focused ? focusWidth : 1);
}

void ControlPainter::focusFrame(QPainter &painter, const QRect &rect)
{
    const Saved saved(painter);
    plate(painter, rect, Qt::NoBrush, accent, focusWidth);
}

void ControlPainter::quietFrame(QPainter &painter, const QRect &rect)
{
    const Saved saved(painter);
    plate(painter, rect, Qt::NoBrush, quietLine, 1);
}

void ControlPainter::checkIndicator(QPainter &painter, const QStyleOption &option)
{
    const Saved saved(painter);
    const bool enabled = has(option, QStyle::State_Enabled);
    const bool sunken = enabled && has(option, QStyle::State_Sunken);
    const QRectF box = centred(option.rect, indicatorExtent(option.rect) - 2);
    plate(painter, box, sunken ? pressed : option.palette.color(QPalette::Base),
          focusShown(option) || sunken ? accent : (enabled ? line : quietLine), focusWidth);
    painter.setPen(
        QPen(option.palette.color(QPalette::Text), 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const auto at = [&box](double x, double y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    if (has(option, QStyle::State_NoChange)) {
        painter.drawLine(at(0.27, 0.5), at(0.73, 0.5));
    } else if (has(option, QStyle::State_On)) {
        painter.drawPolyline(QPolygonF({at(0.24, 0.52), at(0.43, 0.71), at(0.77, 0.3)}));
    }
}

void ControlPainter::radioIndicator(QPainter &painter, const QStyleOption &option)
{
    const Saved saved(painter);
    const bool enabled = has(option, QStyle::State_Enabled);
    const bool sunken = enabled && has(option, QStyle::State_Sunken);
    const QRectF ring = centred(option.rect, indicatorExtent(option.rect) - 4);
    painter.setPen(
        QPen(focusShown(option) || sunken ? accent : (enabled ? line : quietLine), focusWidth));
    painter.setBrush(sunken ? pressed : option.palette.color(QPalette::Base));
    painter.drawEllipse(ring);
    if (has(option, QStyle::State_On)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(option.palette.color(QPalette::Text));
        painter.drawEllipse(centred(option.rect, ring.width() / 2.0));
    }
}

void ControlPainter::chevron(QPainter &painter, const QRect &rect, Qt::ArrowType type,
                             const QColor &color)
{
    const Saved saved(painter);
    const double half = qBound(2.0, qMin(rect.width(), rect.height()) / 2.0 - 1.0, 6.0);
    const double quarter = half / 2.0;
    painter.translate(QRectF(rect).center());
    switch (type) {
    case Qt::UpArrow:
        painter.rotate(180);
        break;
    case Qt::LeftArrow:
        painter.rotate(90);
        break;
    case Qt::RightArrow:
        painter.rotate(-90);
        break;
    default:
        break;
    }
    painter.setPen(QPen(color, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({{-half, -quarter}, {0, quarter}, {half, -quarter}}));
}

void ControlPainter::spinArrow(QPainter &painter, const QStyleOptionSpinBox &option, bool up,
                               const QRect &rect)
{
    const QStyle::SubControl part = up ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown;
    const bool possible = has(option, QStyle::State_Enabled) &&
                          (option.stepEnabled & (up ? QAbstractSpinBox::StepUpEnabled
                                                    : QAbstractSpinBox::StepDownEnabled)) != 0;
    QStyleOption key = option;
    key.rect = rect;
    key.state &= ~(QStyle::State_Sunken | QStyle::State_MouseOver | QStyle::State_On);
    key.state.setFlag(QStyle::State_Enabled, possible);
    const bool active = option.activeSubControls == part;
    key.state.setFlag(QStyle::State_Sunken, active && has(option, QStyle::State_Sunken));
    key.state.setFlag(QStyle::State_MouseOver, active && has(option, QStyle::State_MouseOver));
    key.palette.setCurrentColorGroup(possible ? QPalette::Active : QPalette::Disabled);
    button(painter, key, false);

    const Saved saved(painter);
    painter.setPen(QPen(key.palette.color(QPalette::ButtonText), 2.5, Qt::SolidLine, Qt::RoundCap));
    painter.translate(QRectF(rect).center());
    static constexpr double arm = 7.0;
    painter.drawLine(QPointF(-arm, 0), QPointF(arm, 0));
    if (up) {
        painter.drawLine(QPointF(0, -arm), QPointF(0, arm));
    }
}

void ControlPainter::scrollBar(QPainter &painter, const QStyleOptionSlider &option,
                               const QRect &slider)
{
    const Saved saved(painter);
    painter.fillRect(option.rect, option.palette.color(QPalette::AlternateBase));
    if (!has(option, QStyle::State_Enabled) || option.maximum <= option.minimum) {
        return;
    }
    const bool held =
        has(option, QStyle::State_Sunken) && option.activeSubControls == QStyle::SC_ScrollBarSlider;
    const bool horizontal = option.orientation == Qt::Horizontal;
    constexpr int side = 12;
    constexpr int end = 4;
    const QRectF handle = horizontal ? slider.adjusted(end, side, -end, -side)
                                     : slider.adjusted(side, end, -side, -end);
    const double round = (horizontal ? handle.height() : handle.width()) / 2.0;
    painter.setPen(Qt::NoPen);
    painter.setBrush(held ? accent : line);
    painter.drawRoundedRect(handle, round, round);
}

void ControlPainter::headerSection(QPainter &painter, const QStyleOptionHeader &option)
{
    const Saved saved(painter);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const bool sunken = has(option, QStyle::State_Sunken) && has(option, QStyle::State_Enabled);
    painter.fillRect(option.rect, sunken ? pressed : option.palette.color(QPalette::Button));
    painter.setPen(quietLine);
    painter.drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    painter.drawLine(option.rect.topRight(), option.rect.bottomRight());
}

void ControlPainter::tab(QPainter &painter, const QStyleOptionTab &option)
{
    const Saved saved(painter);
    const bool selected = has(option, QStyle::State_Selected);
    QRect rect = option.rect.adjusted(1, 1, -1, -1);
    const QColor ground = option.palette.color(selected ? QPalette::Highlight : QPalette::Button);
    const bool enabled = has(option, QStyle::State_Enabled);
    plate(painter, rect, enabled ? ground : disabledButton,
          selected && enabled ? accent : (enabled ? line : quietLine), selected ? focusWidth : 1);
}

void ControlPainter::comboBox(QPainter &painter, const QStyleOptionComboBox &option,
                              const QRect &arrow)
{
    if (option.editable) {
        field(painter, option, option.frame);
    } else {
        QStyleOption plain = option;
        plain.state &= ~QStyle::State_On;
        button(painter, plain, !option.frame);
    }
    chevron(painter, arrow, Qt::DownArrow, option.palette.color(QPalette::ButtonText));
    if (focusShown(option) && !option.editable) {
        focusFrame(painter, option.rect.adjusted(focusWidth, focusWidth, -focusWidth, -focusWidth));
    }
}

void ControlPainter::groupTitle(QPainter &painter, const QStyleOptionGroupBox &option,
                                const QRect &label)
{
    const Saved saved(painter);
    painter.setPen(option.textColor.isValid() && has(option, QStyle::State_Enabled)
                       ? option.textColor
                       : option.palette.color(QPalette::WindowText));
    painter.drawText(label, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, option.text);
    if (focusShown(option)) {
        focusFrame(painter, label);
    }
}
