// SPDX-License-Identifier: MIT
#include "tests/translations/textfit.h"

#include "pages/proportionalsclalewidget.h"
#include "style/metrics.h"
#include "style/richline.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSizeGrip>
#include <QSpinBox>
#include <QStyleOption>
#include <QTabBar>
#include <QTableView>
#include <QTextDocument>
#include <QToolButton>
#include <QTreeView>

#include <cmath>

namespace
{

template <typename... Kinds>
bool isOne(const QWidget *widget)
{
    return ((qobject_cast<const Kinds *>(widget) != nullptr) || ...);
}

// What a finger works with.
bool isControl(const QWidget *widget)
{
    return isOne<QAbstractButton, QLineEdit, QComboBox, QAbstractSpinBox, QPlainTextEdit>(widget);
}

// Whose children the toolkit places, on top of one another where it likes.
bool isWhole(const QWidget *widget)
{
    return isOne<QAbstractScrollArea, QLineEdit, QComboBox, QAbstractSpinBox, QTabBar>(widget);
}

QString nameOf(const QWidget *widget)
{
    return QStringLiteral("%1 %2 (%3x%4)")
        .arg(QLatin1String(widget->metaObject()->className()), widget->objectName())
        .arg(widget->width())
        .arg(widget->height());
}

QSize sizeOf(const QWidget *widget, const QString &text)
{
    return widget->fontMetrics().size(Qt::TextShowMnemonic, text);
}

class Look
{
public:
    QStringList take() { return faults_; }

    void at(const QWidget *widget);

private:
    void fault(const QWidget *widget, const QString &what)
    {
        faults_.append(nameOf(widget) + QStringLiteral(": ") + what);
    }
    void text(const QWidget *widget, const QString &text, const QSize &needed, const QSize &room)
    {
        if (!text.isEmpty() && (needed.width() > room.width() || needed.height() > room.height())) {
            fault(widget, QStringLiteral("\"%1\" needs %2x%3, has %4x%5")
                              .arg(text)
                              .arg(needed.width())
                              .arg(needed.height())
                              .arg(room.width())
                              .arg(room.height()));
        }
    }
    void plain(const QWidget *widget, const QString &words, const QSize &room)
    {
        text(widget, words, sizeOf(widget, words), room);
    }

    void place(const QWidget *widget, const QWidget *parent);
    void overlaps(const QList<QWidget *> &siblings);
    void label(const QLabel *label);
    void button(const QAbstractButton *button);
    void group(const QGroupBox *box);
    void header(const QHeaderView *header);
    void columns(const QTreeView *tree);
    void combo(const QComboBox *box);
    void spin(const QAbstractSpinBox *spin);
    void tabs(const QTabBar *bar);
    void photo(const ProportionalSclaleWidget *view);
    void texts(const QWidget *widget);

    QStringList faults_;
};

void Look::place(const QWidget *widget, const QWidget *parent)
{
    if (!parent->rect().contains(widget->geometry())) {
        fault(widget, QStringLiteral("lies outside of ") + nameOf(parent));
    }
    if (isControl(widget) &&
        (widget->width() < Metrics::touchSize || widget->height() < Metrics::touchSize)) {
        fault(widget, QStringLiteral("is too small for a finger"));
    }
}

void Look::overlaps(const QList<QWidget *> &siblings)
{
    for (int first = 0; first < siblings.size(); ++first) {
        for (int second = first + 1; second < siblings.size(); ++second) {
            if (siblings.at(first)->geometry().intersects(siblings.at(second)->geometry())) {
                fault(siblings.at(first), QStringLiteral("lies on ") + nameOf(siblings.at(second)));
            }
        }
    }
}

void Look::label(const QLabel *label)
{
    const QString words = label->text();
    const int margins = 2 * label->margin();
    const QSize room = label->contentsRect().size() - QSize(margins, margins);
    const bool isRich = label->textFormat() == Qt::RichText ||
                        (label->textFormat() == Qt::AutoText && Qt::mightBeRichText(words));
    if (isRich) {
        QTextDocument document;
        document.setDefaultFont(label->font());
        document.setDocumentMargin(0);
        document.setHtml(words);
        if (label->wordWrap()) {
            document.setTextWidth(room.width());
        }
        text(label, words,
             QSize(static_cast<int>(std::ceil(document.idealWidth())),
                   static_cast<int>(std::ceil(document.size().height()))),
             room);
    } else if (label->wordWrap()) {
        const QRect page(0, 0, room.width(), QWIDGETSIZE_MAX);
        text(label, words,
             label->fontMetrics()
                 .boundingRect(page, Qt::TextWordWrap | Qt::TextShowMnemonic, words)
                 .size(),
             room);
    } else {
        plain(label, words, room);
    }
}

void Look::button(const QAbstractButton *button)
{
    QStyleOptionButton option;
    option.initFrom(button);
    option.text = button->text();
    option.icon = button->icon();
    option.iconSize = button->iconSize();
    const auto element = isOne<QCheckBox>(button)      ? QStyle::SE_CheckBoxContents
                         : isOne<QRadioButton>(button) ? QStyle::SE_RadioButtonContents
                                                       : QStyle::SE_PushButtonContents;
    QSize room = isOne<QToolButton>(button)
                     ? button->size()
                     : button->style()->subElementRect(element, &option, button).size();
    if (!button->icon().isNull()) {
        constexpr int gap = 4;
        room.rwidth() -= button->iconSize().width() + gap;
    }
    const auto *tool = qobject_cast<const QToolButton *>(button);
    if (tool == nullptr || tool->toolButtonStyle() != Qt::ToolButtonIconOnly) {
        plain(button, button->text(), room);
    }
}

void Look::group(const QGroupBox *box)
{
    QStyleOptionGroupBox option;
    option.initFrom(box);
    option.text = box->title();
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    const QRect room =
        box->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, box);
    plain(box, box->title(), room.size());
}

void Look::header(const QHeaderView *header)
{
    for (int section = 0; section < header->count(); ++section) {
        if (header->isSectionHidden(section)) {
            continue;
        }
        QStyleOptionHeader option;
        option.initFrom(header);
        option.rect = QRect(0, 0, header->sectionSize(section), header->height());
        option.orientation = header->orientation();
        if (option.orientation == Qt::Horizontal) {
            option.state |= QStyle::State_Horizontal;
        }
        if (header->isSortIndicatorShown() && header->sortIndicatorSection() == section) {
            option.sortIndicator = QStyleOptionHeader::SortDown;
        }
        option.text =
            header->model()->headerData(section, header->orientation(), Qt::DisplayRole).toString();
        const QRect room = header->style()->subElementRect(QStyle::SE_HeaderLabel, &option, header);
        plain(header, option.text, room.size());
    }
}

// The first column may cut off what it shows, names of any length; the others may not.
void Look::columns(const QTreeView *tree)
{
    if (tree->isHeaderHidden()) {
        return;
    }
    header(tree->header());
    if (tree->header()->length() > tree->viewport()->width()) {
        fault(tree, QStringLiteral("has columns out of view: %1 in %2")
                        .arg(tree->header()->length())
                        .arg(tree->viewport()->width()));
    }
    if (tree->horizontalScrollBar()->isVisible()) {
        fault(tree, QStringLiteral("scrolls sideways, up to %1")
                        .arg(tree->horizontalScrollBar()->maximum()));
    }
    const QAbstractItemModel *model = tree->model();
    const int side = tree->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1;
    for (int row = 0; row < model->rowCount(tree->rootIndex()); ++row) {
        for (int column = 1; column < model->columnCount(tree->rootIndex()); ++column) {
            const QString words = model->index(row, column, tree->rootIndex()).data().toString();
            if (!tree->isColumnHidden(column)) {
                plain(tree, words, QSize(tree->columnWidth(column) - 2 * side, tree->height()));
            }
        }
    }
}

void Look::combo(const QComboBox *box)
{
    QStyleOptionComboBox option;
    option.initFrom(box);
    option.editable = box->isEditable();
    option.subControls = QStyle::SC_All;
    const QRect room = box->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                    QStyle::SC_ComboBoxEditField, box);
    for (int item = 0; item < box->count(); ++item) {
        plain(box, box->itemText(item), room.size());
    }
}

void Look::spin(const QAbstractSpinBox *spin)
{
    QString longest;
    if (const auto *time = qobject_cast<const QDateTimeEdit *>(spin)) {
        const QDateTime late(QDate(2026, 12, 30), QTime(20, 58, 58));
        longest = time->locale().toString(late, time->displayFormat());
    } else if (const auto *number = qobject_cast<const QSpinBox *>(spin)) {
        longest = QString::number(number->maximum());
    }
    // Where the toolkit leaves a little on each side.
    constexpr int side = 2;
    const auto *line = spin->findChild<QLineEdit *>();
    plain(spin, longest, line->size() - QSize(2 * side, 0));
}

void Look::tabs(const QTabBar *bar)
{
    for (int tab = 0; tab < bar->count(); ++tab) {
        QStyleOptionTab option;
        option.initFrom(bar);
        option.rect = bar->tabRect(tab);
        option.text = bar->tabText(tab);
        if (!bar->rect().contains(option.rect)) {
            fault(bar, QStringLiteral("cuts off ") + option.text);
        }
        plain(bar, option.text,
              bar->style()->subElementRect(QStyle::SE_TabBarTabText, &option, bar).size());
    }
}

void Look::photo(const ProportionalSclaleWidget *view)
{
    if (!view->pixmap().isNull()) {
        return;
    }
    // In a small view the caption, which has a smallest size, may be wider than its frame.
    plain(view, view->emptyText(), view->size());
    QFont bold = QApplication::font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    const QStringList lines = view->lines();
    for (const QString &line : lines) {
        text(view, line, QSize(metrics.horizontalAdvance(line), lines.size() * metrics.height()),
             QSize(view->width() - view->frame().left(), view->height()));
    }
}

void Look::texts(const QWidget *widget)
{
    if (const auto *it = qobject_cast<const QLabel *>(widget)) {
        label(it);
    } else if (const auto *pushed = qobject_cast<const QAbstractButton *>(widget)) {
        button(pushed);
    } else if (const auto *box = qobject_cast<const QGroupBox *>(widget)) {
        group(box);
    } else if (const auto *list = qobject_cast<const QComboBox *>(widget)) {
        combo(list);
    } else if (const auto *value = qobject_cast<const QAbstractSpinBox *>(widget)) {
        spin(value);
    } else if (const auto *bar = qobject_cast<const QTabBar *>(widget)) {
        tabs(bar);
    } else if (const auto *view = qobject_cast<const ProportionalSclaleWidget *>(widget)) {
        photo(view);
    } else if (const auto *table = qobject_cast<const QTableView *>(widget)) {
        header(table->horizontalHeader());
    } else if (const auto *tree = qobject_cast<const QTreeView *>(widget)) {
        columns(tree);
    } else if (const auto *edit = qobject_cast<const QLineEdit *>(widget)) {
        plain(edit, edit->placeholderText(),
              edit->contentsRect().size() - QSize(2 * Metrics::fieldPadding, 0));
    } else if (const auto *field = qobject_cast<const QPlainTextEdit *>(widget)) {
        plain(field, field->placeholderText(), field->viewport()->size());
    } else if (const auto *line = qobject_cast<const RichLine *>(widget); line && line->isCut()) {
        fault(line, QStringLiteral("\"%1\" is cut").arg(line->plainText()));
    }
}

void Look::at(const QWidget *widget)
{
    texts(widget);
    if (isWhole(widget)) {
        return;
    }
    QList<QWidget *> seen;
    for (QObject *child : widget->children()) {
        auto *part = qobject_cast<QWidget *>(child);
        if (part != nullptr && part->isVisible() && !part->isWindow() && !isOne<QSizeGrip>(part)) {
            seen.append(part);
            place(part, widget);
            at(part);
        }
    }
    overlaps(seen);
}

} // namespace

QStringList TextFit::faults(const QWidget *form)
{
    Look look;
    look.at(form);
    return look.take();
}
