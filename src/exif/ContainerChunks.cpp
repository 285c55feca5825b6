// PNG and WebP chunks: the Exif block of an eXIf or EXIF chunk, the XMP packet of an iTXt or
// "XMP " chunk, and for PNG the CRC that guards each of them.

#include "exif/ContainerWalk.h"

namespace {

const QByteArrayView kExif("Exif\0\0", 6);
const QByteArrayView kXmpKeyword("XML:com.adobe.xmp\0", 18);

// A TIFF block in a chunk's data, behind the "Exif\0\0" that some writers put first.
void exifData(ContainerWalk& w, Span data, QByteArrayView bytes)
{
    if (bytes.startsWith(kExif))
        data = {data.position + 6, data.length - 6};
    if (data.length >= 8)
        w.out.tiff.push_back(data);
}

/* iTXt: keyword, NUL, compression flag (1), method (1), language tag, NUL, translated
   keyword, NUL, then the text. Only an uncompressed text can be written in place. */
void xmpText(ContainerWalk& w, Span data, QByteArrayView bytes)
{
    if (!bytes.startsWith(kXmpKeyword) || bytes.size() < kXmpKeyword.size() + 2 || bytes[kXmpKeyword.size()] != 0)
        return;
    const qsizetype language = kXmpKeyword.size() + 2;
    const qsizetype translated = bytes.indexOf('\0', language);
    const qsizetype text = translated < 0 ? -1 : bytes.indexOf('\0', translated + 1);
    if (text >= 0)
        w.out.xmp.push_back({data.position + quint64(text + 1), data.length - quint64(text + 1)});
}

}  // namespace

/* PNG: the 8-byte signature, then chunks up to IEND:
     offset 0, 4 bytes: data length n, big-endian, below 2^31
     offset 4, 4 bytes: type
     offset 8, n bytes: data
     offset 8 + n, 4:   CRC-32 of type and data, big-endian
   A chunk whose CRC does not match what it holds gives no Exif block or XMP packet; the
   checksums name every eXIf chunk and XMP text all the same. */
void walkPng(ContainerWalk& w)
{
    w.out.kind = ContainerLayout::Png;
    quint64 at = 8;
    while (!w.done() && w.budget.boxes-- > 0) {
        const QByteArray head = w.read(at, 8, w.size);
        const quint64 n = bigEndian(head, 0, 4);
        const quint32 type = quint32(bigEndian(head, 4, 4));
        if (head.size() < 8 || n >= 1u << 31 || type == fourcc("IEND") || w.size - at < n + 12)
            return;
        const Checksummed chunk{{at + 4, n + 4}, at + 8 + n};
        at = chunk.crcAt + 4;
        const bool xmp = type == fourcc("iTXt") && w.reach == Reach::Everything;
        if (type != fourcc("eXIf") && !xmp)
            continue;
        const QByteArray bytes = w.read(chunk.covered.position, chunk.covered.length + 4, at);
        if (quint64(bytes.size()) != n + 8)
            continue;
        const QByteArrayView data = QByteArrayView(bytes).sliced(4, n);
        if (xmp && !data.startsWith(kXmpKeyword))
            continue;
        // The run checks the CRC itself and says so where it does not match.
        if (w.reach == Reach::Everything)
            w.out.checksums.push_back(chunk);
        if (crc32(QByteArrayView(bytes).first(n + 4)) != bigEndian(bytes, n + 4, 4))
            continue;
        const Span span{chunk.covered.position + 4, n};
        if (xmp)
            xmpText(w, span, data);
        else if (w.out.tiff.empty())
            exifData(w, span, data);
    }
}

/* WebP: "RIFF", 4 bytes of length (little-endian), "WEBP", then chunks:
     offset 0, 4 bytes: type ("VP8X", "VP8 ", "EXIF", "XMP " ...)
     offset 4, 4 bytes: data length n, little-endian
     offset 8, n bytes: data, padded to an even length */
void walkWebP(ContainerWalk& w)
{
    w.out.kind = ContainerLayout::WebP;
    quint64 at = 12;
    while (!w.done() && w.budget.boxes-- > 0) {
        const QByteArray head = w.read(at, 14, w.size);
        const quint64 n = littleEndian(head, 4, 4);
        if (head.size() < 8 || w.size - at - 8 < n)
            return;
        const Span data{at + 8, n};
        if (head.startsWith("EXIF") && w.out.tiff.empty())
            exifData(w, data, QByteArrayView(head).sliced(8));
        else if (head.startsWith("XMP ") && w.reach == Reach::Everything)
            w.out.xmp.push_back(data);
        at = data.end() + (n & 1);
    }
}
