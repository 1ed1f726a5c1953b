// SPDX-License-Identifier: MIT
#include "netsetup/dlgsetupnetwork.h"

#include "app/errorbrowser.h"
#include "netsetup/configparser.h"
#include "netsetup/fileset.h"
#include "netsetup/resolvparser.h"
#include "resources/resources.h"

#include "ui_dlgsetupnetwork.h"

#include <QDataWidgetMapper>
#include <QItemDelegate>
#include <QRegExpValidator>
#include <QScreen>
#include <QShowEvent>

#include <cerrno>
#include <iterator>

namespace
{

constexpr const char *keys[] = {"HOSTNAME", "DOMAINNAME", "DHCP",        "IPADDR",
                                "NETMASK",  "GATEWAY",    "nameserver0", "nameserver1"};
// There while the three files are being replaced.
const QString setMark = QStringLiteral("./cfg-set.new");

static_assert(std::size(keys) == DlgSetupNetwork::ModelSettings::SectionCount);

bool isSection(int section)
{
    return section >= 0 && section < DlgSetupNetwork::ModelSettings::SectionCount;
}

// Commits a field when it is left. One that is left half typed shows again what is stored, so that
// all that is seen is what "Apply" writes.
//
// Keys are the dialog's: as the toolkit has it they are those of a table's cell, where Escape does
// not close the dialog and Tab does not leave an empty field.
class FieldDelegate : public QItemDelegate
{
public:
    using QItemDelegate::QItemDelegate;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress) {
            return false;
        }
        if (event->type() == QEvent::FocusOut &&
            static_cast<QFocusEvent *>(event)->reason() == Qt::ActiveWindowFocusReason) {
            return false; // another window is in front for a while; the field goes on being edited
        }
        const bool taken = QItemDelegate::eventFilter(watched, event);
        auto *field = qobject_cast<QLineEdit *>(watched);
        if (event->type() == QEvent::FocusOut && field != nullptr && field->isActiveWindow() &&
            !field->hasFocus() && !field->hasAcceptableInput()) {
            Q_EMIT closeEditor(field, RevertModelCache);
        }
        return taken;
    }
};

// There need not be a name server, so one that is erased is whole, too.
class ServerValidator : public QRegExpValidator
{
public:
    using QRegExpValidator::QRegExpValidator;

    State validate(QString &text, int &position) const override
    {
        return text.isEmpty() ? Acceptable : QRegExpValidator::validate(text, position);
    }
};

} // namespace

DlgSetupNetwork::ModelSettings::ModelSettings()
{
    const QStringList names = {QStringLiteral("./cfg-common.cfg"),
                               QStringLiteral("./cfg-ifcfg-eth0.cfg"),
                               QStringLiteral("./cfg-resolv.cfg")};
    FileSet::repair(setMark, names);
    common_ = std::make_unique<ConfigParser>(names.at(0));
    interface_ = std::make_unique<ConfigParser>(names.at(1));
    resolver_ = std::make_unique<ResolvParser>(names.at(2));
}

DlgSetupNetwork::ModelSettings::~ModelSettings() = default;

int DlgSetupNetwork::ModelSettings::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 1;
}

int DlgSetupNetwork::ModelSettings::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : SectionCount;
}

QString &DlgSetupNetwork::ModelSettings::entry(int section) const
{
    const QString key = QLatin1String(keys[section]);
    if (section <= DomainName) {
        return (*common_)[key];
    }
    return section <= Gateway ? (*interface_)[key] : (*resolver_)[key];
}

QVariant DlgSetupNetwork::ModelSettings::data(const QModelIndex &index, int role) const
{
    const int section = index.column();
    if (!isSection(section) || (role != Qt::DisplayRole && role != Qt::EditRole)) {
        return QVariant();
    }
    const QString &value = entry(section);
    return section == UseDHCP ? QVariant(value.toInt() >= 1) : QVariant(value);
}

bool DlgSetupNetwork::ModelSettings::setData(const QModelIndex &index, const QVariant &value,
                                             int role)
{
    const int section = index.column();
    if (!isSection(section) || role != Qt::EditRole) {
        return false;
    }
    if (section == UseDHCP) {
        entry(section) = value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    } else {
        entry(section) = value.toString();
    }
    if (section != HostName) {
        return false;
    }
    Q_EMIT dataChanged(index, index);
    return true;
}

QString DlgSetupNetwork::ModelSettings::sync() const
{
    FileSet set(setMark);
    if (!common_->addTo(&set) || !interface_->addTo(&set) || !resolver_->addTo(&set)) {
        return qt_error_string(EIO);
    }
    return set.commit();
}

DlgSetupNetwork::DlgSetupNetwork(QWidget *parent)
    : QDialog(parent)
    , ui_(std::make_unique<Ui_Dialog>())
    , model_(std::make_unique<ModelSettings>())
    , mapper_(std::make_unique<QDataWidgetMapper>())
{
    initStalloResources();
    ui_->setupUi(this);
    check();
    connect(ui_->cbUseDHCP, &QCheckBox::stateChanged, this, &DlgSetupNetwork::useDHCP);
    connect(ui_->pbApply, &QPushButton::clicked, this, &DlgSetupNetwork::accept);
    connect(ui_->pbCancel, &QPushButton::clicked, this, &DlgSetupNetwork::reject);
    // Behind the connections: a file that says DHCP then disables its fields from the start.
    map();
}

DlgSetupNetwork::~DlgSetupNetwork() = default;

void DlgSetupNetwork::check()
{
    // Panels are in use with names that these let pass; a range of the numbers is not checked.
    const QRegExp name(QStringLiteral("[a-z|A-Z_][a-z|A-Z|\\d|\\.|_]*"));
    const QRegExp address(QStringLiteral("[\\d]{1,3}\\.[\\d]{1,3}\\.[\\d]{1,3}\\.[\\d]{1,3}"));
    for (QLineEdit *field : {ui_->leHostName, ui_->leDomainName}) {
        field->setValidator(new QRegExpValidator(name, this));
    }
    for (QLineEdit *field : {ui_->leIPAddress, ui_->leNetorkmask, ui_->leGateway}) {
        field->setValidator(new QRegExpValidator(address, this));
    }
    for (QLineEdit *field : {ui_->le1DNS, ui_->le2DNS}) {
        field->setValidator(new ServerValidator(address, this));
    }
}

void DlgSetupNetwork::map()
{
    mapper_->setModel(model_.get());
    mapper_->setOrientation(Qt::Horizontal);
    mapper_->setItemDelegate(new FieldDelegate(mapper_.get()));
    QWidget *const fields[] = {ui_->leHostName,  ui_->leDomainName, ui_->cbUseDHCP,
                               ui_->leIPAddress, ui_->leNetorkmask, ui_->leGateway,
                               ui_->le1DNS,      ui_->le2DNS};
    static_assert(std::size(fields) == ModelSettings::SectionCount);
    for (int section = 0; section < ModelSettings::SectionCount; ++section) {
        mapper_->addMapping(fields[section], section);
    }
    mapper_->toFirst();
}

void DlgSetupNetwork::setHardwareAddress(const QString &address)
{
    ui_->lMAC->setText(address);
}

void DlgSetupNetwork::accept()
{
    // A field that is still being edited is left, and so committed, as by a click.
    ui_->pbApply->setFocus();
    // The box may never have been entered, and its file may hold a word that is no number.
    model_->setData(model_->index(0, ModelSettings::UseDHCP), ui_->cbUseDHCP->isChecked());
    const QString error = model_->sync();
    if (!error.isEmpty()) {
        ErrorBrowser::error(
            tr("Error"), tr("Can't store the network settings") + QLatin1Char('\n') + error, this);
    }
    QDialog::accept();
}

void DlgSetupNetwork::useDHCP(int state)
{
    for (QWidget *field : std::initializer_list<QWidget *>{
             ui_->leIPAddress, ui_->leNetorkmask, ui_->leGateway, ui_->le1DNS, ui_->le2DNS}) {
        field->setEnabled(state == Qt::Unchecked);
    }
}

void DlgSetupNetwork::showEvent(QShowEvent *event)
{
    // Not when a window manager brings it back to where the operator has put it.
    if (!event->spontaneous()) {
        const QWidget *parent = parentWidget();
        const QRect ground = parent != nullptr
                                 ? QRect(parent->mapToGlobal(QPoint()), parent->size())
                                 : screen()->availableGeometry();
        QRect place = rect();
        place.moveCenter(ground.center());
        move(place.topLeft());
    }
    QDialog::showEvent(event);
}
