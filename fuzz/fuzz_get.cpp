// SPDX-License-Identifier: MIT
// The whole exchange of a download. The input is how the device's answer is cut into pieces, how it
// ends, and the answer: its line and the file's bytes.
#include "app/settings.h"
#include "fuzz/fuzztarget.h"
#include "fuzz/playedpeer.h"
#include "net/fileprotocol.h"
#include "net/getfile.h"

#include <memory>

namespace
{

PlayedPeer &peer()
{
    static const auto listening = [] {
        auto made = std::make_unique<PlayedPeer>();
        Settings::instance()->setFileTransferPort(made->port());
        return made;
    }();
    return *listening;
}

// A file that is called complete holds what came behind the line, as much as was announced.
void checkFile(const QByteArray &file, const QByteArray &answer)
{
    const int lineEnd = answer.indexOf('\n');
    const QByteArray body = answer.mid(lineEnd + 1);
    const qint64 size =
        FileProtocol::announcedSize(FileProtocol::stripped(answer.left(lineEnd + 1)));
    FuzzTarget::require(file.size() <= size && body.startsWith(file), "the file is what came");
    FuzzTarget::require(body.size() < size || file.size() == size, "all of the file is there");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t head = 2;
    if (size < head) {
        return 0;
    }
    const QByteArray answer = FuzzTarget::bytes(data + head, size - head);
    peer().begin(answer, data[0], static_cast<PlayedPeer::End>(data[1] % 3));
    const QString local = FuzzTarget::scratch(QStringLiteral("download"));
    {
        GetFile get(QStringLiteral("127.0.0.1"), local, nullptr);
        get.setTimeout(1000);
        get.setCancelled([] { return peer().step(); });
        const bool done = get(QStringLiteral("/mnt/usb/photo.jpeg"));
        FuzzTarget::require(done != get.transferFailed(), "a failure is told as one");
        FuzzTarget::require(done || !get.transferError().isEmpty(), "a failure has a text");
        if (done) {
            checkFile(FuzzTarget::read(local), answer);
        }
    }
    peer().finish();
    return 0;
}
