// SPDX-License-Identifier: MIT
#include "pages/proportionalsclalewidget.h"

#include "pages/photodecoder.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>

namespace
{

constexpr qreal smallestPoints = 12;

QFont boldAtLeastSmallest(QFont font)
{
    font.setWeight(QFont::Bold);
    // Fonts set in pixels have no point size of their own.
    const qreal points = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
    font.setPointSizeF(std::max(smallestPoints, points));
    return font;
}

// One edge of the frame darkens towards the outside.
void shadeEdge(QPainter &painter, const QPointF &from, const QPointF &to, const QPointF &centre)
{
    QLinearGradient gradient((from + to) / 2, centre);
    gradient.setColorAt(0, Qt::black);
    gradient.setColorAt(1, Qt::transparent);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawPolygon(QPolygonF{{from, to, centre}});
}

} // namespace

ProportionalSclaleWidget::ProportionalSclaleWidget(QWidget *parent)
    : ProportionalSclaleWidget(QString(), parent)
{
}

ProportionalSclaleWidget::ProportionalSclaleWidget(const QString &emptyText, QWidget *parent)
    : QWidget(parent)
    , decoder_(PhotoDecoder::shared())
    , emptyText_(emptyText)
{
    changed();
}

ProportionalSclaleWidget::~ProportionalSclaleWidget()
{
    decoder_->drop(this);
}

void ProportionalSclaleWidget::setPixmap(const QString &fileName)
{
    if (fileName != fileName_ || fileName.isEmpty()) {
        forgetPhoto();
        isBlank_ = true;
    }
    fileName_ = fileName;
    ask(fileName, false, {});
    changed();
}

void ProportionalSclaleWidget::setPixmap(const QPixmap &pixmap)
{
    decoder_->drop(this);
    isLoading_ = false;
    forgetPhoto();
    photoSize_ = pixmap.size();
    pixmap_ = pixmap;
    changed();
}

void ProportionalSclaleWidget::replacePhoto(const QString &fileName,
                                            const std::shared_ptr<const void> &untilRead)
{
    ask(fileName, true, untilRead);
}

void ProportionalSclaleWidget::ask(const QString &fileName, bool followsOlder,
                                   const std::shared_ptr<const void> &untilRead)
{
    isLoading_ = true;
    place_ = place();
    const bool keeps = followsOlder || fileName.isEmpty();
    const quint64 number = ++asked_;
    decoder_->request(this, {fileName, bytes_, place_, untilRead, followsOlder},
                      [this, number, keeps](const DecodedPhoto &photo) {
                          if (number == asked_) {
                              isLoading_ = false;
                              isBlank_ = false;
                          }
                          if (!photo.isNull() || !keeps) {
                              setPhoto(photo);
                          }
                          changed();
                      });
}

void ProportionalSclaleWidget::forgetPhoto()
{
    fileName_.clear();
    isBlank_ = false;
    setPhoto(DecodedPhoto());
}

void ProportionalSclaleWidget::setPhoto(const DecodedPhoto &photo)
{
    bytes_ = photo.bytes;
    photoSize_ = photo.size;
    pixmap_ = QPixmap::fromImage(photo.photo);
    scaled_ = QPixmap::fromImage(photo.shown);
}

void ProportionalSclaleWidget::setEmptyText(const QString &emptyText)
{
    if (emptyText_ != emptyText) {
        emptyText_ = emptyText;
        // A longer caption would reach out of the frame.
        fitFont();
    }
    changed();
}

void ProportionalSclaleWidget::setLayers(const QString &fileName, const QStringList &lines)
{
    lines_ = lines;
    setPixmap(fileName);
}

void ProportionalSclaleWidget::setStatistics(const QStringList &lines)
{
    lines_ = lines;
    changed();
}

void ProportionalSclaleWidget::clear()
{
    lines_.clear();
    setPixmap(QPixmap());
}

QString ProportionalSclaleWidget::emptyText() const
{
    return emptyText_;
}

QPixmap ProportionalSclaleWidget::pixmap() const
{
    return pixmap_;
}

QSize ProportionalSclaleWidget::photoSize() const
{
    return photoSize_;
}

bool ProportionalSclaleWidget::isLoading() const
{
    return isLoading_;
}

QStringList ProportionalSclaleWidget::lines() const
{
    return lines_;
}

QRect ProportionalSclaleWidget::frame() const
{
    return frame_;
}

void ProportionalSclaleWidget::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const bool isHigh = height() * 4 >= width() * 3;
    const QSize size =
        isHigh ? QSize(width(), qRound(width() * 0.75)) : QSize(qRound(height() / 0.75), height());
    frame_ = QRect(QPoint(0, 0), size);
    frame_.moveCenter(rect().center());
    fitFont();
}

void ProportionalSclaleWidget::paintEvent(QPaintEvent *event)
{
    // Never the event's own rectangle: a part that is uncovered must show that part of the whole.
    QPainter painter(this);
    QRect area;
    if (!pixmap_.isNull()) {
        area = photoRect();
        drawPhoto(painter, area);
    } else if (isBlank_) {
        area = frame_;
    } else if (!emptyText_.isEmpty()) {
        area = frame_;
        drawPlaceholder(painter);
    }
    if (!lines_.isEmpty()) {
        drawLines(painter, area);
    }
    event->accept();
}

DecodedPhoto::Place ProportionalSclaleWidget::place() const
{
    return {size(), devicePixelRatioF()};
}

QRect ProportionalSclaleWidget::photoRect() const
{
    QRect target(QPoint(0, 0), place().fitted(photoSize_));
    target.moveCenter(rect().center());
    return target;
}

// Makes the caption fit the frame. The width is measured at one size, so that rounding does not
// add up from resize to resize; the font is set only when it differs, because setting it asks the
// layout for another round.
void ProportionalSclaleWidget::fitFont()
{
    constexpr qreal probePoints = 100;
    constexpr qreal captionShare = 0.9;

    QFont fitted = font();
    fitted.setWeight(QFont::Bold);
    fitted.setPointSizeF(probePoints);
    const QSizeF caption =
        QFontMetricsF(fitted).boundingRect(QRectF(), Qt::AlignCenter, emptyText_).size();
    qreal points = smallestPoints;
    if (!caption.isEmpty() && !frame_.isEmpty()) {
        const qreal factor =
            std::min(frame_.width() / caption.width(), frame_.height() / caption.height());
        points = std::max(points, probePoints * captionShare * factor);
    }
    fitted.setPointSizeF(points);
    if (fitted != font()) {
        setFont(fitted);
    }
}

void ProportionalSclaleWidget::changed()
{
    const QString name = pixmap_.isNull() ? emptyText_ : tr("Photo");
    if (accessibleName() != name && !isBlank_) {
        setAccessibleName(name);
    }
    const QString description = lines_.join(QLatin1Char('\n'));
    if (accessibleDescription() != description) {
        setAccessibleDescription(description);
    }
    update();
}

void ProportionalSclaleWidget::drawPhoto(QPainter &painter, const QRect &target)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QSize pixels = (QSizeF(target.size()) * ratio).toSize();
    if (pixels.isEmpty()) {
        return;
    }
    if (scaled_.size() == pixels) {
        painter.drawPixmap(QRectF(target), scaled_, QRectF(scaled_.rect()));
        return;
    }
    if (bytes_.isEmpty()) {
        // Smooth scaling costs more than all the rest of a painting.
        scaled_ = pixmap_.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        drawPhoto(painter, target);
        return;
    }
    painter.drawPixmap(QRectF(target), pixmap_, QRectF(pixmap_.rect()));
    if (!isLoading_ && !(place_ == place())) {
        ask(QString(), false, {});
    }
}

void ProportionalSclaleWidget::drawPlaceholder(QPainter &painter) const
{
    if (frame_.isEmpty()) {
        return;
    }
    painter.fillRect(frame_, Qt::red);
    const QRectF frame(frame_);
    const QPointF centre = frame.center();
    shadeEdge(painter, frame.topLeft(), frame.topRight(), centre);
    shadeEdge(painter, frame.topRight(), frame.bottomRight(), centre);
    shadeEdge(painter, frame.bottomRight(), frame.bottomLeft(), centre);
    shadeEdge(painter, frame.bottomLeft(), frame.topLeft(), centre);
    painter.fillRect(frame_, QBrush(Qt::black, Qt::Dense1Pattern));
    drawCaption(painter);
}

void ProportionalSclaleWidget::drawCaption(QPainter &painter) const
{
    const QFontMetricsF metrics(font());
    const QRectF place = metrics.boundingRect(QRectF(frame_), Qt::AlignCenter, emptyText_);
    QPainterPath path;
    path.addText(place.left(), place.top() + metrics.ascent(), font(), emptyText_);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::red);
    painter.setPen(QPen(Qt::black, std::max(1.0, font().pointSizeF() / 15), Qt::SolidLine,
                        Qt::SquareCap, Qt::BevelJoin));
    painter.drawPath(path);
}

void ProportionalSclaleWidget::drawLines(QPainter &painter, const QRect &area) const
{
    const QFont lineFont = boldAtLeastSmallest(QApplication::font());
    const QFontMetrics metrics(lineFont);
    QPainterPath path;
    int baseline = 0;
    for (const QString &line : lines_) {
        const QRect box = metrics.boundingRect(area, Qt::AlignLeft | Qt::AlignTop, line);
        baseline += box.height();
        path.addText(box.left(), baseline, lineFont, line);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::green);
    // Where letters touch, the one on top does not cut a hole.
    path.setFillRule(Qt::WindingFill);
    painter.drawPath(path);
}
