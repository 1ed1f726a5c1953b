// SPDX-License-Identifier: MIT
// The whole exchange of a download. The input is how the device's answer is cut into pieces, how it
// ends (and with the highest bit whether the download goes into memory), and the answer: its line
// and the file's bytes.
#include "app/settings.h"
#include "fuzz/fuzztarget.h"
#include "fuzz/playedpeer.h"
#include "net/fileprotocol.h"
#include "net/getfile.h"
#include "net/requestpace.h"

#include <memory>
#include <optional>

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

// What is called complete holds what came behind the line, as much as was announced.
void checkFile(const QByteArray &file, const QByteArray &answer)
{
    const int lineEnd = answer.indexOf('\n');
    const QByteArray body = answer.mid(lineEnd + 1);
    const qint64 size =
        FileProtocol::announcedSize(FileProtocol::stripped(answer.left(lineEnd + 1)));
    FuzzTarget::require(file.size() <= size && body.startsWith(file), "the file is what came");
    FuzzTarget::require(body.size() < size || file.size() == size, "all of the file is there");
}

void toFile(GetFile &get, const QByteArray &answer)
{
    const bool done = get(QStringLiteral("/mnt/usb/photo.jpeg"));
    FuzzTarget::require(done != get.transferFailed(), "a failure is told as one");
    if (done) {
        checkFile(FuzzTarget::read(get.fileName()), answer);
    }
}

void toMemory(GetFile &get, const QByteArray &answer)
{
    constexpr qint64 most = 2000; // between the sizes of two seeds
    const std::optional<QByteArray> file = get.fetch(QStringLiteral("/tmp/video0.jpeg"), most);
    FuzzTarget::require(file.has_value() != get.transferFailed(), "a failure is told as one");
    if (file) {
        FuzzTarget::require(file->size() <= most, "no more is taken than is wanted");
        checkFile(*file, answer);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t head = 2;
    if (size < head) {
        return 0;
    }
    const QByteArray answer = FuzzTarget::bytes(data + head, size - head);
    // One that hung up before would be asked once a second only.
    RequestPace::answered(QStringLiteral("127.0.0.1"), peer().port());
    peer().begin(answer, data[0], static_cast<PlayedPeer::End>((data[1] & 0x7F) % 3));
    const QString local = FuzzTarget::scratch(QStringLiteral("download"));
    {
        GetFile get(QStringLiteral("127.0.0.1"), local, nullptr);
        get.setTimeout(1000);
        get.setCancelled([] { return peer().step(); });
        if ((data[1] & 0x80) == 0) {
            toFile(get, answer);
        } else {
            toMemory(get, answer);
        }
        FuzzTarget::require(!get.transferFailed() || !get.transferError().isEmpty(),
                            "a failure has a text");
    }
    peer().finish();
    return 0;
}
