// SPDX-License-Identifier: MIT
#pragma once

#include "style/brelwindow.h"
#include "style/brelwindowtitle.h"
#include "tests/support/archivedevice.h"
#include "tests/support/archivepage.h"
#include "tests/support/devices.h"
#include "tests/support/testmain.h"

#include <memory>

// An Archive page before simulated devices, with a frame for its title; each test function starts
// with a new one and an empty temporary archive. A dialog that came without being expected, or that
// did not come, fails the test.
class ArchiveCase : public QObject
{
    Q_OBJECT

protected:
    static constexpr int patience = 30000;

    DeviceHost &device() { return devices_->first(); }
    QString host() { return device().address(); }

    // The bytes of the temporary archive's two files.
    static QByteArray records() { return ArchivePage::content(ArchivePage::recordFile()); }
    static QByteArray index() { return ArchivePage::content(ArchivePage::indexFile()); }

    // From the first device, to the end.
    void download(const ModalAnswers::Answer &interval)
    {
        page_->download(host(), interval);
        QVERIFY(page_->becomesIdle());
    }

    QString title() const { return frame_->brelWindowTitle()->deviceName(); }
    static QString named(const QString &origin)
    {
        return QStringLiteral("<center><font color='white' size='+2'>Archive view - </font>"
                              "<font color='White' size='+2'><I>%1</I></center>")
            .arg(origin);
    }

    void endPage()
    {
        QStringList unexpected;
        int left = 0;
        if (page_) {
            unexpected = page_->answers().unexpected();
            left = page_->answers().left();
        }
        page_.reset();
        QCOMPARE(unexpected, QStringList());
        QCOMPARE(left, 0);
    }

    std::unique_ptr<Devices> devices_;
    std::unique_ptr<BrelWindow> frame_;
    std::unique_ptr<ArchivePage> page_;

protected Q_SLOTS:
    void initTestCase()
    {
        // Passages carry UTC, the operator thinks in local time.
        qputenv("TZ", "STT-3");
        tzset();
    }
    void init()
    {
        ArchivePage::prepare();
        devices_ = std::make_unique<Devices>();
        frame_ = std::make_unique<BrelWindow>();
        topLevelBrelWindow = frame_.get();
        page_ = std::make_unique<ArchivePage>();
    }
    void cleanup()
    {
        endPage();
        topLevelBrelWindow = nullptr;
        frame_.reset();
        devices_.reset();
    }
};
