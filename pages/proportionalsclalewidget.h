// SPDX-License-Identifier: MIT
#pragma once

#include "pages/decodedphoto.h"

#include <QPixmap>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

class PhotoDecoder;
class QPainter;

// Shows the photo of a passage as large as the widget allows, with lines of text over it; without
// a photo a dimmed red frame of 4:3 with a large caption, so that nobody takes an old picture for
// the present one.
//
// There is one list of lines, whichever setter filled it. The lines begin at the left edge of the
// photo or frame, but always at the top of the widget, so they stay in place when photos of
// different proportions follow one another.
//
// A file is read and decoded by the process's photo decoder, so no picture makes the window wait.
// Until that has been done nothing is shown but the lines: neither the photo that was there, which
// may be another passage's, nor the caption. A file that is set again stays as it is shown until it
// has been decoded anew, and replacePhoto() keeps whatever is there.
//
// GUI thread only. A file is read when it is set, and never again; what DecodedPhoto takes for none
// counts as no photo. A view that changes its size shows the photo roughly scaled until it has been
// decoded for the new one.
class ProportionalSclaleWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ProportionalSclaleWidget(QWidget *parent = nullptr);
    explicit ProportionalSclaleWidget(const QString &emptyText, QWidget *parent = nullptr);

    ~ProportionalSclaleWidget() override;

    void setPixmap(const QString &fileName);
    void setPixmap(const QPixmap &pixmap);
    void setEmptyText(const QString &emptyText);
    // Shows the file's photo once it is decoded; where there is none, what is there stays.
    // untilRead is let go as soon as the file has been read, or is not to be read any more.
    void replacePhoto(const QString &fileName, const std::shared_ptr<const void> &untilRead);
    void setLayers(const QString &fileName, const QStringList &lines);
    // Replaces the lines; the photo stays.
    void setStatistics(const QStringList &lines);
    // No photo, no lines; the caption stays.
    void clear();

    QString emptyText() const;
    // Not larger than the view needs; null without a photo and while one is being decoded.
    QPixmap pixmap() const;
    // Of the photo in the file.
    QSize photoSize() const;
    // Whether what is set is still to be shown.
    bool isLoading() const;
    QStringList lines() const;
    // The largest 4:3 rectangle in the middle of the widget, as of its last resize.
    QRect frame() const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    DecodedPhoto::Place place() const;
    QRect photoRect() const;
    // The file, or else the bytes of the photo that is there.
    void ask(const QString &fileName, bool followsOlder,
             const std::shared_ptr<const void> &untilRead);
    void forgetPhoto();
    void setPhoto(const DecodedPhoto &photo);
    void fitFont();
    void changed();
    void drawPhoto(QPainter &painter, const QRect &target);
    void drawPlaceholder(QPainter &painter) const;
    void drawCaption(QPainter &painter) const;
    void drawLines(QPainter &painter, const QRect &area) const;

    std::shared_ptr<PhotoDecoder> decoder_;
    QString emptyText_;
    QStringList lines_;
    QRect frame_;
    QString fileName_; // as it was set, unless the photo came otherwise
    QByteArray bytes_; // of the photo that is there, if it was in a file
    quint64 asked_ = 0;
    bool isLoading_ = false;
    // Another photo was set and nothing is to be shown before it.
    bool isBlank_ = false;
    // That the photo was last asked for.
    DecodedPhoto::Place place_;
    QSize photoSize_{0, 0};
    QPixmap pixmap_;
    // The photo in exactly the pixels of the last painting; null after a change of the photo.
    QPixmap scaled_;
};
