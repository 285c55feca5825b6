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
    const auto value = [&](int dir, int tag, int type, qint64 v) { t.entry(dir, tag, type, 1, t.number(v, type == 3 ? 2 : 4)); };
    // The preview: JPEG-compressed (7), one strip; entries in the order of their tags.
    value(ifd0, 256, 4, jpegSize.width());
    value(ifd0, 257, 4, jpegSize.height());
    value(ifd0, 259, 3, 7);
    t.stored(ifd0, 273, 4, 1, jpeg);  // the strip's offset, the strip after the directory
    value(ifd0, 279, 4, jpeg.size());
    t.link(ifd0, 330, raw);  // SubIFDs
    t.entry(ifd0, 50706, 1, 4, QByteArray("\x01\x04\x00\x00", 4));  // DNGVersion 1.4
    // The raw: uncompressed 16-bit CFA samples (32803).
    for (const auto& [tag, v] : {std::pair{256, 64}, {257, 64}, {258, 16}, {259, 1}, {262, 32803}})
        value(raw, tag, 3, v);
    t.stored(raw, 273, 4, 1, QByteArray(64 * 64 * 2, '\x10'));
    return t.bytes();
}
