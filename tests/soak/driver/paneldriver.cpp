// SPDX-License-Identifier: MIT
#include "tests/soak/driver/paneldriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QHash>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSocketNotifier>
#include <QStackedWidget>
#include <QTableView>
#include <QTextBrowser>

#include <algorithm>
#include <unistd.h>

namespace
{

constexpr int attendMsec = 30;
constexpr int mostLooks = 100;

const QString onLinePage = QStringLiteral("OnLineWidgetClass");
const QString archivePage = QStringLiteral("ArchiveWidgetClass");
const QString listPage = QStringLiteral("SufferedNumbersWidgetClass");

QWidget *pageOf(const QString &name)
{
    const QWidgetList all = QApplication::allWidgets();
    const auto found = std::find_if(all.begin(), all.end(), [&name](const QWidget *widget) {
        return widget->objectName() == name;
    });
    return found == all.end() ? nullptr : *found;
}

template <typename Widget>
Widget *find(const QString &page, const QString &name)
{
    const QWidget *owner = pageOf(page);
    return owner != nullptr ? owner->findChild<Widget *>(name) : nullptr;
}

void click(const QString &page, const QString &name)
{
    if (auto *button = find<QAbstractButton>(page, name)) {
        button->click();
    }
}

void type(const QString &name, const QString &text)
{
    if (auto *line = find<QLineEdit>(listPage, name)) {
        line->setText(text);
    } else if (auto *area = find<QPlainTextEdit>(listPage, name)) {
        area->setPlainText(text);
    }
}

QString textOf(const QWidget *dialog)
{
    if (const auto *browser = dialog->findChild<QTextBrowser *>()) {
        return browser->toPlainText();
    }
    const auto *box = qobject_cast<const QMessageBox *>(dialog);
    return box != nullptr ? box->text() : dialog->windowTitle();
}

void clickDefault(QWidget *dialog)
{
    if (auto *box = dialog->findChild<QDialogButtonBox *>()) {
        if (QPushButton *ok = box->button(QDialogButtonBox::Ok)) {
            ok->click();
            return;
        }
    }
    if (auto *ok = dialog->findChild<QPushButton *>(QStringLiteral("buttonOk"))) {
        ok->click();
    } else {
        dialog->close();
    }
}

} // namespace

PanelDriver::PanelDriver(QObject *parent)
    : QObject(parent)
    , input_(new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this))
    , attend_(this)
{
    connect(input_, &QSocketNotifier::activated, this, &PanelDriver::onInput);
    connect(&attend_, &QTimer::timeout, this, &PanelDriver::attend);
    attend_.start(attendMsec);
    // When the window is there: how long a start takes is no stall.
    QTimer::singleShot(0, this, [this] { ping_ = std::make_unique<GuiPing>(nullptr); });
}

PanelDriver::~PanelDriver() = default;

void PanelDriver::onInput()
{
    char bytes[4096];
    const ssize_t got = read(STDIN_FILENO, bytes, sizeof bytes);
    if (got <= 0) {
        input_->setEnabled(false);
        QCoreApplication::quit();
        return;
    }
    pending_.append(bytes, static_cast<int>(got));
    const int end = pending_.indexOf('\n');
    if (end >= 0) {
        const QString line = QString::fromUtf8(pending_.left(end));
        pending_.remove(0, end + 1);
        // Later: a button may open a dialog, which this would have to wait for.
        QTimer::singleShot(0, this, [this, line] { execute(line.split(QLatin1Char('|'))); });
    }
}

void PanelDriver::say(const QString &line)
{
    const QByteArray bytes =
        QString(line).replace(QLatin1Char('\n'), QLatin1Char(' ')).toUtf8() + '\n';
    [[maybe_unused]] const ssize_t written =
        write(STDOUT_FILENO, bytes.constData(), static_cast<size_t>(bytes.size()));
}

void PanelDriver::execute(const QStringList &words)
{
    const QString &command = words.first();
    if (command == QLatin1String("online")) {
        showPage(onLinePage);
        address_ = words.value(2);
        click(onLinePage, QStringLiteral("buttonSelectDevice") + words.value(1));
        say(QStringLiteral("ok"));
    } else if (command == QLatin1String("look")) {
        showPage(onLinePage);
        choose(onLinePage, QStringLiteral("tableViewOnLine"), words.value(1).toInt());
        say(QStringLiteral("ok"));
    } else if (command == QLatin1String("archive")) {
        address_ = words.value(1);
        click(archivePage, QStringLiteral("buttonNewTable"));
        startJob(archivePage, QStringLiteral("buttonLoadFromNetwork"));
    } else {
        executeOnList(words);
    }
}

void PanelDriver::executeOnList(const QStringList &words)
{
    const QString &command = words.first();
    const QString table = QStringLiteral("tableViewSuffered");
    if (command == QLatin1String("fetch") || command == QLatin1String("send")) {
        address_ = words.value(1);
        startJob(listPage, command == QLatin1String("fetch")
                               ? QStringLiteral("buttonLoadFromNetwork")
                               : QStringLiteral("buttonSaveToNetwork"));
        return;
    }
    showPage(listPage);
    if (command == QLatin1String("add")) {
        type(QStringLiteral("lineEditNumber"), words.value(1));
        type(QStringLiteral("lineEditKey"), words.value(2));
        type(QStringLiteral("textEditComment"), words.value(3));
        click(listPage, QStringLiteral("buttonNew"));
        say(QStringLiteral("ok"));
    } else if (!choose(listPage, table, words.value(1).toInt())) {
        say(QStringLiteral("failed no such row"));
    } else if (command == QLatin1String("edit")) {
        type(QStringLiteral("lineEditNumber"), words.value(2));
        type(QStringLiteral("textEditComment"), words.value(3));
        click(listPage, QStringLiteral("buttonApply"));
        say(QStringLiteral("ok"));
    } else if (command == QLatin1String("delete")) {
        expectsQuestion_ = true;
        click(listPage, QStringLiteral("buttonDelete"));
        expectsQuestion_ = false;
        say(QStringLiteral("ok"));
    } else {
        say(QStringLiteral("failed unknown command"));
    }
}

void PanelDriver::startJob(const QString &page, const QString &button)
{
    showPage(page);
    click(page, button);
    wasBusy_ = false;
    patience_ = mostLooks;
    faces_ = find<QStackedWidget>(page, QStringLiteral("stackedWidget"));
}

void PanelDriver::showPage(const QString &page)
{
    static const QHash<QString, QString> titles{{archivePage, QStringLiteral("Archive view")},
                                                {listPage, QStringLiteral("Suffered numbers")},
                                                {onLinePage, QStringLiteral("On-Line")}};
    const QWidget *widget = pageOf(page);
    if (widget == nullptr) {
        return;
    }
    for (auto *button : widget->window()->findChildren<QAbstractButton *>()) {
        if (button->isCheckable() && button->text() == titles.value(page)) {
            button->click();
        }
    }
}

bool PanelDriver::choose(const QString &page, const QString &table, int row)
{
    auto *view = find<QTableView>(page, table);
    if (view == nullptr || view->model() == nullptr || view->model()->rowCount() == 0) {
        return false;
    }
    const int place = row < 0 ? view->model()->rowCount() - 1 : row;
    view->setCurrentIndex(view->model()->index(place, 1));
    view->scrollTo(view->currentIndex());
    return view->currentIndex().row() == place;
}

void PanelDriver::attend()
{
    if (QWidget *dialog = QApplication::activeModalWidget()) {
        answerDialog(dialog);
        return;
    }
    if (faces_ == nullptr) {
        return;
    }
    const bool busy = faces_->currentWidget()->objectName() == QLatin1String("busyPage");
    wasBusy_ = wasBusy_ || busy;
    if (busy) {
        return;
    }
    // A job of a few milliseconds may never be seen at work.
    if (wasBusy_ || --patience_ == 0) {
        faces_ = nullptr;
        say(QStringLiteral("ok"));
    }
}

void PanelDriver::answerDialog(QWidget *dialog)
{
    const QString name = dialog->objectName();
    if (name == QLatin1String("AddressDialogClass")) {
        auto *list = dialog->findChild<QListWidget *>(QStringLiteral("listWidgetAddresses"));
        const QList<QListWidgetItem *> found = list->findItems(address_, Qt::MatchExactly);
        if (found.isEmpty()) {
            say(QStringLiteral("box no such address: ") + address_);
            dialog->close();
            return;
        }
        list->setCurrentItem(found.first());
    } else if (name == QLatin1String("ArchiveIntervalDialog")) {
        dialog->findChild<QRadioButton *>(QStringLiteral("rbAllArchive"))->setChecked(true);
    } else if (!expectsQuestion_) {
        say(QStringLiteral("box ") + textOf(dialog));
    }
    clickDefault(dialog);
}
