#pragma once
// A small walk of a TIFF block of its own, apart from the table's reader, for what the run
// moves besides the dates in the table: every date tag of the chain and of its Exif
// directories (306, 36867, 36868), and the XMP (tag 700) and IPTC (tag 33723) that IFD0
// keeps. Bounded: a few directories, none twice, none of more than 1024 entries.
//
//   header: byte order "II" or "MM" (2), 42 (2), offset of IFD0 (4)
//   directory: count n (2), n entries of tag (2), type (2), count (4), value or offset (4),
//              offset of the next directory (4); offsets count from the header

#include <QString>

#include <vector>

#include "exif/Container.h"

struct TiffDate {
    quint64 position = 0;  // the first byte of its text, in the file
    int column = 0;
    QString what;  // "Exif 306 in IFD1"
};

struct TiffCopies {
    std::vector<TiffDate> dates;
    std::vector<Span> xmp, iptc;
};

TiffCopies findTiffCopies(BinaryStream& s, const Span& block);
