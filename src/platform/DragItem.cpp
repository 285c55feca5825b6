#include "platform/DragItem.h"

#include <QMimeData>

DragItem::DragItem(const QMimeData* data) : DragItem(data && data->hasUrls() ? data->urls() : QList<QUrl>()) {}

DragItem::DragItem(QList<QUrl> urls) : urls_(std::move(urls)) {}

bool DragItem::FolderItemAvailable() const
{
    return current_ < urls_.size() && urls_[current_].isLocalFile() && !urls_[current_].toLocalFile().isEmpty();
}

FolderItem DragItem::folderItem() const
{
    if (!FolderItemAvailable())
        return FolderItem();
    return FolderItem(urls_[current_].toLocalFile());
}

bool DragItem::NextItem()
{
    if (current_ + 1 >= urls_.size())
        return false;
    ++current_;
    return true;
}
