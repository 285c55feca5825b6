#include "platform/widgets/FieldEvents.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QWidget>

FieldEvents::FieldEvents(QWidget* field) : QObject(field), field_(field)
{
    field->installEventFilter(this);
}

QString FieldEvents::keyText(const QKeyEvent& e)
{
    switch (e.key()) {
    case Qt::Key_Return:
        return QString(QChar(13));
    case Qt::Key_Enter:
        return QString(QChar(3));
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return QString(QChar(9));
    case Qt::Key_Backspace:
        return QString(QChar(8));
    case Qt::Key_Escape:
        return QString(QChar(27));
    default:
        return e.text();
    }
}

bool FieldEvents::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != field_)
        return false;
    if (event->type() == QEvent::KeyPress && KeyDown) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool tab = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
        if (KeyDown(keyText(key)))
            return true;
        // The handler moved the focus itself: the field's own Tab would move it on again.
        // Asked of the window, whose focus moves also while it is not the active one.
        if (tab && field_->window()->focusWidget() != field_)
            return true;
        return false;
    }
    if (event->type() == QEvent::FocusOut && LostFocus) {
        // The focus has already moved when FocusOut arrives. It goes to nobody only when it
        // is cleared, as while the window is being destroyed; then there is no one to tell.
        const auto reason = static_cast<const QFocusEvent&>(*event).reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason
            && QApplication::focusWidget() != nullptr)
            LostFocus();
    }
    return false;
}
