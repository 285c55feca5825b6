// The reader on real files and on files whose first 256 bytes hold no TIFF header, whose
// Exif block the walk of their structure finds. Containers that no tool makes (CR3, RAF,
// ORF, RW2, HEIF of chosen iloc layouts, damaged ones) are built from their boxes; JPEG,
// HEIC, AVIF, WebP and PNG are made by the distribution's tools, and exiftool says what
// they hold.
#include <QtTest>

#include <QProcess>

#include "exif/Boxes.h"
#include "exif/Companions.h"
#include "exif/Container.h"
#include "platform/files/BinaryStream.h"
#include "shell/Window1.h"
#include "support/Containers.h"
#include "support/TiffBuilder.h"

namespace {

const QByteArray A = "2001:02:03 04:05:06", B = "2002:03:04 05:06:07", C = "2003:04:05 06:07:08";
const QStringList kDates{"-IFD0:ModifyDate=" + A, "-ExifIFD:DateTimeOriginal=" + B, "-ExifIFD:CreateDate=" + C};

QByteArray exiftool(const QStringList& args)
{
    QProcess p;
    p.start("exiftool", args);
    p.waitForFinished(60000);
    return p.readAllStandardOutput();
}

// The PNG with its eXIf chunk moved behind IDAT, where the first bytes no longer hold it.
QByteArray afterIdat(QByteArray png)
{
    const qsizetype at = png.indexOf("eXIf") - 4, length = qsizetype(bigEndian(png, at, 4)) + 12;
    return at < 0 ? QByteArray() : png.insert(png.size() - 12, png.mid(at, length)).remove(at, length);
}

}  // namespace

class TestContainers : public QObject {
    Q_OBJECT
    QTemporaryDir tmp;
    Window1 w;

    QString add(const QByteArray& file) { return listFile(w, tmp.filePath("file"), file); }

    // A picture made by a tool, then written to by exiftool; "" where a tool is missing.
    QByteArray made(const QString& name, const QStringList& tool, const QStringList& writes = kDates + QStringList{"-IFD0:Orientation#=6"})
    {
        const QString path = tmp.filePath(name), picture = tmp.filePath("picture.png");
        for (const QString& needed : {QStringLiteral("convert"), QStringLiteral("exiftool"), tool[0]})
            if (QStandardPaths::findExecutable(needed).isEmpty())
                return {};
        if (!QFile::exists(picture))
            QProcess::execute("convert", {"-size", "320x240", "-seed", "1", "plasma:fractal", picture});
        QProcess::execute("convert", {picture, "-resize", "32x24", tmp.filePath("thumbnail.jpg")});
        QProcess::execute(tool[0], tool.mid(1).replaceInStrings("IN", picture).replaceInStrings("OUT", path));
        QProcess::execute("exiftool", QStringList{"-q", "-overwrite_original"} + writes + QStringList{path});
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

private slots:
    void structures_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<bool>("found");
        const QByteArray tiff = camera(true, A, B, C).bytes(), tiffBE = camera(false, A, B, C).bytes();
        const QByteArray icc = segment(0xE2, "ICC_PROFILE" + QByteArray(3000, 'i'));
        const QByteArray xmp = segment(0xE1, "http://ns.adobe.com/xap/1.0/" + QByteArray(1, '\0') + QByteArray(900, 'x'));
        const QByteArray jfxx = segment(0xE0, "JFXX" + QByteArray(1, '\0') + QByteArray(2000, 't'));
        QTest::newRow("JPEG: Exif behind a 3 KiB ICC profile") << jpeg(segment(0xE0, "JFIF") + icc, tiff) << true;
        QTest::newRow("JPEG: behind XMP, JFXX, fill bytes") << jpeg(xmp + "\xFF\xFF" + jfxx, tiffBE) << true;
        QTest::newRow("JPEG: behind 40 KiB of ICC profile") << jpeg(icc.repeated(13), tiff) << true;
        QTest::newRow("JPEG: a segment of length 1") << jpeg(icc + "\xFF\xE3\x00\x01", tiff) << false;
        QTest::newRow("JPEG: Exif segment cut short") << jpeg(icc, tiff).chopped(60) << false;
        QTest::newRow("JPEG: 5000 segments first") << jpeg(segment(0xE4, "x").repeated(5000), tiff) << false;
        QTest::newRow("JPEG: no marker after a segment") << jpeg(icc + "junk", tiff) << false;

        QTest::newRow("HEIC: iloc 0, Exif item at the end") << heif(tiff, {}) << true;
        QTest::newRow("HEIC: iloc 1, base offset, 8-byte fields") << heif(tiffBE, {1, 8, 8, 8}) << true;
        QTest::newRow("AVIF: iloc 2, no offset field") << heif(tiff, {2, 0, 4, 4}, "avif") << true;
        QTest::newRow("HEIC: in idat") << heif(tiff, {.version = 1, .idat = true}) << true;
        QTest::newRow("HEIC: three extents in a row") << heif(tiff, {.extents = 3}) << true;
        QTest::newRow("HEIC: item past a page of other boxes") << heif(tiff, {.pad = 9000}) << true;
        QTest::newRow("HEIC: meta of size 0, to the end") << heif(tiff, {}).replace(20, 4, be(0, 4)) << true;
        QTest::newRow("HEIC: meta of size 1, 64-bit size") << heif(tiff, {.largeMeta = true}) << true;
        QTest::newRow("HEIC: two extents with a gap") << heif(tiff, {.extents = 2, .gap = 1}) << false;
        QTest::newRow("HEIC: extent past the end") << heif(tiff, {.extra = 1}) << false;
        QTest::newRow("HEIC: extent of 4 GiB") << heif(tiff, {.extra = 0xFFFFFF00}) << false;
        QTest::newRow("HEIC: cut in its Exif item") << heif(tiff, {}).chopped(40) << false;
        QTest::newRow("HEIC: iloc version 3") << heif(tiff, {.version = 3}) << false;
        QTest::newRow("MP4: a movie, no Exif item") << heif(tiff, {}, "isom") << false;

        TiffBuilder ifd0(true), exif(true);  // CMT2's first directory is the Exif directory
        ifd0.entry(ifd0.directory(), 274, 3, 1, ifd0.number(6, 2));
        ifd0.ascii(0, 306, A);
        exif.ascii(exif.directory(), 36867, B);
        exif.ascii(0, 36868, C);
        const QByteArray inCr3 = cr3(ifd0.bytes(), exif.bytes());
        QTest::newRow("CR3: CMT1 and CMT2") << inCr3 << true;
        QTest::newRow("CR3: another uuid") << QByteArray(inCr3).replace(40, 1, "\x86") << false;
        QTest::newRow("RAF: the JPEG at the offset at 84") << raf(jpeg(icc, tiff)) << true;
        QTest::newRow("RAF: the offset beyond the end") << raf(jpeg(icc, tiff)).replace(84, 4, be(1u << 31, 4)) << false;
        QTest::newRow("ORF (IIRO)") << QByteArray(tiff).replace(0, 4, "IIRO") << true;
        QTest::newRow("ORF (MMOR)") << QByteArray(tiffBE).replace(0, 4, "MMOR") << true;
        QTest::newRow("RW2 (IIU)") << QByteArray(tiff).replace(0, 4, QByteArray("IIU\0", 4)) << true;
        QTest::newRow("WebP: EXIF with its label") << webp(tiff) << true;
        QTest::newRow("WebP: EXIF longer than the file") << webp(tiff).replace(280, 4, le32(0x7FFFFFFF)) << false;
        QTest::newRow("PNG: a chunk of 2 GiB before eXIf") << png(tiff).replace(33, 4, be(0x7FFFFFFF, 4)) << false;
        QTest::newRow("PNG: eXIf of a wrong CRC") << png(tiff).replace(png(tiff).size() - 13, 1, "\x55") << false;
    }

    void structures()
    {
        QFETCH(QByteArray, file);
        QFETCH(bool, found);
        QVERIFY(!file.left(256).contains(QByteArrayView("MM\0\x2A", 4)) && !file.left(256).contains(QByteArrayView("II\x2A\0", 4)));
        QCOMPARE(add(file), found ? seen(file, {A, B, C}, 1) : "- | - | - | -");
    }

    // Each date where exiftool reads it, and the orientation code of its value; the
    // samples' movies are tst_movie's.
    void sameAsExiftool_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("name");
        const QString thumbnail = "-ThumbnailImage<=" + tmp.filePath("thumbnail.jpg");
        const QStringList jpg{"convert", "IN", "OUT"};
        QTest::newRow("JPEG: MM, orientation 6, thumbnail") << made("a.jpg", jpg, QStringList{"-ExifByteOrder=MM", "-IFD0:Orientation#=6", thumbnail} + kDates) << "a.jpg";
        QTest::newRow("JPEG: II, mirrored 5, no 306") << made("b.jpg", jpg, QStringList{"-ExifByteOrder=II", "-IFD0:Orientation#=5", thumbnail} + kDates.mid(1)) << "b.jpg";
        QTest::newRow("JPEG: shooting date only") << made("c.jpg", jpg, {"-ExifByteOrder=MM", kDates[1]}) << "c.jpg";
        QTest::newRow("HEIC by heif-enc") << made("a.heic", {"heif-enc", "-q", "30", "IN", "-o", "OUT"}) << "a.heic";
        QTest::newRow("AVIF by ImageMagick") << made("a.avif", {"convert", "IN", "OUT"}) << "a.avif";
        QTest::newRow("WebP by cwebp") << made("a.webp", {"cwebp", "-quiet", "IN", "-o", "OUT"}) << "a.webp";
        QTest::newRow("PNG, eXIf after IDAT") << afterIdat(made("a.png", {"convert", "IN", "OUT"})) << "b.png";
        const QDir samples(qEnvironmentVariable("VELKARO_SAMPLES", QStringLiteral(VELKARO_SAMPLES)));
        for (const QString& name : samples.entryList({"*.heic", "*.avif", "*.jpg", "*.nef"}, QDir::Files)) {
            QFile f(samples.filePath(name));
            QTest::newRow(qPrintable(name)) << (f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray()) << name;
        }
    }

    void sameAsExiftool()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, name);
        if (file.isEmpty())
            QSKIP("the tool or the file is not there");
        writeBytes(tmp.filePath(name), file);
        const QList<QByteArray> told = exiftool({"-s3", "-f", "-IFD0:ModifyDate", "-ExifIFD:DateTimeOriginal", "-ExifIFD:CreateDate",
                                                 "-IFD0:Orientation#", tmp.filePath(name)}).split('\n');
        const QStringList shown = add(file).split(" | ");
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(shown[i].section('@', 0, 0), QString::fromLatin1(told.value(i)));
            QVERIFY(told.value(i) == "-" || file.mid(shown[i].section('@', 1).toLongLong(), 19) == told.value(i));
        }
        const int codes[] = {-1, 0, 0, 2, 2, 3, 1, 1, 3};
        QCOMPARE(shown[3], told.value(3) == "-" ? "-" : QString::number(codes[told.value(3).toInt()]));
    }

    // A PNG's shooting date changed in its eXIf chunk, early (found by the first bytes) or
    // after IDAT: exiftool reads the new date and finds nothing new to warn of, as the CRC
    // moves with it; a CRC that was wrong before stays, and the run says so.
    void pngChecksum_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<bool>("crcWrong");
        const QByteArray png = made("early.png", {"convert", "IN", "OUT"});
        QByteArray wrong = png;
        const qsizetype crcAt = png.indexOf("eXIf") + 4 + qsizetype(bigEndian(png, png.indexOf("eXIf") - 4, 4));
        wrong[crcAt] = char(wrong[crcAt] ^ 1);
        QTest::newRow("eXIf before IDAT") << png << false;
        QTest::newRow("CRC wrong before the run") << wrong << true;
        QTest::newRow("eXIf after IDAT") << afterIdat(png) << false;
    }

    void pngChecksum()
    {
        QFETCH(QByteArray, file);
        QFETCH(bool, crcWrong);
        if (file.size() < 256)
            QSKIP("the tools are not there");
        const QString path = tmp.filePath("shifted.png");
        const QString shown = add(file).split(" | ")[1];
        writeBytes(path, file);
        const QByteArray validated = exiftool({"-validate", "-warning", "-a", path});
        const QByteArray aim = "2011:12:13 14:15:16";
        const std::vector<Patch> dates{{quint64(shown.section('@', 1).toLongLong()), B, aim, 4, {}}};
        Companions found;
        findCompanions(*FolderItem(path).OpenAsBinaryFile(false), FolderItem(path), dates, found);
        QCOMPARE(found.kept.size(), qsizetype(crcWrong));
        QCOMPARE(found.patches.size(), size_t(!crcWrong));
        for (const std::vector<Patch>& patches : {dates, found.patches})
            for (const Patch& p : patches) {
                QVERIFY(p.isDate() || p.what == "CRC of PNG chunk eXIf");
                QCOMPARE(file.mid(qsizetype(p.position), p.before.size()), p.before);
                file.replace(qsizetype(p.position), p.after.size(), p.after);
            }
        writeBytes(path, file);
        QCOMPARE(exiftool({"-s3", "-ExifIFD:DateTimeOriginal", path}).trimmed(), aim);
        QCOMPARE(exiftool({"-validate", "-warning", "-a", path}), validated);
    }

    // Where the XMP packet, the IPTC datasets and the PNG checksums lie, as exiftool wrote them.
    void copies()
    {
        for (const char* name : {"copies.jpg", "copies.png"}) {
            const QByteArray file = made(name, {"convert", "IN", "OUT"}, kDates + QStringList{"-XMP-xmp:CreateDate=" + A, "-IPTC:DateCreated=2001:02:03"});
            if (file.isEmpty())
                QSKIP("the tools are not there");
            const ContainerLayout layout = locateContainer(*BinaryStream::overBytes(file));
            const auto at = [&](Span s) { return file.mid(qsizetype(s.position), qsizetype(s.length)); };
            QCOMPARE(layout.tiff.size() * layout.xmp.size(), size_t(1));
            QCOMPARE(at(layout.tiff[0]).left(4), QByteArray("MM\0\x2A", 4));
            QVERIFY(at(layout.xmp[0]).contains("2001-02-03T04:05:06") && at(layout.xmp[0]).right(40).contains("<?xpacket end="));
            QCOMPARE(layout.iptc.size() + layout.checksums.size(), size_t(layout.kind == ContainerLayout::Png ? 2 : 1));
            for (const Span& iptc : layout.iptc)
                QVERIFY(at(iptc).contains("\x1C\x02\x37\x00\x08" "20010203"));
            for (const Checksummed& c : layout.checksums)
                QCOMPARE(bigEndian(file, qsizetype(c.crcAt), 4), quint64(crc32(at(c.covered))));
        }
    }
};

QTEST_MAIN(TestContainers)
#include "tst_containers.moc"
