#include "exif/TiffCopies.h"

#include <QByteArray>

#include <algorithm>

#include "exif/Boxes.h"

namespace {

constexpr int kChain = 8;            // directories of the chain walked
constexpr int kMaxEntries = 1024;    // a directory with more is no directory of a photo
constexpr int kDateLength = 19;

class Walk {
public:
    Walk(BinaryStream& s, const Span& block) : s_(s), block_(block) {}

    TiffCopies run()
    {
        const QByteArray head = readBounded(s_, block_.position, 8, block_.end());
        if (head.size() < 8 || !(head.startsWith("II*\0") || head.startsWith(QByteArray("MM\0*", 4))))
            return out_;
        le_ = head[0] == 'I';
        quint64 at = number(head, 4, 4);
        for (int i = 0; i < kChain && at != 0; ++i)
            at = directory(at, QStringLiteral("IFD%1").arg(i), i == 0);
        return out_;
    }

private:
    quint64 number(QByteArrayView b, qsizetype at, int size) const
    {
        if (!le_)
            return bigEndian(b, at, size);
        quint64 v = 0;
        for (int i = size - 1; i >= 0; --i)
            v = v << 8 | (at + i < b.size() ? quint8(b[at + i]) : 0);
        return v;
    }
    static int typeSize(quint64 type)
    {
        switch (type) {
        case 1: case 2: case 6: case 7: return 1;
        case 3: case 8: return 2;
        case 4: case 9: case 11: case 13: return 4;
        case 5: case 10: case 12: return 8;
        default: return 0;
        }
    }

    // Reads the directory at offset `at`; gives the offset of the next one (0: none).
    quint64 directory(quint64 at, const QString& name, bool first)
    {
        if (visited_.size() >= 2 * kChain || std::find(visited_.begin(), visited_.end(), at) != visited_.end()
            || at > block_.length - 2)
            return 0;
        visited_.push_back(at);
        const quint64 n = number(readBounded(s_, block_.position + at, 2, block_.end()), 0, 2);
        if (n > kMaxEntries)
            return 0;
        const QByteArray d = readBounded(s_, block_.position + at + 2, n * 12 + 4, block_.end());
        if (quint64(d.size()) < n * 12)
            return 0;
        for (quint64 i = 0; i < n; ++i) {
            const qsizetype e = qsizetype(i * 12);
            const quint64 tag = number(d, e, 2), type = number(d, e + 2, 2), count = number(d, e + 4, 4);
            const quint64 value = number(d, e + 8, 4);
            const quint64 bytes = count * quint64(typeSize(type));
            // The value's place: in the entry's last four bytes when it fits there.
            const quint64 place = bytes <= 4 ? at + 2 + quint64(e) + 8 : value;
            const int column = tag == 306 ? 3 : tag == 36867 ? 4 : tag == 36868 ? 5 : 0;
            if (column && type == 2 && count >= kDateLength && inside(place, kDateLength))
                out_.dates.push_back({block_.position + place, column,
                                      QStringLiteral("Exif %1 in %2").arg(tag).arg(name)});
            else if (tag == 34665 && (type == 4 || type == 13) && count == 1 && !name.startsWith(QLatin1String("Exif")))
                directory(value, QStringLiteral("Exif IFD"), false);
            else if (first && (tag == 700 || tag == 33723) && typeSize(type) && count < (quint64(1) << 32)
                     && inside(place, bytes))
                (tag == 700 ? out_.xmp : out_.iptc).push_back({block_.position + place, bytes});
        }
        return d.size() >= qsizetype(n * 12 + 4) ? number(d, qsizetype(n * 12), 4) : 0;
    }
    bool inside(quint64 at, quint64 n) const { return n <= block_.length && at <= block_.length - n; }

    BinaryStream& s_;
    Span block_;
    bool le_ = false;
    std::vector<quint64> visited_;
    TiffCopies out_;
};

}  // namespace

TiffCopies findTiffCopies(BinaryStream& s, const Span& block)
{
    return Walk(s, block).run();
}
