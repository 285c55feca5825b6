// Movies: the movie header's dates in the row, from box layouts built here (broken ones
// among them), videos made by ffmpeg and real samples; then runs on copies of the videos,
// with exiftool as the oracle for what they hold before and after.
#include <QtTest>

#include <QLineEdit>
#include <QProcess>
#include <QPushButton>

#include <time.h>

#include "exif/Movie.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/MsgBox.h"
#include "shell/Window1.h"
#include "support/TiffBuilder.h"

namespace {

QByteArray be(quint64 v, int width) { return movieBytes(v, width); }
QByteArray box(const char* type, const QByteArray& body) { return be(quint64(8 + body.size()), 4) + type + body; }
QByteArray box64(const char* type, const QByteArray& body, quint64 size) { return be(1, 4) + type + be(size, 8) + body; }
// A header of the version with its two times and the rest of its length in zeros.
QByteArray header(const char* type, int version, quint64 creation, quint64 modification, int length)
{
    const int width = version ? 8 : 4;
    return box(type, (be(quint64(version) << 24, 4) + be(creation, width) + be(modification, width)).leftJustified(length, '\0'));
}
QByteArray mvhd(int version, quint64 c, quint64 m) { return header("mvhd", version, c, m, version ? 112 : 100); }
const QByteArray kFtyp = box("ftyp", "isom" + be(512, 4) + "isommp41");
const QByteArray kMdat = box("mdat", QByteArray(64, char(0xEE)));
// 2021-06-15 10:20:30 UTC and 2022-01-02 03:04:05 UTC as movie times.
constexpr quint64 kJune = 1623752430 + kMovieEpoch, kJanuary = 1641092645 + kMovieEpoch;
const QString kJuneHere = "2021:06:15 12:20:30", kJanuaryHere = "2022:01:02 04:04:05";  // in Europe/Berlin

// Columns 3 to 5, "-" for the marker.
QString view(const Window1& w)
{
    QStringList out;
    for (int column = 3; column <= 5; ++column)
        out << (w.ListBox1->Cell(0, column) == kNoExif ? QString("-") : w.ListBox1->Cell(0, column));
    return out.join(" | ");
}
const QString kMarkers = "- | - | -";

QStringList exiftool(const QStringList& args)
{
    QProcess p;
    p.start("exiftool", args);
    p.waitForFinished(60000);
    return QString::fromUtf8(p.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}
QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

}  // namespace

class TestMovie : public QObject {
    Q_OBJECT
    QTemporaryDir tmp;
    std::unique_ptr<Window1> w;
    QStringList made;  // videos made by ffmpeg, one built with version 1 headers, samples

    QString add(const QString& path)
    {
        w->clearTables();
        w->addFileToTable(FolderItem(path));
        return view(*w);
    }

private slots:
    void initTestCase()
    {
        qputenv("TZ", "Europe/Berlin");  // summer time in June, not in January
        tzset();
        w = std::make_unique<Window1>();
        if (QStandardPaths::findExecutable("ffmpeg").isEmpty() || QStandardPaths::findExecutable("exiftool").isEmpty())
            return;
        const QString june = " -metadata creation_time=2021-06-15T10:20:30Z";
        for (const QString& v : QStringList{"end.mp4" + june, "start.mp4 -movflags +faststart" + june, "day.mp4 -metadata date=2021-06-15T12:20:30+0200" + june,
                                 "winter.mov -metadata creation_time=2020-01-31T23:30:00Z -metadata date=2020-01-31T23:30:00Z",
                                 "apple.mov -movflags use_metadata_tags -metadata com.apple.quicktime.creationdate=2021-06-15T12:20:30+0200" + june,
                                 QString("none.3gp -c:v h263 -s 128x96")}) {
            made << tmp.filePath(v.section(' ', 0, 0));
            const QString lavfi = "-v error -y -f lavfi -i color=c=blue:s=16x16:d=0.1 -c:v mpeg4 ";
            QCOMPARE(QProcess::execute("ffmpeg", (lavfi + v.section(' ', 1)).split(' ') << made.last()), 0);
        }
        // An XMP copy of the shooting time, as the cell shows it in local time.
        made << tmp.filePath("xmp.mp4");
        QCOMPARE(QProcess::execute("exiftool", {"-q", "-o", made.last(), "-XMP-exif:DateTimeOriginal=2021:06:15 12:20:30", made.first()}), 0);
        const QByteArray trak = box("trak", header("tkhd", 1, kJune, kJune, 96) + box("mdia", header("mdhd", 1, kJune, kJune, 36)));
        QVERIFY(writeBytes(made.emplaceBack(tmp.filePath("v1.mov")), box("ftyp", "qt  " + be(0, 4)) + box("moov", mvhd(1, kJune, kJune) + trak) + kMdat));
        for (const QString sample : {"ftyp3gp5.mp4", "sample_640x360.mov"})
            if (QFile::exists(QStringLiteral(VELKARO_SAMPLES "/") + sample))
                made << QStringLiteral(VELKARO_SAMPLES "/") + sample;
    }

    void builtLayouts_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("seen");
        QTest::newRow("ftyp, mdat, moov at the end") << kFtyp + kMdat + box("moov", mvhd(0, kJune, kJanuary)) << kJanuaryHere + " | " + kJuneHere + " | -";
        QTest::newRow("moov first, version 1") << box("moov", mvhd(1, kJune, kJanuary)) + kMdat << kJanuaryHere + " | " + kJuneHere + " | -";
        QTest::newRow("version 1 after 2040") << kFtyp + box("moov", mvhd(1, 1ull << 32, kJune)) << kJuneHere + " | 2040:02:06 07:28:16 | -";
        QTest::newRow("wide, 64-bit mdat, moov of size 0") << box("wide", {}) + box64("mdat", "data", 20) + be(0, 4) + "moov" + mvhd(0, kJune, 0) << "- | " + kJuneHere + " | -";
        QTest::newRow("free first, udta before mvhd") << box("free", "x") + box("moov", box("udta", "abcd") + mvhd(0, kJune, kJune)) << kJuneHere + " | " + kJuneHere + " | -";
        QTest::newRow("zero times") << kFtyp + box("moov", mvhd(0, 0, 0)) << kMarkers;
        QTest::newRow("a time beyond the year 9999") << kFtyp + box("moov", mvhd(1, ~0ull, 0)) << kMarkers;
        QTest::newRow("HEIF brand: no movie") << box("ftyp", "heic" + be(0, 4)) + box("moov", mvhd(0, kJune, kJune)) << kMarkers;
        QTest::newRow("box size below 8 before moov") << kFtyp + be(7, 4) + "free" + box("moov", mvhd(0, kJune, kJune)) << kMarkers;
        QTest::newRow("64-bit size beyond the file") << kFtyp + box64("mdat", "x", 1ull << 40) + box("moov", mvhd(0, kJune, kJune)) << kMarkers;
        QTest::newRow("no moov") << kFtyp + kMdat << kMarkers;
        QTest::newRow("moov cut") << kFtyp + box("moov", mvhd(0, kJune, kJune) + QByteArray(40, 0)).chopped(20) << kMarkers;
        QTest::newRow("mvhd cut") << kFtyp + box("moov", mvhd(0, kJune, kJune).chopped(1)) << kMarkers;
        QTest::newRow("mvhd short for version 1") << kFtyp + box("moov", header("mvhd", 1, kJune, kJune, 100)) << kMarkers;
        QTest::newRow("mvhd version 2") << kFtyp + box("moov", mvhd(0, kJune, kJune).replace(8, 1, "\2")) << kMarkers;
        QTest::newRow("ftyp then garbage") << kFtyp + QByteArray(300, char(0xFF)) << kMarkers;
    }

    void builtLayouts()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, seen);
        QVERIFY(writeBytes(tmp.filePath("built.mov"), file));
        QCOMPARE(add(tmp.filePath("built.mov")), seen);
    }

    // A run of one day and one hour from the shooting date on a copy. Listed, the copy shows
    // what exiftool reads in local time; after the run, exiftool finds every date of the
    // movie moved by exactly that and every other tag as it was, and the bytes that changed
    // are header times and digits of texts. A date the field cannot hold stops the run.
    void runs_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("years");
        QTest::addColumn<QString>("failure");
        if (made.isEmpty())
            QSKIP("ffmpeg and exiftool are needed");
        for (const QString& path : made)
            QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path << "0" << "";
        QTest::newRow("beyond 2040 in 4 bytes") << made.first() << "30" << "does not fit";
        QTest::newRow("before 1904") << tmp.filePath("v1.mov") << "-200" << "does not fit";
    }

    void runs()
    {
        QFETCH(QString, path);
        QFETCH(QString, years);
        QFETCH(QString, failure);
        const QString copy = tmp.filePath("copy");
        QVERIFY((!QFile::exists(copy) || QFile::remove(copy)) && QFile::copy(path, copy) && QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner));
        const QByteArray was = readAll(copy);
        const QStringList before = exiftool({"-a", "-G1", "-s", copy}).filter(QRegularExpression("^(?!\\[System\\])"));
        // A zero time reads as 1904-01-01 00:00 UTC there, in local time.
        const QStringList local = exiftool({"-api", "QuickTimeUTC", "-s3", "-d", "%Y:%m:%d %H:%M:%S", "-QuickTime:ModifyDate", "-QuickTime:CreateDate", copy})
                                      .replaceInStrings(QRegularExpression("^1904:01:01.*"), "-");
        QCOMPARE(add(copy), local.join(" | ") + " | -");
        QStringList failures;
        setMsgBoxAnswer([](const QString&, int, const QString&, const QString&) { return 1; });
        setFailureReport([&](const QString&, const QString& reason) { failures << reason; });
        w->baseChoice = 4;
        for (const auto& [field, value] : {std::pair{0, years}, {2, QString("1")}, {3, QString("1")}})
            w->AddValue(field)->setText(value);
        w->AimValue(0)->setText("x");
        w->ExecuteBtn->click();
        const QByteArray now = readAll(copy);
        QCOMPARE(failures.join("").contains(failure), true);
        QVERIFY(failure.isEmpty() || now == was);
        QStringList expected = before;
        static const QRegularExpression date(": (\\d{4}:\\d\\d:\\d\\d \\d\\d:\\d\\d:\\d\\d)");
        for (QString& line : expected)
            if (const auto m = date.match(line); m.hasMatch() && !m.captured(1).startsWith("0000") && failure.isEmpty())
                line.replace(m.capturedStart(1), 19, QDateTime::fromString(m.captured(1) + "Z", "yyyy:MM:dd HH:mm:sst").addSecs(25 * 3600).toUTC().toString("yyyy:MM:dd HH:mm:ss"));
        QCOMPARE(exiftool({"-a", "-G1", "-s", copy}).filter(QRegularExpression("^(?!\\[System\\])")), expected);
        // Header times lie 12 bytes into mvhd, tkhd and mdhd: two fields of 4 or 8 bytes.
        QCOMPARE(now.size(), was.size());
        for (qsizetype i = 0; i < was.size(); ++i) {
            if (was[i] == now[i])
                continue;
            bool inTimes = std::isdigit(uchar(was[i])) && std::isdigit(uchar(now[i]));
            for (const char* type : {"mvhd", "tkhd", "mdhd"})
                for (qsizetype at = was.lastIndexOf(type, i - 8); at >= 0 && at > i - 28 && !inTimes; at = was.lastIndexOf(type, at - 1))
                    inTimes = i >= at + 8 && i < at + (was[at + 4] ? 28 : 20);
            QVERIFY2(inTimes, qPrintable(QString("byte %1").arg(i)));
        }
    }
};

QTEST_MAIN(TestMovie)
#include "tst_movie.moc"
