#pragma once
#include <QApplication>
#include <QString>
#include <QList>

#include "platform/app/DocumentChannel.h"
#include "platform/files/FolderItem.h"

// The application object: its version data, the end of the program with its last window,
// and the documents that the desktop hands over, at launch and later.
class App : public QApplication {
    Q_OBJECT
public:
    App(int& argc, char** argv);

    static constexpr int MajorVersion = 1;
    static constexpr int MinorVersion = 1;
    static constexpr int BugVersion = 1;
    static constexpr int NonReleaseVersion = 19;
    static constexpr int StageCode = 2;
    static QString ShortVersion() { return QStringLiteral("1.1.1"); }
    static QString LongVersion() { return QStringLiteral("Velkaro 1.1.1, copyright the Velkaro developers"); }

    bool AutoQuit() const;
    void setAutoQuit(bool autoQuit);

    void Event_Open();
    // Appends the item to the table of the one window, which is made if there is none yet.
    // Clears nothing, sorts nothing, selects nothing.
    static void Event_OpenDocument(const FolderItem& item);
    // Appends the items; those that cannot be listed are named in one report after them,
    // or, at launch, after Timer4's sort. The desktop's hand-overs and Add Files come here.
    static void openDocuments(const QList<FolderItem>& items);

    // The files named on the command line, as absolute paths in the file system's bytes
    // (the arguments as they came, never decoded to text).
    QList<QByteArray> launchDocuments() const;

    // Brings the program up with the launch's documents: hands them to the copy that runs
    // already and answers false (this process is to end), or makes the window, appends them
    // and listens for later launches. Translations are to be installed before.
    bool start(const QList<QByteArray>& documents, const QString& channelName = DocumentChannel::userChannelName());

protected:
    bool event(QEvent* e) override;

private:
    DocumentChannel* channel_ = nullptr;
    QList<QByteArray> arguments_;  // argv after Qt took its own options
};
