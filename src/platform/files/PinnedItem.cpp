#include "platform/files/PinnedItem.h"

#include "platform/base/TextId.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#if defined(_WIN32)
#include "platform/files/WindowsFiles.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif
#if defined(__APPLE__)
#include <sys/attr.h>
#endif

namespace {

// Failures of our own beside the system's errno values.
constexpr int kShortWrite = -1;  // the system wrote only part of the bytes
constexpr int kPastEnd = -2;     // the bytes would reach beyond the end of the file
constexpr int kNoCreationTime = -3;

#if defined(_WIN32)
using windowsFiles::errnoOf;
using windowsFiles::toFileTime;

std::wstring nativePath(const FolderItem& f)
{
    return QDir::toNativeSeparators(f.path()).toStdWString();
}
#else
timespec toTimespec(const FileTime& t) { return {time_t(t.seconds), long(t.nanoseconds)}; }
#endif

}  // namespace

bool PinnedItem::fail(int error)
{
    error_ = error;
    return false;
}

QString PinnedItem::why() const
{
    switch (error_) {
    case kShortWrite:
        return textById("Report.shortWrite", "the system wrote only part of the date");
    case kPastEnd:
        return textById("Report.pastEnd", "the file ends before the place of the date");
    case kNoCreationTime:
        return textById("Report.noCreationTime", "this system cannot set a file's creation date");
    case ENOENT:
    case ENOTDIR:
        return textById("Report.gone", "it is no longer there; it may have been moved or deleted");
    case EACCES:
    case EPERM:
        return textById("Report.noPermission", "you do not have permission to change it");
    case EROFS:
        return textById("Report.readOnlyDisk", "it lies on a disk that cannot be written to");
    case EISDIR:
        return textById("Report.isFolder", "it is a folder, not a file");
    case ENODEV:
    case ENXIO:
        return textById("Report.notAFile", "it is not an ordinary file");
    case ENOSPC:
        return textById("Report.diskFull", "the disk is full");
    case EBUSY:
        return textById("Report.busy", "another program is using it");
    default:
        return textById("Report.systemError", "the system reported: %1")
            .arg(QString::fromLocal8Bit(std::strerror(error_)));
    }
}

#if defined(_WIN32)

PinnedItem::PinnedItem(const FolderItem& f, Access access)
{
    if (f.isNil()) {
        fail(ENOENT);
        return;
    }
    const DWORD rights = access == Contents ? GENERIC_READ | GENERIC_WRITE : FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES;
    // FILE_FLAG_BACKUP_SEMANTICS lets a folder be opened for its dates.
    HANDLE h = CreateFileW(nativePath(f).c_str(), rights, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                           nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (h == INVALID_HANDLE_VALUE) {
        fail(errnoOf(GetLastError()));
        return;
    }
    BY_HANDLE_FILE_INFORMATION info;
    if (access == Contents
        && (GetFileType(h) != FILE_TYPE_DISK || !GetFileInformationByHandle(h, &info)
            || (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))) {
        CloseHandle(h);
        fail(ENODEV);
        return;
    }
    handle_ = h;
}

PinnedItem::~PinnedItem() { close(); }

bool PinnedItem::isOpen() const { return handle_ != nullptr; }

bool PinnedItem::status(ItemStatus& s)
{
    BY_HANDLE_FILE_INFORMATION info;
    if (!handle_ || !GetFileInformationByHandle(HANDLE(handle_), &info))
        return fail(errnoOf(GetLastError()));
    s = windowsFiles::statusOf(info.dwFileAttributes, info.nFileSizeHigh, info.nFileSizeLow, info.ftCreationTime,
                               info.ftLastWriteTime);
    return true;
}

QByteArray PinnedItem::readAt(quint64 position, qint64 count)
{
    QByteArray out(count > 0 ? count : 0, Qt::Uninitialized);
    OVERLAPPED at = {};
    at.Offset = DWORD(position & 0xFFFFFFFF);
    at.OffsetHigh = DWORD(position >> 32);
    DWORD got = 0;
    if (!handle_ || count <= 0 || !ReadFile(HANDLE(handle_), out.data(), DWORD(count), &got, &at))
        got = 0;
    out.truncate(qsizetype(got));
    return out;
}

bool PinnedItem::writeAt(quint64 position, const QByteArray& bytes)
{
    LARGE_INTEGER size;
    if (!handle_ || !GetFileSizeEx(HANDLE(handle_), &size))
        return fail(errnoOf(GetLastError()));
    const quint64 n = quint64(bytes.size());
    if (position > quint64(size.QuadPart) || n > quint64(size.QuadPart) - position)
        return fail(kPastEnd);
    OVERLAPPED at = {};
    at.Offset = DWORD(position & 0xFFFFFFFF);
    at.OffsetHigh = DWORD(position >> 32);
    DWORD written = 0;
    if (!WriteFile(HANDLE(handle_), bytes.constData(), DWORD(n), &written, &at))
        return fail(errnoOf(GetLastError()));
    return written == n || fail(kShortWrite);
}

bool PinnedItem::setModificationTime(const FileTime& t)
{
    const FILETIME ft = toFileTime(t);
    return (handle_ && SetFileTime(HANDLE(handle_), nullptr, nullptr, &ft)) || fail(errnoOf(GetLastError()));
}

bool PinnedItem::canSetCreationTime() { return true; }

bool PinnedItem::setCreationTime(const FileTime& t)
{
    const FILETIME ft = toFileTime(t);
    return (handle_ && SetFileTime(HANDLE(handle_), &ft, nullptr, nullptr)) || fail(errnoOf(GetLastError()));
}

bool PinnedItem::close()
{
    if (!handle_)
        return true;
    const bool ok = CloseHandle(HANDLE(handle_));
    handle_ = nullptr;
    return ok || fail(errnoOf(GetLastError()));
}

bool PinnedItem::isLink(const FolderItem& f)
{
    const DWORD a = GetFileAttributesW(nativePath(f).c_str());
    return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_REPARSE_POINT);
}

#else

PinnedItem::PinnedItem(const FolderItem& f, Access access)
{
    if (f.isNil()) {
        fail(ENOENT);
        return;
    }
    const QByteArray path = f.nativePath();
#if defined(O_PATH)
    // Only the dates: a handle on the object itself, which opens nothing (no device, no
    // pipe) and needs no permission to read it.
    const int flags = access == Contents ? O_RDWR | O_NONBLOCK | O_NOCTTY : O_PATH;
#else
    const int flags = (access == Contents ? O_RDWR : O_RDONLY) | O_NONBLOCK | O_NOCTTY;
#endif
    int fd;
#if defined(O_NOATIME)
    // Reading leaves the access time as it was, where the file is ours to ask that.
    do
        fd = ::open(path.constData(), flags | O_CLOEXEC | (access == Contents ? O_NOATIME : 0));
    while (fd < 0 && errno == EINTR);
    if (fd < 0 && errno == EPERM && access == Contents)
#endif
        do
            fd = ::open(path.constData(), flags | O_CLOEXEC);
        while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        fail(errno);
        return;
    }
    struct stat st;
    if (access == Contents && (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode))) {
        ::close(fd);
        fail(S_ISDIR(st.st_mode) ? EISDIR : ENODEV);
        return;
    }
    fd_ = fd;
}

PinnedItem::~PinnedItem() { close(); }

bool PinnedItem::isOpen() const { return fd_ >= 0; }

bool PinnedItem::status(ItemStatus& s)
{
    if (fd_ < 0)
        return false;
    // The same reading as FolderItem::Status, so that identities compare.
    std::optional<ItemStatus> read = readItemStatus(fd_, nullptr);
    if (!read)
        return fail(errno);
    s = *read;
    size_ = s.size;
    sizeKnown_ = true;
    return true;
}

QByteArray PinnedItem::readAt(quint64 position, qint64 count)
{
    QByteArray out(count > 0 ? count : 0, Qt::Uninitialized);
    qint64 got = 0;
    constexpr quint64 kMaxOffset = quint64(std::numeric_limits<qint64>::max());
    while (fd_ >= 0 && got < count && position <= kMaxOffset && quint64(got) <= kMaxOffset - position) {
        const ssize_t n = ::pread(fd_, out.data() + got, size_t(count - got), off_t(position + quint64(got)));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += n;
    }
    out.truncate(got);
    return out;
}

bool PinnedItem::writeAt(quint64 position, const QByteArray& bytes)
{
    if (fd_ < 0)
        return fail(EBADF);
    quint64 size = size_;
    struct stat st;
    if (!sizeKnown_) {
        if (::fstat(fd_, &st) != 0)
            return fail(errno);
        size = quint64(st.st_size);
    }
    const quint64 n = quint64(bytes.size());
    if (position > size || n > size - position)
        return fail(kPastEnd);
    ssize_t w;
    do
        w = ::pwrite(fd_, bytes.constData(), size_t(n), off_t(position));
    while (w < 0 && errno == EINTR);
    if (w < 0)
        return fail(errno);
    return quint64(w) == n || fail(kShortWrite);
}

bool PinnedItem::setModificationTime(const FileTime& t)
{
    if (fd_ < 0)
        return fail(EBADF);
    struct stat st;
    if (::fstat(fd_, &st) != 0)
        return fail(errno);
#if defined(__APPLE__)
    const timespec times[2] = {st.st_atimespec, toTimespec(t)};
#else
    const timespec times[2] = {st.st_atim, toTimespec(t)};
#endif
#if defined(O_PATH)
    // A handle of O_PATH takes no futimens; the call on the handle itself does.
    if (::utimensat(fd_, "", times, AT_EMPTY_PATH) == 0)
        return true;
    if (errno != EINVAL)
        return fail(errno);
    // Kernels before 5.8 know no empty path here: the handle's own entry in /proc.
    const QByteArray self = "/proc/self/fd/" + QByteArray::number(fd_);
    return ::utimensat(AT_FDCWD, self.constData(), times, 0) == 0 || fail(errno);
#else
    return ::futimens(fd_, times) == 0 || fail(errno);
#endif
}

#if defined(__APPLE__)
bool PinnedItem::canSetCreationTime() { return true; }

bool PinnedItem::setCreationTime(const FileTime& t)
{
    struct attrlist list = {};
    list.bitmapcount = ATTR_BIT_MAP_COUNT;
    list.commonattr = ATTR_CMN_CRTIME;
    struct timespec created = toTimespec(t);
    return (fd_ >= 0 && ::fsetattrlist(fd_, &list, &created, sizeof created, 0) == 0) || fail(errno);
}
#else
// The file system keeps a birth time that no call can change.
bool PinnedItem::canSetCreationTime() { return false; }

bool PinnedItem::setCreationTime(const FileTime&) { return fail(kNoCreationTime); }
#endif

bool PinnedItem::close()
{
    if (fd_ < 0)
        return true;
    const int r = ::close(fd_);
    fd_ = -1;
    // EINTR leaves the descriptor closed on Linux; the data are written all the same.
    return r == 0 || errno == EINTR || fail(errno);
}

bool PinnedItem::isLink(const FolderItem& f)
{
    struct stat st;
    return ::lstat(f.nativePath().constData(), &st) == 0 && S_ISLNK(st.st_mode);
}

#endif
