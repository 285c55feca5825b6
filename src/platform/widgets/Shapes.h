#pragma once
#include <QColor>
#include <QWidget>

// A frame along the widget's edges, transparent inside; the mouse passes through it.
class RectangleShape : public QWidget {
    Q_OBJECT
public:
    explicit RectangleShape(QWidget* parent = nullptr);
    int BorderThickness() const { return border_; }
    void setBorderThickness(int pixels);
    QColor BorderColor() const { return color_; }
    void setBorderColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* e) override;

private:
    int border_ = 2;
    QColor color_ = Qt::black;
};

// A filled rectangle with rounded corners and a thin border.
class RoundRectangleShape : public QWidget {
    Q_OBJECT
public:
    explicit RoundRectangleShape(QWidget* parent = nullptr);
    int CornerSize() const { return corner_; }
    void setCornerSize(int pixels);  // width and height of a corner's arc
    int BorderThickness() const { return border_; }
    void setBorderThickness(int pixels);
    QColor BorderColor() const { return borderColor_; }
    void setBorderColor(const QColor& color);
    QColor FillColor() const { return fill_; }
    void setFillColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* e) override;

private:
    int corner_ = 16;
    int border_ = 1;
    QColor borderColor_ = QColor(0xB3, 0xB3, 0xB3);
    QColor fill_ = Qt::white;
};
