#include "shell/App.h"

#include <QFileOpenEvent>
#include <QTimer>

#include "platform/app/HandlerGuard.h"
#include "platform/widgets/OneShotTimer.h"
#include "platform/files/ReadAhead.h"
#include "shell/Window1.h"

namespace {

QList<FolderItem> folderItems(const QList<QByteArray>& paths)
{
    QList<FolderItem> items;
    for (const QByteArray& p : paths)
        items << FolderItem(p);
    return items;
}

}  // namespace

App::App(int& argc, char** argv) : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("velkaro"));
    setApplicationDisplayName(QStringLiteral("Velkaro"));
    setApplicationVersion(ShortVersion());
    setDesktopFileName(QStringLiteral("velkaro"));
    // QApplication has removed the options it took; what is left are the documents. On
    // Windows argv is in the ANSI code page and only Qt's wide arguments are whole.
#if defined(Q_OS_WIN)
    for (qsizetype i = 1; i < arguments().size(); ++i)
        arguments_ << arguments()[i].toUtf8();
#else
    for (int i = 1; i < argc; ++i)
        arguments_ << QByteArray(argv[i]);
#endif
}

bool App::AutoQuit() const
{
    return quitOnLastWindowClosed();
}

void App::setAutoQuit(bool autoQuit)
{
    setQuitOnLastWindowClosed(autoQuit);
}

void App::Event_Open()
{
    setAutoQuit(true);
}

void App::Event_OpenDocument(const FolderItem& item)
{
    guard("add the file handed over by the desktop", [&] { Window1::instance()->addFileToTable(item); });
}

QList<QByteArray> App::launchDocuments() const
{
    // Made absolute here: the running copy that may take them has a folder of its own.
    QList<QByteArray> paths;
    for (const QByteArray& arg : arguments_) {
        const FolderItem f(arg);
        if (!f.isNil())
            paths << f.nativePath();
    }
    return paths;
}

bool App::start(const QList<QByteArray>& documents, const QString& channelName)
{
    channel_ = new DocumentChannel(channelName, this);
    if (!channel_->claim(documents))
        return false;
    connect(channel_, &DocumentChannel::received, this, [](const QList<QByteArray>& paths) {
        openDocuments(folderItems(paths));
        Window1* w = Window1::instance();
        w->raise();
        w->activateWindow();
    });

    Event_Open();
    Window1::instance();  // the default window; Timer4 sorts what arrives before it fires
    openDocuments(folderItems(documents));
    // A run that a crash or a power cut ended is offered for undo once the window shows.
    QTimer::singleShot(0, this, [] { guard("look for an interrupted run", [] { Window1::instance()->recoverInterruptedRuns(); }); });
    return true;
}

void App::openDocuments(const QList<FolderItem>& items)
{
    {
        // On a cold disk the files' first blocks are read many at once, ahead of their turn.
        const ReadAhead ahead(std::vector<FolderItem>(items.begin(), items.end()));
        for (const FolderItem& item : items)
            Event_OpenDocument(item);
    }
    Window1* w = Window1::instance();
    if (w->Timer4->Mode() == 0)  // the launch's sort is over: this hand-over is an intake of its own
        guard("name the files that could not be listed", [w] { w->reportUnlisted(); });
}

// macOS hands documents over as events, at launch and later.
bool App::event(QEvent* e)
{
    if (e->type() == QEvent::FileOpen) {
        openDocuments({FolderItem(static_cast<QFileOpenEvent*>(e)->file())});
        return true;
    }
    return QApplication::event(e);
}
