#pragma once
// ISO base media boxes (HEIF, AVIF, CR3, QuickTime, MP4), walked one level at a time inside
// the range of their parent. Every read of a box goes through a BoxLevel that knows where the
// parent ends, and every box taken counts against one budget per file, so that no size field,
// loop or depth of nesting can make a walk long.
//
//   offset 0, 4 bytes: size, big-endian: 0 to the end of the parent, 1 a 64-bit size follows
//   offset 4, 4 bytes: type, four characters
//   [offset 8, 8 bytes: the 64-bit size, when size is 1]
//   ['uuid': 16 bytes of extended type]
//   then the body, up to start + size

#include <QByteArray>
#include <QByteArrayView>
#include <QtGlobal>

class BinaryStream;

constexpr quint32 fourcc(const char (&s)[5])
{
    return quint32(quint8(s[0])) << 24 | quint32(quint8(s[1])) << 16 | quint32(quint8(s[2])) << 8 | quint8(s[3]);
}

// Big-endian numbers from bytes in memory; missing bytes count as zero.
quint64 bigEndian(QByteArrayView bytes, qsizetype at, int size);

struct Box {
    quint32 type = 0;
    quint64 start = 0;   // its first byte, the size field
    quint64 body = 0;    // after the header (and a uuid's extended type)
    quint64 end = 0;     // one past its last byte; never past the parent's end
    QByteArray uuid;     // the extended type of a 'uuid' box, 16 bytes
    quint64 bodyLength() const { return end - body; }
};

// What one file's walk may still spend: boxes (or segments, or chunks) taken, levels
// entered, bytes read. Every walker of a file draws on one.
struct BoxBudget {
    int boxes = 4096;
    int depth = 16;
    quint64 bytes = 64 << 20;
};

// The boxes of one level, from `from` to `to` (the parent's body).
class BoxLevel {
public:
    BoxLevel(BinaryStream& s, quint64 from, quint64 to, BoxBudget& budget);
    // The next box into b; false at the end of the level, at a header that is cut short or
    // claims less than itself, or when the budget is spent. A box that claims more than its
    // parent holds ends at the parent's end.
    bool next(Box& b);
    // The level inside box b, one deeper; an empty level where the depth is spent.
    BoxLevel inside(const Box& b, quint64 skip = 0) const;
    // Finds the first box of the type on this level from where it stands.
    bool find(quint32 type, Box& b);

private:
    BinaryStream& s_;
    quint64 at_, to_;
    BoxBudget& budget_;
    int depth_ = 0;
};

// Up to n bytes at position, never past `end`; with a budget, never more than it has left,
// which the bytes read are taken from.
QByteArray readBounded(BinaryStream& s, quint64 position, quint64 n, quint64 end);
QByteArray readBounded(BinaryStream& s, quint64 position, quint64 n, quint64 end, BoxBudget& budget);
