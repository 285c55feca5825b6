#include "support/TiffBuilder.h"

#include <QDateTime>
#include <QFile>

#include "platform/base/Convert.h"
#include "platform/listbox/Listbox.h"
#include "platform/files/FolderItem.h"
#include "platform/files/MemoryBlock.h"
#include "platform/text/Text.h"
#include "shell/Window1.h"

QByteArray TiffBuilder::number(quint32 v, int size) const
{
    QByteArray b(size, '\0');
    for (int i = 0; i < size; ++i)
        b[le ? i : size - 1 - i] = char(v >> (8 * i));
    return b;
}

QByteArray TiffBuilder::bytes() const
{
    QList<qint64> at;  // where each directory starts
    qint64 end = 8;
    for (const Directory& d : dirs) {
        at << end + d.gap;
        end = at.last() + 6 + 12 * d.entries.size();
        for (const Entry& e : d.entries)
            end += e.data.size() + (e.data.size() & 1);
    }
    QByteArray out = (le ? QByteArray("II\x2A\0", 4) : QByteArray("MM\0\x2A", 4)) + number(dirs.isEmpty() ? 0 : at[0], 4);
    for (int k = 0; k < dirs.size(); ++k) {
        QByteArray values;
        const qint64 valuesAt = at[k] + 6 + 12 * dirs[k].entries.size();
        out = out.leftJustified(at[k], '\0') + number(dirs[k].entries.size(), 2);
        for (const Entry& e : dirs[k].entries) {
            const qint64 offset = e.link >= 0 ? at[e.link] : valuesAt + values.size();
            out += number(e.tag, 2) + number(e.type, 2) + number(e.count, 4) + (e.value.isEmpty() ? number(offset, 4) : e.value);
            values += e.data + QByteArray(e.data.size() & 1, '\0');
        }
        out += number(dirs[k].next >= 0 ? at[dirs[k].next] : 0, 4) + values;
    }
    return out;
}

QByteArray TiffBuilder::jpeg(const QByteArray& tiff)
{
    const int length = 8 + int(tiff.size());
    return QByteArray("\xFF\xD8\xFF\xE1", 4) + char(length >> 8) + char(length) + QByteArray("Exif\0\0", 6) + tiff + "\xFF\xD9";
}

TiffBuilder camera(bool le, const QByteArray& d306, const QByteArray& d36867, const QByteArray& d36868)
{
    TiffBuilder t(le);
    const int ifd0 = t.directory(), exif = t.directory(), ifd1 = t.directory();
    t.entry(ifd0, 274, 3, 1, t.number(6, 2));
    t.ascii(ifd0, 306, d306);
    t.link(ifd0, 34665, exif);
    t.next(ifd0, ifd1);
    t.ascii(exif, 36867, d36867);
    t.ascii(exif, 36868, d36868);
    t.entry(ifd1, 259, 3, 1, t.number(6, 2));
    return t;
}

bool writeBytes(const QString& path, const QByteArray& bytes, int hoursAgo)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size() && file.flush() &&
           file.setFileTime(QDateTime::currentDateTime().addSecs(-3600 * hoursAgo), QFileDevice::FileModificationTime);
}

QString exifView(const Window1& w, int row)
{
    QStringList out;
    for (int column = 3; column <= 5; ++column) {
        const QString text = w.ListBox1->Cell(row, column);
        const QVariant tag = w.ListBox1->CellTag(row, column);
        out << (!tag.isValid() ? (text == kNoExif ? QStringLiteral("-") : text + "@-") : text + '@' + QString::number(tag.toDouble(), 'g', 17));
    }
    const QVariant turns = w.ListBox1->CellTag(row, 6);
    return (out << (turns.isValid() ? turns.toString() : QStringLiteral("-"))).join(QStringLiteral(" | "));
}

QString seen(const QByteArray& f, const QList<QByteArray>& dates, int turns)
{
    QStringList out;
    for (const QByteArray& date : dates)
        out << (date.isEmpty() ? QStringLiteral("-") : QString::fromLatin1(date) + '@' + QString::number(f.indexOf(date)));
    return (out << (turns < 0 ? QStringLiteral("-") : QString::number(turns))).join(QStringLiteral(" | "));
}

namespace {

double plainIFD(Window1& w, double pos, QList<quint64>& walking, qint64& budget)
{
    w.bs->setPosition(toPosition(pos));
    w.bs->setLittleEndian(w.isLittleEndian);
    const qint64 n = w.bs->ReadUInt16();
    // Read short at the end, the rest of the directory is zeros, entries of tag 0 included.
    const QByteArray got = w.bs->Read(n * 12 + 4);
    MemoryBlock block(std::min<qint64>(n, (got.size() + 11) / 12) * 12), next(4);
    block.setLittleEndian(w.isLittleEndian);
    block.setStringValue(0, block.Size(), got);
    next.setLittleEndian(w.isLittleEndian);
    next.setStringValue(0, 4, QByteArrayView(got).sliced(std::min<qsizetype>(n * 12, got.size())));
    walking << toPosition(pos);
    --budget;
    for (qint64 at = 0; at < block.Size() && --budget > 0; at += 12) {
        const int tag = block.UInt16Value(at);
        if (tag != 274 && tag != 34665 && tag != 306 && tag != 36867 && tag != 36868)
            continue;  // its text would be dropped
        const QString text = w.culcType(tag, block.StringView(at + 8, 4), block.Short(at + 2), block.Long(at + 4));
        if (tag == 274)
            w.ListBox1->setCellTag(w.curRow, 6, QVariant(toInteger(Val(NthField("0,0,2,2,3,1,1,3", ",", toInteger(Val(text)))))));
        if (tag == 34665) {
            const double to = Val("&h" + text) + w.TiffOfs;
            if (!walking.contains(toPosition(to)))
                plainIFD(w, to, walking, budget);
        }
        if (tag == 306 || tag == 36867 || tag == 36868)
            w.ListBox1->setCell(w.curRow, tag == 306 ? 3 : tag - 36863, text);
    }
    walking.removeLast();
    return next.Long(0);
}

}  // namespace

QString readBytes(Window1& w, const QByteArray& bytes, bool plain, qint64 budget)
{
    w.ListBox1->AddRow("bytes");
    w.curRow = w.ListBox1->ListCount() - 1;
    for (int column = 3; column <= 5; ++column)
        w.ListBox1->setCell(w.curRow, column, kNoExif);
    w.bs = BinaryStream::overBytes(bytes);
    if (!plain) {
        w.getExifInfo();
        return exifView(w, w.curRow);
    }
    double position = w.getIFDEntry();
    QList<quint64> walking;
    for (int pass = 0; pass < 101 && (pass > 0 || position >= 0) && budget > 0; ++pass) {
        const double next = plainIFD(w, position, walking, budget);
        if (next == 0)
            break;
        position = next + w.TiffOfs;
    }
    return budget > 0 ? exifView(w, w.curRow) : QString();
}

QString listFile(Window1& w, const QString& path, const QByteArray& bytes)
{
    writeBytes(path, bytes);
    w.clearTables();
    w.addFileToTable(FolderItem(path));
    return exifView(w, 0);
}
