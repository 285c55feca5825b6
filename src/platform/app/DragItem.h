#pragma once
#include <QList>
#include <QUrl>

#include "platform/files/FolderItem.h"

class QMimeData;

// The items of one drag, walked from the first: each URL of the drag is an item, and an
// item is a file item when it names a local file or folder. A drag without URLs (text,
// say) has no file item at all.
class DragItem {
public:
    explicit DragItem(const QMimeData* data);
    explicit DragItem(QList<QUrl> urls);

    // True if the current item is a file item.
    bool FolderItemAvailable() const;
    // The current item's file or folder; nil when it is no file item.
    FolderItem folderItem() const;
    // Moves to the next item; false when there is none.
    bool NextItem();

private:
    QList<QUrl> urls_;
    qsizetype current_ = 0;
};
