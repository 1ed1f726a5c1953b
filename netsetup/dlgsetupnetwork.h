// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QDialog>

#include <memory>

class ConfigParser;
class QDataWidgetMapper;
class ResolvParser;
class Ui_Dialog;

// The panel's own network identity, which its boot scripts read at the next start: host and domain
// name, DHCP, address, mask, gateway and two name servers, in three files of the current directory.
// What is typed is kept in a ModelSettings when its field is left, if the field holds it to be
// whole; files are written by "Apply" only, all three or none, and it tells when they could not be
// stored. Nothing is said about files that cannot be read.
//
// Stands for itself: nothing in the panel opens it. Run modally and destroyed afterwards. GUI
// thread.
class DlgSetupNetwork : public QDialog
{
    Q_OBJECT

public:
    class ModelSettings;

    explicit DlgSetupNetwork(QWidget *parent);
    ~DlgSetupNetwork() override;

    // Which is only shown. Empty when not known.
    void setHardwareAddress(const QString &address);

public Q_SLOTS:
    void accept() override;
    // state is a Qt::CheckState. What DHCP provides cannot be typed; the names can.
    void useDHCP(int state);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void check();
    void map();

    std::unique_ptr<Ui_Dialog> ui_;
    std::unique_ptr<ModelSettings> model_;
    // Goes first: it looks at the model and at the form's fields.
    std::unique_ptr<QDataWidgetMapper> mapper_;
};

// The settings as one row, a column each, for the dialog's mapper. Each entry is looked up in its
// file's parser; one that is not there is added, empty, and written by sync().
//
// The files are read once, when it is made. Any role but display and edit, and any place but the
// eight, gives an invalid value and takes none.
class DlgSetupNetwork::ModelSettings : public QAbstractTableModel
{
public:
    enum Section {
        HostName,
        DomainName,
        UseDHCP,
        IPAddress,
        NetworkMask,
        Gateway,
        FirstServer,
        SecondServer,
        SectionCount
    };

    ModelSettings();
    ~ModelSettings() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    // Stores every section, but only the host name announces the change and returns true. The
    // mapper needs neither.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    // Replaces the three files, all or none; the reason when none was.
    QString sync() const;

private:
    QString &entry(int section) const;

    std::unique_ptr<ConfigParser> common_;
    std::unique_ptr<ConfigParser> interface_;
    std::unique_ptr<ResolvParser> resolver_;
};
