// SPDX-License-Identifier: MIT
// The whole exchange of an upload. The input is how the device's answer is cut into pieces, how it
// ends, the size of the file that is sent, and the answer.
#include "app/settings.h"
#include "fuzz/fuzztarget.h"
#include "fuzz/playedpeer.h"
#include "net/fileprotocol.h"
#include "net/putfile.h"
#include "net/requestpace.h"

#include <memory>

namespace
{

constexpr int sizeStep = 61; // sizes on and beside the borders of blocks

PlayedPeer &peer()
{
    static const auto listening = [] {
        auto made = std::make_unique<PlayedPeer>();
        Settings::instance()->setFileTransferPort(made->port());
        return made;
    }();
    return *listening;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t head = 3;
    if (size < head) {
        return 0;
    }
    const QByteArray content(data[2] * sizeStep, 'x');
    const QString local = FuzzTarget::write(QStringLiteral("upload"), content);
    const QString remote = QStringLiteral("/mnt/usb/accessbase.access");
    const auto end = static_cast<PlayedPeer::End>(data[1] % 3);
    // One that hung up before would be asked once a second only.
    RequestPace::answered(QStringLiteral("127.0.0.1"), peer().port());
    peer().begin(FuzzTarget::bytes(data + head, size - head), data[0], end);
    bool done = false;
    {
        PutFile put(QStringLiteral("127.0.0.1"), local, nullptr);
        put.setTimeout(1000);
        put.setCancelled([] { return peer().step(); });
        done = put(remote);
        FuzzTarget::require(done != put.transferFailed(), "a failure is told as one");
        FuzzTarget::require(done || !put.transferError().isEmpty(), "a failure has a text");
    }
    peer().finish();
    const QByteArray request = FileProtocol::putRequest(remote, content.size());
    FuzzTarget::require((request + content).startsWith(peer().received()),
                        "nothing but the request and the file is sent");
    FuzzTarget::require(!done || end == PlayedPeer::End::Reset ||
                            peer().received() == request + content,
                        "a file that was sent has arrived");
    return 0;
}
