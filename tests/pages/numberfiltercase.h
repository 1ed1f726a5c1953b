// SPDX-License-Identifier: MIT
#pragma once

#include "pages/numberfilter.h"
#include "pages/passagetable.h"
#include "records/scanmodel.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <memory>

// The filter group of a page and its table, wired as a page wires them.
struct FilterGroup {
    QWidget window;
    QVBoxLayout column{&window};
    QCheckBox on;
    QLineEdit text;
    QRadioButton whole{QStringLiteral("whole")};
    QRadioButton symbols{QStringLiteral("letters")};
    QRadioButton numbers{QStringLiteral("digits")};
    QTableView table;
    std::unique_ptr<NumberFilter> filter;

    FilterGroup()
    {
        for (QWidget *widget :
             std::initializer_list<QWidget *>{&on, &text, &whole, &symbols, &numbers, &table}) {
            column.addWidget(widget);
        }
        whole.setChecked(true);
    }

    void make(ScanModel *model)
    {
        const NumberFilter::Widgets widgets{&on, &text, &whole, &symbols, &numbers, &table};
        filter =
            std::make_unique<NumberFilter>(widgets, model, PassageTable::numbersOf(model), nullptr);
        QObject::connect(&on, &QCheckBox::stateChanged, filter.get(), &NumberFilter::enable);
        QObject::connect(&text, &QLineEdit::textChanged, filter.get(), &NumberFilter::apply);
        for (const QRadioButton *mode : {&whole, &symbols, &numbers}) {
            QObject::connect(mode, &QRadioButton::clicked, filter.get(), &NumberFilter::apply);
        }
    }
    QRadioButton &mode(VaskSettings::NumFilterMode which)
    {
        return which == VaskSettings::NumFilterWhole     ? whole
               : which == VaskSettings::NumFilterSymbols ? symbols
                                                         : numbers;
    }
};

// A table of five passages under a filter that is switched off, anew for each test function.
class NumberFilterCase : public QObject
{
    Q_OBJECT

protected:
    static constexpr auto whole = VaskSettings::NumFilterWhole;
    static constexpr auto symbols = VaskSettings::NumFilterSymbols;
    static constexpr auto numbers = VaskSettings::NumFilterNumbers;
    static constexpr int numberColumn = ScanModel::NumberColumn;

    // The other columns hold numbers as well.
    static Scan passage(const QString &number)
    {
        Scan scan;
        scan.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC));
        scan.setNumber(number);
        scan.setComment(QStringLiteral("Z999ZZ99"));
        scan.setAccessKey(QStringLiteral("Z999ZZ99"));
        return scan;
    }
    QString below(const char *name) const { return folder_->filePath(QLatin1String(name)); }
    void write(const char *name, const QStringList &plates) const
    {
        QByteArray bytes;
        for (const QString &plate : plates) {
            bytes.append(passage(plate).data(), Scan::size);
        }
        QFile file(below(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", name);
        }
    }
    NumberProxy *proxy() { return group_->filter->proxy(); }
    static QString numbersIn(const QAbstractItemModel &model)
    {
        QStringList found;
        for (int row = 0; row < model.rowCount(); ++row) {
            found << model.index(row, numberColumn).data().toString();
        }
        return found.join(QLatin1Char(' '));
    }
    QString shown() { return numbersIn(*proxy()); }
    QString all() const { return numbersIn(*model_); }

    static void click(QAbstractButton &button)
    {
        QTest::mouseClick(&button, Qt::LeftButton, {}, {5, 5});
    }
    void choose(VaskSettings::NumFilterMode mode)
    {
        click(group_->mode(mode));
        QVERIFY(group_->mode(mode).isChecked());
    }
    // Replaces what stands in the edit, key by key.
    void type(const QString &text)
    {
        group_->text.setFocus();
        group_->text.selectAll();
        QTest::keyClick(&group_->text, Qt::Key_Delete);
        QTest::keyClicks(&group_->text, text);
    }
    void showGroup()
    {
        group_->window.show();
        QVERIFY(QTest::qWaitForWindowActive(&group_->window));
    }

    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<ScanModel> model_;
    std::unique_ptr<FilterGroup> group_;

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        write("table.tpp",
              {QStringLiteral("A123BC77"), QStringLiteral("A123BC177"), QStringLiteral("K123MM99"),
               QStringLiteral("A456BC77"), QStringLiteral("A?23B*77")});
        model_ = std::make_unique<ScanModel>(below("table.tpp"), nullptr);
        group_ = std::make_unique<FilterGroup>();
        group_->make(model_.get());
        showGroup();
    }
    void cleanup()
    {
        group_.reset();
        model_.reset();
        VaskSettings::init();
    }
};
