#pragma once
#include <QByteArray>
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
    // Copies the bytes to offset; a string shorter than length leaves the rest of that
    // range zero, a longer one is cut to length.
    void setStringValue(qint64 offset, qint64 length, const QByteArray& bytes);

    quint16 UInt16Value(qint64 offset) const;
    quint16 UShort(qint64 offset) const;
    qint16 Short(qint64 offset) const;
    qint32 Long(qint64 offset) const;

private:
    QByteArray data_;
    bool littleEndian_ = false;
};
