// SPDX-License-Identifier: MIT
#include "pages/devicetitle.h"

#include "tests/support/testmain.h"

class TestDeviceTitle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plain();
    void device_data();
    void device();
    void onLine_data();
    void onLine();
    void placeholdersAreNotFilledTwice();
};

void TestDeviceTitle::plain()
{
    QCOMPARE(DeviceTitle::plain(QStringLiteral("Archive view")),
             QStringLiteral("<center><font color='white' size='+2'>Archive view</font></center>"));
}

void TestDeviceTitle::device_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("italics");
    const auto row = [](const char *device, const char *italics) {
        QTest::newRow(device) << QString::fromUtf8(device) << QString::fromUtf8(italics);
    };
    row("", "");
    row("192.168.0.1", "192.168.0.1");
    row("local", "local");
    row("<b>gate</b>", "&lt;b&gt;gate&lt;/b&gt;");
    row("a & b", "a &amp; b");
    row("\"q\"", "&quot;q&quot;");
    row("</I></center><img src='x'>", "&lt;/I&gt;&lt;/center&gt;&lt;img src='x'&gt;");
    row("\xd0\x92\xd0\xbe\xd1\x80\xd0\xbe\xd1\x82\xd0\xb0",
        "\xd0\x92\xd0\xbe\xd1\x80\xd0\xbe\xd1\x82\xd0\xb0");
}

void TestDeviceTitle::device()
{
    QFETCH(QString, device);
    QFETCH(QString, italics);
    QCOMPARE(DeviceTitle::device(QStringLiteral("Archive view"), device),
             QStringLiteral("<center><font color='white' size='+2'>Archive view - </font>"
                            "<font color='White' size='+2'><I>") +
                 italics + QStringLiteral("</I></center>"));
}

void TestDeviceTitle::onLine_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<bool>("connected");
    QTest::addColumn<QString>("colour"); // none for the name of the page alone
    QTest::addColumn<QString>("hosts");
    const auto row = [](const char *first, const char *second, bool connected, const char *colour,
                        const char *hosts) {
        QTest::addRow("%s, %s, %d", first, second, connected)
            << QString::fromLatin1(first) << QString::fromLatin1(second) << connected
            << QString::fromLatin1(colour) << QString::fromLatin1(hosts);
    };
    row("", "", false, "", "");
    row("", "", true, "", "");
    row("one", "", true, "White", "one");
    row("one", "", false, "Grey", "one");
    row("", "two", true, "White", "two");
    row("", "two", false, "Grey", "two");
    row("one", "two", true, "White", "one / two");
    row("one", "two", false, "Grey", "one / two");
    row("one", "one", true, "White", "one / one");
    row("<a>", "&", true, "White", "&lt;a&gt; / &amp;");
}

void TestDeviceTitle::onLine()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(bool, connected);
    QFETCH(QString, colour);
    QFETCH(QString, hosts);
    const QString page = QStringLiteral("Online");
    const QString named = QStringLiteral("<center><font color='white' size='+2'>Online - </font>"
                                         "<font color='") +
                          colour + QStringLiteral("' size='+2'><I>[") + hosts +
                          QStringLiteral("]</I></font></center>");
    QCOMPARE(DeviceTitle::onLine(page, first, second, connected),
             colour.isEmpty() ? DeviceTitle::plain(page) : named);
}

void TestDeviceTitle::placeholdersAreNotFilledTwice()
{
    const QString odd = QStringLiteral("%1%2%3");
    QCOMPARE(DeviceTitle::device(odd, odd).count(odd), 2);
    QCOMPARE(DeviceTitle::onLine(odd, odd, odd, true).count(odd), 3);
    QCOMPARE(DeviceTitle::plain(odd).count(odd), 1);
}

STALLO_TEST_MAIN(TestDeviceTitle)
#include "tst_devicetitle.moc"
