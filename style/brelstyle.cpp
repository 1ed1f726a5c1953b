// SPDX-License-Identifier: MIT
#include "style/brelstyle.h"

#include "style/accessiblenames.h"
#include "style/contrast.h"
#include "style/controlgeometry.h"
#include "style/controlpainter.h"
#include "style/fingerscroll.h"
#include "style/metrics.h"
#include "style/readableitem.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QFileDialog>
#include <QFontInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOption>
#include <QTableView>
#include <QTextCharFormat>
#include <QToolButton>
#include <QToolTip>

using namespace Metrics;

namespace
{

// Classes to which desktops like to give smaller fonts than the common one.
constexpr const char *fontClasses[] = {
    "",          "QAbstractItemView", "QHeaderView", "QMenu",
    "QMenuBar",  "QMessageBox",       "QPushButton", "QStatusBar",
    "QTipLabel", "QToolButton",       "QTabBar"};
constexpr char formerHeight[] = "stallo_formerMinimumHeight";

QFont fontOf(const char *name)
{
    return *name == '\0' ? QApplication::font() : QApplication::font(name);
}

void setRole(QPalette &palette, QPalette::ColorRole role, const QColor &usable,
             const QColor &disabled)
{
    palette.setColor(QPalette::Active, role, usable);
    palette.setColor(QPalette::Inactive, role, usable);
    palette.setColor(QPalette::Disabled, role, disabled);
}

bool needsMinimumHeight(const QWidget *widget)
{
    if (qobject_cast<const QLineEdit *>(widget) == nullptr ||
        widget->minimumHeight() >= touchSize) {
        return false;
    }
    // A line edit inside another control gets its size from it.
    const QWidget *parent = widget->parentWidget();
    const bool editor = parent != nullptr &&
                        qobject_cast<const QAbstractItemView *>(parent->parentWidget()) != nullptr;
    return !editor && qobject_cast<const QAbstractSpinBox *>(parent) == nullptr &&
           qobject_cast<const QComboBox *>(parent) == nullptr;
}

bool focusShown(const QStyleOption &option)
{
    return (option.state & QStyle::State_HasFocus) != 0 &&
           (option.state & QStyle::State_KeyboardFocusChange) != 0;
}

// Inside the line that a pressed or chosen control has at its border.
QRect within(const QRect &rect)
{
    constexpr int inset = 2 * focusWidth;
    return rect.adjusted(inset, inset, -inset, -inset);
}

Qt::ArrowType arrowOf(QStyle::PrimitiveElement element)
{
    switch (element) {
    case QStyle::PE_IndicatorArrowUp:
        return Qt::UpArrow;
    case QStyle::PE_IndicatorArrowLeft:
        return Qt::LeftArrow;
    case QStyle::PE_IndicatorArrowRight:
        return Qt::RightArrow;
    default:
        return Qt::DownArrow;
    }
}

// The calendar draws and measures its days without asking the style, so that is settled once.
void settle(QCalendarWidget &calendar)
{
    // Beside the days a column of week numbers, above them their names and the month.
    constexpr int columns = 8;
    constexpr int rows = 8;
    calendar.setMinimumSize(columns * touchSize, rows * touchSize);
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday}) {
        QTextCharFormat format = calendar.weekdayTextFormat(day);
        // The title row is the lightest ground that a day's name stands on.
        format.setForeground(Contrast::readable(format.foreground().color(), Metrics::window));
        calendar.setWeekdayTextFormat(day, format);
    }
}

bool hasMenuKey(const QWidget *widget)
{
    const auto *tool = qobject_cast<const QToolButton *>(widget);
    return tool != nullptr && tool->popupMode() == QToolButton::MenuButtonPopup;
}

} // namespace

BrelStyle::BrelStyle()
    : QProxyStyle(QStringLiteral("Fusion"))
{
}

QPalette BrelStyle::standardPalette() const
{
    QPalette palette;
    setRole(palette, QPalette::Window, Metrics::window, Metrics::window);
    setRole(palette, QPalette::WindowText, Metrics::text, disabledText);
    setRole(palette, QPalette::Base, Metrics::base, Metrics::window);
    setRole(palette, QPalette::AlternateBase, Metrics::alternateBase, Metrics::window);
    setRole(palette, QPalette::Text, Metrics::text, disabledText);
    setRole(palette, QPalette::PlaceholderText, placeholder, disabledText);
    setRole(palette, QPalette::Button, Metrics::button, disabledButton);
    setRole(palette, QPalette::ButtonText, Metrics::text, disabledText);
    setRole(palette, QPalette::BrightText, Metrics::brightText, disabledText);
    setRole(palette, QPalette::ToolTipBase, toolTip, toolTip);
    setRole(palette, QPalette::ToolTipText, Metrics::text, Metrics::text);
    setRole(palette, QPalette::Highlight, Metrics::highlight, disabledButton);
    setRole(palette, QPalette::HighlightedText, Metrics::brightText, disabledText);
    setRole(palette, QPalette::Link, Metrics::link, disabledText);
    setRole(palette, QPalette::LinkVisited, visitedLink, disabledText);
    setRole(palette, QPalette::Light, line, quietLine);
    setRole(palette, QPalette::Midlight, quietLine, quietLine);
    setRole(palette, QPalette::Mid, quietLine, quietLine);
    setRole(palette, QPalette::Dark, Metrics::base, Metrics::base);
    setRole(palette, QPalette::Shadow, bar, bar);
    return palette;
}

void BrelStyle::polish(QApplication *application)
{
    QProxyStyle::polish(application);
    formerToolTip_ = QToolTip::palette();
    QToolTip::setPalette(standardPalette());
    formerFonts_.clear();
    // All are read before the first is set: setting the common one forgets the others.
    for (const char *name : fontClasses) {
        formerFonts_.insert(name, fontOf(name));
    }
    for (const char *name : fontClasses) {
        QFont font = formerFonts_.value(name);
        const bool common = *name == '\0';
        const double points = common ? fontPoints : smallestFontPoints;
        if (QFontInfo(font).pointSizeF() < points) {
            font.setPointSizeF(fontPoints);
            QApplication::setFont(font, common ? nullptr : name);
        }
    }
}

void BrelStyle::unpolish(QApplication *application)
{
    QToolTip::setPalette(formerToolTip_);
    if (formerFonts_.contains(QByteArray(""))) {
        QApplication::setFont(formerFonts_.value(QByteArray("")));
    }
    QProxyStyle::unpolish(application);
}

void BrelStyle::polish(QPalette &palette)
{
    QProxyStyle::polish(palette);
}

void BrelStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    AccessibleNames::give(widget);
    if (needsMinimumHeight(widget)) {
        widget->setProperty(formerHeight, widget->minimumHeight());
        widget->setMinimumHeight(touchSize);
    }
    if (auto *calendar = qobject_cast<QCalendarWidget *>(widget)) {
        settle(*calendar);
    }
    if (auto *files = qobject_cast<QFileDialog *>(widget)) {
        fileDialogs_.settle(*files);
    }
    if (qobject_cast<QDialog *>(widget) != nullptr) {
        widget->installEventFilter(&dialogEdge_);
    }
    if (FingerScroll::fits(widget)) {
        FingerScroll::install(static_cast<QAbstractItemView *>(widget));
    }
    // Through the view, because a hidden header, which still sets the row heights, is not polished.
    if (const auto *table = qobject_cast<QTableView *>(widget)) {
        for (QHeaderView *header : {table->verticalHeader(), table->horizontalHeader()}) {
            header->setMinimumSectionSize(qMax(touchSize, header->minimumSectionSize()));
        }
    }
}

void BrelStyle::unpolish(QWidget *widget)
{
    const QVariant height = widget->property(formerHeight);
    if (height.isValid()) {
        widget->setMinimumHeight(height.toInt());
        widget->setProperty(formerHeight, QVariant());
    }
    widget->removeEventFilter(&dialogEdge_);
    widget->removeEventFilter(&fileDialogs_);
    if (auto *list = qobject_cast<QAbstractItemView *>(widget)) {
        FingerScroll::uninstall(list);
    }
    if (const auto *table = qobject_cast<QTableView *>(widget)) {
        table->verticalHeader()->setMinimumSectionSize(-1);
        table->horizontalHeader()->setMinimumSectionSize(-1);
    }
    QProxyStyle::unpolish(widget);
}

int BrelStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                           const QWidget *widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
    case PM_HeaderDefaultSectionSizeVertical:
    case PM_MenuScrollerHeight:
    case PM_TabBarScrollButtonWidth:
    case PM_SliderThickness:
    case PM_SliderControlThickness:
        return touchSize;
    case PM_MenuButtonIndicator:
        // Elsewhere it is only the little arrow in the corner of a button.
        return hasMenuKey(widget) ? touchSize : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_SliderLength:
        return sliderLength;
    case PM_ScrollBarSliderMin:
        return scrollHandleLength;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return indicatorSize;
    case PM_MessageBoxIconSize:
        return messageIcon;
    case PM_SmallIconSize:
    case PM_ListViewIconSize:
    case PM_ButtonIconSize:
    case PM_SizeGripSize:
        return smallIcon;
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
        return margin;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return spacing;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_TabBarTabHSpace:
        return 2 * padding + spacing;
    case PM_SplitterWidth:
        return padding;
    case PM_TextCursorWidth:
        return 2;
    case PM_HeaderMargin:
    case PM_FocusFrameHMargin:
        return fieldPadding;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int BrelStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_ComboBox_Popup:
        // The list of the pop-up is then made of menu items, which are of the touch size; the
        // other kind asks the font alone.
    case SH_Menu_Scrollable:
        return 1;
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_ItemView_ActivateItemOnSingleClick:
    case SH_Widget_Animation_Duration:
    case SH_EtchDisabledText:
    case SH_ScrollBar_Transient:
        return 0;
    case SH_Table_GridLineColor:
        return static_cast<int>(quietLine.rgb());
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize BrelStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                  const QWidget *widget) const
{
    const QSize fusion = QProxyStyle::sizeFromContents(type, option, size, widget);
    return ControlGeometry::sizeOf(type, option, size, fusion);
}

QRect BrelStyle::subElementRect(SubElement element, const QStyleOption *option,
                                const QWidget *widget) const
{
    if (element == SE_CheckBoxClickRect || element == SE_RadioButtonClickRect) {
        return option->rect;
    }
    if (const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        frame != nullptr && frame->lineWidth > 0 && element == SE_LineEditContents) {
        return option->rect.adjusted(fieldPadding, focusWidth, -fieldPadding, -focusWidth);
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

QRect BrelStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                SubControl subControl, const QWidget *widget) const
{
    QRect rect;
    if (const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option);
        spin != nullptr && control == CC_SpinBox) {
        rect = ControlGeometry::spinBox(*spin, subControl);
    } else if (const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
               combo != nullptr && control == CC_ComboBox &&
               subControl != SC_ComboBoxListBoxPopup) {
        rect = ControlGeometry::comboBox(*combo, subControl);
    } else if (const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option);
               slider != nullptr && control == CC_ScrollBar) {
        rect = ControlGeometry::scrollBar(*slider, subControl);
    } else if (const auto *group = qstyleoption_cast<const QStyleOptionGroupBox *>(option);
               group != nullptr && control == CC_GroupBox) {
        rect = ControlGeometry::groupBox(*group, subControl);
    } else {
        return QProxyStyle::subControlRect(control, option, subControl, widget);
    }
    return visualRect(option->direction, option->rect, rect);
}

void BrelStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                              QPainter *painter, const QWidget *widget) const
{
    switch (element) {
    case PE_PanelButtonCommand:
    case PE_PanelButtonBevel: {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        const bool flat = button != nullptr && (button->features & QStyleOptionButton::Flat) != 0;
        return ControlPainter::button(*painter, *option, flat);
    }
    case PE_PanelButtonTool:
        return ControlPainter::button(*painter, *option, (option->state & State_AutoRaise) != 0);
    case PE_FrameFocusRect:
        if ((option->state & State_KeyboardFocusChange) != 0) {
            ControlPainter::focusFrame(*painter, option->rect);
        }
        return;
    case PE_PanelLineEdit: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        return ControlPainter::field(*painter, *option, frame == nullptr || frame->lineWidth > 0);
    }
    case PE_FrameLineEdit:
        return ControlPainter::field(*painter, *option, true);
    case PE_Frame:
    case PE_FrameMenu:
    case PE_FrameGroupBox:
    case PE_FrameTabWidget:
        return ControlPainter::quietFrame(*painter, option->rect);
    case PE_FrameTabBarBase:
    case PE_FrameDefaultButton:
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        return ControlPainter::checkIndicator(*painter, *option);
    case PE_IndicatorRadioButton:
        return ControlPainter::radioIndicator(*painter, *option);
    case PE_IndicatorArrowUp:
    case PE_IndicatorArrowDown:
    case PE_IndicatorArrowLeft:
    case PE_IndicatorArrowRight:
        return ControlPainter::chevron(*painter, option->rect, arrowOf(element),
                                       option->palette.color(QPalette::ButtonText));
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void BrelStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    if (const auto *item = qstyleoption_cast<const QStyleOptionViewItem *>(option);
        item != nullptr && element == CE_ItemViewItem) {
        const QStyleOptionViewItem readable = ReadableItem::of(*item, widget);
        return QProxyStyle::drawControl(element, &readable, painter, widget);
    }
    if (const auto *header = qstyleoption_cast<const QStyleOptionHeader *>(option);
        header != nullptr && element == CE_HeaderSection) {
        return ControlPainter::headerSection(*painter, *header);
    }
    if (const auto *header = qstyleoption_cast<const QStyleOptionHeader *>(option);
        header != nullptr && element == CE_HeaderLabel) {
        // Bold titles above selected cells would need more room than their columns have.
        QStyleOptionHeader calm = *header;
        calm.state &= ~State_On;
        if ((calm.textAlignment & Qt::AlignVertical_Mask) == 0) {
            calm.textAlignment |= Qt::AlignVCenter;
        }
        return QProxyStyle::drawControl(element, &calm, painter, widget);
    }
    if (const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option);
        tab != nullptr && element == CE_TabBarTabShape) {
        return ControlPainter::tab(*painter, *tab);
    }
    if (const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option);
        tab != nullptr && element == CE_TabBarTabLabel && focusShown(*tab)) {
        // Fusion would lay its own frame over the text.
        QStyleOptionTab plain = *tab;
        plain.state &= ~State_HasFocus;
        QProxyStyle::drawControl(element, &plain, painter, widget);
        return ControlPainter::focusFrame(*painter, within(tab->rect));
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    // Fusion tells a focused button by its outline, which is not drawn here.
    if (element == CE_PushButton && focusShown(*option)) {
        ControlPainter::focusFrame(*painter, within(option->rect));
    }
}

void BrelStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                   QPainter *painter, const QWidget *widget) const
{
    const auto part = [&](SubControl subControl) {
        return proxy()->subControlRect(control, option, subControl, widget);
    };
    if (const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option);
        spin != nullptr && control == CC_SpinBox) {
        ControlPainter::field(*painter, *spin, spin->frame);
        if (spin->buttonSymbols != QAbstractSpinBox::NoButtons) {
            ControlPainter::spinArrow(*painter, *spin, true, part(SC_SpinBoxUp));
            ControlPainter::spinArrow(*painter, *spin, false, part(SC_SpinBoxDown));
        }
        return;
    }
    if (const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        combo != nullptr && control == CC_ComboBox) {
        return ControlPainter::comboBox(*painter, *combo, part(SC_ComboBoxArrow));
    }
    if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
        bar != nullptr && control == CC_ScrollBar) {
        return ControlPainter::scrollBar(*painter, *bar, part(SC_ScrollBarSlider));
    }
    if (const auto *group = qstyleoption_cast<const QStyleOptionGroupBox *>(option);
        group != nullptr && control == CC_GroupBox) {
        if ((group->subControls & SC_GroupBoxFrame) != 0) {
            ControlPainter::quietFrame(*painter, part(SC_GroupBoxFrame));
        }
        if ((group->subControls & SC_GroupBoxLabel) != 0) {
            ControlPainter::groupTitle(*painter, *group, part(SC_GroupBoxLabel));
        }
        if ((group->subControls & SC_GroupBoxCheckBox) != 0) {
            QStyleOption box = *group;
            box.rect = part(SC_GroupBoxCheckBox);
            ControlPainter::checkIndicator(*painter, box);
        }
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_Slider && focusShown(*option)) {
        ControlPainter::focusFrame(*painter, option->rect);
    }
}
