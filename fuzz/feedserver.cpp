// SPDX-License-Identifier: MIT
#include "fuzz/feedserver.h"

#include "fuzz/loopback.h"

#include <algorithm>

#include <poll.h>

namespace
{

constexpr int pollMsec = 50;
constexpr int mostPieces = 64;

} // namespace

FeedServer::FeedServer()
    : liveListener_(Loopback::listen(&livePort_))
    , fileListener_(Loopback::listen(&filePort_))
    , thread_(&FeedServer::serve, this)
{
}

FeedServer::~FeedServer()
{
    over_ = true;
    thread_.join();
    for (const int socket : {liveLine_, liveListener_, fileListener_}) {
        Loopback::closeWithoutTrace(socket);
    }
}

void FeedServer::setStream(const Stream &stream)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    stream_ = stream;
    // A line that comes back late is still fed when the input is gone.
    stream_.bytes = QByteArray(stream.bytes.constData(), stream.bytes.size());
}

FeedServer::Stream FeedServer::stream() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return stream_;
}

void FeedServer::serve()
{
    while (!over_) {
        pollfd ports[] = {{liveListener_, POLLIN, 0}, {fileListener_, POLLIN, 0}};
        if (poll(ports, 2, pollMsec) <= 0) {
            continue;
        }
        if ((ports[0].revents & POLLIN) != 0) {
            serveLive(Loopback::accept(liveListener_));
        }
        if ((ports[1].revents & POLLIN) != 0) {
            serveFile(Loopback::accept(fileListener_));
        }
    }
}

// The stream fits the kernel's buffers: nothing here waits for the client, which asks for photos
// between two records.
void FeedServer::serveLive(int line)
{
    Loopback::closeWithoutTrace(liveLine_);
    liveLine_ = line;
    const Stream now = stream();
    const int whole = std::max(1, now.bytes.size());
    const int piece = now.pieceSize == 0 ? whole : std::max(now.pieceSize, whole / mostPieces + 1);
    for (int sent = 0; sent < now.bytes.size(); sent += piece) {
        Loopback::send(line, now.bytes.mid(sent, piece));
        std::this_thread::yield();
    }
    if (now.hangsUp) {
        Loopback::endSending(line);
    }
}

void FeedServer::serveFile(int line)
{
    QByteArray request;
    pollfd port{line, POLLIN, 0};
    while (!request.contains('\n') && poll(&port, 1, pollMsec) > 0) {
        const QByteArray more = Loopback::receive(line);
        if (more.isEmpty()) {
            break;
        }
        request += more;
    }
    static const QByteArray identity("[common]\ndeviceid=VASK-0001\n");
    const bool hasFile = request.contains("streams.ini") || stream().hasPhotos;
    const QByteArray file = request.contains("streams.ini") ? identity : QByteArray("photo");
    Loopback::send(line, hasFile ? "File size=" + QByteArray::number(file.size()) + "\r\n" + file
                                 : QByteArray("Error=No such file\r\n"));
    Loopback::endSending(line);
    // Until the client has closed as well, or the bytes would be lost with the connection.
    while (poll(&port, 1, pollMsec) > 0 && !Loopback::receive(line).isEmpty()) {
    }
    Loopback::closeWithoutTrace(line);
}
