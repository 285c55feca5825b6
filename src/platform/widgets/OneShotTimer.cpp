#include "platform/widgets/OneShotTimer.h"

#include <algorithm>

OneShotTimer::OneShotTimer(QObject* parent) : QObject(parent)
{
    timer_.setSingleShot(true);
    timer_.setInterval(10);
    // The QTimer is inactive again by the time this runs, so Mode reads 0 inside Action
    // and Action may arm the timer once more.
    connect(&timer_, &QTimer::timeout, this, &OneShotTimer::Action);
}

int OneShotTimer::Period() const
{
    return timer_.interval();
}

void OneShotTimer::setPeriod(int milliseconds)
{
    timer_.setInterval(std::max(0, milliseconds));  // a pending firing starts over
}

int OneShotTimer::Mode() const
{
    return timer_.isActive() ? 1 : 0;
}

void OneShotTimer::setMode(int mode)
{
    if (mode == 0)
        timer_.stop();
    else if (!timer_.isActive())  // arming a pending timer leaves its one firing as it is
        timer_.start();
}

#include "moc_OneShotTimer.cpp"
