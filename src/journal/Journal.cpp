// The journal folder: one file per run, written whole and synced before the run's first
// byte, records appended and synced after it.

#include "journal/Journal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/base/TextId.h"

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

QByteArray journalStateRecord(JournalRun::State state, bool left, qint64 when);

namespace {

const QString kSuffix = QStringLiteral(".journal");

bool failWith(QString* why, const QString& where, const QString& reason)
{
    if (why)
        *why = textById("Journal.cannotWrite", "the journal cannot be written to “%1”: %2").arg(where, reason);
    return false;
}

#if !defined(_WIN32)
QString errorText(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return textById("Journal.diskFull", "the disk is full");
    case EROFS:
        return textById("Journal.readOnly", "the disk cannot be written to");
    case EACCES:
    case EPERM:
        return textById("Journal.noPermission", "you do not have permission to write there");
    default:
        return QString::fromLocal8Bit(std::strerror(error));
    }
}

// Every byte, retrying what the system cuts short; errno set where it fails.
bool writeAll(int fd, const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0)
                errno = ENOSPC;
            return false;
        }
        done += n;
    }
    return true;
}

bool syncPath(const QString& path, int flags)
{
    const int fd = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool ok = ::fsync(fd) == 0;
    const int error = errno;
    ::close(fd);
    errno = error;
    return ok;
}

// The folder, made 0700 where it is not there; one of another user is never used, and
// one that others can read is closed to them.
bool ensureFolder(const QString& folder, QString* why)
{
    QDir().mkpath(QFileInfo(folder).absolutePath());
    const QByteArray path = QFile::encodeName(folder);
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return failWith(why, folder, errorText(errno));
    struct stat st;
    if (::lstat(path.constData(), &st) != 0)
        return failWith(why, folder, errorText(errno));
    if (!S_ISDIR(st.st_mode) || st.st_uid != ::getuid())
        return failWith(why, folder, textById("Journal.notOurs", "it is not a folder of yours"));
    if ((st.st_mode & 077) && ::chmod(path.constData(), 0700) != 0)
        return failWith(why, folder, errorText(errno));
    return true;
}
#endif

}  // namespace

QString Journal::folder()
{
#if defined(Q_OS_MACOS) || defined(Q_OS_WIN)
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + QStringLiteral("/journal");
#else
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (state.isEmpty() || !QDir::isAbsolutePath(state))
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/velkaro");
#endif
}

bool Journal::begin(const JournalRun& run, QString* why)
{
    const QString dir = folder();
    // Names sort as the runs began; the process number keeps two copies apart.
    const QString name = QStringLiteral("run-%1-%2").arg(run.started, 13, 10, QLatin1Char('0')).arg(QCoreApplication::applicationPid());
    const QString path = dir + QLatin1Char('/') + name + kSuffix;
    const QByteArray bytes = encodePlan(run);
#if defined(_WIN32)
    QDir().mkpath(dir);
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::NewOnly) || f.write(bytes) != bytes.size() || !f.flush())
        return failWith(why, path, f.errorString());
    f.close();
#else
    if (!ensureFolder(dir, why))
        return false;
    // Written aside and renamed, so that a plan is either whole or not there at all.
    const QString part = path + QStringLiteral(".part");
    const int fd = ::open(QFile::encodeName(part).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        return failWith(why, dir, errorText(errno));
    const bool written = writeAll(fd, bytes) && ::fsync(fd) == 0;
    const int error = errno;
    ::close(fd);
    if (!written || ::rename(QFile::encodeName(part).constData(), QFile::encodeName(path).constData()) != 0
        || !syncPath(dir, O_RDONLY | O_DIRECTORY)) {
        const int e = written ? errno : error;
        ::unlink(QFile::encodeName(part).constData());
        ::unlink(QFile::encodeName(path).constData());
        return failWith(why, dir, errorText(e));
    }
#endif
    fileName_ = path;
    // The oldest runs beyond those kept go.
    QStringList names = QDir(dir).entryList({QStringLiteral("run-*") + kSuffix}, QDir::Files, QDir::Name | QDir::Reversed);
    for (qsizetype i = kJournalKept; i < names.size(); ++i)
        QFile::remove(dir + QLatin1Char('/') + names[i]);
    return true;
}

bool Journal::close(QString* why)
{
    return mark(fileName_, JournalRun::Done, false, why);
}

bool Journal::mark(const QString& fileName, JournalRun::State state, bool left, QString* why)
{
    const QByteArray record = journalStateRecord(state, left, QDateTime::currentMSecsSinceEpoch());
#if defined(_WIN32)
    QFile f(fileName);
    if (!f.open(QIODevice::Append) || f.write(record) != record.size() || !f.flush())
        return failWith(why, fileName, f.errorString());
    return true;
#else
    const int fd = ::open(QFile::encodeName(fileName).constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd < 0)
        return failWith(why, fileName, errorText(errno));
#if defined(__APPLE__)
    const bool ok = writeAll(fd, record) && ::fsync(fd) == 0;
#else
    const bool ok = writeAll(fd, record) && ::fdatasync(fd) == 0;
#endif
    const int error = errno;
    ::close(fd);
    return ok || failWith(why, fileName, errorText(error));
#endif
}

std::vector<JournalEntry> Journal::runs()
{
    const QString dir = folder();
    std::vector<JournalEntry> out;
    const QStringList names =
        QDir(dir).entryList({QStringLiteral("run-*") + kSuffix}, QDir::Files, QDir::Name | QDir::Reversed);
    for (const QString& name : names) {
        JournalEntry e;
        e.fileName = dir + QLatin1Char('/') + name;
        QFile f(e.fileName);
        if (f.open(QIODevice::ReadOnly))
            e.run = readJournalSummary(f, &e.why);
        else
            e.why = f.errorString();
        out.push_back(std::move(e));
    }
    return out;
}

JournalEntry Journal::read(const QString& fileName)
{
    JournalEntry e;
    e.fileName = fileName;
    QFile f(fileName);
    // A plan holds some hundreds of bytes a file: a journal far beyond that is no plan.
    constexpr qint64 kLargest = qint64(1) << 31;
    if (!f.open(QIODevice::ReadOnly))
        e.why = f.errorString();
    else if (f.size() > kLargest)
        e.why = textById("Journal.corrupt", "its contents are damaged");
    else
        e.run = decodeJournal(f.readAll(), &e.why);
    return e;
}
