#include "platform/files/MemoryBlock.h"

#include "platform/base/Exceptions.h"
#include "platform/base/TextId.h"

#include <QtEndian>

#include <cstring>

MemoryBlock::MemoryBlock(qint64 size)
{
    if (size > 0) {
        data_.resize(size);
        std::memset(data_.data(), 0, size_t(size));
    }
}

qint64 MemoryBlock::Size() const { return data_.size(); }
bool MemoryBlock::LittleEndian() const { return littleEndian_; }
void MemoryBlock::setLittleEndian(bool littleEndian) { littleEndian_ = littleEndian; }

namespace {

// Out of line, so that the accessors, which run for every byte the Exif reader looks at,
// stay small.
[[noreturn]] Q_DECL_COLD_FUNCTION Q_NEVER_INLINE void throwPastTheEnd(qint64 size)
{
    throw OutOfBoundsException(
        textById("Report.pastBlock", "A read or write went past the end of a block of %1 bytes.").arg(size));
}

}  // namespace

const char* MemoryBlock::span(qint64 offset, qint64 length) const
{
    // Written so that no sum can wrap, whatever the caller passes.
    const qint64 size = data_.size();
    if (offset < 0 || length < 0 || size < length || offset > size - length)
        throwPastTheEnd(size);
    return data_.constData() + offset;
}

QByteArray MemoryBlock::StringValue(qint64 offset, qint64 length) const
{
    const char* p = span(offset, length);
    return QByteArray(p, length);
}

QByteArrayView MemoryBlock::StringView(qint64 offset, qint64 length) const
{
    return QByteArrayView(span(offset, length), length);
}

void MemoryBlock::setStringValue(qint64 offset, qint64 length, QByteArrayView bytes)
{
    char* p = data_.data() + (span(offset, length) - data_.constData());
    const qint64 n = qMin<qint64>(length, bytes.size());
    if (n > 0)
        std::memcpy(p, bytes.constData(), size_t(n));
    if (length > n)
        std::memset(p + n, 0, size_t(length - n));
}

quint16 MemoryBlock::UInt16Value(qint64 offset) const
{
    const char* p = span(offset, 2);
    return littleEndian_ ? qFromLittleEndian<quint16>(p) : qFromBigEndian<quint16>(p);
}

quint16 MemoryBlock::UShort(qint64 offset) const { return UInt16Value(offset); }

qint16 MemoryBlock::Short(qint64 offset) const { return qint16(UInt16Value(offset)); }

qint32 MemoryBlock::Long(qint64 offset) const
{
    const char* p = span(offset, 4);
    return qint32(littleEndian_ ? qFromLittleEndian<quint32>(p) : qFromBigEndian<quint32>(p));
}
