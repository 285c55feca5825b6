#pragma once
// What the container walkers share: the file, how far the walk goes, what it may still spend,
// and the reads of a walk that hops through a file from header to header.

#include "exif/Boxes.h"
#include "exif/Container.h"
#include "platform/files/BinaryStream.h"

class ContainerWalk {
public:
    ContainerWalk(BinaryStream& file, Reach reach, ContainerLayout& out);

    BinaryStream& file;
    const quint64 size;
    const Reach reach;
    ContainerLayout& out;
    BoxBudget budget;

    // Listing needs no more once the Exif block is found.
    bool done() const { return reach == Reach::Exif && !out.tiff.empty(); }

    // Up to n bytes at position `at`, never past `end` nor the file's end. The first page
    // comes through the stream's window, which the search of the first bytes has filled;
    // a read beyond it that the stretch in hand does not hold takes the next kStretch bytes
    // in one read, so that a walk over many segments or chunks costs one read more.
    QByteArray read(quint64 at, quint64 n, quint64 end);
    // A stream over the span (at most kBlock bytes of it), positions counted from the
    // file's start, from the stretch in hand where it holds the span, else by one read.
    Handle<BinaryStream> stretchOver(Span span);

    static constexpr quint64 kPage = 4096;
    static constexpr quint64 kStretch = 128 << 10;  // holds any JPEG segment that begins in the first 64 KiB
    static constexpr quint64 kBlock = 16 << 20;

private:
    Handle<BinaryStream> stretch_;
};

void walkJpeg(ContainerWalk& w, quint64 from, quint64 to);
void walkIso(ContainerWalk& w);  // HEIF, AVIF, CR3; anything else is a movie
void walkPng(ContainerWalk& w);
void walkWebP(ContainerWalk& w);
// Runs the walker that the file's first bytes call for.
void walkContainer(ContainerWalk& w);

// Little-endian numbers from bytes in memory; missing bytes count as zero.
quint64 littleEndian(QByteArrayView bytes, qsizetype at, int size);
