#include "platform/widgets/Canvas.h"

#include <QPainter>

Canvas::Canvas(QWidget* parent) : QWidget(parent) {}

void Canvas::setBackdrop(const QImage& backdrop)
{
    backdrop_ = backdrop;
    ++backdropVersion_;
    update();
}

void Canvas::paintEvent(QPaintEvent*)
{
    if (backdrop_.isNull())
        return;
    QPainter painter(this);
    painter.drawImage(QPoint(0, 0), backdrop_);
}

#include "moc_Canvas.cpp"
