// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings.h"
#include "pages/proportionalsclalewidget.h"
#include "records/scanmodel.h"
#include "records/vasksettings.h"
#include "tests/support/archivepage.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>

#include <functional>

// The Archive page and a stick with dumps on it. Passage n of a dump has a time, a number, and, if
// it has a photo, a photo of a width of its own; it came from "gate" or "yard", by turns.
class ArchiveFilesCase : public QObject
{
protected:
    using Page = ArchivePage;

    // The beginnings of the file dialogs' filters.
    static constexpr const char *dump = "Dump";
    static constexpr const char *csv = "Comma";
    // For what a slow machine may take over a large table.
    static constexpr int patience = 60000;

    void setUp()
    {
        Page::prepare();
        stick_ = std::make_unique<QTemporaryDir>();
        page_ = std::make_unique<Page>();
    }
    // What the operator of the page that ends met and should not have, or did not meet.
    void tearDown()
    {
        const QStringList unexpected = page_ ? page_->answers().unexpected() : QStringList();
        const int left = page_ ? page_->answers().left() : 0;
        page_.reset();
        stick_.reset();
        QCOMPARE(unexpected, QStringList());
        QCOMPARE(left, 0);
    }
    // As after a fresh start of the program: nothing downloaded, nothing on view.
    void restart()
    {
        page_.reset();
        page_ = std::make_unique<Page>();
    }

    static Scan passage(int n) { return Scan(OnlinePage::record(n)); }
    static QByteArray tableOf(int rows, int first = 0)
    {
        return OnlinePage::tableOf(OnlinePage::records(rows, first));
    }
    static QByteArray tableOf(const QVector<Scan> &passages)
    {
        QByteArray bytes;
        for (const Scan &scan : passages) {
            bytes.append(scan.data(), Scan::size);
        }
        return bytes;
    }
    static QString deviceOf(int n)
    {
        return n % 2 == 0 ? QStringLiteral("gate") : QStringLiteral("yard");
    }
    static QByteArray indexOf(int rows, int first = 0)
    {
        QStringList devices;
        for (int n = first; n < first + rows; ++n) {
            devices << deviceOf(n);
        }
        return OnlinePage::indexOf(devices);
    }
    static int photoWidth(int n) { return 40 + n % 100; }
    static QByteArray photoOf(int n) { return OnlinePage::jpeg(photoWidth(n), 30); }
    static QString photoName(int n) { return VaskSettings::picFileName(passage(n)); }
    static QString numberOf(int n) { return passage(n).number(); }

    QString onStick(const QString &name) const { return stick_->filePath(name); }
    QString stickFolder() const { return QFileInfo(stick_->path()).absoluteFilePath(); }
    static QStringList filesIn(const QString &folder)
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QStringList stickFiles() const { return filesIn(stick_->path()); }

    // Puts photos of these passages where those of the table lie.
    static void makePhotos(const QString &table, const QVector<int> &photos)
    {
        const QFileInfo file(table);
        const QString folder =
            file.absolutePath() + QLatin1Char('/') + file.baseName() + QStringLiteral(".jpegdata");
        QDir().mkpath(folder);
        for (const int n : photos) {
            Page::write(folder + QLatin1Char('/') + photoName(n), photoOf(n));
        }
    }
    // A dump on the stick; its path.
    QString makeDump(const QString &name, int rows, const QVector<int> &photos = {},
                     int first = 0) const
    {
        Page::write(onStick(name), tableOf(rows, first));
        Page::write(ScanModel::indexFileOf(onStick(name)), indexOf(rows, first));
        if (!photos.isEmpty()) {
            makePhotos(onStick(name), photos);
        }
        return onStick(name);
    }
    // A table of so many passages without a time or anything else, and without an index. It takes
    // hardly any place on the disk.
    QString makeLargeDump(const QString &name, int rows) const
    {
        Page::write(onStick(name), QByteArray());
        if (!QFile::resize(onStick(name), qint64(rows) * Scan::size)) {
            qFatal("cannot make a large file");
        }
        return onStick(name);
    }

    // Opens the file in a file dialog, and does something to it before the page gets to it.
    static ModalAnswers::Answer opening(const QString &name,
                                        const std::function<void()> &then = nullptr)
    {
        return [name, then](QWidget *window) {
            auto *dialog = qobject_cast<QFileDialog *>(window);
            QVERIFY(dialog != nullptr);
            // It takes only what its list shows, which follows the filter a little later.
            const bool isCsv = name.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive);
            dialog->selectNameFilter(dialog->nameFilters().at(isCsv ? 1 : 0));
            auto *edit = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            const auto *box = window->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
            QPushButton *open = box->button(QDialogButtonBox::Open);
            const auto type = [&] {
                edit->setText(name.chopped(1));
                edit->setText(name);
                return open->isEnabled();
            };
            [&] { QTRY_VERIFY(type()); }();
            QTest::mouseClick(open, Qt::LeftButton);
            if (window->isVisible()) {
                window->close();
                QFAIL("the file dialog does not take the file");
            }
            if (then) {
                then();
            }
        };
    }
    // Presses Load and chooses the file; the job has begun.
    void beginLoad(const QString &name)
    {
        page_->answers().expect(opening(name));
        page_->press("buttonLoad");
        QVERIFY(page_->isBusy());
    }
    void load(const QString &name)
    {
        beginLoad(name);
        QTRY_VERIFY_WITH_TIMEOUT(!page_->isBusy(), patience);
    }
    // The same, when it goes wrong: title and text of the error.
    QString failToLoad(const QString &name, const std::function<void()> &then = nullptr)
    {
        page_->answers().expect(opening(name, then));
        return errorAfter("buttonLoad");
    }
    void beginSave(const QString &name, const char *filter)
    {
        page_->answers().expect(ModalAnswers::savingAs(name, QString::fromLatin1(filter)));
        page_->press("buttonSave");
        QVERIFY(page_->isBusy());
    }
    void save(const QString &name, const char *filter)
    {
        beginSave(name, filter);
        QTRY_VERIFY_WITH_TIMEOUT(!page_->isBusy(), patience);
    }
    QString failToSave(const QString &name, const char *filter)
    {
        page_->answers().expect(ModalAnswers::savingAs(name, QString::fromLatin1(filter)));
        return errorAfter("buttonSave");
    }
    // Presses the button and reads the error that comes behind the dialogs that are expected so
    // far.
    QString errorAfter(const char *button)
    {
        QString title;
        QString text;
        page_->answers().expect(ModalAnswers::reading(&title, &text));
        page_->press(button);
        [&] { QTRY_COMPARE(page_->answers().left(), 0); }();
        [&] { QTRY_VERIFY(QApplication::activeModalWidget() == nullptr); }();
        [&] { QTRY_VERIFY(!page_->isBusy()); }();
        return title + QLatin1Char('|') + text;
    }

    // Of the table on view.
    QStringList column(int which) const
    {
        QStringList cells;
        for (int row = 0; row < page_->rows(); ++row) {
            cells << page_->cell(row, which);
        }
        return cells;
    }
    QStringList numbers() const { return column(ScanModel::NumberColumn); }
    QStringList devices() const { return column(ScanModel::DeviceColumn); }
    static QStringList numbersOf(int rows, int first = 0)
    {
        QStringList all;
        for (int n = first; n < first + rows; ++n) {
            all << numberOf(n);
        }
        return all;
    }
    static QStringList devicesOf(int rows, int first = 0)
    {
        QStringList all;
        for (int n = first; n < first + rows; ++n) {
            all << deviceOf(n);
        }
        return all;
    }
    // How wide the photo on view is, 0 for none.
    int shownPhoto() const
    {
        const ProportionalSclaleWidget *view = page_->photo();
        return QTest::qWaitFor([view] { return !view->isLoading(); }) ? view->photoSize().width()
                                                                      : -1;
    }
    bool canSavePhoto() const { return page_->find<QPushButton>("buttonSavePhoto")->isEnabled(); }
    void expectNothingShown() const
    {
        QCOMPARE(page_->currentRow(), -1);
        QCOMPARE(page_->photo()->lines(), QStringList());
        QCOMPARE(shownPhoto(), 0);
        QVERIFY(!canSavePhoto());
    }
    // The passage that is current, with its own text and its own photo.
    void expectShown(int row, int n, bool withPhoto) const
    {
        QCOMPARE(page_->currentRow(), row);
        QCOMPARE(page_->photo()->lines().value(0), QStringLiteral("Number: ") + numberOf(n));
        QCOMPARE(shownPhoto(), withPhoto ? photoWidth(n) : 0);
        QCOMPARE(canSavePhoto(), withPhoto);
    }

    // Checks a box or takes a choice, with a finger.
    void choose(const char *name) const
    {
        auto *button = page_->find<QAbstractButton>(name);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(10, button->height() / 2));
    }
    // Into the filter.
    void type(const QString &text) const
    {
        QLineEdit *edit = typed();
        edit->clear();
        QTest::keyClicks(edit, text);
    }
    QLineEdit *typed() const { return page_->find<QLineEdit>("lineEditFilter"); }

    std::unique_ptr<QTemporaryDir> stick_;
    std::unique_ptr<Page> page_;
};
