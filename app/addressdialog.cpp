// SPDX-License-Identifier: MIT
#include "app/addressdialog.h"

#include "app/errorbrowser.h"
#include "app/settings.h"

#include "ui_addressdialog.h"

#include <QMenu>
#include <QShortcut>

AddressDialog::AddressDialog(QWidget *parent)
    : QDialog(parent)
    , ui_(std::make_unique<Ui_AddressDialogClass>())
    , menu_(new QMenu(tr("Addresses editor"), this))
    , addAction_(menu_->addAction(tr("Add address")))
    , removeAction_(menu_->addAction(tr("Remove address")))
{
    ui_->setupUi(this);
    wire();
    load();
}

AddressDialog::~AddressDialog() = default;

void AddressDialog::wire()
{
    connect(addAction_, &QAction::triggered, this, &AddressDialog::addAddress);
    connect(removeAction_, &QAction::triggered, this, &AddressDialog::removeAddress);

    connect(ui_->lineEditAddress, &QLineEdit::returnPressed, this, &AddressDialog::applyAddress);
    connect(ui_->lineEditAddress, &QLineEdit::textChanged, this, &AddressDialog::addressChanged);

    QListWidget *list = ui_->listWidgetAddresses;
    connect(list, &QWidget::customContextMenuRequested, this, &AddressDialog::menuRequested);
    connect(list, &QListWidget::itemActivated, this, &AddressDialog::accept);
    connect(list, &QListWidget::itemSelectionChanged, this, &AddressDialog::currentItemChanged);

    connect(ui_->buttonNew, &QPushButton::clicked, this, &AddressDialog::addAddress);
    connect(ui_->buttonRemove, &QPushButton::clicked, this, &AddressDialog::removeAddress);
    connect(ui_->buttonOk, &QPushButton::clicked, this, &AddressDialog::accept);
    connect(ui_->buttonCancel, &QPushButton::clicked, this, &AddressDialog::reject);

    auto *insert = new QShortcut(QKeySequence(Qt::Key_Insert), this);
    connect(insert, &QShortcut::activated, this, &AddressDialog::addAddress);
    auto *remove = new QShortcut(QKeySequence(Qt::Key_Delete), this);
    connect(remove, &QShortcut::activated, this, &AddressDialog::removeAddress);
}

void AddressDialog::load()
{
    const Settings *settings = Settings::instance();
    if (settings != nullptr) {
        ui_->spinBoxTPPort->setValue(settings->vaskParkingPort());
        ui_->spinBoxFileTransfer->setValue(settings->fileTransferPort());
        ui_->listWidgetAddresses->addItems(settings->addressList());
    }
    if (ui_->listWidgetAddresses->count() > 0) {
        ui_->listWidgetAddresses->setCurrentRow(0);
    } else {
        // Nothing to choose from: what comes next is typed.
        ui_->lineEditAddress->setFocus();
    }
}

void AddressDialog::addAddress()
{
    ui_->listWidgetAddresses->addItem(ui_->lineEditAddress->text());
    ui_->listWidgetAddresses->setCurrentRow(ui_->listWidgetAddresses->count() - 1);
    ui_->lineEditAddress->setFocus();
    saveSettings();
}

void AddressDialog::removeAddress()
{
    ui_->lineEditAddress->clear();
    // The entry takes itself out of the list; what becomes current then fills the editor.
    delete ui_->listWidgetAddresses->currentItem();
    saveSettings();
}

void AddressDialog::applyAddress()
{
    QListWidgetItem *current = ui_->listWidgetAddresses->currentItem();
    if (current == nullptr || ui_->lineEditAddress->text().isEmpty()) {
        return;
    }
    current->setText(ui_->lineEditAddress->text());
    saveSettings();
}

void AddressDialog::addressChanged(const QString &text)
{
    ui_->buttonNew->setEnabled(!text.isEmpty());
}

void AddressDialog::currentItemChanged()
{
    const QList<QListWidgetItem *> selected = ui_->listWidgetAddresses->selectedItems();
    ui_->buttonOk->setEnabled(!selected.isEmpty());
    ui_->buttonRemove->setEnabled(!selected.isEmpty());
    if (!selected.isEmpty()) {
        ui_->lineEditAddress->setText(selected.first()->text());
    }
}

void AddressDialog::menuRequested(const QPoint &position)
{
    removeAction_->setEnabled(ui_->listWidgetAddresses->itemAt(position) != nullptr);
    menu_->popup(ui_->listWidgetAddresses->viewport()->mapToGlobal(position));
}

void AddressDialog::accept()
{
    const QListWidgetItem *current = ui_->listWidgetAddresses->currentItem();
    if (current == nullptr) {
        return;
    }
    result_ = current->text();
    saveSettings();
    QDialog::accept();
}

void AddressDialog::reject()
{
    result_.clear();
    QDialog::reject();
}

void AddressDialog::saveSettings()
{
    Settings *settings = Settings::instance();
    if (settings == nullptr) {
        return;
    }
    settings->setVaskParkingPort(ui_->spinBoxTPPort->value());
    settings->setFileTransferPort(ui_->spinBoxFileTransfer->value());
    QStringList addresses;
    for (int row = 0; row < ui_->listWidgetAddresses->count(); ++row) {
        addresses.append(ui_->listWidgetAddresses->item(row)->text());
    }
    if (!settings->setAddressList(addresses)) {
        ErrorBrowser::error(tr("Error"), tr("The address list could not be stored"), this);
    }
}

void AddressDialog::backspace()
{
    ui_->lineEditAddress->backspace();
    ui_->lineEditAddress->setFocus();
}

void AddressDialog::cursorBackward()
{
    ui_->lineEditAddress->setFocus();
    ui_->lineEditAddress->cursorBackward(false);
    ui_->lineEditAddress->setFocus();
}

void AddressDialog::cursorForward()
{
    ui_->lineEditAddress->setFocus();
    ui_->lineEditAddress->cursorForward(false);
    ui_->lineEditAddress->setFocus();
}
