// SPDX-License-Identifier: MIT
#include "style/readableitem.h"

#include "style/contrast.h"
#include "style/metrics.h"

#include <QApplication>
#include <QWidget>

namespace
{

// The ground that an item of a view will be painted on.
QColor itemGround(const QStyleOptionViewItem &item)
{
    if ((item.state & QStyle::State_Selected) != 0) {
        return item.palette.color(QPalette::Highlight);
    }
    if (item.backgroundBrush.style() != Qt::NoBrush) {
        return item.backgroundBrush.color();
    }
    const bool alternate = (item.features & QStyleOptionViewItem::Alternate) != 0;
    return item.palette.color(alternate ? QPalette::AlternateBase : QPalette::Base);
}

} // namespace

QStyleOptionViewItem ReadableItem::of(const QStyleOptionViewItem &item, const QWidget *widget)
{
    QStyleOptionViewItem result = item;
    const bool enabled = (item.state & QStyle::State_Enabled) != 0;
    const bool active = (item.state & QStyle::State_Active) != 0;
    const QPalette::ColorGroup group =
        !enabled ? QPalette::Disabled : (active ? QPalette::Normal : QPalette::Inactive);
    result.palette.setCurrentColorGroup(group);
    const QColor given = result.palette.color(group, QPalette::Text);
    const QPalette usual = widget != nullptr ? widget->palette() : QApplication::palette();
    const QColor ground = itemGround(result);
    const double wanted = enabled ? Metrics::textContrast : Metrics::disabledContrast;
    const QColor text = Contrast::readable(given, ground, wanted);
    result.palette.setColor(group, QPalette::Text, text);
    // A cell that the model has coloured keeps its colour while it is selected.
    if (given != usual.color(group, QPalette::Text)) {
        result.palette.setColor(group, QPalette::HighlightedText, text);
    }
    return result;
}
