// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings.h"
#include "simulator/devicetexts.h"
#include "simulator/filetree.h"
#include "tests/support/devices.h"
#include "tests/support/localletters.h"
#include "tests/support/onlinepage.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTextCodec>

#include <algorithm>
#include <dirent.h>
#include <langinfo.h>
#include <memory>

// A device that writes cyrillic plates, comments and keys in the code page of the process's locale,
// the rules of a cyrillic catalogue, and a stick with a folder of a cyrillic name. The locale is
// told by STALLO_CHARSET: one that is missing must fail the test and not pass it under another.
class LettersCase : public QObject
{
    Q_OBJECT

protected:
    static constexpr int patience = 30000;

    static bool isUtf8() { return QTextCodec::codecForLocale()->mibEnum() == 106; }
    // In the code page.
    static QByteArray local(const QString &text) { return text.toLocal8Bit(); }
    // What is left of a complete number on the way through its field: in two-byte letters it does
    // not fit.
    static QString fitted(const QString &number) { return isUtf8() ? number.left(6) : number; }

    DeviceHost &device() { return devices_->first(); }
    QString host() { return device().address(); }
    static QString deviceId() { return QStringLiteral("Въезд-7"); }

    // On the stick.
    QString named(const char *name) const
    {
        return folder_ + QLatin1Char('/') + QString::fromUtf8(name);
    }
    // As the system has them.
    static QList<QByteArray> namesIn(const QByteArray &folder)
    {
        QList<QByteArray> names;
        if (DIR *opened = opendir(folder.constData())) {
            while (const dirent *entry = readdir(opened)) {
                names << entry->d_name;
            }
            closedir(opened);
        }
        names.removeAll(".");
        names.removeAll("..");
        std::sort(names.begin(), names.end());
        return names;
    }
    // The folder of the panel's own files.
    static QString working() { return QDir::homePath() + QStringLiteral("/Парковка"); }

    // A field as it lies in a record, and a record as it lies in a file.
    template <typename AnyRecord>
    static QByteArray bytesOf(const AnyRecord &record, const RecordField &field)
    {
        return QByteArray(record.data() + field.offset, static_cast<int>(field.size));
    }
    template <typename AnyRecord>
    static AnyRecord recordIn(const QByteArray &file, int row)
    {
        AnyRecord record;
        if (file.size() < (row + 1) * AnyRecord::size) {
            qFatal("the file has no record %d", row);
        }
        std::copy_n(file.constData() + row * AnyRecord::size, AnyRecord::size, record.data());
        return record;
    }

    DeviceTexts texts_;
    std::unique_ptr<LocalLetters> letters_;
    std::unique_ptr<Devices> devices_;
    std::unique_ptr<QTemporaryDir> stick_;
    QString folder_; // on the stick

    // Behind the preparation of a page.
    void startDevice(int archive = 0, int residents = 40)
    {
        DeviceConfig config;
        config.deviceId = deviceId();
        config.feed.texts = texts_;
        config.archive = archive;
        config.residents = residents;
        config.archiveEnd = QDateTime({2026, 11, 21}, {12, 0}, Qt::UTC).toSecsSinceEpoch();
        devices_ = std::make_unique<Devices>(config);
        device().files().setMaker(DevicePaths::photoFolder(),
                                  [jpeg = OnlinePage::jpeg(32, 24)](const QString &) {
                                      return FileTree::contentOf(jpeg);
                                  });
    }

protected Q_SLOTS:
    void initTestCase()
    {
        qputenv("TZ", "STT-3");
        tzset();
        QByteArray charset = nl_langinfo(CODESET);
        if (qEnvironmentVariableIsSet("STALLO_CHARSET")) {
            QCOMPARE(charset, qgetenv("STALLO_CHARSET"));
        } else if (charset == "ANSI_X3.4-1968") {
            charset = "UTF-8"; // where the locale names no encoding
        }
        QVERIFY(DeviceTexts::isCodePage(charset));
        // The device goes by the locale, the panel by the toolkit.
        texts_ = {charset, true};
        QCOMPARE(QTextCodec::codecForLocale()->mibEnum(),
                 QTextCodec::codecForName(charset)->mibEnum());
        letters_ = std::make_unique<LocalLetters>();
    }
    void cleanupTestCase() { letters_.reset(); }
    void init()
    {
        stick_ = std::make_unique<QTemporaryDir>();
        folder_ = stick_->filePath(QStringLiteral("Стоянка"));
        QVERIFY(QDir().mkpath(folder_));
    }
    void cleanup()
    {
        devices_.reset();
        stick_.reset();
    }
};
