// The Exif reader, driven through addFileToTable: what each entry type shows, where the walk
// goes and where it stops. Real files and other containers are tst_containers'; broken files
// are the fuzz target's (fuzz/), which scripts/test runs.
#include <QtTest>

#include "exif/DateCopies.h"
#include "platform/listbox/Listbox.h"
#include "shell/Window1.h"
#include "support/TiffBuilder.h"

namespace {

const bool LE = true, BE = false;
const QByteArray A = "2001:02:03 04:05:06", B = "2002:03:04 05:06:07", C = "2003:04:05 06:07:08";
const char* const nothing = "- | - | - | -";
const double kStored = -1;

QByteArray h(const char* hex) { return QByteArray::fromHex(hex); }
QByteArray cameraFile(bool le) { return camera(le, A, B, C).bytes(); }

// Tag 306 alone in IFD0 of a JPEG, with its four value bytes and the position its cell's tag
// must hold; or, for at = kStored, with value kept elsewhere, where the tag must point.
void only306(const char* name, bool le, int type, qint64 count, const QByteArray& value, const QString& text, double at = 0)
{
    TiffBuilder t(le);
    at == kStored ? t.stored(t.directory(), 306, type, count, value) : t.entry(t.directory(), 306, type, count, value);
    const QByteArray f = TiffBuilder::jpeg(t.bytes());
    QTest::newRow(name) << f << text + '@' + QString::number(at == kStored ? f.indexOf(value) : at, 'g', 17) + " | - | - | -";
}

void orientation(const QByteArray& name, bool le, int type, const QByteArray& value, int turns)
{
    TiffBuilder t(le);
    t.entry(t.directory(), 274, type, 1, value);
    QTest::newRow(name) << t.bytes() << "- | - | - | " + QString::number(turns);
}

// A packet whose top-level description has these attributes and elements.
QByteArray xmp(const QByteArray& attributes, const QByteArray& elements = {})
{
    return "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
           "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description xmlns:xmp='http://ns.adobe.com/xap/1.0/' "
           "xmlns:exif='http://ns.adobe.com/exif/1.0/' " + attributes + ">" + elements
           + "</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end='w'?>";
}
// IPTC datasets of record 2: number, text, number, text...
QByteArray iptc(const QList<QByteArray>& sets)
{
    QByteArray b;
    for (qsizetype i = 0; i + 1 < sets.size(); i += 2)
        b += QByteArray("\x1c\x02") + char(sets[i].toInt()) + char(0) + char(sets[i + 1].size()) + sets[i + 1];
    return b;
}

}  // namespace

class TestExif : public QObject {
    Q_OBJECT
    QTemporaryDir tmp;
    Window1 w;

    QString add(const QByteArray& file) { return listFile(w, tmp.filePath("file"), file); }

private slots:
    void reads_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("seen");

        only306("LONG, big-endian", BE, 4, 1, h("0000002A"), "0000002A");
        only306("LONG, little-endian, same bytes", LE, 4, 1, h("0000002A"), "2A000000");
        only306("SLONG -1 keeps 32 bits", BE, 9, 1, h("FFFFFFFF"), "FFFFFFFF");
        only306("BYTE shows the first of four", BE, 1, 4, h("0A0B0C0D"), "0A");
        only306("SBYTE", LE, 6, 1, h("FE"), "FE");
        only306("UNDEFINED", BE, 7, 4, h("F0010203"), "F0");
        only306("SHORT, first of two, little-endian", LE, 3, 2, h("07000900"), "7");
        only306("SHORT is unsigned", BE, 3, 1, h("FFFE"), "65534");
        only306("SSHORT negative", BE, 8, 1, h("FFFE"), "-2");
        only306("FLOAT as its signed bit pattern", LE, 11, 1, h("000080BF"), "-1082130432");
        only306("type 13: no text", LE, 13, 20, h("08"), "");
        only306("ASCII inline: its bytes as an offset", BE, 2, 3, "ab", "", 0x61620000 + 12);
        only306("ASCII negative offset", BE, 2, 20, h("FFFFFF9C"), "", -88);
        only306("ASCII without NUL loses a character", BE, 2, 5, "ABCDE", "ABCD", kStored);
        only306("ASCII count 255 is read", BE, 2, 255, QByteArray(254, 'x') + '\0', QString(254, 'x'), kStored);
        only306("ASCII count 256 is not", LE, 2, 256, QByteArray(255, 'x') + '\0', "", kStored);
        only306("ASCII negative count", LE, 2, -20, A + '\0', "", kStored);
        only306("RATIONAL: first byte twice, eighth never", BE, 5, 1, h("0102030405060708"), "01 01 02 03 04 05 06 07", kStored);
        only306("SRATIONAL, as stored", LE, 10, 1, h("FFFEFDFC80000001"), "FF FF FE FD FC 80 00 00", kStored);
        only306("DOUBLE, little-endian", LE, 12, 1, h("000000000000F83F"), "1.5", kStored);

        const int codes[] = {0, 0, 0, 2, 2, 3, 1, 1, 3, 0};
        for (int v = 0; v <= 9; ++v)
            orientation("orientation " + QByteArray::number(v), BE, 3, QByteArray(1, '\0') + char(v), codes[v]);
        orientation("orientation 65535", LE, 3, h("FFFF"), 0);
        orientation("orientation LONG 5", BE, 4, h("00000005"), 3);
        orientation("orientation BYTE 8", BE, 1, h("08"), 3);

        QByteArray f = TiffBuilder::jpeg(cameraFile(BE));
        QTest::newRow("camera JPEG, big-endian") << f << seen(f, {A, B, C}, 1);
        QTest::newRow("camera TIFF, little-endian") << (f = cameraFile(LE)) << seen(f, {A, B, C}, 1);
        QTest::newRow("empty file") << QByteArray() << nothing;
        f = QByteArray(250, 'x') + cameraFile(LE);
        QTest::newRow("header at 250, little-endian: offset from the 2 bytes left") << f << seen(f, {A, B, C}, 1);
        QTest::newRow("header at 250, big-endian: offset reads as 0") << QByteArray(250, 'x') + cameraFile(BE) << nothing;
        // Directory 0 at 12: read from the header as one, "II" counts 18761 entries, whose second
        // is directory 0's first.
        TiffBuilder cut(LE);
        cut.ascii(cut.directory(4), 306, A);
        QTest::newRow("header at 252, offset cut: the header as a directory") << (f = QByteArray(252, 'x') + cut.bytes()) << seen(f, {A, {}, {}});
        QTest::newRow("header at 253 is not found") << QByteArray(253, 'x') + cut.bytes() << nothing;
        // The same through an Exif pointer without text; the walk goes on in the header
        // directory, past directory 0's declared count.
        cut.entry(0, 34665, 0, 1, {});
        cut.ascii(0, 36868, C);
        f = cut.bytes();
        f[12] = 2;
        QTest::newRow("Exif pointer without text: the header as a directory") << f << seen(f, {A, {}, C});
        f = cameraFile(LE).left(40) + cameraFile(BE);
        QTest::newRow("MM after II: the big-endian header is read") << f << seen(f, {A, B, C}, 1);
        QTest::newRow("negative first offset") << cameraFile(BE).replace(4, 4, h("FFFFFF9C")) << nothing;
        f = cameraFile(LE).replace(8, 2, h("FFFF"));
        QTest::newRow("count of 65535 in a short file") << f << seen(f, {A, B, C}, 1);
        f = cameraFile(BE);
        f[37] = 9;  // the Exif pointer's type: SLONG
        f.truncate(f.indexOf(C) + 10);
        QTest::newRow("Exif pointer of type SLONG; value cut by the end of the file") << f << seen(f, {A, B, "2003:04:0"}, 1);
        TiffBuilder later = camera(BE, A, B, C);
        later.ascii(1, 306, "in the Exif directory");
        later.ascii(2, 306, "in IFD1");
        QTest::newRow("306 in IFD1 wins over the Exif directory and IFD0") << (f = later.bytes()) << seen(f, {"in IFD1", B, C}, 1);
        later.next(2, 0);
        QTest::newRow("IFD1 leads back to IFD0: pass 101 is IFD0") << (f = later.bytes()) << seen(f, {"in the Exif directory", B, C}, 1);
        TiffBuilder empty(LE);
        empty.next(empty.directory(), 1);
        empty.ascii(empty.directory(), 306, A);
        QTest::newRow("directory of no entries leads on") << (f = empty.bytes()) << seen(f, {A, {}, {}});
        TiffBuilder many(BE);
        many.directory();
        for (int i = 0; i < 65534; ++i)
            many.entry(0, 1, 1, 1, {});
        many.ascii(0, 36868, C);
        QTest::newRow("65535 entries, the date in the last") << (f = many.bytes()) << seen(f, {{}, {}, C});
        // The true Exif directory at 32 (decimal); read as hexadecimal, its digits lead to 0x32
        // = 50, where another directory stands.
        TiffBuilder decoy(BE);
        decoy.entry(decoy.directory(), 34665, 3, 1, h("0020"));
        decoy.entry(decoy.directory(6), 36867, 4, 1, h("00001234"));
        decoy.ascii(decoy.directory(), 36867, B);
        QTest::newRow("Exif pointer of type SHORT: decimal read as hexadecimal") << (f = decoy.bytes()) << seen(f, {{}, B, {}});
        // Exif pointers without number: IFD0, then two deep each pass of a looping chain; 52 in a
        // chain, each pointing to its Exif directory twice but the first.
        TiffBuilder deep(BE);
        deep.ascii(deep.directory(), 36867, A);
        deep.link(0, 34665, deep.directory());
        deep.link(1, 34665, deep.directory());
        deep.ascii(2, 36867, B);
        deep.next(0, 0);
        QTest::newRow("looping chain, two pointers deep a pass") << (f = deep.bytes()) << seen(f, {{}, B, {}});
        TiffBuilder chain(LE);
        for (int d = 0; d < 52; ++d) {
            const int ifd = chain.directory(), exif = chain.directory();
            chain.ascii(exif, 36867, QByteArray("date ") + char('A' + d / 26) + char('a' + d % 26));
            for (int link = d ? 2 : 1; link > 0; --link)
                chain.link(ifd, 34665, exif);
            if (d)
                chain.next(ifd - 2, ifd);
        }
        QTest::newRow("103 pointers in a chain of 52: the last date") << (f = chain.bytes()) << seen(f, {{}, "date Bz", {}});
        // Layouts that take the plain walk exponential time, small; they must read as it reads.
        TiffBuilder self(BE);
        self.link(self.directory(), 34665, 0);
        for (int i = 0; i < 300; ++i)
            self.stored(0, 306, 5, 1, self.number(i, 4) + self.number(1, 4));
        self.next(0, 0);
        QTest::newRow("RATIONAL dates around a pointer to their own directory, chained to it") << self.bytes() << QString();
        TiffBuilder tree(LE);
        tree.directory();
        for (int level = 0; level < 5; ++level) {
            for (int i = 0; i < 5; ++i)
                tree.link(level, 34665, level + 1);
            tree.ascii(tree.directory(), 36868 - level % 2, "level " + QByteArray::number(level));
        }
        QTest::newRow("five pointers to the next level, five levels") << tree.bytes() << QString();
        TiffBuilder all(BE);
        for (int d = 0; d < 5; ++d) {
            all.directory();
            all.ascii(d, 306 + (36867 - 306) * (d % 2), "in " + QByteArray::number(d));
        }
        for (int d = 0; d < 25; ++d)
            all.link(d / 5, 34665, (d * 3) % 5);
        all.next(0, 3);
        QTest::newRow("five directories, each pointing to all") << all.bytes() << QString();
        // Directory 0 at 8 holds the others: a filler's value ends in the count of a directory
        // that starts there, and a pointer leads to the one after the next date, or back to 0.
        TiffBuilder stairs(BE);
        stairs.directory();
        for (int i = 0; i < 30; ++i)
            i % 3 == 0   ? stairs.entry(0, 1, 1, 1, stairs.number(2 + i % 5, 4))
            : i % 3 == 1 ? stairs.entry(0, 34665, 4, 1, stairs.number(i % 7 ? 44 + 12 * i : 8, 4))
                         : stairs.ascii(0, 36868 - i % 2, "step " + QByteArray::number(i));
        QTest::newRow("overlapping directories sharing entries") << stairs.bytes() << QString();
        // More directories than the walk keeps track of one by one: it goes over to the file's
        // bytes in memory while 256 of them are being walked. The last shooting date stands,
        // and the only digitization date, in the fifth, before its pointer; the last directory
        // points to one at the end of the file whose second entry is cut to a tag 306.
        TiffBuilder hundreds(LE);
        for (int d = 0; d < 300; ++d) {
            hundreds.ascii(hundreds.directory(), d % 2 ? 306 : 36867, "deep " + QByteArray::number(d));
            if (d == 4)
                hundreds.ascii(d, 36868, "digitized");
            hundreds.link(d, 34665, (d + 1) % 300);
        }
        hundreds.entry(299, 34665, 4, 1, hundreds.number(quint32(hundreds.bytes().size() + 12), 4));
        f = hundreds.bytes() + hundreds.number(2, 2) + QByteArray(12, '\0') + hundreds.number(306, 2);
        QTest::newRow("a chain of 300 Exif directories") << f << seen(f, {"", "deep 298", "digitized"}).replace("- |", "@0 |");
    }

    // Also against the plain walk, which the last rows leave to say what they show.
    void reads()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, seen);
        const QString plain = readBytes(w, file, true);
        QCOMPARE(add(file), plain);
        if (!seen.isEmpty())
            QCOMPARE(plain, seen);
    }

    // Copies of the shooting and digitization dates, 2019:05:31 23:08:09 moved to 2019:06:02
    // 00:08:09: each moves in its own form where it showed that time to its own precision,
    // and stays, named, where it differs or is no date; the image modification date is not
    // shifted, and nothing else moves.
    void copies_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("moved");
        QTest::addColumn<int>("kept");
        const QByteArray d = "2019-05-31T23:08:09", n = "2019-06-02T00:08:09";
        QTest::newRow("attribute, zone Z") << xmp("xmp:CreateDate='" + d + "Z'") << xmp("xmp:CreateDate='" + n + "Z'") << 0;
        QTest::newRow("element, fraction and offset") << xmp("", "<exif:DateTimeOriginal>" + d + ".25+02:00</exif:DateTimeOriginal>")
                                                      << xmp("", "<exif:DateTimeOriginal>" + n + ".25+02:00</exif:DateTimeOriginal>") << 0;
        QTest::newRow("minutes, a prefix of its own") << xmp("xmlns:e='http://ns.adobe.com/exif/1.0/' e:DateTimeDigitized=\"2019-05-31T23:08-07:00\"")
                                                      << xmp("xmlns:e='http://ns.adobe.com/exif/1.0/' e:DateTimeDigitized=\"2019-06-02T00:08-07:00\"") << 0;
        QTest::newRow("day, month") << xmp("xmlns:photoshop='http://ns.adobe.com/photoshop/1.0/' photoshop:DateCreated='2019-05-31'", "<xmp:CreateDate>2019-05</xmp:CreateDate>")
                                    << xmp("xmlns:photoshop='http://ns.adobe.com/photoshop/1.0/' photoshop:DateCreated='2019-06-02'", "<xmp:CreateDate>2019-06</xmp:CreateDate>") << 0;
        QTest::newRow("differs, no date") << xmp("xmp:CreateDate='2019-05-31T23:08:10'", "<exif:DateTimeOriginal>2019-13-45T99:00</exif:DateTimeOriginal>") << QByteArray() << 2;
        QTest::newRow("not shifted, never moved, other namespace")
            << xmp("xmp:ModifyDate='" + d + "' xmp:MetadataDate='" + d + "' xmlns:o='http://example.com/' o:CreateDate='" + d + "'",
                   "<xmpMM:History xmlns:xmpMM='http://ns.adobe.com/xap/1.0/mm/'><rdf:Seq><rdf:li><xmp:CreateDate>" + d + "</xmp:CreateDate></rdf:li></rdf:Seq></xmpMM:History>")
            << QByteArray() << 0;
        QTest::newRow("not well formed") << xmp("xmp:CreateDate='" + d + "'", "<exif:DateTimeOriginal>") << QByteArray() << 1;
        QTest::newRow("bad UTF-8") << xmp("xmp:CreateDate='" + d + "'", "\xff") << QByteArray() << 1;
        QTest::newRow("IPTC date and time") << iptc({"55", "20190531", "60", "230809+0200"}) << iptc({"55", "20190602", "60", "000809+0200"}) << 0;
        QTest::newRow("IPTC day alone") << iptc({"62", "20190531", "25", "x"}) << iptc({"62", "20190602", "25", "x"}) << 0;
        QTest::newRow("IPTC time differs") << iptc({"55", "20190531", "60", "230810+0000"}) << QByteArray() << 1;
        QTest::newRow("IPTC empty dates") << iptc({"55", "", "60", ""}) << QByteArray() << 0;
    }
    void copies()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, moved);
        QFETCH(int, kept);
        const std::vector<Shift> shifts{{4, "2019:05:31 23:08:09", "2019:06:02 00:08:09"}, {5, "2019:05:31 23:08:09", "2019:06:02 00:08:09"}};
        CopyFindings found;
        (bytes.startsWith('<') ? moveXmpCopies : moveIptcCopies)(bytes, 7, shifts, "f", found);
        QByteArray after = bytes;
        for (const CopyEdit& e : found.edits)
            after.replace(qsizetype(e.position) - 7, e.after.size(), e.after);
        QCOMPARE(after, moved.isEmpty() ? bytes : moved);
        QCOMPARE(found.kept.size(), kept);
    }
};

QTEST_MAIN(TestExif)
#include "tst_exif.moc"
