#pragma once
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QString>
#include <QWidget>

#include <vector>

// Places controls by their design rectangle and their locks whenever the content widget
// (the window's central widget) is resized. Rectangles are in content coordinates, also
// for a control inside a group. Per axis: locked to both sides stretches, locked to the
// far side (R, B) alone follows that edge, anything else stays. A size that comes out
// negative is kept as computed and the control is given size 0.
class LockLayout : public QObject {
    Q_OBJECT
public:
    explicit LockLayout(QWidget* content, QSize designSize = QSize(870, 520));

    // locks: any of the letters L, T, R, B. The control is placed at once.
    void add(QWidget* control, const QRect& designRect, const QString& locks);
    void apply(const QSize& contentSize);
    // A control's rectangle for the content's present size, in content coordinates (the
    // size may be negative); QRect() for a control that was never added.
    QRect rectOf(const QWidget* control) const;
    QSize designSize() const { return design_; }
    // The rectangle a control with these locks gets at a content size.
    static QRect place(const QRect& designRect, const QString& locks, QSize designSize, QSize contentSize);

protected:
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    struct Entry {
        QPointer<QWidget> control;
        QRect design;
        QString locks;
    };
    QSize contentSize() const;
    void placeEntry(Entry& entry, const QSize& contentSize);
    QPoint originOf(const QWidget* parent, const QSize& contentSize) const;

    QPointer<QWidget> content_;
    QSize design_;
    std::vector<Entry> entries_;
};
