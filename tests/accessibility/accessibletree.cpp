// SPDX-License-Identifier: MIT
#include "tests/accessibility/accessibletree.h"

#include <QMetaEnum>
#include <QWidget>

namespace
{

constexpr int mostRows = 3;

QString roleName(QAccessible::Role role)
{
    return QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(role));
}

void walk(QAccessibleInterface *interface, const QString &path, QString group,
          QVector<AccessibleTree::Node> &found)
{
    if (interface == nullptr || !interface->isValid()) {
        return;
    }
    AccessibleTree::Node node;
    node.interface = interface;
    node.role = interface->role();
    node.state = interface->state();
    node.name = interface->text(QAccessible::Name);
    const QObject *object = interface->object();
    node.path = path + QStringLiteral(" / %1 \"%2\"").arg(roleName(node.role), node.name);
    if (object != nullptr) {
        node.path += QStringLiteral(" (%1)").arg(object->objectName());
    }
    node.group = group;
    // Cells that are scrolled out of view are there all the same.
    if (node.state.invisible && qobject_cast<const QWidget *>(object) != nullptr) {
        return;
    }
    found.append(node);
    if (node.role == QAccessible::Grouping) {
        group = node.name;
    }
    int children = interface->childCount();
    if (const QAccessibleTableInterface *table = interface->tableInterface()) {
        // The titles of the columns, then row by row.
        children = qMin(children, (mostRows + 1) * (table->columnCount() + 1));
    }
    for (int child = 0; child < children; ++child) {
        walk(interface->child(child), node.path, group, found);
    }
}

} // namespace

QVector<AccessibleTree::Node> AccessibleTree::of(QWidget &widget)
{
    QVector<Node> found;
    walk(QAccessible::queryAccessibleInterface(&widget), QString(), QString(), found);
    return found;
}

bool AccessibleTree::isControl(const Node &node)
{
    switch (node.role) {
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::ScrollBar:
    case QAccessible::List:
    case QAccessible::ListItem:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::TreeItem:
    case QAccessible::Cell:
    case QAccessible::ColumnHeader:
    case QAccessible::RowHeader:
    case QAccessible::MenuItem:
    case QAccessible::PopupMenu:
    case QAccessible::PageTab:
    case QAccessible::ProgressBar:
        return true;
    default:
        return node.state.focusable ||
               (node.interface->actionInterface() != nullptr &&
                !node.interface->actionInterface()->actionNames().isEmpty());
    }
}
