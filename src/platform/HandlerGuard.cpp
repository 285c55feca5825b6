#include "platform/HandlerGuard.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>

#include <cstdio>

namespace {

FailureReport& installedReport()
{
    static FailureReport report;
    return report;
}

void writeToStandardError(const QString& where, const QString& what)
{
    std::fprintf(stderr, "Velkaro: %s could not be completed: %s\n", qPrintable(where), qPrintable(what));
}

// The dialog: says what could not be done, where, and why, on the active window.
void showFailureDialog(const QString& where, const QString& what)
{
    static bool showing = false;
    if (showing || !qobject_cast<QApplication*>(QCoreApplication::instance())) {
        // No second dialog on top of the first, and none without a desktop.
        writeToStandardError(where, what);
        return;
    }
    showing = true;
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Velkaro"),
                    QObject::tr("The action could not be completed (in %1).").arg(where), QMessageBox::Ok,
                    QApplication::activeWindow());
    box.setInformativeText(QObject::tr("Reason: %1").arg(what));
    box.exec();
    showing = false;
}

}  // namespace

void setFailureReport(FailureReport report)
{
    installedReport() = std::move(report);
}

void reportFailure(const QString& where, const QString& what)
{
    // This runs inside guard()'s catch: nothing may leave it.
    try {
        if (installedReport())
            installedReport()(where, what);
        else
            showFailureDialog(where, what);
    } catch (...) {
        writeToStandardError(where, what);
    }
}
