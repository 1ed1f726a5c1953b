// SPDX-License-Identifier: MIT
#include "style/brelprogresspie.h"

#include "style/metrics.h"

#include <QAccessibleValueInterface>
#include <QAccessibleWidget>
#include <QPainter>

namespace
{

// The toolkit counts angles in sixteenths of a degree.
constexpr int fullCircle = 360 * 16;
constexpr int top = 90 * 16;
constexpr int hundred = 100;

// A progress bar with its value, not a mere text.
class AccessiblePie : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit AccessiblePie(BrelProgressPie *pie)
        : QAccessibleWidget(pie, QAccessible::ProgressBar)
        , pie_(pie)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text which) const override
    {
        return which == QAccessible::Name    ? BrelProgressPie::tr("Progress")
               : which == QAccessible::Value ? pie_->accessibleName()
                                             : QAccessibleWidget::text(which);
    }
    QVariant currentValue() const override { return pie_->progress(); }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return hundred; }
    QVariant minimumStepSize() const override { return 1; }
    void setCurrentValue(const QVariant & /*value*/) override {} // it is told, not set

private:
    BrelProgressPie *pie_;
};

QAccessibleInterface *accessiblePie(const QString & /*className*/, QObject *object)
{
    auto *pie = qobject_cast<BrelProgressPie *>(object);
    return pie != nullptr ? new AccessiblePie(pie) : nullptr;
}

QFont pixelFont(QFont font, double pixels)
{
    font.setPixelSize(qMax(1, static_cast<int>(pixels)));
    return font;
}

} // namespace

BrelProgressPie::BrelProgressPie(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    QAccessible::installFactory(accessiblePie); // once, however often it is called
    describe();
}

QSize BrelProgressPie::sizeHint() const
{
    return {Metrics::pieSize, Metrics::pieSize};
}

QSize BrelProgressPie::minimumSizeHint() const
{
    return {Metrics::pieMinimum, Metrics::pieMinimum};
}

void BrelProgressPie::setProgress(int percent)
{
    const int bounded = qBound(0, percent, hundred);
    if (bounded == progress_) {
        return;
    }
    progress_ = bounded;
    describe();
    QAccessibleValueChangeEvent changed(this, progress_);
    QAccessible::updateAccessibility(&changed);
    update();
}

void BrelProgressPie::setSuffix(const QString &suffix)
{
    suffix_ = suffix;
    describe();
    update();
}

void BrelProgressPie::describe()
{
    const QString percent = tr("%1%").arg(progress_);
    setAccessibleName(suffix_.isEmpty() ? percent : percent + QLatin1Char(' ') + suffix_);
}

void BrelProgressPie::paintEvent(QPaintEvent * /*event*/)
{
    const double side = qMin(width(), height());
    const double thickness = side / 10.0;
    if (thickness < 1.0) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF ring(0, 0, side - thickness - 2, side - thickness - 2);
    ring.moveCenter(QRectF(rect()).center());
    painter.setPen(QPen(Metrics::quietLine, thickness, Qt::SolidLine, Qt::FlatCap));
    painter.drawEllipse(ring);
    painter.setPen(QPen(Metrics::accent, thickness, Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(ring, top, -fullCircle * progress_ / hundred);

    const double inset = thickness;
    paintTexts(painter, ring.adjusted(inset, inset, -inset, -inset));
}

void BrelProgressPie::paintTexts(QPainter &painter, const QRectF &room) const
{
    painter.setPen(palette().color(QPalette::WindowText));
    const bool two = !suffix_.isEmpty();
    const double number = room.height() / 3.6;
    QRectF upper = room;
    if (two) {
        upper.setBottom(room.top() + room.height() * 0.6);
    }
    painter.setFont(pixelFont(font(), number));
    painter.drawText(upper, Qt::AlignHCenter | (two ? Qt::AlignBottom : Qt::AlignVCenter),
                     tr("%1%").arg(progress_));
    if (!two) {
        return;
    }
    const QRectF lower(room.left(), upper.bottom(), room.width(), room.height() * 0.24);
    const QFont small =
        pixelFont(font(), qMax(number / 2.5, QFontMetricsF(font()).height() * 0.75));
    painter.setFont(small);
    const double width = room.width() * 0.85;
    painter.drawText(lower, Qt::AlignHCenter | Qt::AlignTop,
                     QFontMetricsF(small).elidedText(suffix_, Qt::ElideRight, width));
}
