// SPDX-License-Identifier: MIT
#include "netsetup/dlgsetupnetwork.h"

#include "tests/netsetup/networkdialogcase.h"
#include "tests/support/filelimit.h"
#include "tests/support/modalanswers.h"

#include <QRegExpValidator>
#include <QSignalSpy>

class TestDlgSetupNetwork : public NetworkDialogCase
{
    Q_OBJECT

private Q_SLOTS:
    // Opening.
    void showsTheFiles();
    void opensWithoutFiles();
    void dhcpDisablesFromTheStart();
    void boxEnablesAndDisables();
    void slotForTheBox();

    // Typing.
    void validators();
    void typedTexts_data();
    void typedTexts();
    void halfTypedTextIsNotTaken_data();
    void halfTypedTextIsNotTaken();
    void otherWindowDoesNotEndTheTyping();
    void emptiedServerIsTaken_data();
    void emptiedServerIsTaken();
    void keysAreTheDialogs();

    // Leaving.
    void applyWritesWhatIsThere();
    void applyWhileEditing_data();
    void applyWhileEditing();
    void applyCommitsTheBox_data();
    void applyCommitsTheBox();
    void wordForDhcpIsSavedAsZero();
    void applyWithoutFiles();
    void rejectWritesNothing_data();
    void rejectWritesNothing();
    void runsModally();

    // What cannot be written.
    void tellsFailedWrite();
    void fullDiskKeepsTheOldFiles();
};

void TestDlgSetupNetwork::showsTheFiles()
{
    openOnFiles();
    QCOMPARE(shown().join(QLatin1Char(' ')),
             QStringLiteral("gate park.lan 10.0.0.2 255.0.0.0 10.0.0.1 10.0.0.5 10.0.0.6"));
    QVERIFY(!box()->isChecked());
    for (const QString &name : fieldNames()) {
        QVERIFY(field(name)->isEnabled());
    }
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
}

void TestDlgSetupNetwork::opensWithoutFiles()
{
    open();
    for (const QString &text : shown()) {
        QCOMPARE(text, QString());
    }
    QVERIFY(!box()->isChecked());
    QVERIFY(field("leIPAddress")->isEnabled());
    QCOMPARE(TextFile::names(), QStringList());
}

void TestDlgSetupNetwork::dhcpDisablesFromTheStart()
{
    TextFile::write(NetworkFiles::interface(), "DHCP=1\nIPADDR=10.0.0.2\n");
    open();
    QVERIFY(box()->isChecked());
    for (const QString &name : fieldNames()) {
        QCOMPARE(field(name)->isEnabled(), fieldNames().indexOf(name) < 2);
    }
    QCOMPARE(field("leIPAddress")->text(), QStringLiteral("10.0.0.2"));
}

void TestDlgSetupNetwork::boxEnablesAndDisables()
{
    openOnFiles();
    for (int press = 1; press <= 4; ++press) {
        click("cbUseDHCP");
        const bool checked = press % 2 == 1;
        QCOMPARE(box()->isChecked(), checked);
        for (const QString &name : fieldNames()) {
            QCOMPARE(field(name)->isEnabled(), !checked || fieldNames().indexOf(name) < 2);
        }
    }
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
}

void TestDlgSetupNetwork::slotForTheBox()
{
    openOnFiles();
    dialog_->useDHCP(Qt::Checked);
    QVERIFY(!field("le2DNS")->isEnabled());
    QVERIFY(field("leDomainName")->isEnabled());
    dialog_->useDHCP(Qt::Unchecked);
    QVERIFY(field("le2DNS")->isEnabled());
}

void TestDlgSetupNetwork::validators()
{
    open();
    const QString name = QStringLiteral(R"([a-z|A-Z_][a-z|A-Z|\d|\.|_]*)");
    const QString address = QStringLiteral(R"([\d]{1,3}\.[\d]{1,3}\.[\d]{1,3}\.[\d]{1,3})");
    for (const QString &each : fieldNames()) {
        const auto *validator = qobject_cast<const QRegExpValidator *>(field(each)->validator());
        QVERIFY(validator != nullptr);
        QCOMPARE(validator->regExp().pattern(), fieldNames().indexOf(each) < 2 ? name : address);
        QCOMPARE(validator->regExp().caseSensitivity(), Qt::CaseSensitive);
    }
}

void TestDlgSetupNetwork::typedTexts_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("address");
    const auto row = [](const char *typed, const char *name, const char *address) {
        QTest::newRow(typed) << QString::fromLatin1(typed) << QString::fromLatin1(name)
                             << QString::fromLatin1(address);
    };
    row("gate", "gate", "");
    row("Gate_1.lan", "Gate_1.lan", "1.");
    row("a|b", "a|b", "");
    row("|", "|", "");
    row("_x", "_x", "");
    row("north-gate", "northgate", "");
    row("1gate", "gate", "1");
    row(".gate", "gate", "");
    row("ga te", "gate", "");
    row("10.0.0.1", "", "10.0.0.1");
    row("999.999.999.999", "", "999.999.999.999");
    row("1234.1", "", "123.1");
    row("1..2", "", "1.2");
    row("1.2.3.4.5", "", "1.2.3.45");
    row("1,2", "", "12");
    row("1 2", "", "12");
}

void TestDlgSetupNetwork::typedTexts()
{
    QFETCH(const QString, typed);
    QFETCH(const QString, name);
    QFETCH(const QString, address);
    open();
    for (const QString &each : fieldNames()) {
        type(each.toLatin1().constData(), typed);
        QCOMPARE(field(each)->text(), fieldNames().indexOf(each) < 2 ? name : address);
    }
}

void TestDlgSetupNetwork::halfTypedTextIsNotTaken_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("typed");
    for (const char *name : {"leIPAddress", "leNetorkmask", "leGateway", "le1DNS", "le2DNS"}) {
        QTest::newRow(name) << QString::fromLatin1(name) << QStringLiteral("192.168.");
    }
    for (const char *name : {"leHostName", "leDomainName", "leIPAddress"}) {
        QTest::addRow("%s, emptied", name) << QString::fromLatin1(name) << QString();
    }
}

// The operator sees it come back, and so does the file.
void TestDlgSetupNetwork::halfTypedTextIsNotTaken()
{
    QFETCH(const QString, name);
    QFETCH(const QString, typed);
    openOnFiles();
    const QStringList before = shown();
    type(name.toLatin1().constData(), typed);
    QCOMPARE(field(name)->text(), typed);
    click(name == QLatin1String("leGateway") ? "leHostName" : "leGateway");
    QCOMPARE(shown(), before);
    click("pbApply");
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asSaved());
}

void TestDlgSetupNetwork::otherWindowDoesNotEndTheTyping()
{
    openOnFiles();
    QLineEdit *gateway = field("leGateway");
    type("leGateway", QStringLiteral("10.0."));
    QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(gateway, &away);
    QVERIFY(gateway->hasFocus());
    QTest::keyClicks(gateway, QStringLiteral("0.254"));
    QCOMPARE(gateway->text(), QStringLiteral("10.0.0.254"));
}

void TestDlgSetupNetwork::emptiedServerIsTaken_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("saved");
    QTest::newRow("first") << QStringLiteral("le1DNS")
                           << QByteArray("search lan\nnameserver \nnameserver 10.0.0.6\n"
                                         "nameserver 10.0.0.7\n");
    QTest::newRow("second") << QStringLiteral("le2DNS")
                            << QByteArray("search lan\nnameserver 10.0.0.5\nnameserver \n"
                                          "nameserver 10.0.0.7\n");
}

void TestDlgSetupNetwork::emptiedServerIsTaken()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, saved);
    openOnFiles();
    type(name.toLatin1().constData(), QString());
    click("leHostName");
    QCOMPARE(field(name)->text(), QString());
    click("pbApply");
    QCOMPARE(TextFile::content(NetworkFiles::resolver()), saved);
}

// Not those of a table's cell, which the toolkit would make of the fields.
void TestDlgSetupNetwork::keysAreTheDialogs()
{
    open();
    const char *order[] = {"leHostName", "leDomainName", "cbUseDHCP", "leIPAddress", "leNetorkmask",
                           "leGateway",  "le1DNS",       "le2DNS",    "pbApply",     "pbCancel"};
    for (const char *name : order) {
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(name));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("pbCancel"));
    click("leHostName");
    QTest::keyClick(field("leHostName"), Qt::Key_Return);
    QCoreApplication::processEvents();
    QVERIFY(dialog_->isVisible());
    QTest::keyClick(field("leHostName"), Qt::Key_Escape);
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(TextFile::names(), QStringList());
}

void TestDlgSetupNetwork::applyWritesWhatIsThere()
{
    openOnFiles();
    QSignalSpy finished(dialog_.get(), &QDialog::finished);
    type("leHostName", QStringLiteral("north_gate"));
    type("leDomainName", QStringLiteral("lan"));
    type("leIPAddress", QStringLiteral("192.168.1.2"));
    type("leNetorkmask", QStringLiteral("255.255.255.0"));
    type("leGateway", QStringLiteral("192.168.1.1"));
    type("le1DNS", QStringLiteral("192.168.1.5"));
    type("le2DNS", QStringLiteral("192.168.1.6"));
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
    click("pbApply");
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().first().toInt(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(NetworkFiles::contents(),
             QList<QByteArray>({"DOMAINNAME=lan\nHOSTNAME=north_gate\n# panel\n",
                                "DEVICE=eth0\nDHCP=0\nGATEWAY=192.168.1.1\nIPADDR=192.168.1.2\n"
                                "NETMASK=255.255.255.0\n",
                                "search lan\nnameserver 192.168.1.5\nnameserver 192.168.1.6\n"
                                "nameserver 10.0.0.7\n"}));
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

void TestDlgSetupNetwork::applyWhileEditing_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"click", "keyboard", "call"}) {
        QTest::newRow(way) << QString::fromLatin1(way);
    }
}

void TestDlgSetupNetwork::applyWhileEditing()
{
    QFETCH(const QString, way);
    openOnFiles();
    type("leIPAddress", QStringLiteral("172.16.0.9"));
    QVERIFY(field("leIPAddress")->hasFocus());
    if (way == QLatin1String("click")) {
        click("pbApply");
    } else if (way == QLatin1String("keyboard")) {
        for (int tab = 0; tab < 5; ++tab) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QVERIFY(button("pbApply")->hasFocus());
        QTest::keyClick(button("pbApply"), Qt::Key_Space);
    } else {
        dialog_->accept();
    }
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(TextFile::content(NetworkFiles::interface()),
             NetworkFiles::interfaceSaved().replace("10.0.0.2", "172.16.0.9"));
}

void TestDlgSetupNetwork::applyCommitsTheBox_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"click", "keyboard", "call", "never entered"}) {
        QTest::newRow(way) << QString::fromLatin1(way);
    }
}

void TestDlgSetupNetwork::applyCommitsTheBox()
{
    QFETCH(const QString, way);
    openOnFiles();
    if (way == QLatin1String("click")) {
        click("cbUseDHCP");
        click("pbApply");
    } else if (way == QLatin1String("keyboard")) {
        box()->setFocus();
        QTest::keyClick(box(), Qt::Key_Space);
        dialog_->accept();
    } else if (way == QLatin1String("call")) {
        click("cbUseDHCP");
        dialog_->accept();
    } else {
        box()->setChecked(true);
        dialog_->accept();
    }
    // The addresses stay in the file.
    QCOMPARE(TextFile::content(NetworkFiles::interface()),
             NetworkFiles::interfaceSaved().replace("DHCP=0", "DHCP=1"));
}

void TestDlgSetupNetwork::wordForDhcpIsSavedAsZero()
{
    TextFile::write(NetworkFiles::interface(), "DHCP=yes\n");
    open();
    QVERIFY(!box()->isChecked());
    QVERIFY(field("leGateway")->isEnabled());
    click("pbApply");
    QCOMPARE(TextFile::content(NetworkFiles::interface()),
             QByteArray("DHCP=0\nGATEWAY=\nIPADDR=\nNETMASK=\n"));
}

void TestDlgSetupNetwork::applyWithoutFiles()
{
    open();
    type("leIPAddress", QStringLiteral("10.0.0.2"));
    click("pbApply");
    QCOMPARE(TextFile::names(), NetworkFiles::all());
    QCOMPARE(NetworkFiles::contents(),
             QList<QByteArray>({"DOMAINNAME=\nHOSTNAME=\n",
                                "DHCP=0\nGATEWAY=\nIPADDR=10.0.0.2\nNETMASK=\n",
                                "nameserver \nnameserver \n"}));
}

void TestDlgSetupNetwork::rejectWritesNothing_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<bool>("withFiles");
    for (const char *way : {"button", "escape", "close", "call"}) {
        QTest::addRow("%s", way) << QString::fromLatin1(way) << true;
        QTest::addRow("%s, no files", way) << QString::fromLatin1(way) << false;
    }
}

void TestDlgSetupNetwork::rejectWritesNothing()
{
    QFETCH(const QString, way);
    QFETCH(const bool, withFiles);
    withFiles ? openOnFiles() : open();
    QSignalSpy finished(dialog_.get(), &QDialog::finished);
    type("leHostName", QStringLiteral("other"));
    type("leIPAddress", QStringLiteral("1.2.3.4"));
    click("cbUseDHCP");
    type("leDomainName", QStringLiteral("other"));
    if (way == QLatin1String("button")) {
        click("pbCancel");
    } else if (way == QLatin1String("escape")) {
        QTest::keyClick(field("leDomainName"), Qt::Key_Escape);
    } else if (way == QLatin1String("close")) {
        dialog_->close();
    } else {
        dialog_->reject();
    }
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().first().toInt(), static_cast<int>(QDialog::Rejected));
    dialog_.reset();
    if (withFiles) {
        QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
    }
    QCOMPARE(TextFile::names(), withFiles ? NetworkFiles::all() : QStringList());
}

void TestDlgSetupNetwork::runsModally()
{
    NetworkFiles::writeAll();
    ModalAnswers answers;
    for (const auto &[name, code] : {std::pair<const char *, int>{"pbApply", QDialog::Accepted},
                                     {"pbCancel", QDialog::Rejected}}) {
        answers.expect(ModalAnswers::pressing(name));
        DlgSetupNetwork dialog(nullptr);
        QCOMPARE(dialog.exec(), code);
    }
    QCOMPARE(answers.left(), 0);
    QCOMPARE(answers.unexpected(), QStringList());
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asSaved());
}

// One file cannot be written: all stay as they were, and it is told.
void TestDlgSetupNetwork::tellsFailedWrite()
{
    TextFile::write(NetworkFiles::common(), NetworkFiles::commonText());
    QVERIFY(QDir().mkdir(NetworkFiles::interface()));
    TextFile::write(NetworkFiles::resolver(), NetworkFiles::resolverText());
    ModalAnswers answers;
    open();
    QCOMPARE(field("leIPAddress")->text(), QString());
    type("leIPAddress", QStringLiteral("1.2.3.4"));
    QString title;
    QString text;
    answers.expect(ModalAnswers::reading(&title, &text));
    click("pbApply");
    QCOMPARE(title, QStringLiteral("Error"));
    QCOMPARE(text, QStringLiteral("Can't store the network settings\nIs a directory"));
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(dialog_->result(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(answers.unexpected(), QStringList());
    QVERIFY(QFileInfo(NetworkFiles::interface()).isDir());
    QVERIFY(QDir(NetworkFiles::interface()).isEmpty());
    QCOMPARE(TextFile::content(NetworkFiles::common()), NetworkFiles::commonText());
    QCOMPARE(TextFile::content(NetworkFiles::resolver()), NetworkFiles::resolverText());
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

void TestDlgSetupNetwork::fullDiskKeepsTheOldFiles()
{
    openOnFiles();
    ModalAnswers answers;
    type("leHostName", QStringLiteral("other"));
    type("le2DNS", QStringLiteral("1.2.3.4"));
    QString title;
    QString text;
    answers.expect(ModalAnswers::reading(&title, &text));
    {
        const FileLimit limit(20);
        click("pbApply");
    }
    QCOMPARE(text, QStringLiteral("Can't store the network settings\nFile too large"));
    QVERIFY(!dialog_->isVisible());
    QCOMPARE(dialog_->result(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(answers.unexpected(), QStringList());
    QCOMPARE(NetworkFiles::contents(), NetworkFiles::asWritten());
    QCOMPARE(TextFile::names(), NetworkFiles::all());
}

STALLO_TEST_MAIN(TestDlgSetupNetwork)
#include "tst_dlgsetupnetwork.moc"
