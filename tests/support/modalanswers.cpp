// SPDX-License-Identifier: MIT
#include "tests/support/modalanswers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>

namespace
{

constexpr int lookMsec = 5;

QAbstractButton *fileDialogButton(QWidget *window, QDialogButtonBox::StandardButton which)
{
    const auto *box = window->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    return box != nullptr ? box->button(which) : nullptr;
}

void press(QAbstractButton *button)
{
    if (button == nullptr) {
        QFAIL("there is no such button");
    }
    QVERIFY(button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace

ModalAnswers::ModalAnswers()
{
    scheduleLook();
}

void ModalAnswers::expect(const Answer &answer)
{
    answers_.push_back(answer);
}

// One shot after the other: a repeating timer does not fire in a window that its own slot opened.
void ModalAnswers::scheduleLook()
{
    QTimer::singleShot(lookMsec, this, [this] {
        scheduleLook();
        look();
    });
}

void ModalAnswers::look()
{
    QWidget *window = QApplication::activeModalWidget();
    if (window == nullptr || window == answered_ || !window->isVisible()) {
        return;
    }
    answered_ = window;
    if (answers_.empty()) {
        unexpected_ << window->windowTitle();
        window->close();
        return;
    }
    const Answer answer = answers_.front();
    answers_.pop_front();
    ++given_;
    answer(window);
}

ModalAnswers::Answer ModalAnswers::pressing(const char *button)
{
    return [name = QString::fromLatin1(button)](QWidget *window) {
        press(window->findChild<QAbstractButton *>(name));
    };
}

ModalAnswers::Answer ModalAnswers::savingAs(const QString &name, const QString &filterStart)
{
    return [name, filterStart](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        const QStringList filters = dialog->nameFilters();
        for (const QString &filter : filters) {
            if (!filterStart.isEmpty() && filter.startsWith(filterStart)) {
                dialog->selectNameFilter(filter);
            }
        }
        auto *edit = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        QVERIFY(edit != nullptr);
        edit->setText(name);
        press(fileDialogButton(window, QDialogButtonBox::Save));
    };
}

ModalAnswers::Answer ModalAnswers::cancelling()
{
    return [](QWidget *window) { press(fileDialogButton(window, QDialogButtonBox::Cancel)); };
}

ModalAnswers::Answer ModalAnswers::reading(QString *title, QString *text)
{
    return [title, text](QWidget *window) {
        *title = window->windowTitle();
        if (auto *box = qobject_cast<QMessageBox *>(window)) {
            *text = box->text();
            press(box->button(QMessageBox::Ok));
            return;
        }
        const auto *browser = window->findChild<QTextBrowser *>(QStringLiteral("textBrowser"));
        QVERIFY(browser != nullptr);
        *text = browser->toPlainText();
        press(window->findChild<QAbstractButton *>(QStringLiteral("buttonOk")));
    };
}
