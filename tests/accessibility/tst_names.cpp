// SPDX-License-Identifier: MIT
#include "records/accessmodel.h"
#include "records/scanmodel.h"
#include "style/brelprogresspie.h"
#include "style/brelwindow.h"
#include "tests/accessibility/accessibletree.h"
#include "tests/accessibility/panelcase.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCompleter>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QSet>
#include <QTableView>

#include <memory>

using AccessibleTree::Node;

namespace
{

bool isPushed(const Node &node)
{
    return node.role == QAccessible::Button || node.role == QAccessible::CheckBox ||
           node.role == QAccessible::RadioButton || node.role == QAccessible::MenuItem;
}

// The list of a combo box is the box itself, opened; a folder has no size.
bool mayBeNameless(const Node &node)
{
    return (node.role == QAccessible::List && node.interface->parent() != nullptr &&
            node.interface->parent()->role() == QAccessible::ComboBox) ||
           node.role == QAccessible::TreeItem;
}

// What a screen reader says in the panel's language, not data that someone entered.
bool isTranslated(const Node &node)
{
    switch (node.role) {
    case QAccessible::Cell:
    case QAccessible::ListItem:
    case QAccessible::TreeItem:
    case QAccessible::RowHeader:
    case QAccessible::ComboBox:
        return false;
    default:
        return true;
    }
}

// Of a name in Russian; a few names are the same in every language.
bool isRussian(const QString &name)
{
    static const QRegularExpression cyrillic(QStringLiteral("\\p{Cyrillic}"));
    static const QString word = QStringLiteral("(OK|ID|IP|DHCP|DNS|MAC|Vask|[0-9]+)");
    static const QRegularExpression common(QStringLiteral("^%1( %1)*$").arg(word));
    return cyrillic.match(name).hasMatch() || common.match(name).hasMatch();
}

QString nameOf(QAccessibleInterface *interface)
{
    return interface != nullptr ? interface->text(QAccessible::Name) : QString();
}

} // namespace

// What a screen reader says of the panel, in each of its languages.
class TestNames : public PanelCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyControlIsNamed_data();
    void everyControlIsNamed();
    void namesArePlain_data();
    void namesArePlain();
    void noTwoButtonsShareAName_data();
    void noTwoButtonsShareAName();
    void rolesAreWhatTheyLookLike();
    void buttonsOfTwoDevices();
    void cellsSayWhatTheyAre();
    void progressHasAValue();
    void comboBoxIsLabelled();
    void menusAreNamed();
    void namesOnOfferAreNamed();

private:
    bool isEnglish() const { return language_ == QLatin1String("en"); }
};

void TestNames::everyControlIsNamed_data()
{
    windows();
}

void TestNames::everyControlIsNamed()
{
    QFETCH(const QString, window);
    panel_->with(window, [this](QWidget &widget) {
        int controls = 0;
        const QVector<Node> all = AccessibleTree::of(widget);
        for (const Node &node : all) {
            if (AccessibleTree::isControl(node) && !mayBeNameless(node)) {
                ++controls;
                QVERIFY2(!node.name.trimmed().isEmpty(), qPrintable(node.path));
                QVERIFY2(isEnglish() || !isTranslated(node) || isRussian(node.name),
                         qPrintable(node.path));
            }
        }
        QVERIFY(controls > 0);
        // And no widget that takes the focus or a press has been left out of the tree.
        for (QWidget *part : widget.findChildren<QWidget *>()) {
            const bool works = (part->focusPolicy() & Qt::TabFocus) != 0 ||
                               qobject_cast<QAbstractButton *>(part) != nullptr;
            // The field of a spin box belongs to the box.
            if (works && part->isVisible() && part->focusProxy() == nullptr) {
                QVERIFY2(!nameOf(QAccessible::queryAccessibleInterface(part)).isEmpty() ||
                             !part->accessibleName().isEmpty(),
                         qPrintable(part->objectName() + QLatin1Char(' ') +
                                    QLatin1String(part->metaObject()->className())));
            }
        }
    });
}

void TestNames::namesArePlain_data()
{
    windows();
}

void TestNames::namesArePlain()
{
    QFETCH(const QString, window);
    const QRegularExpression tag(QStringLiteral("<[a-zA-Z/!][^>]*>"));
    panel_->with(window, [&tag](QWidget &widget) {
        const QVector<Node> all = AccessibleTree::of(widget);
        for (const Node &node : all) {
            for (const QAccessible::Text which :
                 {QAccessible::Name, QAccessible::Description, QAccessible::Help}) {
                const QString text = node.interface->text(which);
                QVERIFY2(!tag.match(text).hasMatch(), qPrintable(node.path));
                QVERIFY2(!text.contains(QLatin1Char('&')), qPrintable(node.path));
            }
        }
    });
}

void TestNames::noTwoButtonsShareAName_data()
{
    windows();
}

void TestNames::noTwoButtonsShareAName()
{
    QFETCH(const QString, window);
    panel_->with(window, [](QWidget &widget) {
        QSet<QString> seen;
        const QVector<Node> all = AccessibleTree::of(widget);
        for (const Node &node : all) {
            if (!isPushed(node) || node.state.disabled) {
                continue;
            }
            const QString name = node.group + QLatin1Char('/') + node.name;
            QVERIFY2(!seen.contains(name), qPrintable(node.path));
            seen.insert(name);
        }
    });
}

void TestNames::rolesAreWhatTheyLookLike()
{
    const auto roles = [this](const char *window) {
        QSet<QAccessible::Role> found;
        panel_->with(QLatin1String(window), [&found](QWidget &widget) {
            const QVector<Node> all = AccessibleTree::of(widget);
            for (const Node &node : all) {
                found.insert(node.role);
            }
        });
        return found;
    };
    const auto has = [](const QSet<QAccessible::Role> &found,
                        std::initializer_list<QAccessible::Role> wanted) {
        for (const QAccessible::Role role : wanted) {
            QVERIFY2(found.contains(role), qPrintable(QString::number(role)));
        }
    };
    has(roles("archive"),
        {QAccessible::Table, QAccessible::Cell, QAccessible::ColumnHeader, QAccessible::Button,
         QAccessible::CheckBox, QAccessible::RadioButton, QAccessible::EditableText});
    has(roles("archive, busy"), {QAccessible::ProgressBar, QAccessible::Button});
    has(roles("list"), {QAccessible::SpinBox, QAccessible::ComboBox});
    has(roles("addresses"), {QAccessible::Dialog, QAccessible::List, QAccessible::SpinBox});
    // In a group that begins disabled, too.
    has(roles("interval"), {QAccessible::Grouping, QAccessible::SpinBox});
    has(roles("network"), {QAccessible::EditableText, QAccessible::CheckBox});
    has(roles("passage menu"), {QAccessible::PopupMenu, QAccessible::MenuItem});
}

void TestNames::buttonsOfTwoDevices()
{
    panel_->showOnLine();
    const auto name = [this](const QByteArray &button) {
        return nameOf(QAccessible::queryAccessibleInterface(
            panel_->page().findChild<QWidget *>(QString::fromLatin1(button))));
    };
    for (const char *pair : {"buttonSelectDevice", "buttonDisconnect", "buttonOpenBarrier"}) {
        const QByteArray first = QByteArray(pair) + '1';
        const QByteArray second = QByteArray(pair) + '2';
        QVERIFY(name(first).contains(QLatin1Char('1')));
        QVERIFY(name(second).contains(QLatin1Char('2')));
    }
    QVERIFY(name("labelPhoto0") != name("labelPhoto1"));
    if (isEnglish()) {
        QCOMPARE(name("buttonOpenBarrier2"), QStringLiteral("Open barrier, device 2"));
        QCOMPARE(name("labelPhoto0"), QStringLiteral("Camera, device 1"));
    }
}

void TestNames::cellsSayWhatTheyAre()
{
    const auto spoken = [this](int row, int column) {
        auto *table = QAccessible::queryAccessibleInterface(panel_->table())->tableInterface();
        return nameOf(table->cellAt(row, column));
    };
    const auto says = [&](int row, int column) {
        const QAbstractItemModel *model = panel_->table()->model();
        const QString text = spoken(row, column);
        const QString title = model->headerData(column, Qt::Horizontal).toString();
        const QString shown = model->index(row, column).data().toString();
        return text.contains(title) && text.contains(shown) && text.size() > title.size();
    };
    panel_->showArchive();
    for (int column = 0; column < ScanModel::columns; ++column) {
        QVERIFY2(says(1, column), qPrintable(spoken(1, column)));
    }
    if (isEnglish()) {
        QCOMPARE(spoken(1, ScanModel::NumberColumn), QStringLiteral("Number: A001BC77"));
        QCOMPARE(spoken(1, ScanModel::GrantedColumn), QStringLiteral("Access granted: Yes"));
        QCOMPARE(spoken(1, ScanModel::KeyColumn), QStringLiteral("Key: 00012345"));
    }
    panel_->showOnLine();
    QVERIFY(says(1, ScanModel::InListColumn));
    panel_->showSuffered();
    for (int column = 0; column < AccessModel::columns; ++column) {
        QVERIFY2(says(1, column), qPrintable(spoken(1, column)));
    }
    if (isEnglish()) {
        QCOMPARE(spoken(1, AccessModel::IdColumn), QStringLiteral("Id: 2"));
        QCOMPARE(spoken(1, AccessModel::CommentColumn), QStringLiteral("Comment: flat 1"));
    }
}

void TestNames::progressHasAValue()
{
    panel_->with(QStringLiteral("archive, busy"), [this](QWidget &) {
        auto *pie = panel_->page().findChild<BrelProgressPie *>();
        pie->setProgress(57);
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(pie);
        QVERIFY(spoken->valueInterface() != nullptr);
        QCOMPARE(spoken->valueInterface()->currentValue().toInt(), 57);
        QCOMPARE(spoken->valueInterface()->minimumValue().toInt(), 0);
        QCOMPARE(spoken->valueInterface()->maximumValue().toInt(), 100);
        spoken->valueInterface()->setCurrentValue(3);
        QCOMPARE(pie->progress(), 57);
        QVERIFY(spoken->text(QAccessible::Value).contains(QLatin1String("57")));
        QVERIFY(!spoken->text(QAccessible::Name).isEmpty());
    });
}

// Its own name is what it shows; what it is for is told by its label.
void TestNames::comboBoxIsLabelled()
{
    panel_->showSuffered();
    auto *combo = panel_->page().findChild<QComboBox *>(QStringLiteral("comboBoxGuideline"));
    const auto relations =
        QAccessible::queryAccessibleInterface(combo)->relations(QAccessible::Label);
    QCOMPARE(relations.size(), 1);
    QCOMPARE(relations.first().first->object()->objectName(), QStringLiteral("labelGuideline"));
    QVERIFY(!nameOf(relations.first().first).isEmpty());
}

void TestNames::menusAreNamed()
{
    QLineEdit edit;
    const std::unique_ptr<QMenu> untitled(edit.createStandardContextMenu());
    QMenu titled(QStringLiteral("&Table"));
    for (QMenu *menu : {untitled.get(), &titled}) {
        menu->popup(QPoint(50, 50));
        const QString name = nameOf(QAccessible::queryAccessibleInterface(menu));
        menu->close();
        const QString usual = isEnglish() ? QStringLiteral("Menu") : QString::fromUtf8("Меню");
        QCOMPARE(name, menu == &titled ? QStringLiteral("Table") : usual);
    }
}

void TestNames::namesOnOfferAreNamed()
{
    panel_->with(QStringLiteral("files"), [this](QWidget &dialog) {
        const auto *edit = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        const QString name =
            nameOf(QAccessible::queryAccessibleInterface(edit->completer()->popup()));
        QVERIFY2(isEnglish() ? !name.isEmpty() : isRussian(name), qPrintable(name));
    });
}

STALLO_TEST_MAIN(TestNames)
#include "tst_names.moc"
