// The Exif block of a file whose first 256 bytes hold no TIFF signature: found by the walk of
// the file's own structure, then walked as getExifInfo walks a header found by the search.
// Each block is read through a stream of its own bytes, which counts positions from the
// file's start: offsets count from the block's header (TiffOfs), the positions that the
// row keeps are positions in the file, and nothing outside the block is read.

#include "shell/Window1.h"

#include "exif/ContainerWalk.h"
#include "platform/files/MemoryBlock.h"

void Window1::getExifByStructure()
{
    const Handle<BinaryStream> file = bs;
    struct Restore {
        Window1& w;
        const Handle<BinaryStream>& file;
        ~Restore() { w.bs = file; }
    } restore{*this, file};

    ContainerLayout layout;
    ContainerWalk walk(*file, Reach::Exif, layout);
    walkContainer(walk);
    // Blocks in file order; where two hold the same tag (CR3), the later one stands.
    for (const Span& block : layout.tiff) {
        const bool wholeFile = block.position == 0 && block.length >= walk.size;
        bs = wholeFile ? file : walk.stretchOver(block);
        // The byte order comes from the first two bytes; the magic number after them may be
        // another than 42 (ORF, RW2).
        const QByteArray header = readBounded(*bs, block.position, 8, block.end());
        if (header.size() < 8 || !(header.startsWith("II") || header.startsWith("MM")))
            continue;
        isLittleEndian = header.startsWith("II");
        TiffOfs = double(block.position);
        MemoryBlock first(8);
        first.setLittleEndian(isLittleEndian);
        first.setStringValue(0, 8, header);
        const double position = double(first.Long(4)) + TiffOfs;
        if (position >= 0)
            walkIFDChain(position);
    }
}
