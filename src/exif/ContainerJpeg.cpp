// JPEG segments, from SOI to SOS, for the Exif block wherever it stands (behind JFIF, ICC
// profiles, XMP, Photoshop resources or JFXX thumbnails), and the XMP packets and IPTC
// datasets that the file keeps.

#include "exif/ContainerWalk.h"

namespace {

const QByteArrayView kExif("Exif\0\0", 6);
const QByteArrayView kXmp("http://ns.adobe.com/xap/1.0/\0", 29);
const QByteArrayView kPhotoshop("Photoshop 3.0\0", 14);

void app1(ContainerWalk& w, Span data)
{
    const QByteArray label = w.read(data.position, kXmp.size(), data.end());
    if (label.startsWith(kExif) && w.out.tiff.empty() && data.length >= quint64(kExif.size()) + 8)
        w.out.tiff.push_back({data.position + 6, data.length - 6});
    else if (label == kXmp && w.reach == Reach::Everything)
        w.out.xmp.push_back({data.position + 29, data.length - 29});
}

/* Photoshop resources, after "Photoshop 3.0\0", each:
     "8BIM", 2 bytes id, a name (1 byte of length, the text, padded to an even length),
     4 bytes length n, n bytes of data (padded to even)
   Resource 0x0404 holds the IPTC datasets. */
void app13(ContainerWalk& w, Span data)
{
    const QByteArray bytes = w.read(data.position, data.length, data.end());
    if (!bytes.startsWith(kPhotoshop))
        return;
    qsizetype at = kPhotoshop.size();
    while (at + 12 <= bytes.size() && bytes.mid(at, 4) == "8BIM") {
        const quint64 id = bigEndian(bytes, at + 4, 2);
        const qsizetype nameLength = quint8(bytes[at + 6]);
        const qsizetype sizeAt = at + 6 + ((1 + nameLength + 1) & ~qsizetype(1));
        const quint64 n = bigEndian(bytes, sizeAt, 4);
        const qsizetype dataAt = sizeAt + 4;
        if (dataAt > bytes.size() || n > quint64(bytes.size() - dataAt))
            return;
        if (id == 0x0404)
            w.out.iptc.push_back({data.position + quint64(dataAt), n});
        at = dataAt + qsizetype((n + 1) & ~quint64(1));
    }
}

}  // namespace

/* Segments:
     FF D8                       SOI, at `from`
     FF xx, 2 bytes length L     a segment; L counts itself and the data that follow
     FF D0..D7, FF 01            markers without a length
     FF DA, FF D9                SOS (the picture follows) and EOI: no metadata after them
   Fill bytes FF may stand before a marker. A segment cut short by the end ends the walk. */
void walkJpeg(ContainerWalk& w, quint64 from, quint64 to)
{
    if (w.read(from, 2, to) != "\xFF\xD8")
        return;
    quint64 at = from + 2;
    while (!w.done() && w.budget.boxes-- > 0) {
        const QByteArray m = w.read(at, 4, to);
        if (m.size() < 2 || quint8(m[0]) != 0xFF)
            return;
        const quint8 marker = quint8(m[1]);
        if (marker == 0xFF) {
            ++at;
            continue;
        }
        if (marker == 0xD9 || marker == 0xDA || m.size() < 4)
            return;
        if ((marker >= 0xD0 && marker <= 0xD7) || marker == 0x01) {
            at += 2;
            continue;
        }
        const quint64 length = bigEndian(m, 2, 2);
        const Span data{at + 4, length - 2};
        if (length < 2 || data.position > to || data.length > to - data.position)
            return;
        if (marker == 0xE1)
            app1(w, data);
        else if (marker == 0xED && w.reach == Reach::Everything)
            app13(w, data);
        at = data.end();
    }
}
