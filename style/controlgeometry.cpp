// SPDX-License-Identifier: MIT
#include "style/controlgeometry.h"

#include "style/metrics.h"

using namespace Metrics;

namespace
{

constexpr int frame = 2;

int sliderExtent(const QStyleOptionSlider &option, int length)
{
    const qint64 range = static_cast<qint64>(option.maximum) - option.minimum;
    if (range <= 0) {
        return length;
    }
    const qint64 share = static_cast<qint64>(option.pageStep) * length / (range + option.pageStep);
    return qBound(qMin(scrollHandleLength, length), static_cast<int>(share), length);
}

} // namespace

QRect ControlGeometry::spinBox(const QStyleOptionSpinBox &option, QStyle::SubControl part)
{
    const QRect all = option.rect;
    const int arrow = option.buttonSymbols == QAbstractSpinBox::NoButtons ? 0 : touchSize;
    switch (part) {
    case QStyle::SC_SpinBoxUp:
        return {all.right() + 1 - arrow, all.top(), arrow, all.height()};
    case QStyle::SC_SpinBoxDown:
        return {all.right() + 1 - 2 * arrow, all.top(), arrow, all.height()};
    case QStyle::SC_SpinBoxEditField:
        return all.adjusted(2 * frame, frame, -2 * arrow - frame, -frame);
    default:
        return all;
    }
}

QRect ControlGeometry::comboBox(const QStyleOptionComboBox &option, QStyle::SubControl part)
{
    const QRect all = option.rect;
    switch (part) {
    case QStyle::SC_ComboBoxArrow:
        return {all.right() + 1 - touchSize, all.top(), touchSize, all.height()};
    case QStyle::SC_ComboBoxEditField:
        return all.adjusted(option.editable ? 2 * frame : padding - frame, frame, -touchSize,
                            -frame);
    default:
        return all;
    }
}

QRect ControlGeometry::scrollBar(const QStyleOptionSlider &option, QStyle::SubControl part)
{
    const bool horizontal = option.orientation == Qt::Horizontal;
    const QRect all = option.rect;
    const int length = horizontal ? all.width() : all.height();
    const int extent = sliderExtent(option, length);
    const int start = QStyle::sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, length - extent, option.upsideDown);
    const auto stretch = [&](int from, int size) {
        return horizontal ? QRect(all.left() + from, all.top(), size, all.height())
                          : QRect(all.left(), all.top() + from, all.width(), size);
    };
    switch (part) {
    case QStyle::SC_ScrollBarSubPage:
        return stretch(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return stretch(start + extent, length - start - extent);
    case QStyle::SC_ScrollBarSlider:
        return stretch(start, extent);
    case QStyle::SC_ScrollBarGroove:
        return all;
    default:
        return {};
    }
}

int ControlGeometry::groupTitleHeight(const QStyleOptionGroupBox &option)
{
    if ((option.subControls & QStyle::SC_GroupBoxCheckBox) != 0) {
        return touchSize;
    }
    return option.text.isEmpty() ? 0 : option.fontMetrics.height() + groupTitleGap;
}

QRect ControlGeometry::groupBox(const QStyleOptionGroupBox &option, QStyle::SubControl part)
{
    const QRect all = option.rect;
    const int title = groupTitleHeight(option);
    const bool checkable = (option.subControls & QStyle::SC_GroupBoxCheckBox) != 0;
    switch (part) {
    case QStyle::SC_GroupBoxCheckBox:
        // The toolkit hits what it draws: the full height makes it a target, the painter centres.
        return {all.left(), all.top(), checkable ? touchSize : 0, title};
    case QStyle::SC_GroupBoxLabel: {
        const int width = option.fontMetrics.horizontalAdvance(option.text) + 2 * groupTitleGap;
        const int left = all.left() + (checkable ? touchSize : groupTitleGap);
        return {left, all.top(), qMin(width, all.right() + 1 - left), title};
    }
    case QStyle::SC_GroupBoxContents:
        return all.adjusted(groupMargin, title + groupMargin, -groupMargin, -groupMargin);
    case QStyle::SC_GroupBoxFrame:
        return all.adjusted(0, title, 0, 0);
    default:
        return all;
    }
}

QSize ControlGeometry::sizeOf(QStyle::ContentsType type, const QStyleOption *option,
                              const QSize &contents, const QSize &fusion)
{
    const QSize touch(touchSize, touchSize);
    switch (type) {
    case QStyle::CT_PushButton:
        return (fusion + QSize(padding, 0)).expandedTo(touch);
    case QStyle::CT_ToolButton:
    case QStyle::CT_CheckBox:
    case QStyle::CT_RadioButton:
    case QStyle::CT_MenuBarItem:
    case QStyle::CT_TabBarTab:
    case QStyle::CT_HeaderSection:
    case QStyle::CT_Slider:
    case QStyle::CT_LineEdit:
        return fusion.expandedTo(touch);
    case QStyle::CT_ItemViewItem:
        return fusion.expandedTo(QSize(0, touchSize));
    case QStyle::CT_ComboBox:
        return QSize(contents.width() + touchSize + 2 * padding, fusion.height()).expandedTo(touch);
    case QStyle::CT_SpinBox: {
        const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option);
        const bool arrows = spin == nullptr || spin->buttonSymbols != QAbstractSpinBox::NoButtons;
        const int width = contents.width() + (arrows ? 2 * touchSize : 0) + padding;
        return QSize(width, fusion.height()).expandedTo(touch);
    }
    case QStyle::CT_MenuItem: {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        const bool separator =
            item != nullptr && item->menuItemType == QStyleOptionMenuItem::Separator;
        return separator ? fusion : fusion.expandedTo(QSize(menuWidth, touchSize));
    }
    case QStyle::CT_GroupBox: {
        const auto *box = qstyleoption_cast<const QStyleOptionGroupBox *>(option);
        const int title = box != nullptr ? groupTitleHeight(*box) : 0;
        return {contents.width() + touchSize, qMax(contents.height(), title) + 2 * groupMargin};
    }
    default:
        return fusion;
    }
}
