// SPDX-License-Identifier: MIT
#pragma once

#include "net/passagetickets.h"
#include "net/videoframetoken.h"
#include "records/access.h"
#include "records/online.h"

#include <QEvent>
#include <QString>

#include <utility>

// What workers and pages tell one another: custom events, posted to the receiving page with
// QCoreApplication::postEvent(), which takes them over. Everything is copied at construction and
// nobody touches an event after posting it, so they cross threads without locks. The numbers are
// what receivers switch on.
namespace EventNumber
{
inline constexpr int OnLine = 1001;
inline constexpr int Pipe = 1002;
inline constexpr int Suffered = 1003;
inline constexpr int Video = 1004;
inline constexpr int Progress = 1005;
} // namespace EventNumber

// A passage that a device has just reported, or, as a repost, one reported before whose picture has
// arrived only now. fileName is the picture's local path; the file may be missing. Its client says
// which slot it serves and gives it a ticket, which counts it until the last copy of the event
// dies.
class OnLineEvent : public QEvent
{
public:
    OnLineEvent(QString hostName, const OnLine &onLine, QString fileName, QString vaskId,
                bool repost)
        : QEvent(Type(EventNumber::OnLine))
        , onLine_(onLine)
        , fileName_(std::move(fileName))
        , hostName_(std::move(hostName))
        , vaskId_(std::move(vaskId))
        , repost_(repost)
    {
    }

    const OnLine &onLine() const { return onLine_; }
    const QString &fileName() const { return fileName_; }
    const QString &hostName() const { return hostName_; }
    const QString &vaskId() const { return vaskId_; }
    bool repost() const { return repost_; }

    // Before it is posted.
    void setOrigin(int channel, PassageTickets::Ticket ticket)
    {
        channel_ = channel;
        ticket_ = std::move(ticket);
    }
    // The device slot, -1 when it is not told.
    int channel() const { return channel_; }
    // Whether a client counts it and waits for it.
    bool isTicketed() const { return ticket_ != nullptr; }

private:
    OnLine onLine_;
    QString fileName_;
    QString hostName_;
    QString vaskId_;
    bool repost_;
    int channel_ = -1;
    PassageTickets::Ticket ticket_;
};

// A change of a connection: a QAbstractSocket::SocketState, a text, the device slot of the client,
// -1 when it is not told, and the address that it was connected to, empty when it is not told.
class PipeEvent : public QEvent
{
public:
    PipeEvent()
        : QEvent(Type(EventNumber::Pipe))
    {
    }

    int state = 0;
    QString message;
    int channel = -1;
    QString hostName;
};

// An entry for the access list page, on its way from another page.
class SufferedEvent : public QEvent
{
public:
    explicit SufferedEvent(const Access &access)
        : QEvent(Type(EventNumber::Suffered))
        , access_(access)
    {
    }

    const Access &access() const { return access_; }

private:
    Access access_;
};

// A fresh camera frame, or, with an empty photo, the news that none has come for a while. All
// channels share one frame file: the token keeps the others from overwriting it until this event is
// delivered and deleted.
class VideoEvent : public QEvent
{
public:
    VideoEvent(QString hostName, QString photo, int channel,
               VideoFrameToken token = VideoFrameToken())
        : QEvent(Type(EventNumber::Video))
        , hostName_(std::move(hostName))
        , photo_(std::move(photo))
        , channel_(channel)
        , token_(std::move(token))
    {
    }

    const QString &hostName() const { return hostName_; }
    const QString &photo() const { return photo_; }
    int channel() const { return channel_; }
    const VideoFrameToken &token() const { return token_; }

private:
    QString hostName_;
    QString photo_;
    int channel_;
    VideoFrameToken token_;
};

// How far a job is, in percent.
class ProgressEvent : public QEvent
{
public:
    explicit ProgressEvent(int value)
        : QEvent(Type(EventNumber::Progress))
        , value_(value)
    {
    }

    int value() const { return value_; }

private:
    int value_;
};
