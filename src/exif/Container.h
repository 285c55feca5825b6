#pragma once
// Where a file keeps its metadata, found by walking the file's own structure: JPEG segments,
// ISO boxes (HEIF, AVIF, CR3, QuickTime), RIFF and PNG chunks, raw headers. A walker answers
// "where" (absolute positions in the file and lengths), never copies of the data, so that the
// run and its check keep working on positions. Every walk is bounded in boxes, segments,
// chunks and bytes read, and a broken structure simply ends it: what was found until then
// stands.

#include <QByteArrayView>
#include <QtGlobal>

#include <optional>
#include <vector>

class BinaryStream;

// A stretch of the file.
struct Span {
    quint64 position = 0;
    quint64 length = 0;
    quint64 end() const { return position + length; }
    bool contains(quint64 at, quint64 n) const { return at >= position && n <= length && at - position <= length - n; }
};

// Bytes guarded by a CRC-32 (a PNG chunk: its type and data): a write inside `covered`
// must also write the new CRC, 4 bytes big-endian, at crcAt.
struct Checksummed {
    Span covered;
    quint64 crcAt = 0;
};

struct ContainerLayout {
    enum Kind { Unknown, Jpeg, Tiff, Heif, WebP, Png, Cr3, Raf, Orf, Rw2, Movie };
    Kind kind = Unknown;
    // TIFF blocks, each beginning with its 8-byte header; offsets inside one count from its
    // first byte. Most files have one; CR3 has two, the second (CMT2) a block whose first
    // directory is the Exif directory itself.
    std::vector<Span> tiff;
    std::vector<Span> xmp;    // XMP packets, as stored (UTF-8 text)
    std::vector<Span> iptc;   // IPTC-IIM datasets (the bytes of the 0x0404 resource, or of TIFF tag 33723)
    std::vector<Checksummed> checksums;
};

// How far a walk goes: to the Exif blocks (what listing a file needs), or through all the
// metadata that the file keeps.
enum class Reach { Exif, Everything };

// The layout of the file on s, by its content (never by its name). Moves the stream's
// position; never throws on a malformed file.
ContainerLayout locateContainer(BinaryStream& s, Reach reach = Reach::Everything);

// The CRC-32 of PNG chunks (ISO 3309), over bytes, continued from crc.
quint32 crc32(QByteArrayView bytes, quint32 crc = 0);
