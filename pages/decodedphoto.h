// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include <functional>

// A photo out of a file that a device or a stick may have filled with anything, made ready for a
// view of a given size. Only JPEG counts, in the way it was stored, without turning it; what is too
// large to be decoded (see JpegHeader), no picture or no file is a photo with an empty size. A
// picture cut short is shown as far as it goes, if its decoder gives anything at all.
//
// Takes up to seconds: for worker threads.
struct DecodedPhoto {
    // Where a photo is shown: the view's size and its pixels per unit.
    struct Place {
        QSize size;
        qreal ratio = 1;

        // The largest rectangle for a photo of this size, in the view's units and in pixels. Empty
        // where the photo is too narrow to be seen.
        QSize fitted(const QSize &photo) const;
        QSize pixels(const QSize &photo) const;
        bool operator==(const Place &other) const;
    };
    using CalledOff = std::function<bool()>;

    // The content of a regular file, empty if there is none or it is larger than a photo may be.
    static QByteArray content(const QString &fileName);

    // Ends soon after calledOff, asked now and then while decoding, has turned true; the result is
    // then none.
    static DecodedPhoto of(const QByteArray &bytes, const Place &place, const CalledOff &calledOff);

    bool isNull() const { return size.isEmpty(); }

    QByteArray bytes; // as stored; to decode again for another place
    Place place;
    QSize size{0, 0}; // of the picture in the file
    QImage photo;     // not larger than the file's picture, nor than the place needs
    QImage shown;     // exactly the pixels of the place; null where nothing is to be seen
};
