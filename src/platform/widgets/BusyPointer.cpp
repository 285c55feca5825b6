#include "platform/widgets/BusyPointer.h"

#include <QAbstractEventDispatcher>
#include <QCursor>
#include <QGuiApplication>

#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kPatience = std::chrono::milliseconds(300);

// Handlers run on the one thread of the event loop, one inside another at most.
struct Running {
    bool inHandler = false;
    bool pointerShown = false;
    Clock::time_point since;
};
Running running;

}  // namespace

HandlerTime::HandlerTime() : outermost_(!running.inHandler)
{
    if (!outermost_)
        return;
    running.inHandler = true;
    running.since = Clock::now();
    // An event loop inside the handler waits for the user: the clock starts again after.
    static const bool watching = [] {
        if (QAbstractEventDispatcher* loop = QAbstractEventDispatcher::instance())
            QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, [] { running.since = Clock::now(); });
        return true;
    }();
    (void)watching;
}

HandlerTime::~HandlerTime()
{
    if (!outermost_)
        return;
    running.inHandler = false;
    if (running.pointerShown) {
        running.pointerShown = false;
        QGuiApplication::restoreOverrideCursor();
    }
}

void stillBusy()
{
    if (!running.inHandler || running.pointerShown || Clock::now() - running.since < kPatience)
        return;
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return;  // no desktop, no pointer
    running.pointerShown = true;
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    QGuiApplication::sync();
}
