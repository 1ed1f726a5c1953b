// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

class QPainter;

// Draws what a device's camera sees: a lane with a barrier and a car with its plate, as JPEG.
//
// A photo depends on its name and the device alone, so it is the same each time it is asked for and
// need not be kept. Photos have 40 to 120 KB. Every function may be called from any thread, in
// several at once; a core application object must exist, for the toolkit's picture formats.
class PhotoPainter
{
public:
    // The device's identifier is written into the picture; the seed chooses the look of the lane.
    PhotoPainter(const QString &deviceId, quint32 seed);

    // The photo with this name, which begins with a time and ends with a number, as VaskSettings
    // makes it; a folder in front is ignored. Null when the name is of another form.
    QByteArray photo(const QString &fileName) const;
    QByteArray photo(const QString &number, const QDateTime &time) const;

    // The camera's picture at a time of the clock: cars come to the barrier and pass.
    QByteArray videoFrame(const QDateTime &now) const;

    // The first part of a file.
    static QByteArray cut(const QByteArray &jpeg, int percent);
    static QByteArray notAPicture();
    // A complete JPEG header that claims 60000 x 60000 pixels, and a little data.
    static QByteArray giant();

private:
    void drawStamp(QPainter *painter, const QString &left, const QString &right) const;

    QString deviceId_;
    quint32 seed_;
};
