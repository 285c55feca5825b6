#pragma once
#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include "platform/base/Handle.h"

// A stream on an open file, or on bytes in memory. Reads never fail: a read past the end comes up short or
// empty, and a number read there is 0 (its missing bytes count as zero). A write at a
// position that the file cannot reach writes nothing. Positions are unsigned 64-bit, so a
// negative Double position, converted by toPosition, lies far beyond any end.
class BinaryStream {
public:
    // A read-only stream over bytes in memory, read exactly as a file of those bytes; with a
    // base, as the stretch of a file that begins there: positions keep counting from the
    // file's start, and nothing before the base or after the bytes can be read.
    static Handle<BinaryStream> overBytes(const QByteArray& bytes, quint64 base = 0);
    ~BinaryStream();
    BinaryStream(const BinaryStream&) = delete;
    BinaryStream& operator=(const BinaryStream&) = delete;

    quint64 Position() const;
    void setPosition(quint64 position);
    bool LittleEndian() const;
    void setLittleEndian(bool littleEndian);
    quint64 Length() const;
    quint64 Base() const { return base_; }  // the first position that holds a byte: 0 but over a stretch

    // Up to count bytes from the position; the position moves by what was read.
    QByteArray Read(qint64 count);
    // The same bytes as Read, without a copy of their own: the view lasts until the next
    // call on the stream.
    QByteArrayView ReadView(qint64 count);
    quint16 ReadUInt16();
    double ReadDouble();
    // Writes all bytes at the position, or nothing at all: a write that cannot be made
    // whole (beyond the end of the file, on a read-only stream) changes nothing and
    // returns false. The position moves only by a write that was made.
    bool Write(const QByteArray& bytes);
    void Close();

private:
    friend class FolderItem;  // opens the file, then hands over its descriptor
    static Handle<BinaryStream> fromDescriptor(int fd, bool write);
    struct Token {};  // only FolderItem and overBytes make streams

public:
    BinaryStream(Token, int fd, bool writable);
    BinaryStream(Token, const QByteArray& bytes, quint64 base);

private:
    // Points at up to count bytes (count <= kWindow, or any count over memory) at the
    // position, served from the window, and moves the position past them; count becomes
    // what there was.
    const char* take(qint64& count);
    qint64 readAt(char* out, qint64 count, quint64 offset) const;  // one read, EINTR retried
    qint64 fileSize() const;  // the current size, -1 if it cannot be had
    QByteArray readLarge(qint64 count);  // a read beyond the window, straight from the file
    bool isOpen() const { return fd_ >= 0 || inMemory_; }

    // The reader reads the first 256 bytes, then directories and small values that lie
    // close together near the start: one aligned window of the file, a page, serves them
    // all with a single read. Larger reads go to the file directly. Writes go straight through to
    // the file and are copied into the window, so the file is always the authority.
    static constexpr qint64 kWindow = 4096;

    int fd_ = -1;
    bool inMemory_ = false;  // then memory_ stands for the file
    QByteArray memory_;
    quint64 base_ = 0;  // of memory_ in the file it stands for
    bool writable_ = false;
    bool littleEndian_ = false;
    quint64 position_ = 0;
    quint64 windowStart_ = 0;
    qint64 windowLength_ = 0;  // valid bytes in window_; 0: nothing cached
    QByteArray large_;  // the bytes of the last ReadView too large for the window
    char window_[kWindow];
};
