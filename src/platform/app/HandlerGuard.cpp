#include "platform/app/HandlerGuard.h"

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

QString headline(const QString& action)
{
    return textById("Report.couldNot", "Velkaro could not %1.").arg(action);
}

// The action in the interface language.
QString actionText(const char* action)
{
    return textById((QByteArray("Action.") + action).constData(), action);
}

void writeToStandardError(const QString& action, const QString& reason)
{
    std::fprintf(stderr, "%s %s\n", qUtf8Printable(headline(action)), qUtf8Printable(reason));
}

// The dialog: what could not be done, and below it why, on the active window.
void showFailureDialog(const QString& action, const QString& reason)
{
    static bool showing = false;
    if (showing || !qobject_cast<QApplication*>(QCoreApplication::instance())) {
        // No second dialog on top of the first, and none without a desktop.
        writeToStandardError(action, reason);
        return;
    }
    showing = true;
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Velkaro"), headline(action), QMessageBox::Ok,
                    QApplication::activeWindow());
    box.setInformativeText(reason);
    box.exec();
    showing = false;
}

}  // namespace

void setFailureReport(FailureReport report)
{
    installedReport() = std::move(report);
}

void reportFailure(const QString& action, const QString& reason)
{
    // This runs inside guard()'s catch: nothing may leave it.
    try {
        if (installedReport())
            installedReport()(action, reason);
        else
            showFailureDialog(action, reason);
    } catch (...) {
        writeToStandardError(action, reason);
    }
}

void reportFailure(const char* action, const QString& reason)
{
    try {
        reportFailure(actionText(action), reason);
    } catch (...) {
        std::fprintf(stderr, "Velkaro could not %s. %s\n", action, qUtf8Printable(reason));
    }
}
