// SPDX-License-Identifier: MIT
#pragma once

#include "netsetup/dlgsetupnetwork.h"
#include "style/brelstyle.h"
#include "tests/netsetup/networkfiles.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include <memory>

// An open network dialog under the program's style, over files of its own, reached through its
// widgets.
class NetworkDialogCase : public QObject
{
    Q_OBJECT

protected:
    // In the order of the form.
    static QStringList fieldNames()
    {
        QStringList names;
        for (const char *name : {"leHostName", "leDomainName", "leIPAddress", "leNetorkmask",
                                 "leGateway", "le1DNS", "le2DNS"}) {
            names.append(QString::fromLatin1(name));
        }
        return names;
    }

    template <typename T>
    T *part(const char *name) const
    {
        auto *found = dialog_->findChild<T *>(QLatin1String(name));
        if (found == nullptr) {
            qFatal("the dialog has no %s", name);
        }
        return found;
    }
    QLineEdit *field(const char *name) const { return part<QLineEdit>(name); }
    QLineEdit *field(const QString &name) const { return field(name.toLatin1().constData()); }
    QPushButton *button(const char *name) const { return part<QPushButton>(name); }
    QCheckBox *box() const { return part<QCheckBox>("cbUseDHCP"); }

    QStringList shown() const
    {
        QStringList texts;
        for (const QString &name : fieldNames()) {
            texts.append(field(name)->text());
        }
        return texts;
    }

    void open()
    {
        dialog_ = std::make_unique<DlgSetupNetwork>(nullptr);
        dialog_->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog_.get()));
    }
    void openOnFiles()
    {
        NetworkFiles::writeAll();
        open();
    }

    // With the mouse.
    void click(const char *name) const
    {
        QTest::mouseClick(part<QWidget>(name), Qt::LeftButton);
        QCoreApplication::processEvents();
    }
    // Erases what is there by the keyboard first.
    void type(const char *name, const QString &text) const
    {
        click(name);
        field(name)->selectAll();
        QTest::keyClick(field(name), Qt::Key_Delete);
        QTest::keyClicks(field(name), text);
    }

    std::unique_ptr<DlgSetupNetwork> dialog_;

protected Q_SLOTS:
    void initTestCase()
    {
        auto *style = new BrelStyle;
        QApplication::setStyle(style);
        QApplication::setPalette(style->standardPalette());
    }
    void init() { files_ = std::make_unique<NetworkFiles>(); }
    void cleanup()
    {
        dialog_.reset();
        files_.reset();
    }

private:
    std::unique_ptr<NetworkFiles> files_;
};
