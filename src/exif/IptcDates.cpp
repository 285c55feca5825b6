#include "exif/IptcDates.h"

std::vector<IptcDate> findIptcDates(QByteArrayView b)
{
    IptcDate pairs[2] = {{4, -1, 0, -1, 0, "IPTC 2:55/2:60"}, {5, -1, 0, -1, 0, "IPTC 2:62/2:63"}};
    qsizetype at = 0;
    while (b.size() - at >= 5 && quint8(b[at]) == 0x1C) {
        const int record = quint8(b[at + 1]), dataset = quint8(b[at + 2]);
        quint64 length = quint64(quint8(b[at + 3])) << 8 | quint8(b[at + 4]);
        at += 5;
        if (length & 0x8000) {
            const quint64 bytes = length & 0x7FFF;
            if (bytes > 8 || quint64(b.size() - at) < bytes)
                break;
            length = 0;
            for (quint64 i = 0; i < bytes; ++i)
                length = length << 8 | quint8(b[at++]);
        }
        if (quint64(b.size() - at) < length)
            break;
        if (record == 2 && length > 0) {
            IptcDate& p = pairs[dataset == 62 || dataset == 63 ? 1 : 0];
            const bool date = dataset == 55 || dataset == 62, time = dataset == 60 || dataset == 63;
            if (date && p.dateAt < 0)
                p.dateAt = at, p.dateLength = qsizetype(length);
            if (time && p.timeAt < 0)
                p.timeAt = at, p.timeLength = qsizetype(length);
        }
        at += qsizetype(length);
    }
    std::vector<IptcDate> found;
    for (const IptcDate& p : pairs)
        if (p.dateAt >= 0 || p.timeAt >= 0)
            found.push_back(p);
    return found;
}
