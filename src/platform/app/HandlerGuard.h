#pragma once
#include <QString>

#include "platform/widgets/BusyPointer.h"
#include "platform/base/TextId.h"

#include <exception>
#include <functional>
#include <new>
#include <utility>

// Every event handler is entered through guard(): what a handler throws is handed to the
// application's failure report and never crosses Qt's event loop. `action` says in the
// user's words what the handler was doing ("add the dropped files"); the report reads
// "Velkaro could not <action>." with the exception's text, the reason, below it. Tests put
// a recorder in the dialog's place. The action is looked up in the interface language by
// the key "Action." + its English text; reasons come in that language already.
using FailureReport = std::function<void(const QString& action, const QString& reason)>;
void setFailureReport(FailureReport report);  // an empty report restores the dialog
void reportFailure(const char* action, const QString& reason);
// The same for an action in the interface language already.
void reportFailure(const QString& action, const QString& reason);

template <class F>
void guard(const char* action, F&& handler) noexcept
{
    try {
        const HandlerTime time;  // shows the busy pointer if it runs long; gone before a report
        std::forward<F>(handler)();
    } catch (const std::bad_alloc&) {
        reportFailure(action, textById("Report.noMemory", "There was not enough memory."));
    } catch (const std::exception& e) {
        reportFailure(action, QString::fromUtf8(e.what()));
    } catch (...) {
        reportFailure(action, textById("Report.causeUnknown", "The cause is not known."));
    }
}
