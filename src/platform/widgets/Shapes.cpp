#include "platform/widgets/Shapes.h"

#include <QPainter>

#include <algorithm>

RectangleShape::RectangleShape(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
}

void RectangleShape::setBorderThickness(int pixels)
{
    border_ = std::max(0, pixels);
    update();
}

void RectangleShape::setBorderColor(const QColor& color)
{
    color_ = color;
    update();
}

void RectangleShape::paintEvent(QPaintEvent*)
{
    const int b = std::min({border_, width() / 2 + 1, height() / 2 + 1});
    if (b <= 0)
        return;
    QPainter painter(this);
    const QRect r = rect();
    painter.fillRect(QRect(r.left(), r.top(), r.width(), b), color_);
    painter.fillRect(QRect(r.left(), r.bottom() - b + 1, r.width(), b), color_);
    painter.fillRect(QRect(r.left(), r.top(), b, r.height()), color_);
    painter.fillRect(QRect(r.right() - b + 1, r.top(), b, r.height()), color_);
}

RoundRectangleShape::RoundRectangleShape(QWidget* parent) : QWidget(parent) {}

void RoundRectangleShape::setCornerSize(int pixels)
{
    corner_ = std::max(0, pixels);
    update();
}

void RoundRectangleShape::setBorderThickness(int pixels)
{
    border_ = std::max(0, pixels);
    update();
}

void RoundRectangleShape::setBorderColor(const QColor& color)
{
    borderColor_ = color;
    update();
}

void RoundRectangleShape::setFillColor(const QColor& color)
{
    fill_ = color;
    update();
}

void RoundRectangleShape::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // The border lies inside the widget: its pen runs along a rectangle inset by half.
    const qreal half = border_ / 2.0;
    const QRectF box = QRectF(rect()).adjusted(half, half, -half, -half);
    painter.setBrush(fill_);
    if (border_ > 0)
        painter.setPen(QPen(borderColor_, border_));
    else
        painter.setPen(Qt::NoPen);
    const qreal radius = corner_ / 2.0;
    painter.drawRoundedRect(box, radius, radius);
}

#include "moc_Shapes.cpp"
