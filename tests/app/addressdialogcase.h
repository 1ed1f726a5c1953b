// SPDX-License-Identifier: MIT
#pragma once

#include "app/addressdialog.h"
#include "app/settings.h"
#include "style/brelstyle.h"
#include "tests/support/testmain.h"

#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>

#include <memory>

// An open address dialog under the program's style, reached through its widgets; each test function
// starts with fresh settings.
class AddressDialogCase : public QObject
{
    Q_OBJECT

protected:
    const QString one = QStringLiteral("192.168.0.1");
    const QString two = QStringLiteral("gate-north");
    const QString three = QStringLiteral("10.0.0.7");

    template <typename T>
    T *part(const char *name) const
    {
        return dialog_->findChild<T *>(QLatin1String(name));
    }
    QListWidget *list() const { return part<QListWidget>("listWidgetAddresses"); }
    QLineEdit *editor() const { return part<QLineEdit>("lineEditAddress"); }
    QPushButton *button(const char *name) const { return part<QPushButton>(name); }
    QSpinBox *linePort() const { return part<QSpinBox>("spinBoxTPPort"); }
    QSpinBox *filePort() const { return part<QSpinBox>("spinBoxFileTransfer"); }

    QAction *menuAction(const char *text) const
    {
        for (QAction *action : dialog_->findChild<QMenu *>()->actions()) {
            if (action->text() == QLatin1String(text)) {
                return action;
            }
        }
        return nullptr;
    }

    QStringList shown() const
    {
        QStringList texts;
        for (int row = 0; row < list()->count(); ++row) {
            texts.append(list()->item(row)->text());
        }
        return texts;
    }

    static QStringList stored()
    {
        return Settings::instance()->value(QStringLiteral("AddressList/Addresses")).toStringList();
    }

    void open(const QStringList &addresses)
    {
        Settings::instance()->setAddressList(addresses);
        dialog_ = std::make_unique<AddressDialog>(nullptr);
        dialog_->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog_.get()));
    }

    void click(const char *name) const { QTest::mouseClick(button(name), Qt::LeftButton); }

    // Replaces the editor's text by typing.
    void type(const QString &text) const
    {
        editor()->setFocus();
        editor()->selectAll();
        QTest::keyClick(editor(), Qt::Key_Backspace);
        QTest::keyClicks(editor(), text);
    }

    std::unique_ptr<AddressDialog> dialog_;

private Q_SLOTS:
    void initTestCase()
    {
        auto *style = new BrelStyle;
        QApplication::setStyle(style);
        QApplication::setPalette(style->standardPalette());
    }
    void init() { TestSurroundings::freshSettings(); }
    void cleanup() { dialog_.reset(); }
};
