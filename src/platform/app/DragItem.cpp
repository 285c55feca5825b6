#include "platform/app/DragItem.h"

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
#if defined(_WIN32)
    return FolderItem(urls_[current_].toLocalFile());
#else
    // The URL's percent-encoded path is the name's bytes, whatever their encoding; decoded
    // to text first, a name that is no UTF-8 would be lost.
    const QUrl& url = urls_[current_];
    QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    const QString host = url.host();
    if (!host.isEmpty() && host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) != 0)
        path.prepend("//" + host.toUtf8());  // as toLocalFile names a file on another host
    return FolderItem(path);
#endif
}

bool DragItem::NextItem()
{
    if (current_ + 1 >= urls_.size())
        return false;
    ++current_;
    return true;
}
