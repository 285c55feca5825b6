#pragma once
#include <QString>

#include <exception>
#include <functional>
#include <utility>

// Every event handler is entered through guard(): what a handler throws is handed to the
// application's failure report and never crosses Qt's event loop. The report shows a
// dialog that says what failed and where; tests put a recorder in its place.
using FailureReport = std::function<void(const QString& where, const QString& what)>;
void setFailureReport(FailureReport report);  // an empty report restores the dialog
void reportFailure(const QString& where, const QString& what);

template <class F>
void guard(const char* where, F&& handler) noexcept
{
    try {
        std::forward<F>(handler)();
    } catch (const std::exception& e) {
        reportFailure(QString::fromUtf8(where), QString::fromUtf8(e.what()));
    } catch (...) {
        reportFailure(QString::fromUtf8(where), QStringLiteral("an unknown failure"));
    }
}
