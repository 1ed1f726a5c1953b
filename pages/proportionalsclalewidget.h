// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QWidget>

class QPainter;

// Shows the photo of a passage as large as the widget allows, with lines of text over it; without
// a photo a dimmed red frame of 4:3 with a large caption, so that nobody takes an old picture for
// the present one.
//
// There is one list of lines, whichever setter filled it. The lines begin at the left edge of the
// photo or frame, but always at the top of the widget, so they stay in place when photos of
// different proportions follow one another.
//
// GUI thread only. A file is read when it is set, and never again; one that is missing, holds no
// picture, or claims more than 64 million pixels counts as no photo. A picture cut short is shown
// as far as it goes, if its decoder gives anything at all.
class ProportionalSclaleWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ProportionalSclaleWidget(QWidget *parent = nullptr);
    explicit ProportionalSclaleWidget(const QString &emptyText, QWidget *parent = nullptr);

    // The photo in the file, or a null pixmap. The size that the file's header claims is tested
    // before memory is taken for it.
    static QPixmap loadPhoto(const QString &fileName);

    void setPixmap(const QString &fileName);
    void setPixmap(const QPixmap &pixmap);
    void setEmptyText(const QString &emptyText);
    void setLayers(const QString &fileName, const QStringList &lines);
    // Replaces the lines; the photo stays.
    void setStatistics(const QStringList &lines);
    // No photo, no lines; the caption stays.
    void clear();

    QString emptyText() const;
    QPixmap pixmap() const;
    QStringList lines() const;
    // The largest 4:3 rectangle in the middle of the widget, as of its last resize.
    QRect frame() const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRect photoRect() const;
    void fitFont();
    void changed();
    void drawPhoto(QPainter &painter, const QRect &target);
    void drawPlaceholder(QPainter &painter) const;
    void drawCaption(QPainter &painter) const;
    void drawLines(QPainter &painter, const QRect &area) const;

    QString emptyText_;
    QPixmap pixmap_;
    QStringList lines_;
    QRect frame_;
    // The photo at the size of the last painting; null after a change of the photo.
    QPixmap scaled_;
};
