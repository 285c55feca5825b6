#pragma once
#include <QByteArray>

// Containers built from a description of their boxes, segments and chunks, around TIFF
// blocks that TiffBuilder makes: for layouts that no tool writes, and for damaged ones.

QByteArray be(quint64 v, int n);  // n bytes, big-endian
QByteArray le32(quint32 v);
QByteArray box(const QByteArray& type, const QByteArray& body);
QByteArray full(const QByteArray& type, quint32 versionAndFlags, const QByteArray& body);
QByteArray segment(int marker, const QByteArray& data);  // a JPEG segment
// A JPEG: SOI, the segments given, the Exif segment, SOS.
QByteArray jpeg(const QByteArray& before, const QByteArray& tiff);

// How a HEIF file's iloc places its Exif item: version, field sizes, in idat or in mdat
// (after a free box of `pad` bytes), in how many extents, the second moved by `gap`, the last
// claiming `extra` bytes more.
struct Iloc {
    int version = 0, offsetSize = 4, lengthSize = 4, baseSize = 0;
    bool idat = false;
    int extents = 1;
    qint64 gap = 0, pad = 300;
    quint64 extra = 0;
    bool largeMeta = false;  // meta with a 64-bit size
};
QByteArray heif(const QByteArray& tiff, const Iloc& l, const QByteArray& brand = "heic");
// CR3: ftyp, moov > Canon's uuid > CMT1 and CMT2, mdat.
QByteArray cr3(const QByteArray& cmt1, const QByteArray& cmt2);
// RAF: the header, the embedded JPEG at `at`.
QByteArray raf(const QByteArray& jpeg, quint32 at = 400);
// WebP with a VP8 chunk of filler, then an EXIF chunk (with the "Exif\0\0" label).
QByteArray webp(const QByteArray& tiff);
// PNG: signature, IHDR, IDAT of filler, eXIf, IEND.
QByteArray png(const QByteArray& tiff);
