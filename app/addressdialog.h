// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

class QAction;
class QMenu;
class Ui_AddressDialogClass;

// Chooses the device to talk to from a remembered list of addresses, and edits that list and the
// two ports of the devices. Every list action is stored at once, so it survives Cancel; a port
// changed alone is stored with the next list action or with OK. What could not be stored is told,
// and holds until the program ends. Addresses are kept exactly as typed: not checked, may be empty,
// may stand twice. Without a settings object nothing is stored.
//
// Made on the stack of the page that needs an address, run modally, then asked for result(). GUI
// thread.
class AddressDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AddressDialog(QWidget *parent);
    ~AddressDialog() override;

    // The accepted address; empty before any choice and after Cancel. Not the dialog's return code.
    QString result() const { return result_; }

public Q_SLOTS:
    void addAddress();
    void removeAddress();
    void applyAddress();
    void addressChanged(const QString &text);
    void currentItemChanged();
    void menuRequested(const QPoint &position);
    void accept() override;
    void reject() override;
    void saveSettings();

    // What keys beside the address editor do to it.
    void backspace();
    void cursorBackward();
    void cursorForward();

private:
    void wire();
    void load();

    std::unique_ptr<Ui_AddressDialogClass> ui_;
    // All owned by the dialog.
    QMenu *menu_;
    QAction *addAction_;
    QAction *removeAction_;
    QString result_;
};
