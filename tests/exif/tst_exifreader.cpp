// The reader, driven through addFileToTable on files written by TiffBuilder: what each
// entry type shows, where the walk goes and where it stops, and where it finds the header.
#include <QtTest>

#include "platform/FolderItem.h"
#include "platform/Listbox.h"
#include "shell/Window1.h"
#include "support/RowView.h"
#include "support/TiffBuilder.h"

#include <memory>

namespace {

const bool LE = true, BE = false;
const QByteArray A = "2001:02:03 04:05:06", B = "2002:03:04 05:06:07", C = "2003:04:05 06:07:08";

QByteArray bytes(std::initializer_list<int> list)
{
    QByteArray out;
    for (int b : list)
        out += char(b);
    return out;
}

// A SHORT in the four value bytes: it stands in the first two, in the file's byte order.
quint32 inShort(bool le, quint32 v) { return le ? v : v << 16; }

// The layout a camera writes: IFD0 with the orientation, 306 and the Exif pointer; the Exif
// directory with the two other dates; IFD1, the thumbnail's, after IFD0.
TiffBuilder camera(bool le)
{
    TiffBuilder t(le);
    const int ifd0 = t.directory(), exif = t.directory(), ifd1 = t.directory();
    t.entry(ifd0, 274, 3, 1, inShort(le, 6));
    t.ascii(ifd0, 306, A);
    t.link(ifd0, 34665, exif);
    t.next(ifd0, ifd1);
    t.ascii(exif, 36867, B);
    t.ascii(exif, 36868, C);
    t.entry(ifd1, 259, 3, 1, inShort(le, 6));
    return t;
}

QByteArray date(int n) { return QStringLiteral("2000:01:01 00:%1:%2").arg(n / 60, 2, 10, QChar('0')).arg(n % 60, 2, 10, QChar('0')).toLatin1(); }

}  // namespace

class TestExifReader : public QObject {
    Q_OBJECT
    QTemporaryDir tmp;
    std::unique_ptr<Window1> w;
    int made = 0;

    // The file's row, added as the last.
    int add(const QByteArray& content)
    {
        const QString path = tmp.filePath(QStringLiteral("file%1").arg(made++));
        if (!writeBytes(path, content))
            qFatal("cannot write %s", qPrintable(path));
        w->addFileToTable(FolderItem(path));
        return w->ListBox1->ListCount() - 1;
    }

private slots:
    void initTestCase() { w = std::make_unique<Window1>(); }

    void decoding_data()
    {
        QTest::addColumn<bool>("le");
        QTest::addColumn<int>("type");
        QTest::addColumn<qint64>("count");
        QTest::addColumn<QByteArray>("value");  // the four value bytes, when no data
        QTest::addColumn<QByteArray>("data");   // kept elsewhere; the entry holds its offset
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("position");   // of the data when there is data

        const QByteArray none;
        QTest::newRow("LONG big-endian") << BE << 4 << 1LL << bytes({0, 0, 0, 0x2A}) << none << "0000002A" << 0.0;
        QTest::newRow("LONG little-endian, same bytes") << LE << 4 << 1LL << bytes({0, 0, 0, 0x2A}) << none << "2A000000" << 0.0;
        QTest::newRow("SLONG -1 keeps 32 bits") << BE << 9 << 1LL << bytes({0xFF, 0xFF, 0xFF, 0xFF}) << none << "FFFFFFFF" << 0.0;
        QTest::newRow("LONG zero") << BE << 4 << 1LL << bytes({0, 0, 0, 0}) << none << "00000000" << 0.0;
        QTest::newRow("BYTE zero") << BE << 1 << 1LL << bytes({0, 0, 0, 0}) << none << "00" << 0.0;
        QTest::newRow("BYTE shows the first of four") << BE << 1 << 4LL << bytes({0x0A, 0xB, 0xC, 0xD}) << none << "0A" << 0.0;
        QTest::newRow("SBYTE") << LE << 6 << 1LL << bytes({0xFE, 0, 0, 0}) << none << "FE" << 0.0;
        QTest::newRow("UNDEFINED") << BE << 7 << 4LL << bytes({0xF0, 1, 2, 3}) << none << "F0" << 0.0;
        QTest::newRow("SHORT, first of two, big-endian") << BE << 3 << 2LL << bytes({0, 7, 0, 9}) << none << "7" << 0.0;
        QTest::newRow("SHORT, first of two, little-endian") << LE << 3 << 2LL << bytes({7, 0, 9, 0}) << none << "7" << 0.0;
        QTest::newRow("SHORT is unsigned") << BE << 3 << 1LL << bytes({0xFF, 0xFE, 0, 0}) << none << "65534" << 0.0;
        QTest::newRow("SSHORT negative") << BE << 8 << 1LL << bytes({0xFF, 0xFE, 0, 0}) << none << "-2" << 0.0;
        QTest::newRow("FLOAT as its bit pattern") << BE << 11 << 1LL << bytes({0x3F, 0x80, 0, 0}) << none << "1065353216" << 0.0;
        QTest::newRow("FLOAT negative bit pattern") << LE << 11 << 1LL << bytes({0, 0, 0x80, 0xBF}) << none << "-1082130432" << 0.0;
        QTest::newRow("unknown type 0") << BE << 0 << 20LL << bytes({0, 0, 0, 8}) << none << "" << 0.0;
        QTest::newRow("unknown type 13") << LE << 13 << 20LL << bytes({8, 0, 0, 0}) << none << "" << 0.0;
        QTest::newRow("negative type") << BE << -2 << 20LL << bytes({0, 0, 0, 8}) << none << "" << 0.0;

        QTest::newRow("ASCII date") << BE << 2 << 20LL << none << A + '\0' << QString(A) << 0.0;
        QTest::newRow("ASCII date, little-endian") << LE << 2 << 20LL << none << A + '\0' << QString(A) << 0.0;
        QTest::newRow("ASCII count 1 drops its one byte") << BE << 2 << 1LL << none << QByteArray("X") << "" << 0.0;
        QTest::newRow("ASCII without NUL loses a character") << BE << 2 << 5LL << none << QByteArray("ABCDE") << "ABCD" << 0.0;
        QTest::newRow("ASCII count 255 is read") << BE << 2 << 255LL << none << QByteArray(254, 'x') + '\0' << QString(254, 'x') << 0.0;
        QTest::newRow("ASCII count 256 is not") << LE << 2 << 256LL << none << QByteArray(255, 'x') + '\0' << "" << 0.0;
        QTest::newRow("ASCII count 0") << BE << 2 << 0LL << none << A + '\0' << "" << 0.0;
        QTest::newRow("ASCII negative count") << LE << 2 << -20LL << none << A + '\0' << "" << 0.0;
        QTest::newRow("ASCII inline, big-endian: its bytes as an offset") << BE << 2 << 3LL << QByteArray("ab\0\0", 4) << none << "" << double(0x61620000 + 12);
        QTest::newRow("ASCII inline, little-endian: its bytes as an offset") << LE << 2 << 3LL << QByteArray("ab\0\0", 4) << none << "" << double(0x6261 + 12);
        QTest::newRow("ASCII offset past the end") << BE << 2 << 20LL << bytes({0x7F, 0xFF, 0xFF, 0xF0}) << none << "" << double(0x7FFFFFF0 + 12);
        QTest::newRow("ASCII negative offset") << BE << 2 << 20LL << bytes({0xFF, 0xFF, 0xFF, 0x9C}) << none << "" << -88.0;
        QTest::newRow("RATIONAL: first byte twice, eighth never") << BE << 5 << 1LL << none << bytes({1, 2, 3, 4, 5, 6, 7, 8}) << "01 01 02 03 04 05 06 07" << 0.0;
        QTest::newRow("SRATIONAL, as stored") << LE << 10 << 1LL << none << bytes({0xFF, 0xFE, 0xFD, 0xFC, 0x80, 0, 0, 1}) << "FF FF FE FD FC 80 00 00" << 0.0;
        QTest::newRow("DOUBLE big-endian") << BE << 12 << 1LL << none << bytes({0x3F, 0xF8, 0, 0, 0, 0, 0, 0}) << "1.5" << 0.0;
        QTest::newRow("DOUBLE little-endian") << LE << 12 << 1LL << none << bytes({0, 0, 0, 0, 0, 0, 0xF8, 0x3F}) << "1.5" << 0.0;
    }

    // Tag 306 of each type in IFD0 of a JPEG: the cell shows the entry's text, and the tag
    // holds the value's absolute position for the types that keep an offset, else 0.0.
    void decoding()
    {
        QFETCH(bool, le);
        QFETCH(int, type);
        QFETCH(qint64, count);
        QFETCH(QByteArray, value);
        QFETCH(QByteArray, data);
        QFETCH(QString, text);
        QFETCH(double, position);

        TiffBuilder t(le);
        const int ifd0 = t.directory();
        const int handle = data.isEmpty() ? -1 : t.entryData(ifd0, 306, type, count, data);
        if (data.isEmpty())
            t.entryBytes(ifd0, 306, type, count, value);
        if (handle >= 0)
            position = TiffBuilder::kJpegTiffStart + t.valueOffset(handle);
        const int row = add(TiffBuilder::jpeg(t.bytes()));
        QCOMPARE(exifView(*w, row), view(textAt(text, position), noDate(), noDate()));
    }

    void walk_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("seen");

        for (bool le : {BE, LE}) {
            const QByteArray jpeg = TiffBuilder::jpeg(camera(le).bytes()), tiff = camera(le).bytes();
            const char* order = le ? "little-endian" : "big-endian";
            QTest::addRow("camera JPEG, %s", order) << jpeg << view(dateAt(jpeg, A), dateAt(jpeg, B), dateAt(jpeg, C), 1);
            QTest::addRow("camera TIFF, %s", order) << tiff << view(dateAt(tiff, A), dateAt(tiff, B), dateAt(tiff, C), 1);
        }
        QTest::newRow("empty file") << QByteArray() << view(noDate(), noDate(), noDate());
        QTest::newRow("file of 3 bytes") << QByteArray("II*") << view(noDate(), noDate(), noDate());
        {
            const QByteArray f = QByteArray(250, 'x') + camera(LE).bytes();
            QTest::newRow("signature at 250, little-endian: offset from the 2 bytes left") << f << view(dateAt(f, A), dateAt(f, B), dateAt(f, C), 1);
            QTest::newRow("signature at 250, big-endian: offset reads as 0") << QByteArray(250, 'x') + camera(BE).bytes() << view(noDate(), noDate(), noDate());
            QTest::newRow("signature at 253 is not found") << QByteArray(253, 'x') + camera(LE).bytes() << view(noDate(), noDate(), noDate());
        }
        {
            const QByteArray f = camera(LE).bytes().left(40) + camera(BE).bytes();
            QTest::newRow("MM after II: the big-endian header is read") << f << view(dateAt(f, A), dateAt(f, B), dateAt(f, C), 1);
        }
        {
            QByteArray app0("\xFF\xD8\xFF\xE0\x01\x2E", 6);
            app0 += QByteArray(300, 'j');
            QTest::newRow("JPEG with a long segment before Exif") << app0 + TiffBuilder::jpeg(camera(BE).bytes()).mid(2) << view(noDate(), noDate(), noDate());
        }
        {
            TiffBuilder t = camera(BE);
            t.firstOffset(-100);
            QTest::newRow("negative first offset") << TiffBuilder::jpeg(t.bytes()) << view(noDate(), noDate(), noDate());
        }
        {
            TiffBuilder t(LE);
            const int empty = t.directory(), ifd1 = t.directory();
            t.next(empty, ifd1);
            t.ascii(ifd1, 306, A);
            const QByteArray f = t.bytes();
            QTest::newRow("directory of no entries leads on") << f << view(dateAt(f, A), noDate(), noDate());
        }
        {
            TiffBuilder t(BE);
            const int ifd0 = t.directory();
            for (int i = 0; i < 65534; ++i)
                t.entry(ifd0, 1, 1, 1, 0);
            t.ascii(ifd0, 36868, C);
            const QByteArray f = t.bytes();
            QTest::newRow("65535 entries, the date in the last") << f << view(noDate(), noDate(), dateAt(f, C));
        }
        {
            TiffBuilder t(LE);
            const int ifd0 = t.directory();
            t.ascii(ifd0, 306, A);
            t.ascii(ifd0, 36867, B);
            t.declareCount(ifd0, 65535);
            const QByteArray f = t.bytes();
            QTest::newRow("count of 65535 in a short file") << f << view(dateAt(f, A), dateAt(f, B), noDate());
        }
        {
            TiffBuilder t(BE);
            const int ifd0 = t.directory(), exif = t.directory(), ifd1 = t.directory();
            t.ascii(ifd0, 306, A);
            t.link(ifd0, 34665, exif);
            t.next(ifd0, ifd1);
            t.ascii(exif, 306, B);
            const QByteArray exifOnly = t.bytes();
            QTest::newRow("306 in the Exif directory wins over IFD0") << exifOnly << view(dateAt(exifOnly, B), noDate(), noDate());
            t.ascii(ifd1, 306, C);
            const QByteArray f = t.bytes();
            QTest::newRow("306 in IFD1 wins over both") << f << view(dateAt(f, C), noDate(), noDate());
            t.entry(ifd1, 306, 3, 1, 0x00070000);
            QTest::newRow("a later 306 of type SHORT leaves position 0") << t.bytes() << view(textAt("7", 0), noDate(), noDate());
        }
        {
            TiffBuilder t(BE);
            const int ifd0 = t.directory(), exif = t.directory();
            t.link(ifd0, 34665, exif, 9);
            t.ascii(exif, 36867, B);
            t.ascii(exif, 306, A);  // cut short below
            const QByteArray f = t.bytes();
            const qint64 cut = f.indexOf(A) + 10;
            QTest::newRow("Exif pointer of type SLONG; value cut by the end of the file")
                << f.left(cut) << view(textAt("2001:02:0", double(cut - 10)), dateAt(f, B), noDate());
        }
        {
            // The true Exif directory at 32 (decimal); its digits read as hexadecimal lead
            // to 0x32 = 50, where another directory stands.
            TiffBuilder t(BE);
            const int ifd0 = t.directory(), exif = t.directory(), decoy = t.directory();
            t.link(ifd0, 34665, exif, 3);
            t.gapBefore(exif, 6);
            t.entry(exif, 36867, 4, 1, 0x1234);
            t.ascii(decoy, 36867, B);
            const QByteArray f = t.bytes();
            if (t.directoryOffset(exif) != 32 || t.directoryOffset(decoy) != 50)
                qFatal("layout of the SHORT pointer case moved");
            QTest::newRow("Exif pointer of type SHORT: decimal read as hexadecimal") << f << view(noDate(), dateAt(f, B), noDate());
        }
        {
            // IFD0 at 12 lists two of its three records; read as a directory, the header's
            // "II" counts 18761 entries, whose second to fourth are IFD0's three records.
            TiffBuilder t(LE);
            const int ifd0 = t.directory();
            t.gapBefore(ifd0, 4);
            t.ascii(ifd0, 306, A);
            t.entry(ifd0, 34665, 0, 1, 0);
            t.ascii(ifd0, 36868, C);
            t.declareCount(ifd0, 2);
            const QByteArray f = t.bytes();
            QTest::newRow("Exif pointer without text: the header as a directory") << f << view(dateAt(f, A), noDate(), dateAt(f, C));
        }
        {
            TiffBuilder t(LE);
            const int ifd0 = t.directory(), exif = t.directory();
            t.link(ifd0, 34665, exif);
            t.ascii(exif, 36867, B);
            t.link(exif, 34665, exif);
            const QByteArray f = t.bytes();
            QTest::newRow("Exif directory that points to itself") << f << view(noDate(), dateAt(f, B), noDate());
        }
        {
            TiffBuilder t(BE);
            int dir = t.directory();
            for (int n = 1; n <= 103; ++n) {
                const int inner = t.directory();
                t.link(dir, 34665, inner);
                t.ascii(inner, 36867, date(n));
                dir = inner;
            }
            const QByteArray f = t.bytes();
            QTest::newRow("nested Exif pointers: 101 are followed") << f << view(noDate(), dateAt(f, date(101)), noDate());
        }
        {
            TiffBuilder t(LE);
            for (int n = 0; n < 102; ++n) {
                t.ascii(t.directory(), 306, date(n));
                if (n > 0)
                    t.next(n - 1, n);
            }
            const QByteArray f = t.bytes();
            QTest::newRow("chain of 102 directories: 101 passes") << f << view(dateAt(f, date(100)), noDate(), noDate());
        }
        {
            TiffBuilder t(BE);
            const int ifd0 = t.directory(), ifd1 = t.directory();
            t.ascii(ifd0, 306, A);
            t.next(ifd0, ifd1);
            t.ascii(ifd1, 306, B);
            t.next(ifd1, ifd0);
            const QByteArray f = t.bytes();
            QTest::newRow("two directories in a loop: pass 101 is the first") << f << view(dateAt(f, A), noDate(), noDate());
            t.nextOffset(ifd1, -1000);
            QTest::newRow("negative next offset ends the chain") << t.bytes() << view(dateAt(f, B), noDate(), noDate());
        }
    }

    void walk()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, seen);
        const int rows = w->ListBox1->ListCount();
        const int row = add(file);
        QCOMPARE(row, rows);
        QCOMPARE(exifView(*w, row), seen);
    }

    void orientation_data()
    {
        QTest::addColumn<bool>("le");
        QTest::addColumn<int>("type");  // -1: no tag 274
        QTest::addColumn<quint32>("value");
        QTest::addColumn<int>("code");  // -1: no tag

        const int codes[] = {0, 0, 0, 2, 2, 3, 1, 1, 3, 0};
        for (quint32 v = 0; v <= 9; ++v)
            QTest::addRow("value %u", v) << BE << 3 << inShort(BE, v) << codes[v];
        QTest::newRow("value 6, little-endian") << LE << 3 << inShort(LE, 6) << 1;
        QTest::newRow("value 65535") << LE << 3 << 0xFFFFu << 0;
        QTest::newRow("LONG 5: hexadecimal digits read as decimal") << BE << 4 << 5u << 3;
        QTest::newRow("LONG 0x10 reads as 10") << LE << 4 << 0x10u << 0;
        QTest::newRow("BYTE 8") << BE << 1 << 0x08000000u << 3;
        QTest::newRow("no tag 274") << BE << -1 << 0u << -1;
    }

    // The code in the tag of column 6, and never a date in the row.
    void orientation()
    {
        QFETCH(bool, le);
        QFETCH(int, type);
        QFETCH(quint32, value);
        QFETCH(int, code);
        TiffBuilder t(le);
        const int ifd0 = t.directory();
        if (type >= 0)
            t.entry(ifd0, 274, type, 1, value);
        t.entry(ifd0, 259, 3, 1, inShort(le, 6));
        const int row = add(t.bytes());
        QCOMPARE(exifView(*w, row), view(noDate(), noDate(), noDate(), code));
        QCOMPARE(w->ListBox1->CellTagAt(row, 6), qint64(qMax(code, 0)));
    }

    void headerSearch_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<bool>("leBefore");
        QTest::addColumn<double>("tiffOfs");
        QTest::addColumn<bool>("le");

        QTest::newRow("big-endian at 0") << camera(BE).bytes() << LE << 0.0 << BE;
        QTest::newRow("little-endian at 0") << camera(LE).bytes() << BE << 0.0 << LE;
        QTest::newRow("in a JPEG") << TiffBuilder::jpeg(camera(LE).bytes()) << BE << 12.0 << LE;
        QTest::newRow("MM at 40 wins over II at 0") << camera(LE).bytes().left(40) + camera(BE).bytes() << LE << 40.0 << BE;
        QTest::newRow("at 252, the last place that holds it") << QByteArray(252, 0) + camera(LE).bytes() << BE << 252.0 << LE;
        QTest::newRow("at 253: none, byte order kept") << QByteArray(253, 0) + camera(BE).bytes() << LE << -1.0 << LE;
        QTest::newRow("MM at 253 does not hide II at 9") << QByteArray(9, 0) + camera(LE).bytes().left(100) + QByteArray(144, 0) + QByteArray("MM\0*", 4) << BE << 9.0 << LE;
        TiffBuilder t = camera(BE);
        t.firstOffset(-100);
        QTest::newRow("negative first offset: header taken all the same") << TiffBuilder::jpeg(t.bytes()) << LE << 12.0 << BE;
    }

    void headerSearch()
    {
        QFETCH(QByteArray, file);
        QFETCH(bool, leBefore);
        QFETCH(double, tiffOfs);
        QFETCH(bool, le);
        w->isLittleEndian = leBefore;
        add(file);
        QCOMPARE(w->TiffOfs, tiffOfs);
        QCOMPARE(w->isLittleEndian, le);
    }
};

QTEST_MAIN(TestExifReader)
#include "tst_exifreader.moc"
