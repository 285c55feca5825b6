#include "platform/FolderItem.h"

#include "platform/Exceptions.h"

#include <QDir>
#include <QFile>
#include <QImageReader>

#include <algorithm>
#include <cerrno>
#include <limits>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif
#if defined(__APPLE__)
#include <sys/attr.h>
#endif

namespace {

// A path as the file system's own: absolute, without "." or ".." steps, without a
// trailing slash. An absolute path that is clean already is kept as it is, which is the
// usual case (drops and open requests hand over absolute paths).
QString normalized(const QString& path)
{
#if defined(_WIN32)
    return QDir::cleanPath(QDir(QDir::fromNativeSeparators(path)).absolutePath());
#else
    if (!QDir::isAbsolutePath(path))
        return QDir::cleanPath(QDir::current().absoluteFilePath(path));
    // Clean unless some slash is followed by a slash, "." or the end (the root aside).
    const qsizetype n = path.size();
    for (qsizetype i = 0; i < n; ++i) {
        if (path[i] != u'/')
            continue;
        if (i + 1 == n ? n > 1 : path[i + 1] == u'/' || path[i + 1] == u'.')
            return QDir::cleanPath(path);
    }
    return path;
#endif
}

// The dates of an item that has gone since it was named.
QString noLongerReadable(const QString& path)
{
    return QStringLiteral("“%1” can no longer be read; it may have been moved or deleted.")
        .arg(path.mid(path.lastIndexOf(u'/') + 1));
}

#if defined(_WIN32)
// FILETIME counts 100 ns steps from 1601-01-01 UTC.
constexpr qint64 kFileTimeEpochOffset = 11644473600LL;

FileTime fromFileTime(const FILETIME& ft)
{
    const qint64 ticks = (qint64(ft.dwHighDateTime) << 32) | ft.dwLowDateTime;
    return {ticks / 10000000 - kFileTimeEpochOffset, (ticks % 10000000) * 100};
}

FILETIME toFileTime(const Date& d)
{
    // FILETIME holds 1601 to about 30828; a date outside is set to the nearest end rather
    // than overflowing the product.
    constexpr qint64 kMaxSeconds = std::numeric_limits<qint64>::max() / 10000000;
    const qint64 seconds = std::clamp<qint64>(d.toUnixTime() + kFileTimeEpochOffset, 0, kMaxSeconds);
    const qint64 ticks = seconds * 10000000;
    FILETIME ft;
    ft.dwLowDateTime = DWORD(ticks & 0xFFFFFFFF);
    ft.dwHighDateTime = DWORD(quint64(ticks) >> 32);
    return ft;
}

WIN32_FILE_ATTRIBUTE_DATA attributes(const QString& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(path).utf16()),
                              GetFileExInfoStandard, &data))
        throw NilObjectException(noLongerReadable(path));
    return data;
}

bool setFileTimes(const QString& path, const FILETIME* created, const FILETIME* written)
{
    // FILE_FLAG_BACKUP_SEMANTICS lets a folder be opened too.
    HANDLE h = CreateFileW(reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(path).utf16()),
                           FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                           nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return false;
    const bool ok = SetFileTime(h, created, nullptr, written);
    CloseHandle(h);
    return ok;
}
#else
FileTime fileTime(const struct timespec& t) { return {qint64(t.tv_sec), qint64(t.tv_nsec)}; }

ItemStatus::Kind kindOf(mode_t mode)
{
    return S_ISREG(mode) ? ItemStatus::RegularFile : S_ISDIR(mode) ? ItemStatus::Folder : ItemStatus::Other;
}

// One call for everything listing needs. Throws NilObjectException for an item that is
// not there.
ItemStatus statusOf(const QString& path, const QByteArray& native)
{
    ItemStatus s;
#if defined(__linux__) && defined(STATX_BTIME)
    struct statx sx;
    if (::statx(AT_FDCWD, native.constData(), AT_STATX_SYNC_AS_STAT,
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
        throw NilObjectException(noLongerReadable(path));
#endif
    struct stat st;
    if (::stat(native.constData(), &st) != 0)
        throw NilObjectException(noLongerReadable(path));
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

}  // namespace

FolderItem::FolderItem(const QString& path)
{
    if (path.isEmpty() || path.contains(QChar(0)))
        return;  // names nothing: nil
    path_ = normalized(path);
    native_ = QFile::encodeName(path_);
}

bool FolderItem::isNil() const { return path_.isEmpty(); }

const QString& FolderItem::checked() const
{
    if (path_.isEmpty())
        throw NilObjectException(QStringLiteral("No file was given."));
    return path_;
}

QString FolderItem::path() const { return checked(); }

QString FolderItem::Name() const
{
    const QString& p = checked();
    const qsizetype slash = p.lastIndexOf(u'/');
    return slash < 0 || slash == p.size() - 1 ? p : p.mid(slash + 1);
}

bool FolderItem::Exists() const
{
    checked();
#if defined(_WIN32)
    return GetFileAttributesW(reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(path_).utf16()))
           != INVALID_FILE_ATTRIBUTES;
#else
    struct stat st;
    return ::stat(native_.constData(), &st) == 0;
#endif
}

bool FolderItem::Directory() const
{
    checked();
#if defined(_WIN32)
    const DWORD a = GetFileAttributesW(reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(path_).utf16()));
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
    checked();
#if defined(_WIN32)
    const WIN32_FILE_ATTRIBUTE_DATA a = attributes(path_);
    ItemStatus s;
    s.kind = (a.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) ? ItemStatus::Folder : ItemStatus::RegularFile;
    s.size = (quint64(a.nFileSizeHigh) << 32) | a.nFileSizeLow;
    s.hasBirth = true;
    s.birth = fromFileTime(a.ftCreationTime);
    s.modification = fromFileTime(a.ftLastWriteTime);
    return s;
#else
    return statusOf(path_, native_);
#endif
}

bool FolderItem::setCreationDate(const Date& d) const
{
    checked();
#if defined(_WIN32)
    const FILETIME ft = toFileTime(d);
    return setFileTimes(path_, &ft, nullptr);
#elif defined(__APPLE__)
    struct attrlist list = {};
    list.bitmapcount = ATTR_BIT_MAP_COUNT;
    list.commonattr = ATTR_CMN_CRTIME;
    struct timespec created = {time_t(d.toUnixTime()), 0};
    return ::setattrlist(native_.constData(), &list, &created, sizeof created, 0) == 0;
#else
    // The file system keeps a birth time that no call can change.
    (void)d;
    return false;
#endif
}

bool FolderItem::setModificationDate(const Date& d) const
{
    checked();
#if defined(_WIN32)
    const FILETIME ft = toFileTime(d);
    return setFileTimes(path_, nullptr, &ft);
#else
    struct timespec times[2];
    times[0].tv_sec = 0;
    times[0].tv_nsec = UTIME_OMIT;  // the access time stays
    times[1].tv_sec = time_t(d.toUnixTime());
    times[1].tv_nsec = 0;
    return ::utimensat(AT_FDCWD, native_.constData(), times, 0) == 0;
#endif
}

Handle<BinaryStream> FolderItem::OpenAsBinaryFile(bool write) const
{
    return BinaryStream::openEncoded(checked(), native_, write);
}

QImage FolderItem::OpenAsPicture() const
{
    checked();
#if !defined(_WIN32)
    // Only a regular file can hold a picture; opening a FIFO would wait for a writer.
    struct stat st;
    if (::stat(native_.constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return QImage();
#endif
    QImageReader reader(path_);
    // The picture as stored: the preview reads the orientation itself.
    reader.setAutoTransform(false);
    return reader.read();
}
