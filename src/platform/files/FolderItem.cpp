#include "platform/files/FolderItem.h"

#include "platform/base/Exceptions.h"
#include "platform/base/TextId.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include "platform/files/WindowsFiles.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

#if defined(_WIN32)
// The path in the form the wide calls take; native paths are kept as UTF-8 here.
QString wide(const QByteArray& native) { return QDir::toNativeSeparators(QString::fromUtf8(native)); }
#define WIDE(native) reinterpret_cast<const wchar_t*>(wide(native).utf16())
#else
// The current folder as the file system's bytes.
QByteArray currentFolder()
{
    QByteArray buffer(4096, Qt::Uninitialized);
    while (!::getcwd(buffer.data(), size_t(buffer.size()))) {
        if (errno != ERANGE || buffer.size() > (1 << 20))
            return QFile::encodeName(QDir::currentPath());
        buffer.resize(buffer.size() * 2);
    }
    return QByteArray(buffer.constData());
}

// A path as the file system's own: absolute, without "." or ".." steps, without a
// trailing slash, made on bytes so that any name survives. An absolute path that is clean
// already is kept as it is, which is the usual case.
QByteArray normalized(const QByteArray& given)
{
    const QByteArray path = given.startsWith('/') ? given : currentFolder() + '/' + given;
    // Clean unless some slash is followed by a slash, "." or the end (the root aside).
    const qsizetype n = path.size();
    bool clean = true;
    for (qsizetype i = 0; i < n && clean; ++i)
        if (path[i] == '/' && (i + 1 == n ? n > 1 : path[i + 1] == '/' || path[i + 1] == '.'))
            clean = false;
    if (clean)
        return path;
    QList<QByteArray> steps;
    for (const QByteArray& step : path.split('/')) {
        if (step == "..") {
            if (!steps.isEmpty())
                steps.removeLast();
        } else if (!step.isEmpty() && step != ".") {
            steps.append(step);
        }
    }
    return '/' + steps.join('/');
}
#endif

// The text of a path or name for showing: bytes that are no UTF-8 show as U+FFFD. Qt
// takes file names on Unix as UTF-8 whatever the locale; decoding them as such directly
// spares the intake a decoder made for every name.
QString shown(QByteArrayView native)
{
#if defined(_WIN32)
    return QDir::fromNativeSeparators(QString::fromUtf8(native));
#else
    return QString::fromUtf8(native);
#endif
}

// A name as a report shows it: one that would run off a dialog keeps its two ends.
QString shortened(const QString& name)
{
    constexpr qsizetype kEnd = 30;
    return name.size() <= 2 * kEnd + 1 ? name : name.left(kEnd) + QChar(0x2026) + name.right(kEnd);
}

QString quoted(const QString& name) { return QStringLiteral("“%1”").arg(shortened(name)); }

// Why the system gave no status for an item, in plain words that name it. error is the
// errno of the attempt.
QString whyNoStatus(const QString& fullName, int error)
{
    const QString name = shortened(fullName);
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return textById("FolderItem.doesNotExist", "“%1” does not exist.").arg(name);
    case EACCES:
    case EPERM:
        return textById("FolderItem.permissionDenied", "“%1” cannot be looked at: permission denied.").arg(name);
    case ELOOP:
        return textById("FolderItem.linkLoop", "“%1” is a loop of symbolic links.").arg(name);
    case ENAMETOOLONG:
        return textById("FolderItem.nameTooLong", "“%1”: the name is too long.").arg(name);
    default:
        return textById("FolderItem.otherError", "“%1” cannot be looked at (%2).")
            .arg(name, QString::fromLocal8Bit(std::strerror(error)));
    }
}

// Why a file could not be opened, in words that name it. error is the errno of the attempt.
QString whyNotOpened(const QString& name, bool write, int error)
{
    const QString failed =
        (write ? textById("FolderItem.notOpenedForWriting", "%1 could not be opened for writing")
               : textById("FolderItem.notRead", "%1 could not be read"))
            .arg(quoted(name));
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return failed + textById("FolderItem.mayBeGone", "; it may have been moved or deleted.");
    case EACCES:
    case EPERM:
        return failed + (write ? textById("FolderItem.mayNotChange", "; you do not have permission to change it.")
                               : textById("FolderItem.mayNotRead", "; you do not have permission to read it."));
    case EROFS:
        return failed + textById("FolderItem.readOnlyDisk", "; it lies on a disk that cannot be written to.");
    case EISDIR:
        return textById("FolderItem.isFolder", "%1 is a folder, not a file.").arg(quoted(name));
    case ENODEV:
    case ENXIO:  // a socket
        return textById("FolderItem.notAFile", "%1 is not an ordinary file.").arg(quoted(name));
    default:
        return failed + textById("FolderItem.systemSays", " (%1).").arg(QString::fromLocal8Bit(std::strerror(error)));
    }
}

#if defined(_WIN32)
using windowsFiles::errnoOf;

std::optional<ItemStatus> statusOf(const QByteArray& native)
{
    WIN32_FILE_ATTRIBUTE_DATA a;
    if (!GetFileAttributesExW(WIDE(native), GetFileExInfoStandard, &a)) {
        errno = errnoOf(GetLastError());
        return std::nullopt;
    }
    return windowsFiles::statusOf(a.dwFileAttributes, a.nFileSizeHigh, a.nFileSizeLow, a.ftCreationTime,
                                  a.ftLastWriteTime);
}

#else
FileTime fileTime(const struct timespec& t) { return {qint64(t.tv_sec), qint64(t.tv_nsec)}; }

ItemStatus::Kind kindOf(mode_t mode)
{
    return S_ISREG(mode) ? ItemStatus::RegularFile : S_ISDIR(mode) ? ItemStatus::Folder : ItemStatus::Other;
}

std::optional<ItemStatus> statusOf(const QByteArray& native) { return readItemStatus(-1, native.constData()); }
#endif

}  // namespace

#if !defined(_WIN32)
std::optional<ItemStatus> readItemStatus(int fd, const char* path)
{
    const bool ofDescriptor = path == nullptr;
    ItemStatus s;
#if defined(__linux__) && defined(STATX_BTIME)
    struct statx sx;
    if (::statx(ofDescriptor ? fd : AT_FDCWD, ofDescriptor ? "" : path,
                (ofDescriptor ? AT_EMPTY_PATH : 0) | AT_STATX_SYNC_AS_STAT,
                STATX_TYPE | STATX_INO | STATX_SIZE | STATX_MTIME | STATX_BTIME, &sx) == 0) {
        s.kind = kindOf(sx.stx_mode);
        s.device = (quint64(sx.stx_dev_major) << 32) | sx.stx_dev_minor;
        s.inode = sx.stx_ino;
        s.size = sx.stx_size;
        s.hasBirth = (sx.stx_mask & STATX_BTIME) != 0;
        if (s.hasBirth)
            s.birth = {qint64(sx.stx_btime.tv_sec), qint64(sx.stx_btime.tv_nsec)};
        s.modification = {qint64(sx.stx_mtime.tv_sec), qint64(sx.stx_mtime.tv_nsec)};
        return s;
    }
    if (errno != ENOSYS)
        return std::nullopt;
#endif
    struct stat st;
    if ((ofDescriptor ? ::fstat(fd, &st) : ::stat(path, &st)) != 0)
        return std::nullopt;
    s.kind = kindOf(st.st_mode);
    s.device = quint64(st.st_dev);
    s.inode = quint64(st.st_ino);
    s.size = quint64(st.st_size);
#if defined(__APPLE__)
    s.hasBirth = true;
    s.birth = fileTime(st.st_birthtimespec);
    s.modification = fileTime(st.st_mtimespec);
#else
    s.modification = fileTime(st.st_mtim);
#endif
    return s;
}
#endif

FolderItem::FolderItem(const QString& path)
{
    if (path.isEmpty() || path.contains(QChar(0)))
        return;  // names nothing: nil
#if defined(_WIN32)
    native_ = QDir::cleanPath(QDir(QDir::fromNativeSeparators(path)).absolutePath()).toUtf8();
#else
    native_ = normalized(QFile::encodeName(path));
#endif
}

FolderItem::FolderItem(const QByteArray& nativePath)
{
    if (nativePath.isEmpty() || nativePath.contains('\0'))
        return;  // names nothing: nil
#if defined(_WIN32)
    *this = FolderItem(QString::fromUtf8(nativePath));
#else
    native_ = normalized(nativePath);
#endif
}

bool FolderItem::isNil() const { return native_.isEmpty(); }

const QByteArray& FolderItem::checked() const
{
    if (native_.isEmpty())
        throw NilObjectException(textById("Report.noFileGiven", "No file was given."));
    return native_;
}

QByteArray FolderItem::nativePath() const { return checked(); }

QString FolderItem::path() const { return shown(checked()); }

QString FolderItem::Name() const
{
    const QByteArray& p = checked();
    const qsizetype slash = p.lastIndexOf('/');
    const QByteArrayView all(p);
    return shown(slash < 0 || slash == p.size() - 1 ? all : all.sliced(slash + 1));
}

bool FolderItem::Exists() const
{
    checked();
#if defined(_WIN32)
    return GetFileAttributesW(WIDE(native_)) != INVALID_FILE_ATTRIBUTES;
#else
    struct stat st;
    return ::stat(native_.constData(), &st) == 0;
#endif
}

bool FolderItem::Directory() const
{
    checked();
#if defined(_WIN32)
    const DWORD a = GetFileAttributesW(WIDE(native_));
    return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_DIRECTORY);
#else
    struct stat st;
    return ::stat(native_.constData(), &st) == 0 && S_ISDIR(st.st_mode);
#endif
}

Date FolderItem::CreationDate() const { return Status().creationDate(); }

Date FolderItem::ModificationDate() const { return Status().modificationDate(); }

ItemStatus FolderItem::Status() const
{
    QString why;
    const std::optional<ItemStatus> s = Status(&why);
    if (!s)
        throw NilObjectException(why);
    return *s;
}

std::optional<ItemStatus> FolderItem::Status(QString* why) const
{
    checked();
    std::optional<ItemStatus> s = statusOf(native_);
    if (!s && why)
        *why = whyNoStatus(Name(), errno);
    return s;
}

int FolderItem::openRegularFile(bool write) const
{
    checked();
#if defined(_WIN32)
    const int fd = _wopen(WIDE(native_), (write ? _O_RDWR : _O_RDONLY) | _O_BINARY | _O_NOINHERIT);
    if (fd < 0)
        return -1;
    struct _stati64 st;
    if (_fstati64(fd, &st) != 0 || (st.st_mode & _S_IFMT) != _S_IFREG) {
        const bool folder = (st.st_mode & _S_IFMT) == _S_IFDIR;
        _close(fd);
        errno = folder ? EISDIR : ENODEV;
        return -1;
    }
    return fd;
#else
    // O_NONBLOCK: opening a FIFO or a device must not wait (for a writer, a carrier); what
    // opened is looked at before anything is read, and only a regular file is kept. On a
    // regular file the flag changes nothing.
    const int flags = (write ? O_RDWR : O_RDONLY) | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    int fd;
    do
        fd = ::open(native_.constData(), flags);
    while (fd < 0 && errno == EINTR);
    if (fd < 0)
        return -1;
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        const bool folder = S_ISDIR(st.st_mode);
        ::close(fd);
        errno = folder ? EISDIR : ENODEV;
        return -1;
    }
    return fd;
#endif
}

Handle<BinaryStream> FolderItem::OpenAsBinaryFile(bool write) const
{
    const int fd = openRegularFile(write);
    if (fd < 0)
        return Handle<BinaryStream>::nil(whyNotOpened(Name(), write, errno));
    return BinaryStream::fromDescriptor(fd, write);
}

FolderItem::Opened FolderItem::openForListing(QString* why) const
{
    Opened r;
#if !defined(_WIN32)
    checked();
    int fd;
    do
        fd = ::open(native_.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    while (fd < 0 && errno == EINTR);
    int openError = errno;
    if (fd >= 0) {
        r.status = readItemStatus(fd, nullptr);
        openError = errno;
        if (r.status && r.status->kind == ItemStatus::RegularFile) {
            r.stream = BinaryStream::fromDescriptor(fd, false);
            return r;
        }
        ::close(fd);
        if (r.status) {
            const int error = r.status->kind == ItemStatus::Folder ? EISDIR : ENODEV;
            r.stream = Handle<BinaryStream>::nil(whyNotOpened(Name(), false, error));
            return r;
        }
    }
    r.status = Status(why);
    if (r.status)
        r.stream = Handle<BinaryStream>::nil(whyNotOpened(Name(), false, openError));
#else
    r.status = Status(why);
    if (r.status)
        r.stream = OpenAsBinaryFile(false);
#endif
    return r;
}

std::unique_ptr<QIODevice> FolderItem::openDevice() const
{
    const int fd = openRegularFile(false);
    if (fd < 0)
        return nullptr;
    auto file = std::make_unique<QFile>();
    if (!file->open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
#if defined(_WIN32)
        _close(fd);
#else
        ::close(fd);
#endif
        return nullptr;
    }
    return file;
}
