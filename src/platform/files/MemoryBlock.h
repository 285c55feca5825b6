#pragma once
#include <QByteArray>
#include <QVarLengthArray>
#include <QtGlobal>

// A block of bytes of fixed size with a settable byte order for its number accessors.
// An access that does not lie wholly inside the block throws OutOfBoundsException.
class MemoryBlock {
public:
    explicit MemoryBlock(qint64 size);  // zero-filled; a negative size gives an empty block

    qint64 Size() const;
    bool LittleEndian() const;
    void setLittleEndian(bool littleEndian);

    QByteArray StringValue(qint64 offset, qint64 length) const;
    QByteArrayView StringView(qint64 offset, qint64 length) const;  // valid while the block is
    // Copies the bytes to offset; a string shorter than length leaves the rest of that
    // range zero, a longer one is cut to length.
    void setStringValue(qint64 offset, qint64 length, QByteArrayView bytes);

    quint16 UInt16Value(qint64 offset) const;
    quint16 UShort(qint64 offset) const;
    qint16 Short(qint64 offset) const;
    qint32 Long(qint64 offset) const;

private:
    // Throws unless offset..offset+length lies inside the block; returns the first byte.
    const char* span(qint64 offset, qint64 length) const;

    // The reader makes a 4-byte block for every directory entry: small blocks live inline.
    QVarLengthArray<char, 16> data_;
    bool littleEndian_ = false;
};
