#include "exif/Checksums.h"

#include "exif/Boxes.h"
#include "exif/Companions.h"
#include "exif/Container.h"
#include "platform/files/BinaryStream.h"
#include "platform/base/TextId.h"

#include <algorithm>

namespace {

// Larger chunks than this (an XMP text of many megabytes) are not read for their CRC.
constexpr quint64 kLargest = 64 << 20;

bool overlaps(const Patch& p, Span s)
{
    const quint64 n = quint64(p.after.size());
    return n > 0 && p.position < s.end() && s.position < p.position + n;
}

}  // namespace

void refreshChecksums(BinaryStream& file, const FolderItem& item, const ContainerLayout& layout,
                      const std::vector<Patch>& dates, Companions& out)
{
    std::vector<Patch> changes = dates;
    changes.insert(changes.end(), out.patches.begin(), out.patches.end());
    if (changes.empty())
        return;
    for (const Checksummed& c : layout.checksums) {
        std::vector<const Patch*> inside;
        for (const Patch& p : changes)
            if (overlaps(p, c.covered))
                inside.push_back(&p);
        if (inside.empty())
            continue;
        QByteArray bytes = readBounded(file, c.covered.position, std::min(c.covered.length, kLargest), c.covered.end());
        const QByteArray stored = readBounded(file, c.crcAt, 4, c.crcAt + 4);
        const QString what = QStringLiteral("CRC of PNG chunk ") + QString::fromLatin1(bytes.left(4));
        if (quint64(bytes.size()) != c.covered.length || stored.size() != 4 || crc32(bytes) != bigEndian(stored, 0, 4)) {
            out.kept << QStringLiteral("“%1”, %2: ").arg(item.path(), what)
                            + textById("Run.crcMismatch", "the stored checksum does not match the chunk; it stays as it is");
            continue;
        }
        for (const Patch* p : inside) {
            const quint64 from = std::max(p->position, c.covered.position);
            const quint64 to = std::min(p->position + quint64(p->after.size()), c.covered.end());
            for (quint64 at = from; at < to; ++at)
                bytes[qsizetype(at - c.covered.position)] = p->after[qsizetype(at - p->position)];
        }
        const quint32 crc = crc32(bytes);
        QByteArray after(4, '\0');
        for (int i = 0; i < 4; ++i)
            after[i] = char(crc >> (24 - 8 * i));
        out.patches.push_back({c.crcAt, stored, after, inside.front()->column, what});
    }
}
