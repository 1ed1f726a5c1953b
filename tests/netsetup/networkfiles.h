// SPDX-License-Identifier: MIT
#pragma once

#include "tests/netsetup/textfile.h"

#include <QTemporaryDir>

// A temporary folder as the process's current directory, with the three network files as a panel
// has them.
class NetworkFiles
{
public:
    NetworkFiles()
    {
        if (!folder_.isValid() || !QDir::setCurrent(folder_.path())) {
            qFatal("no temporary folder");
        }
    }
    // Nothing may stand in a folder that is deleted.
    ~NetworkFiles() { QDir::setCurrent(QDir::rootPath()); }
    NetworkFiles(const NetworkFiles &) = delete;
    NetworkFiles &operator=(const NetworkFiles &) = delete;

    QString path() const { return folder_.path(); }

    static QString common() { return QStringLiteral("cfg-common.cfg"); }
    static QString interface() { return QStringLiteral("cfg-ifcfg-eth0.cfg"); }
    static QString resolver() { return QStringLiteral("cfg-resolv.cfg"); }
    static QStringList all() { return {common(), interface(), resolver()}; }

    static QByteArray commonText() { return "# panel\nHOSTNAME=gate\nDOMAINNAME = park.lan\n"; }
    static QByteArray interfaceText()
    {
        return "DEVICE=eth0\nDHCP=0\nIPADDR=10.0.0.2\nNETMASK=255.0.0.0\nGATEWAY=10.0.0.1\n";
    }
    static QByteArray resolverText()
    {
        return "nameserver 10.0.0.5\nsearch lan\nnameserver 10.0.0.6\nnameserver 10.0.0.7\n";
    }

    static void writeAll()
    {
        TextFile::write(common(), commonText());
        TextFile::write(interface(), interfaceText());
        TextFile::write(resolver(), resolverText());
    }
    // What saving makes of them when nothing was changed.
    static QByteArray commonSaved() { return "DOMAINNAME=park.lan\nHOSTNAME=gate\n# panel\n"; }
    static QByteArray interfaceSaved()
    {
        return "DEVICE=eth0\nDHCP=0\nGATEWAY=10.0.0.1\nIPADDR=10.0.0.2\nNETMASK=255.0.0.0\n";
    }
    static QByteArray resolverSaved()
    {
        return "search lan\nnameserver 10.0.0.5\nnameserver 10.0.0.6\nnameserver 10.0.0.7\n";
    }

    static QList<QByteArray> contents()
    {
        return {TextFile::content(common()), TextFile::content(interface()),
                TextFile::content(resolver())};
    }
    static QList<QByteArray> asWritten() { return {commonText(), interfaceText(), resolverText()}; }
    static QList<QByteArray> asSaved()
    {
        return {commonSaved(), interfaceSaved(), resolverSaved()};
    }

private:
    QTemporaryDir folder_;
};
