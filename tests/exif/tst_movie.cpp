// Movies: the dates of the movie header in the row, from videos made by ffmpeg, real samples
// and box layouts built here, broken ones among them; exiftool is the oracle for real files.
#include <QtTest>

#include <QLineEdit>
#include <QProcess>
#include <QPushButton>

#include <time.h>

#include "exif/Movie.h"
#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/MsgBox.h"
#include "shell/Window1.h"
#include "support/TiffBuilder.h"

namespace {

QByteArray be(quint64 v, int width) { return movieBytes(v, width); }
QByteArray box(const char* type, const QByteArray& body) { return be(quint64(8 + body.size()), 4) + type + body; }
// A 64-bit size: 1, the type, then the whole size.
QByteArray box64(const char* type, const QByteArray& body, quint64 size = 0)
{
    return be(1, 4) + type + be(size ? size : quint64(16 + body.size()), 8) + body;
}
// A movie header of the version with the two times; cut to `length` bytes of body if given.
QByteArray mvhd(int version, quint64 creation, quint64 modification, int length = -1)
{
    const int width = version ? 8 : 4;
    QByteArray body = be(quint64(version) << 24, 4) + be(creation, width) + be(modification, width);
    body = body.leftJustified(version ? 112 : 100, '\0');
    return box("mvhd", length < 0 ? body : body.left(length));
}
const QByteArray kFtyp = box("ftyp", "isom" + be(512, 4) + "isommp41");
const QByteArray kMdat = box("mdat", QByteArray(64, char(0xEE)));
// 2021-06-15 10:20:30 UTC and 2022-01-02 03:04:05 UTC as movie times.
constexpr quint64 kJune = 1623752430 + kMovieEpoch, kJanuary = 1641092645 + kMovieEpoch;

// "text@position/width" for columns 3 to 5, "-" for the marker.
QString view(const Window1& w)
{
    QStringList out;
    for (int column = 3; column <= 5; ++column) {
        const QVariant tag = w.ListBox1->CellTag(0, column);
        const MovieTime t = tag.value<MovieTime>();
        out << (w.ListBox1->Cell(0, column) == kNoExif && !tag.isValid()
                    ? QStringLiteral("-")
                    : QStringLiteral("%1@%2/%3").arg(w.ListBox1->Cell(0, column)).arg(t.position).arg(t.width));
    }
    return out.join(QStringLiteral(" | "));
}

// The view expected of a file with the header's times in it, in Europe/Berlin.
QString dated(const QByteArray& f, const char* modified, const char* created, int width = 4)
{
    const qsizetype at = f.indexOf("mvhd") + 8;
    const QString first = *modified ? QStringLiteral("%1@%2/%3").arg(modified).arg(at + width).arg(width) : QStringLiteral("-");
    return QStringLiteral("%1 | %2@%3/%4 | -").arg(first, created).arg(at).arg(width);
}
const char* const kMarkers = "- | - | -";

}  // namespace

class TestMovie : public QObject {
    Q_OBJECT
    QTemporaryDir tmp;
    std::unique_ptr<Window1> w;

    QString add(const QString& path)
    {
        w->clearTables();
        w->addFileToTable(FolderItem(path));
        return view(*w);
    }

    QStringList made;  // videos made by ffmpeg and real samples, when the tools are there

    static bool ffmpeg(const QStringList& options, const QString& path)
    {
        return QProcess::execute("ffmpeg", QStringList{"-v", "error", "-y", "-f", "lavfi", "-i", "color=c=blue:s=16x16:d=0.1",
                                                       "-c:v", "mpeg4"} + options + QStringList{path}) == 0;
    }
    static QStringList exiftool(const QStringList& args)
    {
        QProcess p;
        p.start("exiftool", args);
        p.waitForFinished(60000);
        return QString::fromUtf8(p.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    }
    static QByteArray readAll(const QString& path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

private slots:
    void initTestCase()
    {
        qputenv("TZ", "Europe/Berlin");  // summer time in June, not in January
        tzset();
        w = std::make_unique<Window1>();
        if (QStandardPaths::findExecutable("ffmpeg").isEmpty() || QStandardPaths::findExecutable("exiftool").isEmpty())
            return;
        const QString created = "creation_time=2021-06-15T10:20:30Z";
        const struct {
            const char* name;
            QStringList options;
        } videos[] = {
            {"end.mp4", {"-metadata", created}},
            {"start.mp4", {"-movflags", "+faststart", "-metadata", created}},
            {"winter.mov", {"-metadata", "creation_time=2020-01-31T23:30:00Z", "-metadata", "date=2020-01-31T23:30:00Z"}},
            {"apple.mov", {"-movflags", "use_metadata_tags", "-metadata", created, "-metadata",
                           "com.apple.quicktime.creationdate=2021-06-15T12:20:30+0200"}},
            {"day.mp4", {"-metadata", created, "-metadata", "date=2021-06-15T12:20:30+0200"}},
            {"none.3gp", {"-c:v", "h263", "-s", "128x96"}},
        };
        for (const auto& v : videos) {
            QVERIFY(ffmpeg(v.options, tmp.filePath(v.name)));
            made << tmp.filePath(v.name);
        }
        // Version 1 headers throughout, all at one time.
        const QByteArray trak = box("trak", box("tkhd", be(1ull << 24, 4) + be(kJune, 8) + be(kJune, 8) + be(1, 4) + QByteArray(76, 0))
                                                + box("mdia", box("mdhd", be(1ull << 24, 4) + be(kJune, 8) + be(kJune, 8) + be(600, 4) + QByteArray(12, 0))));
        QVERIFY(writeBytes(tmp.filePath("v1.mov"), box("ftyp", "qt  " + be(0, 4) + "qt  ") + box("moov", mvhd(1, kJune, kJune) + trak) + kMdat));
        made << tmp.filePath("v1.mov");
        for (const char* sample : {"ftyp3gp5.mp4", "sample_640x360.mov"})
            if (QFile::exists(QStringLiteral("/work/shared/samples/") + sample))
                made << QStringLiteral("/work/shared/samples/") + sample;
    }

    void builtLayouts_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("seen");
        QByteArray f;
        QTest::newRow("ftyp, mdat, moov at the end") << (f = kFtyp + kMdat + box("moov", mvhd(0, kJune, kJanuary)))
                                                      << dated(f, "2022:01:02 04:04:05", "2021:06:15 12:20:30");
        QTest::newRow("moov first, version 1") << (f = box("moov", mvhd(1, kJune, kJanuary)) + kMdat)
                                               << dated(f, "2022:01:02 04:04:05", "2021:06:15 12:20:30", 8);
        QTest::newRow("version 1 after 2040") << (f = kFtyp + box("moov", mvhd(1, 0x1'0000'0000ull, kJune)))
                                              << dated(f, "2021:06:15 12:20:30", "2040:02:06 07:28:16", 8);
        QTest::newRow("wide, 64-bit mdat, moov of size 0")
            << (f = box("wide", {}) + box64("mdat", "data") + be(0, 4) + "moov" + mvhd(0, kJune, 0))
            << dated(f, "", "2021:06:15 12:20:30");
        QTest::newRow("free first, other boxes before mvhd")
            << (f = box("free", "x") + box("moov", box("udta", "abcd") + mvhd(0, kJune, kJune)))
            << dated(f, "2021:06:15 12:20:30", "2021:06:15 12:20:30");
        QTest::newRow("zero times") << kFtyp + box("moov", mvhd(0, 0, 0)) << kMarkers;
        QTest::newRow("a time beyond the year 9999") << kFtyp + box("moov", mvhd(1, ~0ull, 0)) << kMarkers;
        QTest::newRow("HEIF brand: no movie") << box("ftyp", "heic" + be(0, 4)) + box("moov", mvhd(0, kJune, kJune)) << kMarkers;
        QTest::newRow("box size below 8 before moov") << kFtyp + be(7, 4) + "free" + box("moov", mvhd(0, kJune, kJune)) << kMarkers;
        QTest::newRow("64-bit size beyond the file") << kFtyp + box64("mdat", "x", 1ull << 40) + box("moov", mvhd(0, kJune, kJune)) << kMarkers;
        QTest::newRow("no moov") << kFtyp + kMdat << kMarkers;
        QTest::newRow("moov cut") << kFtyp + box("moov", mvhd(0, kJune, kJune) + QByteArray(40, 0)).chopped(20) << kMarkers;
        QTest::newRow("mvhd cut") << kFtyp + box("moov", mvhd(0, kJune, kJune)).chopped(1) << kMarkers;
        QTest::newRow("mvhd short for version 1") << kFtyp + box("moov", mvhd(1, kJune, kJune, 100)) << kMarkers;
        QTest::newRow("mvhd version 2") << kFtyp + box("moov", mvhd(0, kJune, kJune).replace(8, 1, "\2")) << kMarkers;
        QTest::newRow("ftyp then garbage") << kFtyp + QByteArray(300, char(0xFF)) << kMarkers;
        QTest::newRow("ftyp alone, cut") << kFtyp.left(10) << kMarkers;
    }

    void builtLayouts()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, seen);
        const QString path = tmp.filePath("built.mov");
        QVERIFY(writeBytes(path, file));
        QCOMPARE(add(path), seen);
    }

    // Videos as ffmpeg writes them and real samples, against what exiftool reads in them.
    void sameAsExiftool_data()
    {
        QTest::addColumn<QString>("path");
        if (made.isEmpty())
            QSKIP("ffmpeg and exiftool are needed");
        for (const QString& path : made)
            QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path;
    }

    void sameAsExiftool()
    {
        QFETCH(QString, path);
        // A zero time reads as 1904-01-01 00:00 UTC there, in local time.
        const QStringList told = exiftool({"-api", "QuickTimeUTC", "-s3", "-f", "-d", "%Y:%m:%d %H:%M:%S",
                                           "-QuickTime:ModifyDate", "-QuickTime:CreateDate", path});
        add(path);
        for (int column = 3; column <= 4; ++column) {
            const QString said = told.value(column - 3);
            QCOMPARE(w->ListBox1->Cell(0, column), said.startsWith("1904:01:01") || said == "-" ? kNoExif : said);
        }
        QCOMPARE(w->ListBox1->Cell(0, 5), kNoExif);
    }

    // A run of one day and one hour from the shooting date on a copy: exiftool finds every
    // date of the movie moved by exactly that, and every other tag as it was; the bytes that
    // changed are the times of the headers and digits of texts. A date the field cannot hold
    // stops the run before the first byte.
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
        QFile::remove(copy);
        QVERIFY(QFile::copy(path, copy) && QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner));
        const QByteArray was = readAll(copy);
        const QStringList before = exiftool({"-a", "-G1", "-s", copy});
        add(copy);
        QStringList failures;
        setMsgBoxAnswer([](const QString&, int, const QString&, const QString&) { return 1; });
        setFailureReport([&](const QString&, const QString& reason) { failures << reason; });
        w->baseChoice = 4;
        w->AddValue(0)->setText(years);
        w->AddValue(2)->setText("1");
        w->AddValue(3)->setText("1");
        w->AimValue(0)->setText("x");
        w->ExecuteBtn->click();
        const QByteArray now = readAll(copy);
        QCOMPARE(failures.join("").contains(failure), true);
        QCOMPARE(now.size(), was.size());
        if (!failure.isEmpty()) {
            QCOMPARE(now, was);
            return;
        }
        QStringList expected;
        for (QString line : before) {
            const QRegularExpressionMatch date = QRegularExpression(": (\\d{4}:\\d\\d:\\d\\d \\d\\d:\\d\\d:\\d\\d)").match(line);
            if (line.startsWith("[System]"))
                continue;
            if (date.hasMatch() && !date.captured(1).startsWith("0000")) {
                const QDateTime t = QDateTime(QDate::fromString(date.captured(1).left(10), "yyyy:MM:dd"), QTime::fromString(date.captured(1).mid(11), "HH:mm:ss"), Qt::UTC);
                line.replace(date.capturedStart(1), 19, t.addSecs(25 * 3600).toString("yyyy:MM:dd HH:mm:ss"));
            }
            expected << line;
        }
        QCOMPARE(exiftool({"-a", "-G1", "-s", copy}).filter(QRegularExpression("^(?!\\[System\\])")), expected);
        // Header times lie 12 bytes into mvhd, tkhd and mdhd: two fields of 4 or 8 bytes.
        QList<std::pair<qsizetype, qsizetype>> times;
        for (const char* type : {"mvhd", "tkhd", "mdhd"})
            for (qsizetype at = was.indexOf(type); at >= 0; at = was.indexOf(type, at + 1))
                times.append({at + 8, at + 8 + (was[at + 4] ? 20 : 12)});
        for (qsizetype i = 0; i < was.size(); ++i)
            if (was[i] != now[i])
                QVERIFY2(std::any_of(times.begin(), times.end(), [&](auto r) { return i >= r.first && i < r.second; })
                             || (std::isdigit(uchar(was[i])) && std::isdigit(uchar(now[i]))),
                         qPrintable(QStringLiteral("byte %1").arg(i)));
    }
};

QTEST_MAIN(TestMovie)
#include "tst_movie.moc"
