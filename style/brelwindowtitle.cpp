// SPDX-License-Identifier: MIT
#include "style/brelwindowtitle.h"

#include "style/metrics.h"
#include "style/richline.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>

namespace
{

enum class Sign { Minimize, Maximize, Restore, Close };

void drawSign(QPainter &painter, Sign sign)
{
    constexpr double low = 3.5;
    constexpr double high = Metrics::windowIcon - low;
    constexpr double side = high - low;
    switch (sign) {
    case Sign::Minimize:
        painter.drawLine(QPointF(low, high), QPointF(high, high));
        break;
    case Sign::Maximize:
        painter.drawRect(QRectF(low, low, side, side));
        break;
    case Sign::Restore: {
        constexpr double shift = 3.5;
        painter.drawRect(QRectF(low, low + shift, side - shift, side - shift));
        painter.drawPolyline(QPolygonF({{low + shift, low + shift - 1},
                                        {low + shift, low},
                                        {high, low},
                                        {high, high - shift},
                                        {high - shift + 1, high - shift}}));
        break;
    }
    case Sign::Close:
        painter.drawLine(QPointF(low, low), QPointF(high, high));
        painter.drawLine(QPointF(low, high), QPointF(high, low));
        break;
    }
}

// Drawn for each pixel ratio that screens have, so that it is sharp on all of them.
QIcon signIcon(Sign sign, const QColor &color)
{
    QIcon icon;
    for (const int ratio : {1, 2, 3}) {
        QPixmap pixmap(Metrics::windowIcon * ratio, Metrics::windowIcon * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::MiterJoin));
        drawSign(painter, sign);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

BrelWindowTitle::BrelWindowTitle(QWidget *parent)
    : QWidget(parent)
    , pageButtons_(new QHBoxLayout)
    , deviceName_(new RichLine(this))
    , title_(new RichLine(this))
    , minimize_(createWindowButton(QStringLiteral("buttonMinimize")))
    , maximize_(createWindowButton(QStringLiteral("buttonMaximize")))
    , close_(createWindowButton(QStringLiteral("buttonClose")))
{
    QPalette colors = palette();
    colors.setColor(QPalette::Window, Metrics::bar);
    colors.setColor(QPalette::WindowText, Metrics::text);
    setPalette(colors);
    setAutoFillBackground(true);
    setFixedHeight(Metrics::titleBarHeight);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(Metrics::spacing, 0, 0, 0);
    row->setSpacing(Metrics::spacing);
    pageButtons_->setSpacing(Metrics::spacing);
    row->addLayout(pageButtons_);
    row->addWidget(deviceName_, 1);
    row->addWidget(title_);
    auto *windowButtons = new QHBoxLayout;
    windowButtons->setSpacing(0);
    for (QPushButton *button : {minimize_, maximize_, close_}) {
        windowButtons->addWidget(button);
    }
    row->addLayout(windowButtons);

    deviceName_->setObjectName(QStringLiteral("deviceName"));
    title_->setObjectName(QStringLiteral("title"));
    connect(minimize_, &QPushButton::clicked, this, &BrelWindowTitle::minimizeRequested);
    connect(maximize_, &QPushButton::clicked, this, &BrelWindowTitle::maximizeRequested);
    connect(close_, &QPushButton::clicked, this, &BrelWindowTitle::closeRequested);
    nameWindowButtons();
    drawWindowButtons();
}

QAbstractButton *BrelWindowTitle::createButton(const QString &text)
{
    auto *button = new QPushButton(text, this);
    button->setCheckable(true);
    // A finger on a page button must not take the focus from what the operator types into.
    button->setFocusPolicy(Qt::TabFocus);
    button->setMinimumSize(Metrics::touchSize, Metrics::touchSize);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    button->setAccessibleName(text);
    // By the keyboard from the left to the right, too. A widget at the end of the focus chain takes
    // none behind it, so the first page button changes places with the window button.
    if (const int pages = pageButtons_->count(); pages > 0) {
        setTabOrder(pageButtons_->itemAt(pages - 1)->widget(), button);
    } else {
        setTabOrder(minimize_, button);
        setTabOrder(button, minimize_);
    }
    pageButtons_->addWidget(button);
    return button;
}

void BrelWindowTitle::setDeviceName(const QString &richText)
{
    deviceName_->setText(richText);
}

QString BrelWindowTitle::deviceName() const
{
    return deviceName_->text();
}

void BrelWindowTitle::setTitle(const QString &richText)
{
    title_->setText(richText);
}

QString BrelWindowTitle::title() const
{
    return title_->text();
}

void BrelWindowTitle::setMaximized(bool maximized)
{
    if (maximized == maximized_) {
        return;
    }
    maximized_ = maximized;
    nameWindowButtons();
    drawWindowButtons();
}

void BrelWindowTitle::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        nameWindowButtons();
    }
}

QPushButton *BrelWindowTitle::createWindowButton(const QString &name)
{
    auto *button = new QPushButton(this);
    button->setObjectName(name);
    button->setFlat(true);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    button->setFixedSize(Metrics::windowButtonWidth, Metrics::titleBarHeight);
    button->setIconSize({Metrics::windowIcon, Metrics::windowIcon});
    return button;
}

void BrelWindowTitle::nameWindowButtons()
{
    const auto name = [](QPushButton *button, const QString &text) {
        button->setAccessibleName(text);
        button->setToolTip(text);
    };
    name(minimize_, tr("Minimize"));
    name(maximize_, maximized_ ? tr("Restore") : tr("Maximize"));
    name(close_, tr("Close"));
}

void BrelWindowTitle::drawWindowButtons()
{
    minimize_->setIcon(signIcon(Sign::Minimize, Metrics::text));
    maximize_->setIcon(signIcon(maximized_ ? Sign::Restore : Sign::Maximize, Metrics::text));
    close_->setIcon(signIcon(Sign::Close, Metrics::text));
}
