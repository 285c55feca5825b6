#pragma once
#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include "platform/Handle.h"

// A stream on an open file. Reads never fail: a read past the end comes up short or
// empty, and a number read there is 0 (its missing bytes count as zero). A write at a
// position that the file cannot reach writes nothing. Positions are unsigned 64-bit, so a
// negative Double position, converted by toPosition, lies far beyond any end.
class BinaryStream {
public:
    // Opens path for reading, or for reading and writing in place (never truncating, never
    // creating). Returns a nil handle where the item cannot be opened that way, as a folder.
    static Handle<BinaryStream> open(const QString& path, bool write);
    ~BinaryStream();
    BinaryStream(const BinaryStream&) = delete;
    BinaryStream& operator=(const BinaryStream&) = delete;

    quint64 Position() const;
    void setPosition(quint64 position);
    bool LittleEndian() const;
    void setLittleEndian(bool littleEndian);
    quint64 Length() const;

    // Up to count bytes from the position; the position moves by what was read.
    QByteArray Read(qint64 count);
    quint16 ReadUInt16();
    double ReadDouble();
    // Writes all bytes at the position, or nothing at all: a write that cannot be made
    // whole (beyond the end of the file, on a read-only stream) changes nothing and
    // returns false. The position moves only by a write that was made.
    bool Write(const QByteArray& bytes);
    void Close();

private:
    // (representation: the implementer's)
};
