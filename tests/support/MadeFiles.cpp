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
    const auto value = [&](int dir, int tag, int type, quint32 v) { t.entry(dir, tag, type, 1, t.number(v, type == 3 ? 2 : 4)); };
    // The preview: JPEG (7) in YCbCr (6), one strip; entries in the order of their tags.
    value(ifd0, 254, 4, 1);
    value(ifd0, 256, 4, quint32(jpegSize.width()));
    value(ifd0, 257, 4, quint32(jpegSize.height()));
    t.stored(ifd0, 258, 3, 3, t.number(8, 2).repeated(3));
    value(ifd0, 259, 3, 7);
    value(ifd0, 262, 3, 6);
    t.stored(ifd0, 273, 4, 1, jpeg);  // the strip's offset, the strip after the directory
    value(ifd0, 277, 3, 3);
    value(ifd0, 279, 4, quint32(jpeg.size()));
    t.link(ifd0, 330, raw);  // SubIFDs
    t.entry(ifd0, 50706, 1, 4, QByteArray("\x01\x04\x00\x00", 4));  // DNGVersion 1.4
    // The raw: uncompressed 16-bit CFA samples (32803), RGGB.
    value(raw, 254, 4, 0);
    value(raw, 256, 4, 64);
    value(raw, 257, 4, 64);
    value(raw, 258, 3, 16);
    value(raw, 259, 3, 1);
    value(raw, 262, 3, 32803);
    t.stored(raw, 273, 4, 1, samples);
    value(raw, 277, 3, 1);
    value(raw, 279, 4, quint32(samples.size()));
    t.entry(raw, 33421, 3, 2, t.number(2, 2).repeated(2));
    t.entry(raw, 33422, 1, 4, QByteArray("\x00\x01\x01\x02", 4));
    return t.bytes();
}
