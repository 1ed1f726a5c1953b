// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/modalanswers.h"

#include <QTranslator>

#include <functional>
#include <memory>

class BrelWindow;
class MainWindow;
class QTableView;
class QWidget;

// The whole panel on its smallest screen, in one language: the frame with its title bar, the three
// pages with rows in their tables, and every dialog that they open. No device is connected.
//
// GUI thread. One at a time.
class Panel
{
public:
    // "en" or "ru"; both the program's catalogue and the toolkit's, where there is one.
    explicit Panel(const QString &language);
    ~Panel();

    BrelWindow &frame() { return *frame_; }
    QWidget &page() const;
    void showArchive();
    void showSuffered();
    void showOnLine();
    // The face of the page on view while a job runs, and back.
    void showBusy(bool busy);
    QTableView *table() const;

    // A window of the panel by its name, opened for as long as the action takes.
    using Action = std::function<void(QWidget &)>;
    static QStringList windows();
    void with(const QString &window, const Action &action);

private:
    void fill();
    std::unique_ptr<QWidget> make(const QString &dialog) const;
    void withError(const Action &action);
    void withMenu(const QString &window, const Action &action);

    QTranslator toolkitTexts_;
    QTranslator texts_;
    std::unique_ptr<BrelWindow> frame_;
    std::unique_ptr<MainWindow> window_;
};
