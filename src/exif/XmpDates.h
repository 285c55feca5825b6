#pragma once
// The dates of an XMP packet that follow the table's columns: xmp:ModifyDate and
// tiff:DateTime (column 3), exif:DateTimeOriginal and photoshop:DateCreated (column 4),
// xmp:CreateDate and exif:DateTimeDigitized (column 5), each a property of a top-level
// rdf:Description, as an attribute or as an element of plain text, under whatever prefix
// the packet binds to its namespace. Nothing else: not xmp:MetadataDate, not the dates of
// history entries, ingredients or GPS.

#include <QByteArrayView>
#include <QString>

#include <vector>

struct XmpDate {
    qsizetype at = 0, length = 0;  // its value's text in the packet
    int column = 0;
    const char* name = nullptr;  // "xmp:CreateDate", under the usual prefix
};

struct XmpDates {
    QString why;  // not empty: the packet cannot be changed safely, and nothing in it moves
    std::vector<XmpDate> dates;
};

// A packet longer than this is left alone: no XMP a camera or editor writes comes near it.
constexpr qsizetype kMaxXmpPacket = qsizetype(4) << 20;

// Why a packet over that size is left alone.
QString xmpTooLargeWhy();

// The date properties of a packet (UTF-8 text), in the order of the packet; a packet over
// the size above, with bad UTF-8 or that is not well formed gives only a why.
XmpDates findXmpDates(QByteArrayView packet);
