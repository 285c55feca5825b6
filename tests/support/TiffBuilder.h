#pragma once
#include <QByteArray>
#include <QString>
#include <QVector>
#include <QtGlobal>

#include <optional>

// Writes TIFF structures in either byte order: directories with any tag, type, count and
// value, chained or not, well-formed or broken. The header stands at byte 0 of bytes();
// put a prefix before it (jpeg(), or any junk) to move the signature. Offsets count from
// the header, as in the file.
//
// Layout: the 8-byte header, then each directory in the order made, each followed by the
// values that it keeps elsewhere (padded to even length).
class TiffBuilder {
public:
    explicit TiffBuilder(bool littleEndian) : le_(littleEndian) {}

    int directory();
    // An entry whose four value bytes are the number given, in the file's byte order.
    void entry(int dir, int tag, int type, qint64 count, quint32 value);
    // An entry with its four value bytes exactly as given (cut or zero-padded to four).
    void entryBytes(int dir, int tag, int type, qint64 count, const QByteArray& value);
    // An entry whose value lies after the directory; the entry holds its offset. Returns a
    // handle for valueOffset().
    int entryData(int dir, int tag, int type, qint64 count, const QByteArray& data);
    // A type 2 value with its NUL, count = length + 1, kept after the directory.
    int ascii(int dir, int tag, const QByteArray& text) { return entryData(dir, tag, 2, text.size() + 1, text + '\0'); }
    // An entry that holds the offset of another directory, as the Exif pointer does.
    void link(int dir, int tag, int target, int type = 4);

    void next(int dir, int target);         // the next-directory offset names target
    void nextOffset(int dir, qint32 offset);  // ... or any number
    void firstOffset(qint32 offset);        // the header's offset; default: directory 0
    void declareCount(int dir, int n);      // the count field, whatever was written
    void gapBefore(int dir, int bytes);     // zero bytes in front of the directory

    QByteArray bytes() const;
    qint64 directoryOffset(int dir) const;
    qint64 valueOffset(int handle) const;

    // The number in the file's byte order.
    QByteArray u16(quint16 v) const;
    QByteArray u32(quint32 v) const;

    // A JPEG that holds the TIFF block in an Exif APP1 segment right after SOI; the
    // header then stands at kJpegTiffStart.
    static QByteArray jpeg(const QByteArray& tiff);
    static constexpr int kJpegTiffStart = 12;

private:
    struct Entry {
        int tag, type;
        qint64 count;
        QByteArray value;    // four bytes, unless data or link is set
        int data = -1;       // index into data_
        int link = -1;       // target directory
    };
    struct Directory {
        QVector<Entry> entries;
        std::optional<int> declared;
        int nextDir = -1;
        qint32 nextRaw = 0;
        int gap = 0;
    };
    struct Layout {
        QVector<qint64> dirs;
        QVector<qint64> data;
        qint64 size = 0;
    };
    Layout layout() const;

    bool le_;
    QVector<Directory> dirs_;
    QVector<QByteArray> data_;
    QVector<int> dataDir_;
    std::optional<qint32> first_;
};

// Writes bytes to path, replacing what is there; false when that fails.
bool writeBytes(const QString& path, const QByteArray& bytes);
