// SPDX-License-Identifier: MIT
#include "netsetup/hardwareaddress.h"

#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QMap>

#include <net/if.h>

namespace
{

QByteArray told(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll().trimmed() : QByteArray();
}

} // namespace

class TestHardwareAddress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asTheSystemTells();
};

// Compared with what the system says about its interfaces in another way.
void TestHardwareAddress::asTheSystemTells()
{
    const QDir interfaces(QStringLiteral("/sys/class/net"));
    QMap<int, QString> addresses;
    const QStringList names = interfaces.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QString folder = interfaces.filePath(name);
        const uint flags = told(folder + QStringLiteral("/flags")).toUInt(nullptr, 16);
        if ((flags & IFF_LOOPBACK) == 0) {
            addresses.insert(
                told(folder + QStringLiteral("/ifindex")).toInt(),
                QString::fromLatin1(told(folder + QStringLiteral("/address"))).toUpper());
        }
    }
    const QString expected = addresses.isEmpty() ? QString() : addresses.first();
    QCOMPARE(HardwareAddress::ofFirstInterface(), expected);
}

STALLO_TEST_MAIN(TestHardwareAddress)
#include "tst_hardwareaddress.moc"
