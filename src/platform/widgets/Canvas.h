#pragma once
#include <QImage>
#include <QWidget>

// A surface that shows its Backdrop at its top-left corner and draws nothing else.
class Canvas : public QWidget {
    Q_OBJECT
public:
    explicit Canvas(QWidget* parent = nullptr);
    const QImage& Backdrop() const { return backdrop_; }
    void setBackdrop(const QImage& backdrop);  // a null image removes it
    // Counts the settings of the backdrop: a picture asked for while the count was n is
    // still wanted only while it is n.
    quint64 backdropVersion() const { return backdropVersion_; }

protected:
    void paintEvent(QPaintEvent* e) override;

private:
    QImage backdrop_;
    quint64 backdropVersion_ = 0;
};
