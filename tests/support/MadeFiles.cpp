#include "support/MadeFiles.h"

#include <QProcess>
#include <QTemporaryDir>

#include "support/TiffBuilder.h"

QByteArray heifEncoded(const QImage& image, const QStringList& args)
{
    QTemporaryDir dir;
    const QString in = dir.filePath("in.png"), out = dir.filePath(args.contains("-A") ? "out.avif" : "out.heic");
    QFile f(out);
    return image.save(in) && QProcess::execute("heif-enc", args + QStringList{in, "-o", out}) == 0
                   && f.open(QIODevice::ReadOnly)
               ? f.readAll()
               : QByteArray();
}

QByteArray dngWithPreview(const QByteArray& jpeg, QSize jpegSize)
{
    TiffBuilder t(true);
    const int ifd0 = t.directory(), raw = t.directory();
    const QByteArray samples(64 * 64 * 2, '\x10');
    struct Entry {
        int dir, tag, type, count;
        quint32 value;  // SHORT or LONG
    };
    // The preview: JPEG (7) in YCbCr (6); the raw: uncompressed CFA (32803).
    for (const Entry& e : {Entry{ifd0, 254, 4, 1, 1}, {ifd0, 256, 4, 1, quint32(jpegSize.width())},
                           {ifd0, 257, 4, 1, quint32(jpegSize.height())}, {ifd0, 259, 3, 1, 7}, {ifd0, 262, 3, 1, 6},
                           {ifd0, 277, 3, 1, 3}, {ifd0, 279, 4, 1, quint32(jpeg.size())}, {raw, 254, 4, 1, 0},
                           {raw, 256, 4, 1, 64}, {raw, 257, 4, 1, 64}, {raw, 258, 3, 1, 16}, {raw, 259, 3, 1, 1},
                           {raw, 262, 3, 1, 32803}, {raw, 277, 3, 1, 1}, {raw, 279, 4, 1, quint32(samples.size())}})
        t.entry(e.dir, e.tag, e.type, e.count, t.number(e.value, e.type == 3 ? 2 : 4));
    t.stored(ifd0, 258, 3, 3, t.number(8, 2).repeated(3));
    t.stored(ifd0, 273, 4, 1, jpeg);  // the one strip's offset, the strip after the directory
    t.link(ifd0, 330, raw);           // SubIFDs
    t.entry(ifd0, 50706, 1, 4, QByteArray("\x01\x04\x00\x00", 4));  // DNGVersion 1.4
    t.stored(raw, 273, 4, 1, samples);
    t.entry(raw, 33421, 3, 2, t.number(2, 2).repeated(2));
    t.entry(raw, 33422, 1, 4, QByteArray("\x00\x01\x01\x02", 4));  // RGGB
    return t.bytes();
}
