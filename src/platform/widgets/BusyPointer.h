#pragma once

// The platform's busy pointer over a handler that runs long. Every handler runs inside a
// HandlerTime (guard() makes one); a handler's long loops call stillBusy() as they go, and
// once the outermost handler has run for 0.3 s that shows the busy pointer. It goes when
// that handler ends, however it ends. Time spent waiting for the user inside a handler (a
// question asked in a dialog) doesn't count. The event loop doesn't run meanwhile, so the
// pointer is handed to the window system at once rather than at the next turn of the loop.
class HandlerTime {
public:
    HandlerTime();
    ~HandlerTime();
    HandlerTime(const HandlerTime&) = delete;
    HandlerTime& operator=(const HandlerTime&) = delete;

private:
    bool outermost_;
};

void stillBusy();
