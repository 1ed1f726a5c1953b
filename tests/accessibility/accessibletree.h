// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QString>
#include <QVector>

class QWidget;

// What a screen reader sees of a window.
namespace AccessibleTree
{

struct Node {
    QAccessibleInterface *interface; // owned by the toolkit, until the window changes
    QAccessible::Role role;
    QAccessible::State state;
    QString name;
    // Roles and names on the way down, for messages.
    QString path;
    // The title of the nearest group around it.
    QString group;
};

// Everything below the widget that is not hidden, from the outside in. Of a table no more than its
// first rows.
QVector<Node> of(QWidget &widget);

// Whether it can be worked: pressed, typed into, chosen from.
bool isControl(const Node &node);

} // namespace AccessibleTree
