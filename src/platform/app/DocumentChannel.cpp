#include "platform/app/DocumentChannel.h"

#include <QDir>
#include <QtEndian>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>

// A message: its length in 4 bytes (big-endian), then each path's bytes followed by a zero
// byte. The listener answers with one byte once it has taken the paths, so that the
// sender may end. Anything longer than kMaxMessage is no message of ours.

namespace {

constexpr quint32 kMaxMessage = 64 * 1024 * 1024;

QByteArray encode(const QList<QByteArray>& paths)
{
    QByteArray body;
    for (const QByteArray& p : paths) {
        body += p;
        body += '\0';
    }
    QByteArray message(4, '\0');
    qToBigEndian<quint32>(quint32(body.size()), message.data());
    return message + body;
}

QList<QByteArray> decode(const QByteArray& body)
{
    QList<QByteArray> paths;
    for (const QByteArray& p : body.split('\0'))
        if (!p.isEmpty())
            paths << p;
    return paths;
}

}  // namespace

DocumentChannel::DocumentChannel(QString name, QObject* parent) : QObject(parent), name_(std::move(name)) {}

DocumentChannel::~DocumentChannel() = default;

QString DocumentChannel::userChannelName()
{
#ifdef Q_OS_UNIX
    // The user's runtime folder is private to the user and emptied at logout.
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (!runtime.isEmpty())
        return QDir(runtime).filePath(QStringLiteral("velkaro.documents"));
#endif
    return QStringLiteral("velkaro.documents.") + QDir::home().dirName();
}

bool DocumentChannel::send(const QString& name, const QList<QByteArray>& paths, int timeoutMs)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(timeoutMs))
        return false;
    socket.write(encode(paths));
    socket.waitForBytesWritten(timeoutMs);
    // The listener may be busy with a long batch; its answer is welcome but not needed,
    // since the paths are in the socket by now.
    socket.waitForReadyRead(timeoutMs);
    socket.disconnectFromServer();
    return true;
}

bool DocumentChannel::claim(const QList<QByteArray>& paths)
{
    if (send(name_, paths))
        return false;
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_->listen(name_)) {
        // Either a launch of the same moment was quicker, or a crashed run left its
        // socket behind.
        if (send(name_, paths))
            return false;
        QLocalServer::removeServer(name_);
        if (!server_->listen(name_))
            return true;  // runs on without a channel: later launches open windows of their own
    }
    connect(server_, &QLocalServer::newConnection, this, &DocumentChannel::accept);
    return true;
}

void DocumentChannel::accept()
{
    while (QLocalSocket* socket = server_->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { readFrom(socket); });
        readFrom(socket);
    }
}

void DocumentChannel::readFrom(QLocalSocket* socket)
{
    if (socket->bytesAvailable() < 4)
        return;
    const quint32 length = qFromBigEndian<quint32>(socket->peek(4).constData());
    if (length > kMaxMessage) {
        socket->abort();
        socket->deleteLater();
        return;
    }
    if (socket->bytesAvailable() < qint64(4 + length))
        return;  // the rest is on its way
    socket->read(4);
    const QList<QByteArray> paths = decode(socket->read(length));
    socket->write("1", 1);
    socket->flush();
    emit received(paths);
}
