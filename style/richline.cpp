// SPDX-License-Identifier: MIT
#include "style/richline.h"

#include "style/contrast.h"
#include "style/metrics.h"
#include "style/richtext.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>

#include <cmath>

namespace
{

constexpr int longestPlain = 500; // more than any screen is wide

} // namespace

RichLine::RichLine(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    document_.setDocumentMargin(0);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    document_.setDefaultTextOption(option);
}

void RichLine::setText(const QString &richText)
{
    if (richText == text_) {
        return;
    }
    text_ = richText;
    build();
}

QString RichLine::plainText() const
{
    return document_.toPlainText().simplified();
}

bool RichLine::isCut() const
{
    return document_.idealWidth() > width();
}

QSize RichLine::sizeHint() const
{
    return {fullWidth_, Metrics::touchSize};
}

QSize RichLine::minimumSizeHint() const
{
    return {0, Metrics::touchSize};
}

void RichLine::build()
{
    document_.setDefaultFont(font());
    shown_ = RichText::isSimple(text_) ? text_ : text_.left(longestPlain).toHtmlEscaped();
    document_.setHtml(shown_);
    makeReadable();
    document_.setTextWidth(-1);
    fullWidth_ = static_cast<int>(std::ceil(document_.idealWidth())) + 1;
    setAccessibleName(plainText());
    fit();
    updateGeometry();
}

void RichLine::makeReadable()
{
    const QColor ground = palette().color(backgroundRole());
    QTextCursor cursor(&document_);
    for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            QTextCharFormat format;
            const QBrush given = fragment.charFormat().foreground();
            const QColor color =
                given.style() == Qt::NoBrush ? palette().color(foregroundRole()) : given.color();
            format.setForeground(Contrast::readable(color, ground));
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(format);
        }
    }
}

void RichLine::fit()
{
    QFont shrunk = font();
    double points = QFontInfo(shrunk).pointSizeF();
    document_.setDefaultFont(shrunk);
    document_.setTextWidth(-1);
    // Tags may ask for larger text than the common font; that part may shrink further.
    const double lineHeight = QFontMetricsF(shrunk).height();
    const double factor = qMax(1.0, document_.size().height() / qMax(1.0, lineHeight));
    constexpr double step = 0.5;
    while (document_.idealWidth() > width() &&
           (points - step) * factor >= Metrics::smallestFontPoints) {
        points -= step;
        shrunk.setPointSizeF(points);
        document_.setDefaultFont(shrunk);
    }
    // Alignment in the text needs a width to refer to.
    document_.setTextWidth(document_.idealWidth());
    setToolTip(isCut() ? shown_ : QString());
    update();
}

void RichLine::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const double top = (height() - document_.size().height()) / 2.0;
    const double left = isCut() ? 0.0 : (width() - document_.idealWidth()) / 2.0;
    painter.save();
    painter.translate(left, top);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = palette();
    context.palette.setColor(QPalette::Text, palette().color(foregroundRole()));
    context.clip = QRectF(-left, -top, width(), height());
    painter.setClipRect(context.clip);
    document_.documentLayout()->draw(&painter, context);
    painter.restore();
    if (isCut()) {
        const QColor ground = palette().color(backgroundRole());
        QColor clear = ground;
        clear.setAlpha(0);
        const QRect end(width() - Metrics::fadeWidth, 0, Metrics::fadeWidth, height());
        QLinearGradient fade(end.topLeft(), end.topRight());
        fade.setColorAt(0, clear);
        fade.setColorAt(1, ground);
        painter.fillRect(end, fade);
    }
}

void RichLine::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fit();
}

void RichLine::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
        build();
    }
}
