#include "platform/pictures/PictureKind.h"

#include <array>

namespace {

// The bytes of a literal, NULs included.
template <qsizetype N>
constexpr QByteArrayView bytes(const char (&s)[N])
{
    return QByteArrayView(s, N - 1);
}

bool startsWith(QByteArrayView head, QByteArrayView magic)
{
    return head.size() >= magic.size() && head.first(magic.size()) == magic;
}

// The brands under which HEIF stills and AVIF pictures are filed (the HEIF and AVIF
// image brands, their sequence brands, and the general ones).
bool heifBrand(QByteArrayView brand)
{
    static constexpr std::array<const char*, 11> brands{"heic", "heix", "hevc", "heim", "heis", "hevm",
                                                        "hevs", "mif1", "msf1", "avif", "avis"};
    for (const char* b : brands)
        if (brand == QByteArrayView(b, 4))
            return true;
    return false;
}

// ISO base media files begin with their ftyp box:
//   size(4, big-endian) "ftyp" major brand(4) minor version(4) compatible brands(4 each)
// The brands that fit in the head are looked at. QuickTime files may begin with another
// box instead.
PictureKind isoKind(QByteArrayView head)
{
    if (head.size() < 12)
        return PictureKind::Other;
    const QByteArrayView type = head.sliced(4, 4);
    if (type != "ftyp") {
        for (const char* box : {"moov", "mdat", "wide", "free", "skip", "pnot"})
            if (type == QByteArrayView(box, 4))
                return PictureKind::Movie;
        return PictureKind::Other;
    }
    const quint32 size = quint32(quint8(head[0])) << 24 | quint8(head[1]) << 16 | quint8(head[2]) << 8 | quint8(head[3]);
    const QByteArrayView major = head.sliced(8, 4);
    if (major == "crx ")
        return PictureKind::Raw;
    if (heifBrand(major))
        return PictureKind::Heif;
    const qsizetype end = qMin(head.size(), qsizetype(qMin(size, 4096u)));
    for (qsizetype at = 16; at + 4 <= end; at += 4)
        if (heifBrand(head.sliced(at, 4)))
            return PictureKind::Heif;
    return PictureKind::Movie;
}

}  // namespace

PictureKind pictureKind(QByteArrayView head)
{
    if (startsWith(head, bytes("II*\0")) || startsWith(head, bytes("MM\0*")))
        return PictureKind::Tiff;
    // ORF (Olympus), RW2 (Panasonic), RAF (Fujifilm)
    for (const QByteArrayView magic : {bytes("IIRO"), bytes("IIRS"), bytes("MMOR"), bytes("IIU\0"), bytes("FUJIFILMCCD-RAW ")})
        if (startsWith(head, magic))
            return PictureKind::Raw;
    return isoKind(head);
}
