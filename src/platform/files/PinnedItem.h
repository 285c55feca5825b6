#pragma once
#include <QByteArray>
#include <QString>

#include "platform/files/FolderItem.h"

// An item held open by the system: whatever its path comes to name meanwhile, every read,
// write and date set through it reaches the one object that was opened. The execute run
// opens an item, compares status() with what was listed, and only then writes through it.
// Every call reports failure by its result and keeps the reason for why().
// Whether a file time read back is the one that was set: the same, or the same within the
// coarsest grain that a file system keeps (FAT's two seconds).
inline bool timeLanded(const FileTime& meant, const FileTime& read)
{
    const qint64 ds = read.seconds - meant.seconds;
    if (ds < -3 || ds > 3)
        return false;
    const qint64 d = ds * 1000000000 + (read.nanoseconds - meant.nanoseconds);
    return d > -2000000000 && d < 2000000000;
}

class PinnedItem {
public:
    enum Access {
        Dates,     // only its dates are set: a file or a folder, readable or not
        Contents,  // a regular file read and written in place, never truncated or made
    };
    // Follows a link, as listing does. Never waits (a pipe, a device) and never throws.
    PinnedItem(const FolderItem& f, Access access);
    ~PinnedItem();
    PinnedItem(const PinnedItem&) = delete;
    PinnedItem& operator=(const PinnedItem&) = delete;

    bool isOpen() const;
    // Why the opening or the last failed call failed, in plain words ("you do not have
    // permission to change it"), in the interface language.
    QString why() const;

    // The status of the object held; false when the system gives none.
    bool status(ItemStatus& s);
    // Up to count bytes at position; fewer where the file ends.
    QByteArray readAt(quint64 position, qint64 count);
    // All the bytes at position, or false. A write that the system makes only in part is a
    // failure, as is one that would reach beyond the end of the file (its size as the last
    // status() gave it: a file cut shorter since reads short first).
    bool writeAt(quint64 position, const QByteArray& bytes);
    // The modification time, to the nanosecond the file system keeps; the access time is
    // passed as read, since some drivers ignore a time left out and report success.
    bool setModificationTime(const FileTime& t);
    // Whether this system can set a file's creation date at all (Linux has no call for it).
    static bool canSetCreationTime();
    bool setCreationTime(const FileTime& t);
    // Lets go of the item; false when the system reports an error on closing.
    bool close();

    // Whether the path is a symbolic link now (the link itself, not followed).
    static bool isLink(const FolderItem& f);

private:
    bool fail(int error);
    int error_ = 0;  // errno, or one of our own codes, of the last failure
    quint64 size_ = 0;  // the file's size as the last status() gave it
    bool sizeKnown_ = false;
#if defined(_WIN32)
    void* handle_ = nullptr;
#else
    int fd_ = -1;
#endif
};
