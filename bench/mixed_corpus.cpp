// mixed_corpus DIR N
//
// Writes the mixed corpus of bench/intake into DIR: N files of each kind, each a camera's
// Exif block (IFD0, an Exif directory with a 30 KB maker note, IFD1) in its container, with
// about 2 MB of picture data that no walk reads:
//   jpeg-exif   JPEG, Exif segment first (the header found in the first 256 bytes)
//   jpeg-icc    JPEG, JFIF and a 3 KiB ICC profile before the Exif segment
//   heic        HEIF: ftyp, meta (iinf, iloc), the picture, the Exif item at the end
//   webp        RIFF: VP8 image data, then the EXIF chunk
//   cr3         ftyp, moov > Canon's uuid > CMT1 and CMT2, mdat
// Each file's dates differ by its number. Prints the kinds, one a line.

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

#include "support/Containers.h"
#include "support/TiffBuilder.h"

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 3 || !QDir().mkpath(argv[1])) {
        std::fprintf(stderr, "usage: mixed_corpus DIR N\n");
        return 2;
    }
    const QDir dir(argv[1]);
    const int n = atoi(argv[2]);
    const QByteArray picture(2 << 20, 'p');
    const QByteArray icc = segment(0xE2, "ICC_PROFILE" + QByteArray(3 << 10, 'i'));
    for (int i = 0; i < n; ++i) {
        const QByteArray date = QString::asprintf("2019:05:%02d 12:%02d:%02d", 1 + i % 28, i / 60 % 60, i % 60).toLatin1();
        TiffBuilder t = camera(i % 2, date, date, date);
        t.stored(1, 37500, 7, 30000, QByteArray(30000, 'm'));
        const QByteArray tiff = t.bytes();
        TiffBuilder exif(i % 2);
        exif.ascii(exif.directory(), 36867, date);
        exif.ascii(0, 36868, date);
        exif.stored(0, 37500, 7, 30000, QByteArray(30000, 'm'));
        const QString name = QStringLiteral("%1-%2.%3");
        writeBytes(dir.filePath(name.arg("jpeg-exif").arg(i, 5, 10, QChar('0')).arg("jpg")), jpeg({}, tiff).chopped(2) + segment(0xDA, "sos") + picture);
        writeBytes(dir.filePath(name.arg("jpeg-icc").arg(i, 5, 10, QChar('0')).arg("jpg")),
                   jpeg(segment(0xE0, "JFIF") + icc, tiff).chopped(2) + segment(0xDA, "sos") + picture);
        writeBytes(dir.filePath(name.arg("heic").arg(i, 5, 10, QChar('0')).arg("heic")), heif(tiff, {.pad = picture.size()}));
        writeBytes(dir.filePath(name.arg("webp").arg(i, 5, 10, QChar('0')).arg("webp")),
                   webp(tiff).replace(16, 4, le32(picture.size())).replace(20, 256, picture));
        writeBytes(dir.filePath(name.arg("cr3").arg(i, 5, 10, QChar('0')).arg("cr3")), cr3(t.bytes(), exif.bytes()) + box("mdat", picture));
    }
    std::printf("jpeg-exif\njpeg-icc\nheic\nwebp\ncr3\n");
    return 0;
}
