// SPDX-License-Identifier: MIT
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QSize>

// JPEG files for tests, good ones and hostile ones.
class JpegBytes
{
public:
    // A plain picture of one colour.
    static QByteArray plain(int width, int height, const QColor &colour = Qt::blue,
                            const char *format = "JPEG")
    {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(colour);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, format);
        return bytes;
    }

    // A JPEG whose header claims another size than its data have.
    static QByteArray claiming(int width, int height)
    {
        QByteArray bytes = plain(16, 16);
        // The start of frame: marker, length of two bytes, precision, height, width.
        const int frame = bytes.indexOf("\xFF\xC0");
        bytes.replace(frame + 5, 4, word(height) + word(width));
        return bytes;
    }

    // A grey picture in so many scans, each of which costs the decoder a walk over all of it, at
    // few bytes: the first tells the mean of each block in one bit, the others say once for up to
    // 32767 blocks that nothing changes. Decoders give it without complaint.
    static QByteArray progressive(const QSize &size, int scans)
    {
        const int blocks = (size.width() + 7) / 8 * ((size.height() + 7) / 8);
        QByteArray bytes("\xFF\xD8");
        bytes += segment('\xDB', QByteArray(1, '\0') + QByteArray(64, '\x01'));
        bytes += segment('\xC2', "\x08" + word(size.height()) + word(size.width()) +
                                     QByteArray("\x01\x01\x11\x00", 4));
        // One code of one bit in each table: the mean of a block stays; a run of blocks begins
        // whose length follows in 14 bits.
        const QByteArray oneCode = "\x01" + QByteArray(15, '\0');
        bytes += segment('\xC4', QByteArray(1, '\x00') + oneCode + QByteArray(1, '\x00'));
        bytes += segment('\xC4', QByteArray(1, '\x10') + oneCode + QByteArray(1, '\xE0'));
        bytes += scan(0, 0, 0x01) + QByteArray((blocks + 7) / 8, '\0');
        QByteArray runs;
        for (int left = blocks, bits = 0, held = 0; left > 0;) {
            const int run = qMin(left, 0x7FFF);
            // A shorter rest is covered by the longer run, which ends with the scan.
            const int code = qMax(0, run - 0x4000);
            for (int bit = 14; bit >= 0; --bit) {
                held = held << 1 | (bit == 14 ? 0 : code >> bit & 1);
                if (++bits == 8 || (bit == 0 && left == run)) {
                    runs += static_cast<char>(held << (8 - bits));
                    runs += (runs.back() == '\xFF') ? QByteArray(1, '\0') : QByteArray();
                    bits = held = 0;
                }
            }
            left -= run;
        }
        const QByteArray refinement = scan(1, 63, 0x10) + runs;
        bytes += scan(1, 63, 0x01) + runs;
        bytes += refinement.repeated(qMax(0, scans - 2));
        return bytes + "\xFF\xD9";
    }

    static QByteArray segment(char marker, const QByteArray &content)
    {
        return "\xFF" + QByteArray(1, marker) + word(content.size() + 2) + content;
    }

    static QByteArray word(int value)
    {
        return QByteArray(1, static_cast<char>(value >> 8)) +
               QByteArray(1, static_cast<char>(value & 0xFF));
    }

private:
    static QByteArray scan(int from, int to, int approximation)
    {
        return segment('\xDA', QByteArray("\x01\x01\x00", 3) + static_cast<char>(from) +
                                   static_cast<char>(to) + static_cast<char>(approximation));
    }
};
