// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <atomic>
#include <mutex>
#include <thread>

// A whole device for the live client, on a thread of its own and two free ports of 127.0.0.1: who
// connects to the live port gets the stream in pieces, who asks for a file gets an identity, or a
// photo or a refusal. It lives for the whole process; one client at a time.
class FeedServer
{
public:
    struct Stream {
        QByteArray bytes;
        int pieceSize; // 0: at once
        bool hangsUp;  // behind the last piece
        bool hasPhotos;
    };

    FeedServer();
    ~FeedServer();
    FeedServer(const FeedServer &) = delete;
    FeedServer &operator=(const FeedServer &) = delete;

    quint16 livePort() const { return livePort_; }
    quint16 filePort() const { return filePort_; }

    // What the next client gets.
    void setStream(const Stream &stream);

private:
    void serve();
    void serveLive(int line);
    void serveFile(int line);
    Stream stream() const;

    quint16 livePort_ = 0;
    quint16 filePort_ = 0;
    int liveListener_ = -1;
    int fileListener_ = -1;
    mutable std::mutex mutex_;
    Stream stream_{};
    int liveLine_ = -1; // the serving thread's own
    std::atomic<bool> over_{false};
    std::thread thread_;
};
