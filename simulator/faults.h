// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMutex>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

// One thing that the file service does wrong.
//
// Made by the named functions below and narrowed by the three that follow them:
//     faults.add(Fault::closeAfter(1500).on(DevicePaths::archive()).times(2));
struct Fault {
    enum class Kind {
        CloseOnAccept,     // closes at once; the path is not known yet, so it must not be narrowed
        ResetOnAccept,     // the same with a TCP reset
        Silent,            // reads the request and never answers
        CloseAfterRequest, // closes instead of answering
        ResetAfterRequest,
        Answer,     // sends text and nothing behind it, then waits for the client
        Flood,      // sends bytes 'x' without a line end instead of the answer
        Size,       // says text instead of the size, then sends the true content
        SizeOffset, // says the size plus bytes (which may be negative), then the true content
        CloseAfter, // closes after bytes of content; a negative number counts from the end
        ResetAfter,
        CloseAtEnd, // closes right after the last byte instead of waiting for the client
        Delay,      // answers after msec
        Pause,      // pauses for msec after bytes of content
        Trickle,    // sends bytes at a time, msec apart
        Replace,    // after bytes of content goes on with text in its place: the file was
                    // overwritten while it was read; the size stays what was said
        StopReading // upload: accepts, reads bytes of content and then nothing more
    };
    enum class Method { Any, Get, Put };

    Kind kind = Kind::Silent;
    Method method = Method::Any;
    QString path;   // empty: every file
    int count = -1; // for how many requests; -1 for ever
    qint64 bytes = 0;
    int msec = 0;
    QByteArray text;

    static Fault closeOnAccept();
    static Fault resetOnAccept();
    static Fault silent();
    static Fault closeAfterRequest();
    static Fault resetAfterRequest();
    // A whole answer line; CR LF is added.
    static Fault answer(const QByteArray &line);
    static Fault garbage();
    static Fault flood(qint64 bytes = 50000000);
    static Fault declaredSize(const QByteArray &text);
    static Fault sizeOffset(qint64 offset);
    static Fault closeAfter(qint64 bytes);
    static Fault resetAfter(qint64 bytes);
    static Fault closeAtEnd();
    static Fault delay(int msec);
    static Fault pause(qint64 afterBytes, int msec);
    static Fault trickle(int bytes = 16, int msec = 1);
    static Fault replace(qint64 afterBytes, const QByteArray &content);
    static Fault stopReading(qint64 afterBytes = 0);

    Fault on(const QString &remotePath) const;
    Fault times(int requests) const;
    Fault onlyFor(Method requestMethod) const;

    bool isOnAccept() const;
    // The kind as a word of the console.
    QString name() const;
};

// The faults of a device's file service that are in force. Each request takes the first one that
// fits its path and method and is not used up; so faults added one behind the other happen one
// after the other. A pause, a delay and the like do not add up.
//
// Every function may be called from any thread.
class Faults
{
public:
    void add(const Fault &fault);
    // Ends all, or those narrowed to the path.
    void clear();
    void clear(const QString &path);
    int count() const;

    // What goes wrong with a new connection; false when nothing does. Uses up one time.
    bool takeOnAccept(Fault *fault);
    // What goes wrong with a request; false when nothing does. Uses up one time.
    bool take(Fault::Method method, const QString &path, Fault *fault);

    // A fault from words as they are given to the program: "KIND [VALUES] [on PATH] [times N]
    // [get|put]", for example "close-after 1500 on /mnt/usb/passbase.tpp times 2". False with the
    // reason in error, which quotes the word that is wrong.
    static bool parse(const QString &words, Fault *fault, QString *error);
    // The kinds and their values, one per line.
    static QStringList help();

private:
    bool takeFirst(const std::function<bool(const Fault &)> &fits, Fault *fault);

    mutable QMutex mutex_;
    std::vector<Fault> faults_;
};
