// SPDX-License-Identifier: MIT
#include "pages/tablefiledialog.h"

#include "tests/support/modalanswers.h"
#include "tests/support/testmain.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

using First = TableFileDialog::First;

Q_DECLARE_METATYPE(TableFileDialog::First)

namespace
{

const QString dumps = QStringLiteral("Dump file (*.tpp)");
const QString accessDumps = QStringLiteral("Dump file (*.tpa)");
const QString csv = QStringLiteral("Comma separated values file (*.csv)");
const QString title = QStringLiteral("The title");

// Presses the button as soon as the dialog has found the file, which it looks for in the
// background.
void openWhenFound(QFileDialog *dialog, const QString &name, int tries)
{
    constexpr int everyMsec = 20;
    auto *edit = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    auto *open = dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))
                     ->button(QDialogButtonBox::Open);
    edit->clear();
    edit->setText(name);
    if (open->isEnabled()) {
        QTest::mouseClick(open, Qt::LeftButton);
    } else if (tries == 0) {
        qWarning("%s cannot be opened", qPrintable(name));
        dialog->reject();
    } else {
        QTimer::singleShot(everyMsec, dialog, [=] { openWhenFound(dialog, name, tries - 1); });
    }
}

// Gives the name in an open dialog, under the first or the second filter.
ModalAnswers::Answer opening(const QString &name, int filter)
{
    constexpr int manyTries = 500;
    return [=](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        dialog->selectNameFilter(dialog->nameFilters().at(filter));
        openWhenFound(dialog, name, manyTries);
    };
}

ModalAnswers::Answer choosing(QMessageBox::StandardButton button)
{
    return [button](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        QVERIFY(box != nullptr);
        QTest::mouseClick(box->button(button), Qt::LeftButton);
    };
}

// What a file dialog shows when it comes up.
struct Seen {
    QString title;
    QString folder;
    QStringList filters;
    QString filter;
    QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
    QFileDialog::FileMode files = QFileDialog::Directory;
    QWidget *parent = nullptr;
    bool modal = false;
};

ModalAnswers::Answer looking(Seen *seen)
{
    return [seen](QWidget *window) {
        const auto *dialog = qobject_cast<QFileDialog *>(window);
        QVERIFY(dialog != nullptr);
        *seen = {dialog->windowTitle(),  dialog->directory().absolutePath(),
                 dialog->nameFilters(),  dialog->selectedNameFilter(),
                 dialog->acceptMode(),   dialog->fileMode(),
                 dialog->parentWidget(), dialog->isModal()};
        ModalAnswers::cancelling()(window);
    };
}

} // namespace

class TestTableFileDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        answers_ = std::make_unique<ModalAnswers>();
        stick_ = std::make_unique<QTemporaryDir>();
    }
    void cleanup()
    {
        QCOMPARE(answers_->left(), 0);
        QCOMPARE(answers_->unexpected(), QStringList());
    }

    void asksForAFileToLoad_data();
    void asksForAFileToLoad();
    void loads_data();
    void loads();
    void asksForAFileToSave_data();
    void asksForAFileToSave();
    void saves_data();
    void saves();
    void asksBeforeReplacing();
    void replacesWithTheEndingAdded();
    void givenUp();

private:
    QString onStick(const QString &name) const { return stick_->filePath(name); }
    void write(const QString &name) const
    {
        QFile file(onStick(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    TableFileDialog dialog(const char *suffix)
    {
        return TableFileDialog(&page_, title, stick_->path(), QString::fromLatin1(suffix));
    }

    QWidget page_;
    std::unique_ptr<ModalAnswers> answers_;
    std::unique_ptr<QTemporaryDir> stick_;
};

void TestTableFileDialog::asksForAFileToLoad_data()
{
    QTest::addColumn<QByteArray>("suffix");
    QTest::addColumn<QString>("filter");
    QTest::newRow("passages") << QByteArray(".tpp") << dumps;
    QTest::newRow("access list") << QByteArray(".tpa") << accessDumps;
}

void TestTableFileDialog::asksForAFileToLoad()
{
    QFETCH(QByteArray, suffix);
    QFETCH(QString, filter);
    Seen seen;
    answers_->expect(looking(&seen));
    QVERIFY(dialog(suffix.constData()).load().name.isEmpty());
    QCOMPARE(seen.title, title);
    QCOMPARE(seen.folder, stick_->path());
    QCOMPARE(seen.filters, (QStringList{filter, csv}));
    QCOMPARE(seen.filter, filter);
    QCOMPARE(seen.mode, QFileDialog::AcceptOpen);
    QCOMPARE(seen.files, QFileDialog::ExistingFile);
    QCOMPARE(seen.parent, &page_);
    QVERIFY(seen.modal);
}

void TestTableFileDialog::loads_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("filter");
    QTest::addColumn<bool>("isCsv");
    const auto row = [](const char *name, int filter, bool isCsv) {
        QTest::addRow("%s under filter %d", name, filter)
            << QString::fromUtf8(name) << filter << isCsv;
    };
    row("may.tpp", 0, false);
    row("may.TPP", 0, false);
    row("may.csv.tpp", 0, false);
    row("may.csv", 1, true);
    row("may.CSV", 1, true);
    row("may.tpp.csv", 1, true);
    row("\xd0\x9c\xd0\xb0\xd0\xb9 %1.csv", 1, true);
}

void TestTableFileDialog::loads()
{
    QFETCH(QString, name);
    QFETCH(int, filter);
    QFETCH(bool, isCsv);
    write(name);
    for (const QString &typed : {name, onStick(name)}) {
        answers_->expect(opening(typed, filter));
        const TableFileDialog::Choice choice = dialog(".tpp").load();
        QCOMPARE(choice.name, onStick(name));
        QCOMPARE(choice.isCsv, isCsv);
    }
}

void TestTableFileDialog::asksForAFileToSave_data()
{
    QTest::addColumn<QByteArray>("suffix");
    QTest::addColumn<First>("first");
    QTest::addColumn<QStringList>("filters");
    QTest::newRow("dump first") << QByteArray(".tpp") << First::Dump << QStringList{dumps, csv};
    QTest::newRow("csv first") << QByteArray(".tpp") << First::Csv << QStringList{csv, dumps};
    QTest::newRow("access list") << QByteArray(".tpa") << First::Dump
                                 << QStringList{accessDumps, csv};
}

void TestTableFileDialog::asksForAFileToSave()
{
    QFETCH(QByteArray, suffix);
    QFETCH(First, first);
    QFETCH(QStringList, filters);
    Seen seen;
    answers_->expect(looking(&seen));
    QVERIFY(dialog(suffix.constData()).save(first).name.isEmpty());
    QCOMPARE(seen.title, title);
    QCOMPARE(seen.folder, stick_->path());
    QCOMPARE(seen.filters, filters);
    QCOMPARE(seen.filter, filters.first());
    QCOMPARE(seen.mode, QFileDialog::AcceptSave);
    QCOMPARE(seen.files, QFileDialog::AnyFile);
    QCOMPARE(seen.parent, &page_);
    QVERIFY(seen.modal);
}

void TestTableFileDialog::saves_data()
{
    QTest::addColumn<QByteArray>("suffix");
    QTest::addColumn<First>("first");
    QTest::addColumn<QString>("filter"); // by its beginning; empty for the one that comes up
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isCsv");
    const auto row = [](const char *suffix, First first, const char *filter, const char *typed,
                        const char *name, bool isCsv) {
        QTest::addRow("%s %s%s, %s", suffix, first == First::Dump ? "dump" : "csv", filter, typed)
            << QByteArray(suffix) << first << QString::fromLatin1(filter)
            << QString::fromUtf8(typed) << QString::fromUtf8(name) << isCsv;
    };
    const char *dump = "Dump file";
    const char *commas = "Comma separated";
    row(".tpp", First::Dump, "", "may", "may.tpp", false);
    row(".tpp", First::Dump, "", "may.tpp", "may.tpp", false);
    row(".tpp", First::Dump, "", "may.csv", "may.csv.tpp", false);
    row(".tpp", First::Dump, "", "may.june", "may.june.tpp", false);
    row(".tpp", First::Dump, "", "may %1", "may %1.tpp", false);
    row(".tpp", First::Dump, "", "\xd0\x9c\xd0\xb0\xd0\xb9", "\xd0\x9c\xd0\xb0\xd0\xb9.tpp", false);
    row(".tpa", First::Dump, "", "may", "may.tpa", false);
    row(".tpa", First::Dump, "", "may.tpp", "may.tpp.tpa", false);
    row(".tpp", First::Dump, commas, "may", "may.csv", true);
    row(".tpp", First::Dump, commas, "may.csv", "may.csv", true);
    row(".tpp", First::Dump, commas, "may.tpp", "may.tpp.csv", true);
    row(".tpp", First::Csv, "", "may", "may.csv", true);
    row(".tpp", First::Csv, "", "may.tpp", "may.tpp.csv", true);
    row(".tpp", First::Csv, dump, "may", "may.tpp", false);
    row(".tpp", First::Csv, dump, "may.csv", "may.csv.tpp", false);
}

void TestTableFileDialog::saves()
{
    QFETCH(QByteArray, suffix);
    QFETCH(First, first);
    QFETCH(QString, filter);
    QFETCH(QString, typed);
    QFETCH(QString, name);
    QFETCH(bool, isCsv);
    for (const QString &given : {typed, onStick(typed)}) {
        answers_->expect(ModalAnswers::savingAs(given, filter));
        const TableFileDialog::Choice choice = dialog(suffix.constData()).save(first);
        QCOMPARE(choice.name, onStick(name));
        QCOMPARE(choice.isCsv, isCsv);
    }
    // Choosing a name makes no file.
    QVERIFY(QDir(stick_->path()).isEmpty());
}

void TestTableFileDialog::asksBeforeReplacing()
{
    write(QStringLiteral("may.tpp"));
    answers_->expect(ModalAnswers::savingAs(QStringLiteral("may.tpp")));
    answers_->expect(choosing(QMessageBox::Yes));
    QCOMPARE(dialog(".tpp").save(First::Dump).name, onStick(QStringLiteral("may.tpp")));
    answers_->expect(ModalAnswers::savingAs(QStringLiteral("may.tpp")));
    answers_->expect([](QWidget *window) {
        QWidget *fileDialog = window->parentWidget();
        choosing(QMessageBox::No)(window);
        // Back in the dialog, which is left for good.
        QTimer::singleShot(0, fileDialog, [fileDialog] { ModalAnswers::cancelling()(fileDialog); });
    });
    QCOMPARE(dialog(".tpp").save(First::Dump).name, QString());
}

void TestTableFileDialog::replacesWithTheEndingAdded()
{
    write(QStringLiteral("may.tpp"));
    answers_->expect(ModalAnswers::savingAs(QStringLiteral("may")));
    QCOMPARE(dialog(".tpp").save(First::Dump).name, onStick(QStringLiteral("may.tpp")));
}

void TestTableFileDialog::givenUp()
{
    write(QStringLiteral("may.csv"));
    answers_->expect([](QWidget *window) {
        window->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
            ->setText(QStringLiteral("may.csv"));
        ModalAnswers::cancelling()(window);
    });
    const TableFileDialog::Choice loaded = dialog(".tpp").load();
    QVERIFY(loaded.name.isEmpty() && !loaded.isCsv);
    answers_->expect([](QWidget *window) { QTest::keyClick(window, Qt::Key_Escape); });
    QVERIFY(dialog(".tpp").save(First::Csv).name.isEmpty());
}

STALLO_TEST_MAIN(TestTableFileDialog)
#include "tst_tablefiledialog.moc"
