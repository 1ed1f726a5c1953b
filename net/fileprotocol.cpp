// SPDX-License-Identifier: MIT
#include "net/fileprotocol.h"

QByteArray FileProtocol::getRequest(const QString &remotePath)
{
    return QByteArrayLiteral("GET_IMMEDIATE_FILE:") + remotePath.toLocal8Bit() + "\r\n";
}

QByteArray FileProtocol::putRequest(const QString &remotePath, qint64 size)
{
    return QByteArrayLiteral("PUT_IMMEDIATE_FILE:") + remotePath.toLocal8Bit() + ',' +
           QByteArray::number(size) + "\r\n";
}

QByteArray FileProtocol::stripped(QByteArray line)
{
    return line.replace('\r', "").replace('\n', "");
}

bool FileProtocol::isRefusal(const QByteArray &answer)
{
    return answer.startsWith("Error");
}

qint64 FileProtocol::announcedSize(QByteArray answer)
{
    return qMax(qint64(0), answer.replace("File size=", "").toLongLong());
}
