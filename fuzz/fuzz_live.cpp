// SPDX-License-Identifier: MIT
// The live stream of a device, through the client as the page has it. The input is how the stream
// is cut into pieces, what the device does besides, and the stream. Every whole record must arrive,
// in its order and with all of its bytes.
#include "app/settings.h"
#include "app/startup.h"
#include "fuzz/feedserver.h"
#include "fuzz/fuzztarget.h"
#include "net/events.h"
#include "net/onlineclient.h"
#include "pages/temporarydata.h"
#include "records/vasksettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <memory>
#include <vector>

namespace
{

constexpr std::size_t mostStreamed = 12 * OnLine::size;
constexpr qint64 longest = 20000;

QString photoFolder()
{
    const Settings *settings = Settings::instance();
    return QFileInfo(settings->absolute(settings->onLineTempDirectory()) + QLatin1Char('/') +
                     VaskSettings::picFileDir())
        .canonicalFilePath();
}

class Page : public QObject
{
public:
    std::vector<OnLine> passages;
    bool asked = false; // whether the line was made, or could not be

protected:
    void customEvent(QEvent *event) override
    {
        asked = asked || event->type() == QEvent::Type(EventNumber::Pipe);
        if (event->type() == QEvent::Type(EventNumber::OnLine)) {
            const auto *passage = static_cast<OnLineEvent *>(event);
            if (!passage->repost()) {
                passages.push_back(passage->onLine());
                const QFileInfo photo(passage->fileName());
                FuzzTarget::require(!photo.exists() || photo.canonicalPath() == photoFolder(),
                                    "a photo lies in the folder of photos, or nowhere");
            }
        }
    }
};

FeedServer &server()
{
    static const auto serving = [] {
        auto made = std::make_unique<FeedServer>();
        Settings::instance()->setFileTransferPort(made->filePort());
        Settings::instance()->setVaskParkingPort(made->livePort());
        Startup::initTempDirectories();
        return made;
    }();
    return *serving;
}

void checkPassage(const OnLine &passage, const char *sent)
{
    OnLine expected;
    std::copy_n(sent, OnLine::size, expected.data());
    expected.translateFromLocal();
    FuzzTarget::require(std::equal(expected.data(), expected.data() + OnLine::size, passage.data()),
                        "a passage is what was sent");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t head = 2;
    if (size < head) {
        return 0;
    }
    // A copy: the serving thread may still be at it when this one is done.
    const auto length = static_cast<int>(std::min<std::size_t>(size - head, mostStreamed));
    const QByteArray stream(reinterpret_cast<const char *>(data + head), length);
    const auto expected = static_cast<std::size_t>(stream.size() / OnLine::size);
    server().setStream({stream, data[0], (data[1] & 1) != 0, (data[1] & 2) == 0});
    Page page;
    page.startTimer(100); // the wait below ends
    {
        OnlineClient client(&page);
        client.setChannel(0);
        client.connectToHost(QStringLiteral("127.0.0.1"));
        client.start();
        QElapsedTimer clock;
        clock.start();
        while (page.passages.size() < expected || !page.asked) {
            FuzzTarget::require(!clock.hasExpired(longest), "every whole record arrives");
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    QCoreApplication::processEvents();
    FuzzTarget::require(page.passages.size() == expected, "nothing else arrives");
    for (std::size_t i = 0; i < expected; ++i) {
        checkPassage(page.passages[i], stream.constData() + i * OnLine::size);
    }
    TemporaryData::clear(photoFolder());
    return 0;
}
