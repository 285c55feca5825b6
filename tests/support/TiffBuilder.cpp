#include "support/TiffBuilder.h"

#include <QFile>

int TiffBuilder::directory()
{
    dirs_.append(Directory{});
    return int(dirs_.size()) - 1;
}

void TiffBuilder::entry(int dir, int tag, int type, qint64 count, quint32 value)
{
    dirs_[dir].entries.append({tag, type, count, u32(value)});
}

void TiffBuilder::entryBytes(int dir, int tag, int type, qint64 count, const QByteArray& value)
{
    QByteArray four = value.left(4);
    four.append(4 - four.size(), '\0');
    dirs_[dir].entries.append({tag, type, count, four});
}

int TiffBuilder::entryData(int dir, int tag, int type, qint64 count, const QByteArray& data)
{
    data_.append(data);
    dataDir_.append(dir);
    Entry e{tag, type, count, {}};
    e.data = int(data_.size()) - 1;
    dirs_[dir].entries.append(e);
    return e.data;
}

void TiffBuilder::link(int dir, int tag, int target, int type)
{
    Entry e{tag, type, 1, {}};
    e.link = target;
    dirs_[dir].entries.append(e);
}

void TiffBuilder::next(int dir, int target) { dirs_[dir].nextDir = target; }
void TiffBuilder::nextOffset(int dir, qint32 offset) { dirs_[dir].nextDir = -1, dirs_[dir].nextRaw = offset; }
void TiffBuilder::firstOffset(qint32 offset) { first_ = offset; }
void TiffBuilder::declareCount(int dir, int n) { dirs_[dir].declared = n; }
void TiffBuilder::gapBefore(int dir, int bytes) { dirs_[dir].gap = bytes; }

TiffBuilder::Layout TiffBuilder::layout() const
{
    Layout l;
    qint64 at = 8;
    l.data.resize(data_.size());
    for (int d = 0; d < dirs_.size(); ++d) {
        at += dirs_[d].gap;
        l.dirs.append(at);
        at += 2 + 12 * dirs_[d].entries.size() + 4;
        for (int k = 0; k < data_.size(); ++k) {
            if (dataDir_[k] != d)
                continue;
            l.data[k] = at;
            at += data_[k].size() + (data_[k].size() & 1);
        }
    }
    l.size = at;
    return l;
}

qint64 TiffBuilder::directoryOffset(int dir) const { return layout().dirs.at(dir); }
qint64 TiffBuilder::valueOffset(int handle) const { return layout().data.at(handle); }

QByteArray TiffBuilder::bytes() const
{
    const Layout l = layout();
    QByteArray out(l.size, '\0');
    auto put = [&out](qint64 at, const QByteArray& b) { out.replace(at, b.size(), b); };

    put(0, le_ ? QByteArray("II\x2A\0", 4) : QByteArray("MM\0\x2A", 4));
    put(4, u32(quint32(first_.value_or(dirs_.isEmpty() ? 0 : qint32(l.dirs[0])))));
    for (int d = 0; d < dirs_.size(); ++d) {
        const Directory& dir = dirs_[d];
        qint64 at = l.dirs[d];
        put(at, u16(quint16(dir.declared.value_or(int(dir.entries.size())))));
        at += 2;
        for (const Entry& e : dir.entries) {
            QByteArray value = e.value;
            if (e.data >= 0)
                value = u32(quint32(l.data[e.data]));
            else if (e.link >= 0)
                value = e.type == 3 || e.type == 8 ? u16(quint16(l.dirs[e.link])) + QByteArray(2, '\0')
                                                   : u32(quint32(l.dirs[e.link]));
            put(at, u16(quint16(e.tag)) + u16(quint16(e.type)) + u32(quint32(e.count)) + value);
            at += 12;
        }
        put(at, u32(dir.nextDir >= 0 ? quint32(l.dirs[dir.nextDir]) : quint32(dir.nextRaw)));
    }
    for (int k = 0; k < data_.size(); ++k)
        put(l.data[k], data_[k]);
    return out;
}

QByteArray TiffBuilder::u16(quint16 v) const
{
    QByteArray b(2, '\0');
    b[le_ ? 0 : 1] = char(v);
    b[le_ ? 1 : 0] = char(v >> 8);
    return b;
}

QByteArray TiffBuilder::u32(quint32 v) const
{
    QByteArray b(4, '\0');
    for (int i = 0; i < 4; ++i)
        b[le_ ? i : 3 - i] = char(v >> (8 * i));
    return b;
}

QByteArray TiffBuilder::jpeg(const QByteArray& tiff)
{
    const int length = 2 + 6 + int(tiff.size());
    QByteArray out("\xFF\xD8\xFF\xE1", 4);
    out += char(length >> 8);
    out += char(length);
    out += QByteArray("Exif\0\0", 6) + tiff + QByteArray("\xFF\xD9", 2);
    return out;
}

bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}
