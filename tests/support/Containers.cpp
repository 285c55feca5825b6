#include "support/Containers.h"

#include "exif/Container.h"

#include <algorithm>

QByteArray be(quint64 v, int n)
{
    QByteArray b(n, '\0');
    for (int i = 0; i < n; ++i)
        b[n - 1 - i] = char(v >> (8 * i));
    return b;
}

QByteArray le32(quint32 v)
{
    QByteArray b = be(v, 4);
    std::reverse(b.begin(), b.end());
    return b;
}

QByteArray box(const QByteArray& type, const QByteArray& body) { return be(8 + body.size(), 4) + type + body; }
QByteArray full(const QByteArray& type, quint32 versionAndFlags, const QByteArray& body) { return box(type, be(versionAndFlags, 4) + body); }
QByteArray segment(int marker, const QByteArray& data) { return "\xFF" + QByteArray(1, char(marker)) + be(data.size() + 2, 2) + data; }

QByteArray jpeg(const QByteArray& before, const QByteArray& tiff)
{
    return "\xFF\xD8" + before + segment(0xE1, "Exif" + QByteArray(2, '\0') + tiff) + "\xFF\xDA";
}

QByteArray heif(const QByteArray& tiff, const Iloc& l, const QByteArray& brand)
{
    const QByteArray item = be(6, 4) + "Exif" + QByteArray(2, '\0') + tiff;
    const QByteArray ftyp = box("ftyp", brand + be(0, 4) + brand);
    const QByteArray iinf = full("iinf", 0, be(1, 2) + full("infe", 2 << 24, be(1, 2) + be(0, 2) + "Exif"));
    const int wide = l.version < 2 ? 2 : 4;
    QByteArray file;
    for (qint64 at : {qint64(0), qint64(-1)}) {  // the second time with the item's position known
        if (at < 0)
            at = l.idat ? 0 : file.size() - item.size();
        const qint64 base = l.baseSize ? at : 0, piece = item.size() / l.extents;
        QByteArray iloc = be(l.offsetSize << 4 | l.lengthSize, 1) + be(l.baseSize << 4, 1) + be(1, wide) + be(1, wide) +
                          (l.version ? be(l.idat, 2) : QByteArray()) + be(0, 2) + be(base, l.baseSize) + be(l.extents, 2);
        for (int e = 0; e < l.extents; ++e) {
            const qint64 from = e * piece + (e == 1 ? l.gap : 0), to = e + 1 < l.extents ? (e + 1) * piece : item.size();
            iloc += be(at + from - base, l.offsetSize) + be(quint64(to - from) + (e + 1 < l.extents ? 0 : l.extra), l.lengthSize);
        }
        const QByteArray free = box("free", QByteArray(l.pad, '\0'));
        QByteArray meta = full("meta", 0, iinf + full("iloc", quint32(l.version) << 24, iloc) + (l.idat ? free + box("idat", item) : QByteArray()));
        if (l.largeMeta)
            meta = be(1, 4) + "meta" + be(meta.size() + 8, 8) + meta.mid(8);
        file = ftyp + meta + (l.idat ? QByteArray() : free + box("mdat", item));
    }
    return file;
}

QByteArray cr3(const QByteArray& cmt1, const QByteArray& cmt2)
{
    const QByteArray canon = QByteArray::fromHex("85c0b687820f11e08111f4ce462b6a48");
    return box("ftyp", "crx " + be(1, 4) + "crx isom") +
           box("moov", box("uuid", canon + box("CNCV", "CanonCR3_001/00.09.00/00.00.00") +
                                       box("CCTP", QByteArray(84, 'c')) + box("CTBO", QByteArray(84, 'o')) + box("CMT1", cmt1) +
                                       box("CMT2", cmt2) + box("THMB", QByteArray(400, 't')))) +
           box("mdat", QByteArray(64, 'p'));
}

QByteArray raf(const QByteArray& jpeg, quint32 at)
{
    const QByteArray head = "FUJIFILMCCD-RAW 0201FF383501" + QByteArray(56, ' ') + be(at, 4) + be(jpeg.size(), 4);
    return head + QByteArray(qMax<qsizetype>(0, at - head.size()), '\0') + jpeg;
}

QByteArray webp(const QByteArray& tiff)
{
    return "RIFF" + be(0, 4) + "WEBP" + "VP8 " + le32(256) + QByteArray(256, 'v') + "EXIF" + le32(tiff.size() + 6) + "Exif" +
           QByteArray(2, '\0') + tiff + QByteArray(tiff.size() & 1, '\0');
}

QByteArray png(const QByteArray& tiff)
{
    const auto chunk = [](const QByteArray& type, const QByteArray& data) {
        return be(data.size(), 4) + type + data + be(crc32(type + data), 4);
    };
    return "\x89PNG\r\n\x1A\n" + chunk("IHDR", be(1, 4) + be(1, 4) + QByteArray("\x08\x00\x00\x00\x00", 5)) +
           chunk("IDAT", QByteArray(300, 'd')) + chunk("eXIf", tiff) + chunk("IEND", {});
}
