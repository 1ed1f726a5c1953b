// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

// A ring that fills clockwise from the top, with the percentage in its middle and, under it, a
// smaller suffix. It does not move by itself. Values outside 0 to 100 count as the nearer end. GUI
// thread.
class BrelProgressPie : public QWidget
{
    Q_OBJECT

public:
    explicit BrelProgressPie(QWidget *parent);

    int progress() const { return progress_; }
    // Plain text, cut with dots where the ring is too small for it; empty at first.
    QString suffix() const { return suffix_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    void setProgress(int percent);
    void setSuffix(const QString &suffix);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintTexts(QPainter &painter, const QRectF &room) const;
    void describe();

    int progress_ = 0;
    QString suffix_;
};
