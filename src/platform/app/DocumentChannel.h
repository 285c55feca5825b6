#pragma once
#include <QObject>
#include <QByteArray>
#include <QList>
#include <QString>

class QLocalServer;
class QLocalSocket;

// The way a second launch hands its documents to the program that runs already, so that
// there is only ever one main window. One channel per user: the first launch claims it
// and listens; a later launch finds it taken, sends its paths and is told to stop. Paths
// travel as the file system's bytes, so that a name in any encoding arrives as it was.
class DocumentChannel : public QObject {
    Q_OBJECT
public:
    explicit DocumentChannel(QString name = userChannelName(), QObject* parent = nullptr);
    ~DocumentChannel() override;

    // The channel of the user who runs the program.
    static QString userChannelName();

    // True when this process is now the one that runs: it listens for later launches.
    // False when another process runs: paths have been handed to it (or it could not
    // be reached in time), and this process is to end.
    bool claim(const QList<QByteArray>& paths);

    // Sends paths to the process that listens on name; false if none does.
    static bool send(const QString& name, const QList<QByteArray>& paths, int timeoutMs = 5000);

signals:
    // A later launch's paths, in its order; raised also for a launch without any.
    void received(const QList<QByteArray>& paths);

private:
    void accept();
    void readFrom(QLocalSocket* socket);

    QString name_;
    QLocalServer* server_ = nullptr;
};
