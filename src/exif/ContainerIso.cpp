// ISO base media files: HEIF and AVIF (the Exif item of meta), CR3 (Canon's boxes in moov);
// any other such file is a movie, whose times are read elsewhere.

#include "exif/ContainerWalk.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

const QByteArray kCanonUuid = QByteArray::fromHex("85c0b687820f11e08111f4ce462b6a48");

bool heifBrand(quint32 brand)
{
    for (const quint32 b : {fourcc("heic"), fourcc("heix"), fourcc("hevc"), fourcc("heim"), fourcc("heis"),
                            fourcc("hevm"), fourcc("hevs"), fourcc("mif1"), fourcc("msf1"), fourcc("avif"),
                            fourcc("avis")})
        if (brand == b)
            return true;
    return false;
}

// Numbers taken one after the other from bytes in memory; once one is cut short, ok() stays false.
struct Cursor {
    QByteArrayView bytes;
    qsizetype at = 0;
    bool good = true;
    quint64 take(int size)
    {
        if (size < 0 || bytes.size() - at < size)
            good = false;
        if (!good)
            return 0;
        at += size;
        return bigEndian(bytes, at - size, size);
    }
};

struct Item {
    quint32 id = 0;
    bool exif = false;  // else an XMP packet
    std::optional<Span> span;
};

/* iinf: version (1), flags (3), entry count (2 in version 0, else 4), then infe boxes:
     version (1), flags (3), item id (2 in version 2, 4 in version 3), protection (2),
     item type (4); for type "mime": item name, content type, as NUL-ended texts.
   Items of versions 0 and 1 have no type and are no metadata of ours. */
std::vector<Item> itemsOf(ContainerWalk& w, BinaryStream& s, const Box& iinf)
{
    std::vector<Item> items;
    const QByteArray head = readBounded(s, iinf.body, 1, iinf.end, w.budget);
    BoxLevel entries = BoxLevel(s, iinf.start, iinf.end, w.budget).inside(iinf, head.startsWith('\0') ? 6 : 8);
    Box infe;
    while (entries.find(fourcc("infe"), infe)) {
        const QByteArray body = readBounded(s, infe.body, 256, infe.end, w.budget);
        const int version = body.isEmpty() ? 0 : quint8(body[0]);
        if (version < 2)
            continue;
        const int idSize = version == 2 ? 2 : 4;
        const quint32 type = quint32(bigEndian(body, 6 + idSize, 4));
        const quint32 id = quint32(bigEndian(body, 4, idSize));
        if (body.size() < 10 + idSize)
            continue;
        if (type == fourcc("Exif")) {
            items.push_back({id, true, {}});
        } else if (type == fourcc("mime") && w.reach == Reach::Everything) {
            const qsizetype name = 10 + idSize, content = body.indexOf('\0', name) + 1;
            if (content > 0 && body.mid(content).startsWith(QByteArrayView("application/rdf+xml\0", 20)))
                items.push_back({id, false, {}});
        }
    }
    return items;
}

/* iloc: version v (0 to 2), flags (3); one byte of offset size and length size (4 bits
   each), one byte of base offset size and (v 1, 2) index size; item count (2, v 2: 4); per
   item: id (2, v 2: 4), (v 1, 2) construction method in the low 4 bits of 2 bytes, data
   reference (2), base offset, extent count (2), and per extent: (v 1, 2) index, offset,
   length, each of the size named (0, 4 or 8 bytes). Method 0 counts from the file's start,
   method 1 from the body of idat. An item made of several extents is taken only where they
   follow one another without a gap. */
void locate(ContainerWalk& w, BinaryStream& s, const Box& iloc, std::optional<Box> idat, std::vector<Item>& items)
{
    const QByteArray bytes = readBounded(s, iloc.body, iloc.bodyLength(), iloc.end, w.budget);
    Cursor c{bytes};
    const int version = int(c.take(1));
    c.take(3);
    const int sizes = int(c.take(1)), more = int(c.take(1));
    const int offsetSize = sizes >> 4, lengthSize = sizes & 15, baseSize = more >> 4;
    const int indexSize = version == 1 || version == 2 ? more & 15 : 0;
    const quint64 count = c.take(version < 2 ? 2 : 4);
    int extentsLeft = 1 << 16;  // extents of no bytes at all cost nothing to read: they are counted
    for (quint64 i = 0; i < count && c.good && version <= 2 && extentsLeft > 0; ++i) {
        const quint32 id = quint32(c.take(version < 2 ? 2 : 4));
        const int method = version ? int(c.take(2) & 15) : 0;
        c.take(2);
        const quint64 base = c.take(baseSize);
        const quint64 extents = c.take(2);
        quint64 first = 0, end = 0;
        bool whole = true;
        for (quint64 e = 0; e < extents && c.good && extentsLeft-- > 0; ++e) {
            c.take(indexSize);
            const quint64 offset = c.take(offsetSize), length = c.take(lengthSize);
            if (e == 0)
                first = end = offset;
            whole = whole && offset == end && length <= ~quint64(0) - offset;
            end = offset + length;
        }
        const auto it = std::find_if(items.begin(), items.end(), [&](const Item& item) { return item.id == id; });
        if (!c.good || it == items.end() || !whole || extents == 0 || (method == 1 && !idat) || method > 1)
            continue;
        // The source: the file, or the body of idat.
        const quint64 from = method == 1 ? idat->body : 0, to = method == 1 ? idat->end : w.size;
        const quint64 length = end - first;  // 0: all that the source holds from there
        if (base > to - from || first > to - from - base || length > to - from - base - first)
            continue;
        const quint64 at = from + base + first;
        it->span = Span{at, length ? length : to - at};
    }
}

/* The Exif item begins with 4 bytes, big-endian: the offset of the TIFF header from the end
   of those 4 bytes (the length of an "Exif\0\0" before it). */
void exifItem(ContainerWalk& w, Span item)
{
    const Handle<BinaryStream> held = w.stretchOver(item);
    const quint64 skip = bigEndian(readBounded(*held, item.position, 4, item.end()), 0, 4);
    if (item.length >= 12 && skip <= item.length - 12)
        w.out.tiff.push_back({item.position + 4 + skip, item.length - 4 - skip});
}

void walkHeif(ContainerWalk& w, BoxLevel& top)
{
    w.out.kind = ContainerLayout::Heif;
    Box meta;
    if (!top.find(fourcc("meta"), meta))
        return;
    // The whole of meta in one read where it goes beyond the page already read.
    Handle<BinaryStream> held;
    if (meta.end > ContainerWalk::kPage && meta.end - meta.start <= ContainerWalk::kBlock)
        held = w.stretchOver({meta.start, meta.end - meta.start});
    BinaryStream& s = held.isNil() ? w.file : *held;
    // meta is a full box: version and flags come before its children.
    BoxLevel children = BoxLevel(s, meta.start, meta.end, w.budget).inside(meta, 4);
    std::optional<Box> iinf, iloc, idat;
    for (Box b; children.next(b);) {
        if (b.type == fourcc("iinf") && !iinf)
            iinf = b;
        else if (b.type == fourcc("iloc") && !iloc)
            iloc = b;
        else if (b.type == fourcc("idat") && !idat)
            idat = b;
    }
    if (!iinf || !iloc)
        return;
    std::vector<Item> items = itemsOf(w, s, *iinf);
    if (items.empty())
        return;
    locate(w, s, *iloc, idat, items);
    for (const Item& item : items) {
        if (!item.span)
            continue;
        if (!item.exif)
            w.out.xmp.push_back(*item.span);
        else if (w.out.tiff.empty())
            exifItem(w, *item.span);
    }
}

/* CR3: moov > uuid 85c0b687-820f-11e0-8111-f4ce462b6a48 > CMT1 (a TIFF block from IFD0) and
   CMT2 (a TIFF block whose first directory is the Exif directory). */
void walkCr3(ContainerWalk& w, BoxLevel& top)
{
    w.out.kind = ContainerLayout::Cr3;
    Box moov, uuid, b;
    if (!top.find(fourcc("moov"), moov))
        return;
    BoxLevel inMoov = top.inside(moov);
    bool canon = false;
    while (!canon && inMoov.find(fourcc("uuid"), uuid))
        canon = uuid.uuid == kCanonUuid;
    if (!canon)
        return;
    std::optional<Span> cmt1, cmt2;
    for (BoxLevel boxes = inMoov.inside(uuid); boxes.next(b);) {
        if (b.type == fourcc("CMT1") && !cmt1)
            cmt1 = Span{b.body, b.bodyLength()};
        else if (b.type == fourcc("CMT2") && !cmt2)
            cmt2 = Span{b.body, b.bodyLength()};
    }
    for (const auto& block : {cmt1, cmt2})
        if (block && block->length >= 8)
            w.out.tiff.push_back(*block);
}

}  // namespace

void walkIso(ContainerWalk& w)
{
    BoxLevel top(w.file, 0, w.size, w.budget);
    Box first;
    if (!top.next(first))
        return;
    if (first.type == fourcc("ftyp")) {
        // major brand (4), minor version (4), compatible brands (4 each)
        const QByteArray brands = readBounded(w.file, first.body, 256, first.end, w.budget);
        const quint32 major = quint32(bigEndian(brands, 0, 4));
        bool heif = heifBrand(major);
        for (qsizetype at = 8; at + 4 <= brands.size() && !heif; at += 4)
            heif = heifBrand(quint32(bigEndian(brands, at, 4)));
        if (brands.size() < 4)
            return;
        if (major == fourcc("crx "))
            walkCr3(w, top);
        else if (heif)
            walkHeif(w, top);
        else
            w.out.kind = ContainerLayout::Movie;
    } else if (first.type == fourcc("moov") || first.type == fourcc("mdat") || first.type == fourcc("wide")
               || first.type == fourcc("free") || first.type == fourcc("skip")) {
        w.out.kind = ContainerLayout::Movie;
    }
}
