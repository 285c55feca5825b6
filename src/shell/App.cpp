#include "shell/App.h"

#include <QFileInfo>
#include <QFileOpenEvent>

#include "platform/HandlerGuard.h"
#include "platform/ReadAhead.h"
#include "shell/Window1.h"

App::App(int& argc, char** argv) : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("velkaro"));
    setApplicationDisplayName(QStringLiteral("Velkaro"));
    setApplicationVersion(ShortVersion());
    setDesktopFileName(QStringLiteral("velkaro"));
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

QStringList App::launchDocuments() const
{
    QStringList paths;
    const QStringList args = arguments();
    for (qsizetype i = 1; i < args.size(); ++i)
        paths << QFileInfo(args[i]).absoluteFilePath();
    return paths;
}

bool App::start(const QStringList& documents, const QString& channelName)
{
    channel_ = new DocumentChannel(channelName, this);
    if (!channel_->claim(documents))
        return false;
    connect(channel_, &DocumentChannel::received, this, [this](const QStringList& paths) {
        openDocuments(paths);
        Window1* w = Window1::instance();
        w->raise();
        w->activateWindow();
    });

    Event_Open();
    Window1::instance();  // the default window; Timer4 sorts what arrives before it fires
    openDocuments(documents);
    return true;
}

void App::openDocuments(const QStringList& paths)
{
    const std::vector<FolderItem> items(paths.begin(), paths.end());
    // On a cold disk the files' first blocks are read many at once, ahead of their turn.
    const ReadAhead ahead(items);
    for (const FolderItem& f : items)
        Event_OpenDocument(f);
}

// macOS hands documents over as events, at launch and later.
bool App::event(QEvent* e)
{
    if (e->type() == QEvent::FileOpen) {
        Event_OpenDocument(FolderItem(static_cast<QFileOpenEvent*>(e)->file()));
        return true;
    }
    return QApplication::event(e);
}
