// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings.h"
#include "app/startup.h"
#include "pages/archivefiles.h"
#include "pages/recoveredtables.h"
#include "records/deviceindex.h"
#include "records/scan.h"
#include "records/scanmodel.h"
#include "tests/support/archivepage.h"
#include "tests/support/onlinepage.h"

#include <QDir>
#include <QFile>
#include <QTest>

// A live table as the On-line page leaves it behind when it is killed, and what has been kept of
// it.
class RecoveredCase
{
protected:
    using Rescue = RecoveredTables::Rescue;

    static QByteArray photo(int n) { return QByteArray("photo ") + QByteArray::number(n); }
    static QDir working() { return QDir(Settings::instance()->absoluteWorkingDirectory()); }
    static QString recovered(const QString &path = QString())
    {
        return working().filePath(QStringLiteral("Recovered/") + path);
    }
    static QStringList kept()
    {
        return QDir(recovered()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    }
    static QString only() { return kept().value(0); }
    // Rows first to last with a photo each.
    static void leaveTable(int rows, int first = 0, const QByteArray &picture = QByteArray())
    {
        Startup::initTempDirectories();
        QByteArray table;
        QByteArray index;
        for (int n = first; n < first + rows; ++n) {
            const OnLine record = OnlinePage::record(n);
            table.append(Scan(record).data(), Scan::size);
            index += DeviceIndex::entry(QStringLiteral("gate %1").arg(n));
            OnlinePage::write(OnlinePage::pictureFile(record),
                              picture.isEmpty() ? photo(n) : picture);
        }
        OnlinePage::write(Settings::instance()->onLineTempFile(), table);
        OnlinePage::write(ScanModel::indexFileOf(Settings::instance()->onLineTempFile()), index);
    }
    static QString table(const QString &name)
    {
        return recovered(name + QStringLiteral("/tmponline.tpp"));
    }
    static void expectWhole(const QString &name, int rows, int first = 0)
    {
        expectWholeTable(table(name), rows, first);
    }
    static void expectWholeTable(const QString &file, int rows, int first = 0)
    {
        QCOMPARE(ArchivePage::content(file).size(), rows * int(Scan::size));
        const ScanModel model(file, nullptr);
        for (int row = 0; row < rows; ++row) {
            const QString id = QStringLiteral("gate %1").arg(first + row);
            QCOMPARE(model.index(row, ScanModel::DeviceColumn).data().toString(), id);
            const Scan scan(OnlinePage::record(first + row));
            QCOMPARE(ArchivePage::content(ArchiveFiles::photo(file, scan, id)), photo(first + row));
        }
    }
    // What the page does with one that comes now.
    static void pass(OnlinePage &page, int n)
    {
        const int rows = page.rows();
        page.page().selectDevice(OnlinePage::nowhere());
        OnlinePage::write(OnlinePage::pictureFile(OnlinePage::record(n)), photo(n));
        page.tellPassage(OnlinePage::record(n), OnlinePage::nowhere(),
                         QStringLiteral("gate %1").arg(n));
        QTRY_COMPARE(page.rows(), rows + 1);
    }
    static void expectEmptyLiveTable()
    {
        QVERIFY(!QFile::exists(Settings::instance()->onLineTempFile()));
        QVERIFY(QDir(OnlinePage::folder() + QStringLiteral("/jpegdata")).exists());
        QVERIFY(QDir(OnlinePage::folder() + QStringLiteral("/jpegdata")).isEmpty());
    }
};
