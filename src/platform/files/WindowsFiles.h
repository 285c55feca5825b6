#pragma once
// What FolderItem and PinnedItem share on Windows: file times, the status of an item, and
// the errno that stands for a failed call. Included on Windows only.
#include "platform/files/ItemStatus.h"

#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace windowsFiles {

// FILETIME counts 100 ns steps from 1601-01-01 UTC.
constexpr qint64 kFileTimeEpochOffset = 11644473600LL;

inline FileTime fromFileTime(const FILETIME& ft)
{
    const qint64 ticks = (qint64(ft.dwHighDateTime) << 32) | ft.dwLowDateTime;
    return {ticks / 10000000 - kFileTimeEpochOffset, (ticks % 10000000) * 100};
}

inline FILETIME toFileTime(const FileTime& t)
{
    // FILETIME holds 1601 to about 30828; a time outside is set to the nearest end rather
    // than overflowing the product.
    constexpr qint64 kMaxSeconds = std::numeric_limits<qint64>::max() / 10000000 - 1;
    const qint64 seconds = std::clamp<qint64>(t.seconds + kFileTimeEpochOffset, 0, kMaxSeconds);
    const qint64 ticks = seconds * 10000000 + std::clamp<qint64>(t.nanoseconds, 0, 999999999) / 100;
    FILETIME ft;
    ft.dwLowDateTime = DWORD(quint64(ticks) & 0xFFFFFFFF);
    ft.dwHighDateTime = DWORD(quint64(ticks) >> 32);
    return ft;
}

// The status from what both the path's and an open handle's attribute calls give. Windows
// gives no device and inode this way, so none is noted.
inline ItemStatus statusOf(DWORD attributes, DWORD sizeHigh, DWORD sizeLow, const FILETIME& created,
                           const FILETIME& written)
{
    ItemStatus s;
    s.kind = (attributes & FILE_ATTRIBUTE_DIRECTORY) ? ItemStatus::Folder : ItemStatus::RegularFile;
    s.size = (quint64(sizeHigh) << 32) | sizeLow;
    s.hasBirth = true;
    s.birth = fromFileTime(created);
    s.modification = fromFileTime(written);
    return s;
}

// The errno that stands for a failed call's Windows error.
inline int errnoOf(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND: return ENOENT;
    case ERROR_ACCESS_DENIED: return EACCES;
    case ERROR_FILENAME_EXCED_RANGE: return ENAMETOOLONG;
    case ERROR_WRITE_PROTECT: return EROFS;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION: return EBUSY;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return ENOSPC;
    default: return EIO;
    }
}

}  // namespace windowsFiles
