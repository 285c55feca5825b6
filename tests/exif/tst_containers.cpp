// Files whose first 256 bytes hold no TIFF header: the Exif block found by the walk of their
// structure. Containers that no tool makes (CR3, RAF, ORF, RW2, and HEIF with chosen iloc
// layouts and damage) are built here from a description of their boxes; HEIC, AVIF, WebP and
// PNG are made by the distribution's tools, and exiftool says what they hold.
#include <QtTest>

#include <QProcess>

#include "exif/Boxes.h"
#include "exif/Companions.h"
#include "exif/Container.h"
#include "platform/BinaryStream.h"
#include "platform/Listbox.h"
#include "shell/Window1.h"
#include "support/Containers.h"
#include "support/TiffBuilder.h"

namespace {

const QByteArray A = "2001:02:03 04:05:06", B = "2002:03:04 05:06:07", C = "2003:04:05 06:07:08";
const QString nothing = "- | - | - | -";

// A TIFF block whose first directory holds what a camera's Exif directory holds (CMT2).
QByteArray exifDirectory(bool le)
{
    TiffBuilder t(le);
    t.ascii(t.directory(), 36867, B);
    t.ascii(0, 36868, C);
    return t.bytes();
}

QByteArray ifd0(bool le)
{
    TiffBuilder t(le);
    t.entry(t.directory(), 274, 3, 1, t.number(6, 2));
    t.ascii(0, 306, A);
    return t.bytes();
}

QByteArray withMagic(QByteArray tiff, const QByteArray& magic) { return tiff.replace(0, 4, magic); }

QByteArray exiftool(const QStringList& args)
{
    QProcess p;
    p.start("exiftool", args);
    p.waitForFinished(60000);
    return p.readAllStandardOutput();
}

}  // namespace

class TestContainers : public QObject {
    Q_OBJECT
    QTemporaryDir tmp;
    Window1 w;

    QString add(const QByteArray& file)
    {
        const QString path = tmp.filePath("file");
        writeBytes(path, file);
        w.clearTables();
        w.addFileToTable(FolderItem(path));
        return exifView(w, 0);
    }

    // A file made by a tool, then given the three dates and orientation 6 by exiftool.
    QByteArray made(const QString& name, const QStringList& tool)
    {
        const QString path = tmp.filePath(name), picture = tmp.filePath("picture.png");
        if (!QFile::exists(picture))
            QProcess::execute("convert", {"-size", "320x240", "-seed", "1", "plasma:fractal", picture});
        if (QStandardPaths::findExecutable(tool[0]).isEmpty() || QStandardPaths::findExecutable("exiftool").isEmpty())
            return {};
        QProcess::execute(tool[0], tool.mid(1).replaceInStrings("IN", picture).replaceInStrings("OUT", path));
        QProcess::execute("exiftool", {"-q", "-overwrite_original", "-IFD0:ModifyDate=" + A, "-ExifIFD:DateTimeOriginal=" + B,
                                       "-ExifIFD:CreateDate=" + C, "-IFD0:Orientation#=6", path});
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

        const QByteArray inCr3 = cr3(ifd0(true), exifDirectory(true));
        QTest::newRow("CR3: CMT1 and CMT2") << inCr3 << true;
        QTest::newRow("CR3: another uuid") << QByteArray(inCr3).replace(40, 1, "\x86") << false;
        QTest::newRow("RAF: the JPEG at the offset at 84") << raf(jpeg(icc, tiff)) << true;
        QTest::newRow("RAF: the offset beyond the end") << raf(jpeg(icc, tiff)).replace(84, 4, be(1u << 31, 4)) << false;
        QTest::newRow("ORF (IIRO)") << withMagic(tiff, "IIRO") << true;
        QTest::newRow("ORF (MMOR)") << withMagic(tiffBE, "MMOR") << true;
        QTest::newRow("RW2 (IIU)") << withMagic(tiff, QByteArray("IIU\0", 4)) << true;
        QTest::newRow("WebP: EXIF with its label") << webp(tiff) << true;
        QTest::newRow("WebP: EXIF longer than the file") << webp(tiff).replace(280, 4, le32(0x7FFFFFFF)) << false;
        QTest::newRow("PNG: a chunk of 2 GiB before eXIf") << png(tiff).replace(33, 4, be(0x7FFFFFFF, 4)) << false;
    }

    void structures()
    {
        QFETCH(QByteArray, file);
        QFETCH(bool, found);
        QVERIFY(!file.left(256).contains(QByteArrayView("MM\0\x2A", 4)) && !file.left(256).contains(QByteArrayView("II\x2A\0", 4)));
        QCOMPARE(add(file), found ? seen(file, {A, B, C}, 1) : nothing);
    }

    // Files made by the tools, and the real samples: each date where exiftool reads it, the
    // orientation code of its value.
    void sameAsExiftool_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("broken");  // exiftool reads it all the same
        QTest::newRow("HEIC by heif-enc") << made("a.heic", {"heif-enc", "-q", "30", "IN", "-o", "OUT"}) << "a.heic" << false;
        QTest::newRow("AVIF by ImageMagick") << made("a.avif", {"convert", "IN", "OUT"}) << "a.avif" << false;
        QTest::newRow("WebP by cwebp") << made("a.webp", {"cwebp", "-quiet", "IN", "-o", "OUT"}) << "a.webp" << false;
        // Moved behind IDAT, the eXIf chunk lies beyond the first bytes.
        QByteArray png = made("a.png", {"convert", "IN", "OUT"});
        if (const qsizetype at = png.indexOf("eXIf") - 4; at > 0) {
            const qsizetype length = qsizetype(bigEndian(png, at, 4)) + 12;
            png.insert(png.size() - 12, png.mid(at, length)).remove(at, length);
        }
        QTest::newRow("PNG by ImageMagick, eXIf after IDAT") << png << "b.png" << false;
        QTest::newRow("PNG, eXIf of a wrong CRC") << QByteArray(png).replace(png.size() - 13, 1, "\x55") << "c.png" << true;
        const QDir samples(qEnvironmentVariable("VELKARO_SAMPLES", QStringLiteral(VELKARO_SAMPLES)));
        for (const QString& name : samples.entryList({"*.heic", "*.avif", "*.jpg", "*.nef", "*.mov", "*.mp4"}, QDir::Files)) {
            QFile f(samples.filePath(name));
            QTest::newRow(qPrintable(name)) << (f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray()) << name << false;
        }
    }

    void sameAsExiftool()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, name);
        QFETCH(bool, broken);
        if (file.isEmpty())
            QSKIP("the tool or the file is not there");
        const QString path = tmp.filePath(name);
        writeBytes(path, file);
        const QList<QByteArray> told = exiftool({"-s3", "-f", "-IFD0:ModifyDate", "-ExifIFD:DateTimeOriginal", "-ExifIFD:CreateDate",
                                                 "-IFD0:Orientation#", path}).split('\n');
        const QStringList shown = add(file).split(" | ");
        if (broken) {
            QCOMPARE(shown.join(" | "), nothing);
            return;
        }
        for (int i = 0; i < 3; ++i) {
            const QString date = told.value(i) == "-" ? QString() : QString::fromLatin1(told.value(i));
            const qint64 position = shown[i].section('@', 1).toLongLong();
            QCOMPARE(shown[i].section('@', 0, 0), date.isEmpty() ? "-" : date);
            QVERIFY(date.isEmpty() || file.mid(position, 19) == date.toLatin1());
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
        QByteArray png = made("early.png", {"convert", "IN", "OUT"});
        const qsizetype at = png.indexOf("eXIf") - 4, length = qsizetype(bigEndian(png, at, 4)) + 12;
        if (at < 0)
            return;
        QTest::newRow("eXIf before IDAT") << png << false;
        QTest::newRow("CRC wrong before the run") << QByteArray(png).replace(at + length - 1, 1, "\x01") << true;
        QTest::newRow("eXIf after IDAT") << png.insert(png.size() - 12, png.mid(at, length)).remove(at, length) << false;
    }

    void pngChecksum()
    {
        QFETCH(QByteArray, file);
        QFETCH(bool, crcWrong);
        if (file.isEmpty())
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
        for (const Patch& p : found.patches)
            QCOMPARE(p.what, "CRC of PNG chunk eXIf");
        for (const std::vector<Patch>& patches : {dates, found.patches})
            for (const Patch& p : patches) {
                QCOMPARE(file.mid(qsizetype(p.position), p.before.size()), p.before);
                file.replace(qsizetype(p.position), p.after.size(), p.after);
            }
        writeBytes(path, file);
        QCOMPARE(exiftool({"-s3", "-ExifIFD:DateTimeOriginal", path}).trimmed(), aim);
        QCOMPARE(exiftool({"-validate", "-warning", "-a", path}), validated);
    }

    // Where XMP packets, IPTC datasets and PNG checksums lie, as exiftool wrote them.
    void copies()
    {
        const QStringList copies{"-XMP-xmp:CreateDate=" + A, "-IPTC:DateCreated=2001:02:03"};
        for (const char* name : {"a.jpg", "a.png"}) {
            const QByteArray bytes = made(name, {"convert", "IN", "OUT"});
            if (bytes.isEmpty())
                QSKIP("the tools are not there");
            QProcess::execute("exiftool", QStringList{"-q", "-overwrite_original"} + copies + QStringList{tmp.filePath(name)});
            const Handle<BinaryStream> s = FolderItem(tmp.filePath(name)).OpenAsBinaryFile(false);
            const ContainerLayout layout = locateContainer(*s);
            QFile f(tmp.filePath(name));
            QVERIFY(f.open(QIODevice::ReadOnly));
            const QByteArray file = f.readAll();
            QCOMPARE(layout.tiff.size(), size_t(1));
            QCOMPARE(file.mid(layout.tiff[0].position, 4), QByteArray("MM\0\x2A", 4));
            QCOMPARE(layout.xmp.size(), size_t(1));
            QVERIFY(file.mid(layout.xmp[0].position, layout.xmp[0].length).contains("2001-02-03T04:05:06"));
            QVERIFY(file.mid(layout.xmp[0].end() - 40, 40).contains("<?xpacket end="));
            if (name == QLatin1String("a.jpg")) {
                QCOMPARE(layout.iptc.size(), size_t(1));
                QVERIFY(file.mid(layout.iptc[0].position, layout.iptc[0].length).contains("\x1C\x02\x37\x00\x08" "20010203"));
            } else {
                QCOMPARE(layout.checksums.size(), size_t(2));
                for (const Checksummed& c : layout.checksums)
                    QCOMPARE(bigEndian(file, qsizetype(c.crcAt), 4), quint64(crc32(file.mid(c.covered.position, c.covered.length))));
            }
        }
    }
};

QTEST_MAIN(TestContainers)
#include "tst_containers.moc"
