#pragma once
#include <QObject>
#include <QString>

#include <functional>

class QKeyEvent;
class QWidget;

// The KeyDown and LostFocus events of a text field, for handlers that have to see a key
// before the field does. It watches one widget and belongs to it.
//
// KeyDown gets the key as the text of one character: Return is Chr(13), the keypad's
// Enter Chr(3), Tab and Backtab Chr(9), Backspace Chr(8), Escape Chr(27); other keys give
// the text they type, possibly empty. A true result keeps the key from the field. A Tab
// after which the handler has already put the focus elsewhere is not applied by the field
// as well, so the focus stays where the handler put it.
//
// LostFocus is raised when the focus moves from the field to another control; the window
// going inactive, a popup opening over the field or the focus being cleared (as when the
// window is destroyed) raise nothing.
class FieldEvents : public QObject {
    Q_OBJECT
public:
    explicit FieldEvents(QWidget* field);

    std::function<bool(const QString& key)> KeyDown;
    std::function<void()> LostFocus;

    static QString keyText(const QKeyEvent& e);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* field_;
};
