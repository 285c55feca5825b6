#pragma once
#include <QMetaType>
#include <QtGlobal>

#include <optional>

#include "platform/text/Date.h"

// A moment as the file system keeps it: seconds since the epoch and the nanoseconds
// within that second, nothing lost to a Date's whole seconds.
struct FileTime {
    qint64 seconds = 0;
    qint64 nanoseconds = 0;
    Date toDate() const { return Date::fromUnixTime(seconds, nanoseconds); }
    bool operator==(const FileTime& o) const { return seconds == o.seconds && nanoseconds == o.nanoseconds; }
};
Q_DECLARE_METATYPE(FileTime)

// What one status call tells of an item, a symbolic link followed. Listing asks the
// system once and takes both dates and the item's identity from the answer.
struct ItemStatus {
    enum Kind { RegularFile, Folder, Other };  // Other: a pipe, socket or device
    Kind kind = Other;
    quint64 device = 0;  // with inode, which object of the file system this is
    quint64 inode = 0;
    quint64 size = 0;
    bool hasBirth = false;  // whether the file system keeps a birth time
    FileTime birth;
    FileTime modification;

    // The creation date: the birth time where it is kept, the modification time where not.
    Date creationDate() const { return (hasBirth ? birth : modification).toDate(); }
    Date modificationDate() const { return modification.toDate(); }
    // Whether both are the same object of the file system, whatever its path: the same
    // device and inode, and, as an inode number is given again once its file is deleted,
    // the same kind and birth time where both are known.
    bool sameItem(const ItemStatus& o) const
    {
        return device == o.device && inode == o.inode && kind == o.kind
               && (!hasBirth || !o.hasBirth || birth == o.birth);
    }
};

#if !defined(_WIN32)
// The one status call behind FolderItem::Status and PinnedItem::status: of the open
// descriptor fd when path is null, else of path (a symbolic link followed). Nothing, with
// errno set, where the system gives no status.
std::optional<ItemStatus> readItemStatus(int fd, const char* path);
#endif
