#include "exif/Boxes.h"

#include "platform/files/BinaryStream.h"

#include <algorithm>

quint64 bigEndian(QByteArrayView bytes, qsizetype at, int size)
{
    quint64 v = 0;
    for (int i = 0; i < size; ++i) {
        const qsizetype k = at + i;
        v = v << 8 | (k >= 0 && k < bytes.size() ? quint8(bytes[k]) : 0);
    }
    return v;
}

QByteArray readBounded(BinaryStream& s, quint64 position, quint64 n, quint64 end)
{
    if (position >= end)
        return {};
    s.setPosition(position);
    return s.Read(qint64(std::min(n, end - position)));
}

QByteArray readBounded(BinaryStream& s, quint64 position, quint64 n, quint64 end, BoxBudget& budget)
{
    const QByteArray bytes = readBounded(s, position, std::min(n, budget.bytes), end);
    budget.bytes -= quint64(bytes.size());
    return bytes;
}

BoxLevel::BoxLevel(BinaryStream& s, quint64 from, quint64 to, BoxBudget& budget)
    : s_(s), at_(from), to_(to), budget_(budget)
{
}

bool BoxLevel::next(Box& b)
{
    if (at_ >= to_ || to_ - at_ < 8 || budget_.boxes <= 0)
        return false;
    --budget_.boxes;
    const QByteArray head = readBounded(s_, at_, 32, to_, budget_);
    if (head.size() < 8)
        return false;
    b = Box{};
    b.start = at_;
    b.type = quint32(bigEndian(head, 4, 4));
    quint64 size = bigEndian(head, 0, 4);
    quint64 header = 8;
    if (size == 1) {
        if (head.size() < 16)
            return false;
        size = bigEndian(head, 8, 8);
        header = 16;
    } else if (size == 0) {
        size = to_ - at_;
    }
    if (b.type == fourcc("uuid")) {
        if (quint64(head.size()) < header + 16)
            return false;
        b.uuid = head.mid(qsizetype(header), 16);
        header += 16;
    }
    if (size < header)
        return false;
    b.body = at_ + header;
    b.end = size > to_ - at_ ? to_ : at_ + size;
    at_ = b.end;
    return true;
}

BoxLevel BoxLevel::inside(const Box& b, quint64 skip) const
{
    const bool deeper = depth_ + 1 < budget_.depth && skip <= b.bodyLength();
    BoxLevel level(s_, deeper ? b.body + skip : b.end, b.end, budget_);
    level.depth_ = depth_ + 1;
    return level;
}

bool BoxLevel::find(quint32 type, Box& b)
{
    while (next(b))
        if (b.type == type)
            return true;
    return false;
}
