// SPDX-License-Identifier: MIT
#include "netsetup/dlgsetupnetwork.h"

#include "tests/netsetup/networkfiles.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>

#include <memory>

using Model = DlgSetupNetwork::ModelSettings;

namespace
{

// Gives out places that the model has not got.
class OpenModel : public Model
{
public:
    QModelIndex place(int column) const { return createIndex(0, column); }
};

} // namespace

// The one row of settings behind the dialog, without the dialog.
class TestNetworkModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { files_ = std::make_unique<NetworkFiles>(); }
    void cleanup() { files_.reset(); }

    void shape();
    void shows_data();
    void shows();
    void dhcp_data();
    void dhcp();
    void otherRoles();
    void otherPlaces();
    void stores_data();
    void stores();
    void storesDhcp_data();
    void storesDhcp();
    void missingFiles();
    void writesOnlyWhenTold();
    void writesUntouchedFilesInKeyOrder();

private:
    std::unique_ptr<NetworkFiles> files_;
};

void TestNetworkModel::shape()
{
    const Model model;
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.columnCount(), 8);
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
    QCOMPARE(model.columnCount(model.index(0, 0)), 0);
}

void TestNetworkModel::shows_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, int section, const QVariant &value) {
        QTest::newRow(name) << section << value;
    };
    row("host name", 0, QStringLiteral("gate"));
    row("domain name", 1, QStringLiteral("park.lan"));
    row("DHCP", 2, false);
    row("address", 3, QStringLiteral("10.0.0.2"));
    row("mask", 4, QStringLiteral("255.0.0.0"));
    row("gateway", 5, QStringLiteral("10.0.0.1"));
    row("first server", 6, QStringLiteral("10.0.0.5"));
    row("second server", 7, QStringLiteral("10.0.0.6"));
}

void TestNetworkModel::shows()
{
    QFETCH(const int, section);
    QFETCH(const QVariant, value);
    NetworkFiles::writeAll();
    const Model model;
    for (const int role : {Qt::DisplayRole, Qt::EditRole}) {
        const QVariant shown = model.data(model.index(0, section), role);
        QCOMPARE(shown, value);
        QCOMPARE(shown.type(), value.type());
    }
}

void TestNetworkModel::dhcp_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("shown");
    const auto row = [](const char *file, bool shown) {
        QTest::newRow(file) << QByteArray(file) << shown;
    };
    row("DHCP=1", true);
    row("DHCP=2", true);
    row("DHCP = 01", true);
    row("DHCP=0", false);
    row("DHCP=-1", false);
    row("DHCP=yes", false);
    row("DHCP=true", false);
    row("DHCP=1x", false);
    row("DHCP=", false);
    row("DHCP=99999999999", false);
    row("#DHCP=1", false);
    row("dhcp=1", false);
}

void TestNetworkModel::dhcp()
{
    QFETCH(const QByteArray, file);
    QFETCH(const bool, shown);
    TextFile::write(NetworkFiles::interface(), file);
    const Model model;
    QCOMPARE(model.data(model.index(0, Model::UseDHCP)), QVariant(shown));
}

void TestNetworkModel::otherRoles()
{
    NetworkFiles::writeAll();
    Model model;
    for (int section = 0; section < model.columnCount(); ++section) {
        const QModelIndex index = model.index(0, section);
        for (const int role : {Qt::DecorationRole, Qt::ToolTipRole, Qt::CheckStateRole,
                               Qt::TextAlignmentRole, Qt::UserRole}) {
            QVERIFY(!model.data(index, role).isValid());
        }
        for (const int role : {Qt::DisplayRole, Qt::CheckStateRole, Qt::UserRole}) {
            QVERIFY(!model.setData(index, QStringLiteral("1"), role));
        }
    }
    model.sync();
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asSaved());
}

void TestNetworkModel::otherPlaces()
{
    NetworkFiles::writeAll();
    OpenModel model;
    QSignalSpy changes(&model, &Model::dataChanged);
    for (const QModelIndex &index :
         {QModelIndex(), model.place(8), model.place(9), model.place(1000)}) {
        QVERIFY(!model.data(index).isValid());
        QVERIFY(!model.setData(index, QStringLiteral("1")));
    }
    QCOMPARE(changes.count(), 0);
    model.sync();
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asSaved());
}

void TestNetworkModel::stores_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("section");
    QTest::addColumn<QByteArray>("line");
    const auto row = [](const QString &file, int section, const char *key, const char *line) {
        QTest::newRow(key) << file << section << QByteArray(line);
    };
    row(NetworkFiles::common(), 0, "HOSTNAME", "HOSTNAME=new");
    row(NetworkFiles::common(), 1, "DOMAINNAME", "DOMAINNAME=new");
    row(NetworkFiles::interface(), 3, "IPADDR", "IPADDR=new");
    row(NetworkFiles::interface(), 4, "NETMASK", "NETMASK=new");
    row(NetworkFiles::interface(), 5, "GATEWAY", "GATEWAY=new");
    row(NetworkFiles::resolver(), 6, "first server",
        "search lan\nnameserver new\nnameserver 10.0.0.6");
    row(NetworkFiles::resolver(), 7, "second server",
        "nameserver 10.0.0.5\nnameserver new\nnameserver 10.0.0.7");
}

// Everything is stored; only the host name says so.
void TestNetworkModel::stores()
{
    QFETCH(const QString, file);
    QFETCH(const int, section);
    QFETCH(const QByteArray, line);
    const bool told = section == Model::HostName;
    NetworkFiles::writeAll();
    Model model;
    QSignalSpy changes(&model, &Model::dataChanged);
    const QModelIndex index = model.index(0, section);
    QCOMPARE(model.setData(index, QStringLiteral("new")), told);
    QCOMPARE(changes.count(), told ? 1 : 0);
    if (told) {
        QCOMPARE(changes.first().at(0).toModelIndex(), index);
        QCOMPARE(changes.first().at(1).toModelIndex(), index);
    }
    QCOMPARE(model.data(index), QVariant(QStringLiteral("new")));
    model.sync();
    QVERIFY(("\n" + TextFile::content(file)).contains("\n" + line + "\n"));
    // The other files are as if nothing had been changed.
    for (int other = 0; other < 3; ++other) {
        if (NetworkFiles::all().at(other) != file) {
            QCOMPARE(NetworkFiles::contents().at(other), NetworkFiles::asSaved().at(other));
        }
    }
}

void TestNetworkModel::storesDhcp_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("true") << QVariant(true) << QByteArray("DHCP=1");
    QTest::newRow("false") << QVariant(false) << QByteArray("DHCP=0");
    QTest::newRow("5") << QVariant(5) << QByteArray("DHCP=1");
    QTest::newRow("0") << QVariant(0) << QByteArray("DHCP=0");
    QTest::newRow("nothing") << QVariant() << QByteArray("DHCP=0");
}

void TestNetworkModel::storesDhcp()
{
    QFETCH(const QVariant, value);
    QFETCH(const QByteArray, stored);
    TextFile::write(NetworkFiles::interface(), "DHCP=yes\n");
    Model model;
    QSignalSpy changes(&model, &Model::dataChanged);
    QVERIFY(!model.setData(model.index(0, Model::UseDHCP), value));
    QCOMPARE(changes.count(), 0);
    model.sync();
    QCOMPARE(TextFile::content(NetworkFiles::interface()), stored + "\n");
}

// What was looked at is written, empty.
void TestNetworkModel::missingFiles()
{
    const Model model;
    for (int section = 0; section < model.columnCount(); ++section) {
        const QVariant expected = section == 2 ? QVariant(false) : QVariant(QString());
        QCOMPARE(model.data(model.index(0, section)), expected);
    }
    QCOMPARE(TextFile::names(), QStringList());
    model.sync();
    QCOMPARE(TextFile::names(), NetworkFiles::all());
    QCOMPARE(NetworkFiles::contents(),
             QList<QByteArray>({"DOMAINNAME=\nHOSTNAME=\n", "DHCP=\nGATEWAY=\nIPADDR=\nNETMASK=\n",
                                "nameserver \nnameserver \n"}));
}

void TestNetworkModel::writesOnlyWhenTold()
{
    NetworkFiles::writeAll();
    {
        Model model;
        for (int section = 0; section < model.columnCount(); ++section) {
            model.setData(model.index(0, section), QStringLiteral("1"));
        }
    }
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

void TestNetworkModel::writesUntouchedFilesInKeyOrder()
{
    NetworkFiles::writeAll();
    Model().sync();
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asSaved());
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

STALLO_TEST_MAIN(TestNetworkModel)
#include "tst_networkmodel.moc"
