// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

#include <memory>

class ArchiveWidget;
class OnLineWidget;
class QAbstractButton;
class QLabel;
class QStackedWidget;
class SufferedNumbersWidget;
class Ui_MainWindowClass;

// Owns the three pages for the whole run, shows one of them at a time, and hands access entries
// from the other pages to the access list page. Its page buttons stand in the title bar of the
// frame window, or, where there is no frame, nowhere: the shortcuts Alt+1 to Alt+3 work without
// them.
//
// One object, made before the event loop and destroyed after it; it flushes the settings at its
// end. GUI thread.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    // As the command line and the stack number the pages.
    enum eTabSelector : int { ArchiveTab = 0, SufferedTab = 1, OnLineTab = 2 };

    explicit MainWindow(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~MainWindow() override;

    // Null before the one main window is built.
    static MainWindow *activeWindow();

    // Shows the page and starts its network action with the device. An unknown selector does
    // nothing.
    void selectTab(eTabSelector selector, const QString &address);

    // One line that stays at the bottom of the window, whatever page is shown; empty for none.
    void showNotice(const QString &text);

public Q_SLOTS:
    // These two leave the page buttons as they are.
    void showNext();
    void showPrevious();
    void showArchive();
    void showSuffered();
    void showOnLine();

protected:
    void customEvent(QEvent *event) override;

private:
    void createNotice();
    void createPages();
    void createPageButtons();
    void createShortcuts();
    void showPage(QWidget *page, QAbstractButton *button);

    static MainWindow *mainWindow_;

    std::unique_ptr<Ui_MainWindowClass> ui_;
    // The pages belong to the stack, the stack to this window, the buttons to the title bar.
    ArchiveWidget *archive_ = nullptr;
    SufferedNumbersWidget *suffered_ = nullptr;
    OnLineWidget *onLine_ = nullptr;
    QStackedWidget *stack_ = nullptr;
    QLabel *notice_ = nullptr; // of the status bar
    QAbstractButton *archiveButton_ = nullptr;
    QAbstractButton *sufferedButton_ = nullptr;
    QAbstractButton *onLineButton_ = nullptr;
};
