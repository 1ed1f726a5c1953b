// SPDX-License-Identifier: MIT
#include "pages/accesstransfer.h"

#include "app/settings.h"
#include "net/devicecommand.h"
#include "net/getfile.h"
#include "net/putfile.h"
#include "net/socketwait.h"
#include "pages/accessfiles.h"
#include "records/accessmodel.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTemporaryFile>

namespace
{

constexpr int reloadMsec = 3000;
// For so long the command goes on when the panel is closed: the list has been sent, and half a
// second later it would be in force.
constexpr int lastTryMsec = 1000;

// Of a list that is taken from a device.
constexpr qint64 largest = qint64{AccessFiles::mostEntries} * Access::size;

QString remotePath()
{
    return Settings::instance()->vaskSufferedPath();
}

// The size in the device's answer, -1 where it has none.
qint64 announced(const GetFile &get)
{
    bool isSize = false;
    const qint64 size = get.answer().replace("File size=", "").toLongLong(&isSize);
    return isSize ? size : -1;
}

} // namespace

AccessTransfer::AccessTransfer(const QString &host)
    : host_(host)
{
}

QString AccessTransfer::busyText()
{
    return tr("Vask is busy now. Please try again later.");
}

QString AccessTransfer::unfit(const GetFile &get)
{
    const qint64 size = announced(get);
    if (size > 0 && size % Access::size != 0) {
        return tr("The access list of Vask is damaged.");
    }
    return AccessFiles::isTooLong(size) ? AccessFiles::tooLong() : QString();
}

bool AccessTransfer::isWhole(const GetFile &get)
{
    return announced(get) == QFileInfo(get.fileName()).size();
}

QString AccessTransfer::fetch(const QString &file) const
{
    GetFile get(host_, file, nullptr);
    get.setLargest(largest);
    const bool gotten = get(remotePath());
    const QString unfitText = unfit(get);
    if (!unfitText.isEmpty()) {
        return unfitText;
    }
    if (gotten) {
        return isWhole(get) ? QString() : busyText();
    }
    // The transfer has one text for all refusals; the device's own line tells them apart.
    const QString refusal =
        QString::fromLocal8Bit(get.answer()).remove(QStringLiteral("Error=")).trimmed();
    return refusal == QLatin1String("Can't open file") ? tr("No access base on Vask find out")
                                                       : busyText();
}

QString AccessTransfer::send(const QString &file) const
{
    if (QFileInfo(file).size() % Access::size == 0) {
        return put(file);
    }
    const QTemporaryDir folder(AccessFiles::transferTemplate());
    if (!folder.isValid()) {
        return folder.errorString();
    }
    const QString whole = folder.filePath(QStringLiteral("list"));
    const QString error = AccessFiles::copy(file, whole);
    return error.isEmpty() ? put(whole) : error;
}

QString AccessTransfer::put(const QString &file) const
{
    PutFile put(host_, file, nullptr);
    return put(remotePath()) ? QString() : busyText();
}

QString AccessTransfer::append(const Access &access) const
{
    const Settings *settings = Settings::instance();
    const QTemporaryDir folder(settings->transferTemplate(settings->sufferedTempDirectory()));
    if (!folder.isValid()) {
        return folder.errorString();
    }
    QTemporaryFile file(folder.filePath(QStringLiteral("passbase")));
    if (!file.open()) {
        return file.errorString();
    }
    file.close();
    GetFile get(host_, file.fileName(), nullptr);
    get.setLargest(largest);
    const bool gotten = get(remotePath());
    const QString unfitText = unfit(get);
    if (!unfitText.isEmpty()) {
        return unfitText;
    }
    if (!gotten) {
        return get.transferError();
    }
    if (!isWhole(get)) {
        return busyText();
    }
    // Unbound before the upload reads it.
    if (!AccessModel(file.fileName(), nullptr).append(access)) {
        return tr("The access list of the device is full");
    }
    PutFile put(host_, file.fileName(), nullptr);
    return put(remotePath()) ? QString() : put.transferError();
}

void AccessTransfer::reload(const QString &host)
{
    QElapsedTimer clock;
    clock.start();
    const auto over = [&clock] {
        return SocketWait::interrupted() && clock.hasExpired(lastTryMsec);
    };
    QTcpSocket socket;
    const auto port = static_cast<quint16>(Settings::instance()->vaskParkingPort());
    if (SocketWait::connectToHost(socket, host, port, reloadMsec, over) ==
        SocketWait::Outcome::Connected) {
        socket.write(&DeviceCommand::reloadAccessList, 1);
        SocketWait::close(socket, reloadMsec, over);
    }
}
