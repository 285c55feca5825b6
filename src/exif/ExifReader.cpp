// The TIFF/Exif reader: finds the TIFF header in the first bytes of the file on bs and
// starts the walk of its directories there (ExifWalk.cpp); a directory's link in the chain
// and an entry's text are read here.
//
// Positions and offsets stay Double from the moment they are read; they become stream
// positions only through toPosition, where a negative one lies beyond any end and simply
// reads nothing. Nothing here tests what a read gave: a short read leaves zeros.

#include "shell/Window1.h"

#include "exif/Tags.h"
#include "platform/base/Convert.h"
#include "platform/listbox/Listbox.h"
#include "platform/files/MemoryBlock.h"
#include "platform/text/Text.h"

#include <algorithm>

namespace {

// The 32 bits as eight upper-case hexadecimal digits, leading zeros kept; a negative Long
// shows its two's complement. Every file has an Exif pointer that comes this way.
QString hex8(quint32 v)
{
    char16_t digits[8];
    for (int i = 7; i >= 0; --i, v >>= 4)
        digits[i] = char16_t(u"0123456789ABCDEF"[v & 0xF]);
    return QString(reinterpret_cast<const QChar*>(digits), 8);
}


}  // namespace

void Window1::getExifInfo()
{
    const double position = getIFDEntry();
    if (position >= 0) {
        walkIFDChain(position);
    } else if (TiffOfs < 0) {
        // No signature in the first 256 bytes. Only here does the walk of the file's own
        // structure (JPEG segments, ISO boxes, chunks, raw headers) look for the Exif block:
        // a file that the search of the first bytes serves is read exactly as it always was.
        // A movie keeps its dates in its own header instead.
        if (!getMovieInfo())
            getExifByStructure();
    }
}

/* TIFF header, wherever its signature first stands in the first 256 bytes:
     offset 0, 4 bytes: "MM" 0x00 0x2A (big-endian) or "II" 0x2A 0x00 (little-endian)
     offset 4, 4 bytes: offset of the first directory from the header, signed
   A big-endian signature anywhere wins over a little-endian one, even an earlier one. */
double Window1::getIFDEntry()
{
    static constexpr QByteArrayView bigEndian("MM\0\x2A", 4);
    static constexpr QByteArrayView littleEndian("II\x2A\0", 4);

    bs->setPosition(0);
    const QByteArrayView head = bs->ReadView(256);
    qint64 found = InStrB(head, bigEndian);
    if (found > 0) {
        isLittleEndian = false;
    } else {
        found = InStrB(head, littleEndian);
        if (found > 0)
            isLittleEndian = true;
    }
    TiffOfs = double(found) - 1.0;
    if (found == 0)
        return -1.0;

    // Near the end of the 256 bytes the header is cut short; its missing bytes read as 0.
    MemoryBlock header(8);
    header.setLittleEndian(isLittleEndian);
    header.setStringValue(0, 8, head.sliced(found - 1, std::min<qsizetype>(8, head.size() - (found - 1))));
    return double(header.Long(4)) + TiffOfs;
}

/* Directory, at an absolute position:
     offset 0,        2 bytes: number of entries n, unsigned
     offset 2,   12 n bytes:   the entries, each:
                                 0  2 tag, unsigned      4  4 count, signed
                                 2  2 type, signed       8  4 value, or its offset from the header
     offset 2 + 12 n, 4 bytes: offset of the next directory from the header, signed; 0 ends
   Here the directory is a link of the chain: the offset of the next one. Its entries are
   read by the walk of getExifInfo. */
double Window1::analyzeIFD(double pos)
{
    bs->setPosition(toPosition(pos));
    bs->setLittleEndian(isLittleEndian);
    const quint64 n = bs->ReadUInt16();
    // From where the count left the stream: a count cut short by the end reads nothing after.
    bs->setPosition(bs->Position() + n * 12);
    MemoryBlock next(4);
    next.setLittleEndian(isLittleEndian);
    next.setStringValue(0, 4, bs->ReadView(4));
    return double(next.Long(0));
}

// One entry as text. The types that keep their value elsewhere take the four value bytes as
// its offset whatever the count, so a short ASCII value stored inline is read from wherever
// its bytes point. For a date tag the value's position goes to its cell's tag: 0.0 for a
// type that keeps no offset.
QString Window1::culcType(int tag, QByteArrayView value, int type, qint64 count)
{
    MemoryBlock field(4);
    field.setLittleEndian(isLittleEndian);
    field.setStringValue(0, 4, value);
    QString text;
    double valuePosition = 0.0;

    switch (type) {
    case 1:  // BYTE, SBYTE, UNDEFINED: the first byte only
    case 6:
    case 7:
        text = Right(QStringLiteral("0") + Hex(value.isEmpty() ? 0 : uchar(value.front())), 2);
        break;
    case 3:  // SHORT: the first of them only
        text = Str(qint64(field.UShort(0)));
        break;
    case 8:  // SSHORT
        text = Str(qint64(field.Short(0)));
        break;
    case 4:  // LONG and SLONG alike: the 32 bits in hexadecimal
    case 9:
        text = hex8(quint32(field.Long(0)));
        break;
    case 11:  // FLOAT: the bit pattern as a signed decimal, not the number
        text = Str(qint64(field.Long(0)));
        break;
    case 2:  // ASCII, RATIONAL, SRATIONAL, DOUBLE: kept at an offset
    case 5:
    case 10:
    case 12:
        valuePosition = double(field.Long(0)) + TiffOfs;
        bs->setPosition(toPosition(valuePosition));
        bs->setLittleEndian(isLittleEndian);
        if (type == 2) {
            // The last byte read is the terminating NUL of a well-formed value; a read cut
            // short by the end of the file loses a real character instead.
            if (count > 0 && count < 256) {
                const QByteArrayView bytes = bs->ReadView(count);
                text = QString::fromLatin1(bytes.first(std::max<qsizetype>(bytes.size() - 1, 0)));
            }
        } else if (type == 12) {
            text = Str(bs->ReadDouble());
        } else {
            // The eight bytes as stored, in pairs of hexadecimal digits. The place counts
            // from 0 into a function that counts from 1, so the first byte shows twice and
            // the eighth never.
            const QByteArray bytes = bs->Read(8);
            for (qint64 j = 0; j < 8; ++j) {
                if (j > 0)
                    text += QLatin1Char(' ');
                text += Right(QStringLiteral("0") + Hex(AscB(MidB(bytes, j, 1))), 2);
            }
        }
        break;
    default:  // no type of the TIFF tables: no text
        break;
    }

    if (const int column = dateColumn(tag))
        ListBox1->setCellTag(curRow, column, QVariant(valuePosition));
    return text;
}
