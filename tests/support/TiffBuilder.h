#pragma once
#include <QByteArray>
#include <QList>
#include <QString>

class Window1;

// Writes TIFF blocks in either byte order, well-formed or broken: the 8-byte header, then each
// directory in the order made (after gap zero bytes), each followed by the values it keeps
// elsewhere. Offsets count from the header, as in the file.
class TiffBuilder {
public:
    explicit TiffBuilder(bool littleEndian) : le(littleEndian) {}
    int directory(int gap = 0) { dirs.append({{}, gap, -1}); return int(dirs.size()) - 1; }
    // An entry with its four value bytes as given, padded with zeros.
    void entry(int dir, int tag, int type, qint64 count, const QByteArray& value) { add(dir, {tag, type, count, value.leftJustified(4, '\0'), {}}); }
    // An entry whose value is kept after its directory; the entry holds the value's offset.
    void stored(int dir, int tag, int type, qint64 count, const QByteArray& data) { add(dir, {tag, type, count, {}, data}); }
    void ascii(int dir, int tag, const QByteArray& text) { stored(dir, tag, 2, text.size() + 1, text + '\0'); }
    // A LONG entry that holds the offset of another directory, as the Exif pointer does.
    void link(int dir, int tag, int target) { add(dir, {tag, 4, 1, {}, {}, target}); }
    void next(int dir, int target) { dirs[dir].next = target; }
    QByteArray bytes() const;
    QByteArray number(quint32 v, int size) const;  // in the file's byte order
    // A JPEG whose Exif segment comes right after SOI: the header stands at 12.
    static QByteArray jpeg(const QByteArray& tiff);

private:
    struct Entry {
        int tag, type;
        qint64 count;
        QByteArray value, data;
        int link = -1;
    };
    struct Directory {
        QList<Entry> entries;
        int gap, next;
    };
    void add(int dir, const Entry& e) { dirs[dir].entries.append(e); }
    bool le;
    QList<Directory> dirs;
};

// A camera's layout: IFD0 with orientation 6, date 306 and the Exif pointer to directory 1,
// which holds dates 36867 and 36868; then IFD1, the thumbnail's, as directory 2.
TiffBuilder camera(bool le, const QByteArray& d306, const QByteArray& d36867, const QByteArray& d36868);

// Writes bytes to path, modified hoursAgo hours ago; false when that fails.
bool writeBytes(const QString& path, const QByteArray& bytes, int hoursAgo = 0);

// Adds a row for bytes, as addFileToTable does, and reads them by the reader's getExifInfo or,
// with plain, by the plain walk: each directory walked entry by entry in the order of the
// file, every Exif pointer followed except to a directory being walked further up. Gives the
// row's exifView, or "" when the plain walk needs more than budget directories and entries.
QString readBytes(Window1& w, const QByteArray& bytes, bool plain = false, qint64 budget = 1 << 20);

// A row's Exif cells as text that reads well in a failed comparison: "text@position" for
// columns 3 to 5 ("-" for the marker without a tag), then the turns in column 6's tag ("-": none).
QString exifView(const Window1& w, int row);
// Writes bytes to path and lists that file alone, as a drop would: the row's exifView.
QString listFile(Window1& w, const QString& path, const QByteArray& bytes);
// The same view expected of a file: each date where it first stands in f ("" for the marker).
QString seen(const QByteArray& f, const QList<QByteArray>& dates, int turns = -1);
