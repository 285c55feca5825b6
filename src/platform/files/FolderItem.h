#pragma once
#include <QByteArray>
#include <QImage>
#include <QMetaType>
#include <QIODevice>
#include <QString>

#include <memory>
#include <optional>

#include "platform/files/BinaryStream.h"
#include "platform/base/Handle.h"
#include "platform/files/ItemStatus.h"

// A file or folder by its path, kept as the file system's own bytes from the moment it
// is named: a name in any encoding (Shift-JIS, stray bytes) is opened, read, written and
// dated as it is. Text forms are for showing only; bytes that are no UTF-8 show as U+FFFD.
// A default-made FolderItem is nil: every use of it throws NilObjectException. Copies are
// cheap and name the same item.
class FolderItem {
public:
    FolderItem() = default;
    // A path as text, such as Qt hands over; it is encoded as the file system takes text.
    explicit FolderItem(const QString& path);
    // A path as the file system's bytes (program arguments, a drop's URL decoded).
    explicit FolderItem(const QByteArray& nativePath);

    bool isNil() const;
    QByteArray nativePath() const;  // absolute path, the bytes every call is made with
    QString path() const;    // absolute path, for showing
    QString Name() const;    // last component of the path, for showing
    bool Exists() const;
    bool Directory() const;

    // The creation date is the birth time where the file system records it and the
    // modification time where it does not. Asked of an item that is not there (gone, or
    // never was), both throw NilObjectException, as a missing date does when it is used.
    Date CreationDate() const;
    Date ModificationDate() const;
    // Both dates and more from one call; throws as the dates do, the reason in words.
    ItemStatus Status() const;
    // The same, without throwing: nothing where the system gives no status, and why then
    // says so in plain words, naming the item ("“a.jpg” does not exist.").
    std::optional<ItemStatus> Status(QString* why) const;
    // Dates are set through a PinnedItem, on the object that was checked.

    // Everything that reads or writes the item goes through these. Only a regular file
    // opens, and opening never waits: a pipe, socket or device is refused at once.
    // A stream on the file, read-only or read-write in place; nil where it cannot be
    // opened that way (a folder, no permission, gone), its whyNil() saying why.
    Handle<BinaryStream> OpenAsBinaryFile(bool write) const;
    // The file open for reading as a device, for decoders that read from one; null where
    // it cannot be opened.
    std::unique_ptr<QIODevice> openDevice() const;
    // For listing, Status(why) and OpenAsBinaryFile(false) at once: the item is opened,
    // and the status is that of what opened, so that its path is looked up once. What
    // does not open (no permission, a socket) gets its status from the path; the stream
    // is nil but for a regular file, saying why as OpenAsBinaryFile does, and nil too
    // where there is no status.
    struct Opened {
        std::optional<ItemStatus> status;
        Handle<BinaryStream> stream;
    };
    Opened openForListing(QString* why) const;

    // What the item was when its row was listed. A row's FolderItem carries it, so that
    // every copy that the table hands out can tell whether the path still names the
    // object that was read, and knows its modification time to the nanosecond. Empty for
    // an item that was never listed.
    void noteListing(const ItemStatus& s) { listing_ = s; }
    const std::optional<ItemStatus>& Listing() const { return listing_; }

    bool operator==(const FolderItem& o) const { return native_ == o.native_; }

private:
    const QByteArray& checked() const;  // the path, or NilObjectException
    int openRegularFile(bool write) const;  // a descriptor, or -1 with errno set
    QByteArray native_;
    std::optional<ItemStatus> listing_;
};
Q_DECLARE_METATYPE(FolderItem)
