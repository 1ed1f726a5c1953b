// SPDX-License-Identifier: MIT
#include "tests/support/listpage.h"

#include "app/settings.h"
#include "records/accessmodel.h"
#include "tests/support/testmain.h"

#include <QDateEdit>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStackedWidget>

namespace
{

constexpr int refusedPort = 1;
constexpr int jobPatience = 60000;

void type(QWidget *field, const QString &text)
{
    field->setFocus();
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

} // namespace

void ListPage::prepare()
{
    Settings *settings = TestSurroundings::freshSettings();
    settings->setVaskParkingPort(refusedPort);
    settings->setFileTransferPort(refusedPort);
    QDir(settings->workingDirectory()).removeRecursively();
    if (!QDir().mkpath(folder())) {
        qFatal("cannot make the temporary folder");
    }
}

ListPage::ListPage()
    : page_(std::make_unique<SufferedNumbersWidget>())
{
    page_->resize(1280, 700);
    page_->show();
    if (!QTest::qWaitForWindowActive(page_.get())) {
        qFatal("the page does not appear");
    }
}

ListPage::~ListPage() = default;

qint64 ListPage::end()
{
    QElapsedTimer clock;
    clock.start();
    page_.reset();
    return clock.elapsed();
}

void ListPage::press(const char *name) const
{
    auto *pressed = find<QAbstractButton>(name);
    if (!pressed->isVisible() || !pressed->isEnabled()) {
        qWarning("the button %s cannot be pressed", name);
    }
    QTest::mouseClick(pressed, Qt::LeftButton);
}

QTableView *ListPage::table() const
{
    return find<QTableView>("tableViewSuffered");
}

int ListPage::rows() const
{
    return table()->model()->rowCount();
}

int ListPage::currentRow() const
{
    return table()->currentIndex().row();
}

void ListPage::clickRow(int row, Qt::KeyboardModifiers keys) const
{
    const QModelIndex index = table()->model()->index(row, AccessModel::NumberColumn);
    table()->scrollTo(index);
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, keys,
                      table()->visualRect(index).center());
}

QString ListPage::cell(int row, int column) const
{
    return table()->model()->index(row, column).data().toString();
}

QMenu *ListPage::menu() const
{
    return table()->findChild<QMenu *>();
}

bool ListPage::isBusy() const
{
    return find<QStackedWidget>("stackedWidget")->currentWidget() == find<QWidget>("busyPage");
}

bool ListPage::becomesIdle() const
{
    return QTest::qWaitFor([this] { return !isBusy(); }, jobPatience);
}

void ListPage::fetch(const QString &host)
{
    Settings::instance()->setAddressList({host});
    answers_.expect(ModalAnswers::pressing("buttonOk"));
    press("buttonLoadFromNetwork");
}

void ListPage::send(const QString &host)
{
    Settings::instance()->setAddressList({host});
    answers_.expect(ModalAnswers::pressing("buttonOk"));
    press("buttonSaveToNetwork");
}

void ListPage::append(const QString &host)
{
    Settings::instance()->setAddressList({host});
    answers_.expect(ModalAnswers::pressing("buttonOk"));
    menu()->actions().first()->trigger();
}

void ListPage::load(const QString &name)
{
    answers_.expect(opening(name));
    press("buttonLoad");
}

void ListPage::save(const QString &name, const QString &filterStart)
{
    answers_.expect(ModalAnswers::savingAs(name, filterStart));
    press("buttonSave");
}

ModalAnswers::Answer ListPage::opening(const QString &name)
{
    return [name](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        // It takes only what its list shows, which follows the filter a little later.
        const bool isCsv = name.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive);
        dialog->selectNameFilter(dialog->nameFilters().at(isCsv ? 1 : 0));
        auto *edit = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        const auto *box = window->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
        QPushButton *open = box->button(QDialogButtonBox::Open);
        const auto typed = [&] {
            edit->setText(name.chopped(1));
            edit->setText(name);
            return open->isEnabled();
        };
        [&] { QTRY_VERIFY(typed()); }();
        QTest::mouseClick(open, Qt::LeftButton);
        if (window->isVisible()) {
            window->close();
            QFAIL("the file dialog does not take the file");
        }
    };
}

void ListPage::edit(const Access &access) const
{
    type(find<QLineEdit>("lineEditNumber"), access.number());
    type(find<QLineEdit>("lineEditKey"), access.accessKey());
    type(find<QPlainTextEdit>("textEditComment"), access.comment());
    find<QDateEdit>("dateEditFrom")->setDate(access.dateTimeFrom().date());
    find<QTimeEdit>("timeEditFrom")->setTime(access.dateTimeFrom().time());
    find<QDateEdit>("dateEditTill")->setDate(access.dateTimeTill().date());
    find<QTimeEdit>("timeEditTill")->setTime(access.dateTimeTill().time());
}

Access ListPage::edited() const
{
    Access access;
    access.setId(find<QLineEdit>("lineEditId")->text().toShort());
    access.setNumber(find<QLineEdit>("lineEditNumber")->text());
    access.setDateTimeFrom(QDateTime(find<QDateEdit>("dateEditFrom")->date(),
                                     find<QTimeEdit>("timeEditFrom")->time()));
    access.setDateTimeTill(QDateTime(find<QDateEdit>("dateEditTill")->date(),
                                     find<QTimeEdit>("timeEditTill")->time()));
    access.setAccessKey(find<QLineEdit>("lineEditKey")->text());
    access.setComment(find<QPlainTextEdit>("textEditComment")->toPlainText());
    return access;
}

QString ListPage::folder()
{
    return Settings::instance()->sufferedTempDirectory();
}

QString ListPage::ownList()
{
    return Settings::instance()->sufferedTempFile();
}

QByteArray ListPage::content(const QString &file)
{
    QFile from(file);
    return from.open(QIODevice::ReadOnly) ? from.readAll() : QByteArray("no such file");
}

void ListPage::write(const QString &file, const QByteArray &content)
{
    QFile to(file);
    if (!to.open(QIODevice::WriteOnly) || to.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(file));
    }
}

Access ListPage::entry(int n)
{
    const QDateTime begin(QDate(2026, 11, 21), QTime(8, 0), Qt::UTC);
    Access access;
    access.setNumber(QStringLiteral("A%1BC77").arg(n % 1000, 3, 10, QLatin1Char('0')));
    access.setDateTimeFrom(begin.addSecs(qint64{61} * n));
    access.setDateTimeTill(begin.addDays(1 + n).addSecs(7));
    access.setAccessKey(QStringLiteral("key %1").arg(n));
    access.setComment(QStringLiteral("flat %1").arg(n));
    return access;
}

QByteArray ListPage::bytes(const Access &access)
{
    return QByteArray(access.data(), Access::size);
}

QByteArray ListPage::list(int entries, int first)
{
    QByteArray all;
    for (int n = 0; n < entries; ++n) {
        Access access = entry(first + n);
        access.setId(static_cast<qint16>(n + 1));
        all += bytes(access);
    }
    return all;
}
