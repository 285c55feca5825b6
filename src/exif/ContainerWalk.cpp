// Which walker a file needs, by its first bytes, and the raw formats whose Exif block needs
// no walk of its own: TIFF variants with another magic number, and RAF's embedded JPEG.

#include "exif/ContainerWalk.h"

#include <algorithm>
#include <array>

ContainerWalk::ContainerWalk(BinaryStream& file, Reach reach, ContainerLayout& out)
    : file(file), size(file.Length()), reach(reach), out(out)
{
}

QByteArray ContainerWalk::read(quint64 at, quint64 n, quint64 end)
{
    end = std::min(end, size);
    if (at >= end)
        return {};
    n = std::min(n, end - at);
    if (at + n <= kPage)
        return readBounded(file, at, n, end, budget);
    if (stretch_.isNil() || at < stretch_->Base() || at > stretch_->Length() || n > stretch_->Length() - at)
        stretch_ = BinaryStream::overBytes(readBounded(file, at, std::max(n, kStretch), size, budget), at);
    return readBounded(*stretch_, at, n, end);
}

Handle<BinaryStream> ContainerWalk::stretchOver(Span span)
{
    const quint64 n = std::min(span.length, kBlock);
    if (!stretch_.isNil() && span.position >= stretch_->Base() && span.position <= stretch_->Length()
        && n <= stretch_->Length() - span.position)
        return BinaryStream::overBytes(readBounded(*stretch_, span.position, n, size), span.position);
    stretch_ = BinaryStream::overBytes(readBounded(file, span.position, n, size, budget), span.position);
    return stretch_;
}

quint64 littleEndian(QByteArrayView bytes, qsizetype at, int size)
{
    quint64 v = 0;
    for (int i = size - 1; i >= 0; --i) {
        const qsizetype k = at + i;
        v = v << 8 | (k >= 0 && k < bytes.size() ? quint8(bytes[k]) : 0);
    }
    return v;
}

namespace {

// A TIFF block that is the whole file, whatever the magic number after its byte order.
void wholeFile(ContainerWalk& w, ContainerLayout::Kind kind)
{
    w.out.kind = kind;
    w.out.tiff.push_back({0, w.size});
}

/* RAF (Fujifilm raw):
     offset  0, 16 bytes: "FUJIFILMCCD-RAW "
     offset 84,  4 bytes: position of the embedded JPEG, big-endian
     offset 88,  4 bytes: its length
   The JPEG carries the Exif block. */
void walkRaf(ContainerWalk& w, QByteArrayView head)
{
    w.out.kind = ContainerLayout::Raf;
    const quint64 at = bigEndian(head, 84, 4), length = bigEndian(head, 88, 4);
    if (head.size() >= 92 && at >= 92 && at < w.size)
        walkJpeg(w, at, at + std::min(length, w.size - at));
}

}  // namespace

void walkContainer(ContainerWalk& w)
{
    const QByteArray head = w.read(0, 96, w.size);
    const auto starts = [&](QByteArrayView magic, qsizetype at = 0) { return head.mid(at).startsWith(magic); };
    if (starts("\xFF\xD8")) {
        w.out.kind = ContainerLayout::Jpeg;
        walkJpeg(w, 0, w.size);
    } else if (starts(QByteArrayView("MM\0\x2A", 4)) || starts(QByteArrayView("II\x2A\0", 4))) {
        wholeFile(w, ContainerLayout::Tiff);
    } else if (starts("IIRO") || starts("IIRS") || starts("MMOR")) {
        wholeFile(w, ContainerLayout::Orf);
    } else if (starts(QByteArrayView("IIU\0", 4))) {
        wholeFile(w, ContainerLayout::Rw2);
    } else if (starts("FUJIFILMCCD-RAW ")) {
        walkRaf(w, head);
    } else if (starts("\x89PNG\r\n\x1A\n")) {
        walkPng(w);
    } else if (starts("RIFF") && starts("WEBP", 8)) {
        walkWebP(w);
    } else if (head.size() >= 8) {
        walkIso(w);  // says whether the boxes are there at all
    }
}

ContainerLayout locateContainer(BinaryStream& s, Reach reach)
{
    ContainerLayout layout;
    ContainerWalk walk(s, reach, layout);
    walkContainer(walk);
    return layout;
}

quint32 crc32(QByteArrayView bytes, quint32 crc)
{
    static const std::array<quint32, 256> table = [] {
        std::array<quint32, 256> t{};
        for (quint32 n = 0; n < 256; ++n) {
            quint32 c = n;
            for (int k = 0; k < 8; ++k)
                c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[n] = c;
        }
        return t;
    }();
    crc = ~crc;
    for (const char b : bytes)
        crc = table[(crc ^ quint8(b)) & 0xFF] ^ (crc >> 8);
    return ~crc;
}
