#include "exif/Sidecars.h"

#include <QFileInfo>

#include <algorithm>

#include "exif/XmpDates.h"
#include "platform/files/PinnedItem.h"
#include "platform/base/TextId.h"

namespace {

// NAME.xmp and NAME.EXT.xmp, in both cases, as the file system's bytes.
std::vector<QByteArray> namesBeside(const QByteArray& path)
{
    const qsizetype slash = path.lastIndexOf('/');
    const qsizetype dot = path.lastIndexOf('.');
    std::vector<QByteArray> stems{path};
    if (dot > slash + 1)
        stems.insert(stems.begin(), path.left(dot));
    std::vector<QByteArray> names;
    for (const QByteArray& stem : stems)
        for (const char* ext : {".xmp", ".XMP"})
            names.push_back(stem + ext);
    return names;
}

}  // namespace

std::vector<Sidecar> findSidecars(const FolderItem& item)
{
    std::vector<Sidecar> found;
    std::vector<std::pair<quint64, quint64>> seen;  // device and inode: one file under two names
    for (const QByteArray& name : namesBeside(item.nativePath())) {
        Sidecar c{FolderItem(name), {}, {}};
        const bool link = PinnedItem::isLink(c.file);
        if (!link && !c.file.Exists())
            continue;
        ItemStatus st;
        if (link)
            c.why = textById("Copy.sidecarLink", "it is a link");
        else if (c.file.Directory())
            c.why = textById("Copy.sidecarFolder", "it is a folder");
        else {
            PinnedItem p(c.file, PinnedItem::Contents);
            // Marked read-only, it stays so, even for a user whom the system lets write it.
            const QFileInfo info(c.file.path());
            if (info.exists() && !(info.permissions() & (QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther)))
                c.why = textById("Copy.sidecarReadOnly", "it is read-only");
            else if (!p.isOpen() || !p.status(st))
                c.why = p.why();
            else if (st.size > quint64(kMaxXmpPacket))
                c.why = xmpTooLargeWhy();
            else if ((c.bytes = p.readAt(0, qint64(st.size))).size() != qsizetype(st.size))
                c.why = p.why();
            if (!c.why.isEmpty())
                c.bytes.clear();
            const std::pair<quint64, quint64> id{st.device, st.inode};
            if (st.inode && std::find(seen.begin(), seen.end(), id) != seen.end())
                continue;
            seen.push_back(id);
            c.file.noteListing(st);
        }
        found.push_back(std::move(c));
    }
    return found;
}
