#pragma once
#include <QString>

#include "platform/BusyPointer.h"

#include <exception>
#include <functional>
#include <new>
#include <utility>

// Every event handler is entered through guard(): what a handler throws is handed to the
// application's failure report and never crosses Qt's event loop. `action` says in the
// user's words what the handler was doing ("add the dropped files"); the report reads
// "Velkaro could not <action>." with the exception's text, the reason, below it. Tests put
// a recorder in the dialog's place.
using FailureReport = std::function<void(const QString& action, const QString& reason)>;
void setFailureReport(FailureReport report);  // an empty report restores the dialog
void reportFailure(const QString& action, const QString& reason);

template <class F>
void guard(const char* action, F&& handler) noexcept
{
    try {
        const HandlerTime time;  // shows the busy pointer if it runs long; gone before a report
        std::forward<F>(handler)();
    } catch (const std::bad_alloc&) {
        reportFailure(QString::fromUtf8(action), QStringLiteral("There was not enough memory."));
    } catch (const std::exception& e) {
        reportFailure(QString::fromUtf8(action), QString::fromUtf8(e.what()));
    } catch (...) {
        reportFailure(QString::fromUtf8(action), QStringLiteral("The cause is not known."));
    }
}
