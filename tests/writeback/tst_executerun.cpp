// The execute run, checked on disk: every file is compared byte for byte with its copy from
// before the run and file dates are read back; on camera-like JPEGs exiftool reads the new
// dates and its validation finds nothing that it did not find before.

#include <QtTest>
#include <QtWidgets>

#include <functional>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>

#include "exif/Container.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/MsgBox.h"
#include "platform/listbox/ListboxModel.h"
#include "shell/MenuBar1.h"
#include "shell/Window1.h"
#include "support/TiffBuilder.h"

namespace {

const QString kBase = QStringLiteral("2019:05:31 23:08:09");  // the base cell of every row
const QString kAim = QStringLiteral("2019:06:02 00:08:09");   // one day and one hour later
const QString kAimFileForm = QStringLiteral("2019-06-02 00:08:09");
const QString kListed = QStringLiteral("2010-06-15 12:00:00");  // the file dates listed
constexpr qint64 kDatePos[3] = {100, 140, 180};                 // columns 3, 4, 5

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
qint64 mTime(const QString& path) { return QFileInfo(path).lastModified().toSecsSinceEpoch(); }
QString exiftool(const QStringList& args)
{
    QProcess p;
    p.start(QStringLiteral("exiftool"), args);
    p.waitForFinished(60000);
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}

// Whether after differs from before only in digits, byte for byte.
bool digitsOnly(const QByteArray& before, const QByteArray& after)
{
    for (qsizetype i = 0; i < before.size() && before.size() == after.size(); ++i)
        if (before[i] != after[i] && !(isdigit(before[i]) && isdigit(after[i])))
            return false;
    return before.size() == after.size();
}

}  // namespace

class ExecuteRunTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir;  // a fresh one for every case
    std::unique_ptr<Window1> w;
    QStringList asked;     // the question and its smaller text, each time it was shown
    int answer = 1;        // what the confirmation answers
    QStringList failures;  // what the failure report was given
    // Modification dates: the one noted when the row was added, the file's own, the aim.
    const Date noted{2001, 2, 3, 4, 5, 6};
    const qint64 kNoted = noted.toUnixTime(), kOwn = Date(2010, 6, 15, 12).toUnixTime();
    const qint64 kAimTime = Date(2019, 6, 2, 0, 8, 9).toUnixTime();

    // A 256-byte file of filler with kBase and a NUL at each of kDatePos (shifted by `by`).
    QString writeFile(const QString& path, int by = 0)
    {
        QByteArray bytes(256, char(0xA5));
        for (qint64 pos : kDatePos)
            bytes.replace(pos + by, 20, kBase.toLatin1() + '\0');
        QFile f(path);
        if (!f.open(QIODevice::ReadWrite) || f.write(bytes) != 256 || !f.flush()
            || !f.setFileTime(QDateTime::fromSecsSinceEpoch(kOwn), QFileDevice::FileModificationTime))
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }
    // Puts a new object in the place of path: made aside first, so that it cannot take
    // the number of the inode it replaces.
    void replace(const QString& path, const std::function<void(const QString&)>& make)
    {
        make(path + ".new");
        QVERIFY(::rename(QFile::encodeName(path + ".new").constData(), QFile::encodeName(path).constData()) == 0);
    }

    // Lists a file in a row with the given ticks ("1" to "5"; "x": the Exif cells hold no
    // date; "n": the row holds no file; "t": the file of the row before; "@p": column 3
    // noted at p, "@" not noted). Then, as another program might: "g" deletes the file,
    // "m" rewrites it in place with its dates 8 bytes on, "c" cuts it to 150 bytes, "r"
    // puts a copy in its place, "l" a link to an unlisted copy, "d" a folder.
    QString listFile(const QString& name, const QString& setup, const QString& before)
    {
        const QString ticks = setup.section('@', 0, 0);
        const QString path = ticks.contains('t') ? before : writeFile(dir->filePath(name));
        Listbox* t = w->ListBox1;
        t->AddRow(name);
        const int row = t->ListCount() - 1;
        FolderItem f(path);
        f.noteListing(f.Status());
        t->setCellTag(row, 0, ticks.contains('n') ? QVariant() : QVariant::fromValue(f));
        t->setCellTag(row, 2, QVariant::fromValue(noted));
        for (int c = 1; c <= 5; ++c) {
            t->setCell(row, c, c <= 2 ? kListed : ticks.contains('x') ? kNoExif : kBase);
            t->setCellCheck(row, c, ticks.contains(QString::number(c)));
            if (c >= 3)
                t->setCellTag(row, c, double(kDatePos[c - 3]));
        }
        if (setup.contains('@'))
            t->setCellTag(row, 3, setup.endsWith('@') ? QVariant() : QVariant(setup.section('@', 1).toDouble()));
        if (ticks.contains('g'))
            QFile::remove(path);
        if (ticks.contains('m'))
            writeFile(path, 8);
        if (ticks.contains('c'))
            QFile::resize(path, 150);
        if (ticks.contains('r'))
            replace(path, [&](const QString& p) { writeFile(p); });
        if (ticks.contains('l'))
            replace(path, [&](const QString& p) { QFile::link(writeFile(dir->filePath("unlisted")), p); });
        if (ticks.contains('d')) {
            QFile::remove(path);
            QDir().mkdir(path);
        }
        return path;
    }
    QStringList cells(int row) const { QStringList t; for (int c = 1; c <= 5; ++c) t << w->ListBox1->Cell(row, c); return t; }
    void run(const QString& aim = QStringLiteral("2019"))
    {
        w->baseChoice = 4;
        w->AddValue(2)->setText(QStringLiteral("1"));
        w->AddValue(3)->setText(QStringLiteral("1"));
        w->AimValue(0)->setText(aim);
        w->ExecuteBtn->click();
    }

private slots:
    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        w = std::make_unique<Window1>();
        asked.clear();
        failures.clear();
        answer = 1;
        setMsgBoxAnswer([this](const QString& text, int buttons, const QString& title, const QString& informative) {
            asked << text << informative;
            return buttons == 33 && title.isEmpty() ? answer : -1;
        });
        setFailureReport([this](const QString& action, const QString& reason) { failures << action + ": " + reason; });
    }
    void cleanup() { w.reset(); setMsgBoxAnswer({}); setFailureReport({}); }

    // Per row, the ticks and what becomes of the file's modification date: K kept, N the
    // noted one put back, A the aim. An Exif write asks for the noted date back, and the
    // request carries over to the rows after until a row sets its own date. The question's
    // smaller text counts Exif dates, files and creation dates that stay ("2/1/0").
    // Where any ticked date cannot be changed safely, no file changes at all, and the
    // report names each such date: "row:column:why" ("and N more" as it stands).
    void execute_data()
    {
        QTest::addColumn<QStringList>("ticks");
        QTest::addColumn<QString>("dates");
        QTest::addColumn<QString>("summary");  // "": no question; "no aim": the display is blank
        QTest::addColumn<QStringList>("report");
        const QString gone = "it is no longer there; it may have been moved or deleted";
        const QString moved = "it has changed since it was listed: at byte %1 it no longer holds 2019:05:31 23:08:09";
        const QString unknown = "the place of this date in the file is not known";
        QTest::newRow("the base column before a later one") << QStringList{"45"} << "N" << "2/1/0" << QStringList{};
        QTest::newRow("restore carried to a row without ticks") << QStringList{"35", ""} << "NN" << "2/1/0" << QStringList{};
        QTest::newRow("Exif and column 2: the aim, no restore") << QStringList{"342"} << "A" << "2/1/0" << QStringList{};
        QTest::newRow("cleared by column 2") << QStringList{"3", "2", ""} << "NAK" << "1/1/0" << QStringList{};
        QTest::newRow("carried across a row without a date") << QStringList{"5", "x", ""} << "NKN" << "1/1/0" << QStringList{};
        QTest::newRow("not set before the first write; creation stays")
            << QStringList{"", "1", "4"} << "KKN" << "1/1/1" << QStringList{};
        QTest::newRow("a file listed twice") << QStringList{"4", "4t"} << "NN" << "2/1/0" << QStringList{};
        QTest::newRow("position beyond the end")
            << QStringList{"3@1e12", "4"} << "KK" << "2/2/0"
            << QStringList{"0:3:the file ends before the place of this date (byte 1000000000000)"};
        QTest::newRow("negative position") << QStringList{"3@-1"} << "K" << "1/1/0" << QStringList{"0:3:" + unknown};
        QTest::newRow("position never noted") << QStringList{"3@"} << "K" << "1/1/0" << QStringList{"0:3:" + unknown};
        QTest::newRow("position with a fraction, on filler") << QStringList{"3@7.9"} << "K" << "1/1/0" << QStringList{"0:3:" + moved.arg(7)};
        QTest::newRow("rewritten after listing, in the middle of a good batch")
            << QStringList{"345", "345m", "345"} << "KKK" << "9/3/0"
            << QStringList{"1:3:" + moved.arg(100), "1:4:" + moved.arg(140), "1:5:" + moved.arg(180)};
        QTest::newRow("cut short before a position")
            << QStringList{"345c"} << "K" << "3/1/0"
            << QStringList{"0:4:the file ends before the place of this date (byte 140)",
                           "0:5:the file ends before the place of this date (byte 180)"};
        QTest::newRow("replaced by a link to an unlisted file")
            << QStringList{"34l"} << "K" << "2/1/0"
            << QStringList{"0:3:it is now a link to another file", "0:4:it is now a link to another file",
                           "0:2:it is now a link to another file"};  // its noted date would be put back
        QTest::newRow("replaced by a copy") << QStringList{"1r"} << "K" << "0/0/1"
                                            << QStringList{"0:1:it has been replaced by another file since it was listed"};
        QTest::newRow("replaced by a folder, dates only") << QStringList{"2d"} << "-" << "0/0/0" << QStringList{"0:2:it is now a folder"};
        QTest::newRow("replaced by a folder") << QStringList{"32d"} << "-" << "1/1/0"
                                              << QStringList{"0:3:it is a folder, not a file", "0:2:it is a folder, not a file"};
        QTest::newRow("gone since it was listed") << QStringList{"34", "342g", "342"} << "K-K" << "6/3/0"
                                                  << QStringList{"1:3:" + gone, "1:4:" + gone, "1:2:" + gone};
        QTest::newRow("a row without its file")
            << QStringList{"34", "342n", "342"} << "KKK" << "6/3/0"
            << QStringList{"1:3:no file is known for this row", "1:4:no file is known for this row",
                           "1:2:no file is known for this row"};
        QStringList many;
        for (int row = 0; row < 6; ++row)
            for (int column : {3, 4, 5, 2})
                many << QString("%1:%2:%3").arg(row).arg(column).arg(gone);
        many = many.mid(0, 20) << "and 4 more.";
        QTest::newRow("24 failed: 20 named") << QStringList(6, "345g") << "------" << "18/6/0" << many;
        QTest::newRow("empty table: no question") << QStringList{} << "" << "" << QStringList{};
        QTest::newRow("no scheduled value: no question") << QStringList{"12345"} << "K" << "no aim" << QStringList{};
        QTest::newRow("Cancel") << QStringList{"12345"} << "K" << "Cancel" << QStringList{};
        QTest::newRow("box closed") << QStringList{"12345"} << "K" << "closed" << QStringList{};
    }
    void execute()
    {
        QFETCH(QStringList, ticks);
        QFETCH(QString, dates);
        QFETCH(QString, summary);
        QFETCH(QStringList, report);
        answer = summary == "Cancel" ? 2 : summary == "closed" ? 0 : 1;
        const bool written = report.isEmpty() && summary.contains('/');
        QStringList paths, texts;
        QList<QByteArray> bytes;
        QList<qint64> before;
        for (int i = 0; i < ticks.size(); ++i) {
            paths << listFile(QStringLiteral("r%1.tif").arg(i), ticks[i], paths.value(i - 1));
            texts << cells(i).join('|');
        }
        for (const QString& path : paths) {
            bytes << readAll(path);
            before << mTime(path);
        }
        run(summary == "no aim" ? QString() : QStringLiteral("2019"));
        for (int i = 0; i < ticks.size(); ++i) {
            QStringList want = texts[i].split('|');
            for (const QChar c : ticks[i].section('@', 0, 0)) {
                const int column = c.digitValue();
                if (!written || column < 1)
                    continue;
                if (column >= 3)
                    for (int j = 0; j < ticks.size(); ++j)  // every row of the same file
                        if (paths[j] == paths[i])
                            bytes[j].replace(kDatePos[column - 3], 19, kAim.toLatin1());
                // A creation date that this system cannot set shows the one the file has.
                want[column - 1] = column >= 3 ? kAim : column == 2 ? kAimFileForm : FolderItem(paths[i]).CreationDate().SQLDateTime();
            }
            QCOMPARE(readAll(paths[i]), bytes[i]);
            QCOMPARE(cells(i), want);
            if (dates[i] != '-')
                QCOMPARE(mTime(paths[i]), dates[i] == 'A' ? kAimTime : dates[i] == 'N' ? kNoted : before[i]);
        }
        const QString question = QStringLiteral("変更予定値を直接ファイルに書込みます。\nよろしいですか。");
        if (summary.contains('/')) {
            const QStringList n = summary.split('/');
            QString smaller = QString("Dates to be overwritten in place: %1, in %2 files.").arg(n[0], n[1]);
            if (n[2] != "0")
                smaller += QString("\nTicked creation dates that stay as they are, since this system cannot set them: %1.").arg(n[2]);
            QCOMPARE(asked, QStringList({question, smaller}));
        } else if (summary == "Cancel" || summary == "closed") {
            QCOMPARE(asked.value(0), question);
        } else {
            QCOMPARE(asked, QStringList());
        }
        QStringList lines;
        for (const QString& r : report) {
            const QStringList f = r.split(':');
            if (f.size() < 3) {
                lines << r;
                continue;
            }
            const int row = f[0].toInt(), column = f[1].toInt();
            const QString name = ticks[row].contains('n') ? QString("row %1").arg(row + 1) : "“" + paths[row] + "”";
            lines << QString("%1, %2: %3.").arg(name, w->ListBox1->model()->headerData(column, Qt::Horizontal).toString(),
                                               QStringList(f.mid(2)).join(':'));
        }
        const QString expected = "change the dates in the files: Nothing has been written. These dates cannot be changed "
                                 "safely; untick them, or drop the files again, and press the button once more:\n"
                                 + lines.join('\n');
        QCOMPARE(failures.size(), report.isEmpty() ? 0 : 1);
        if (!report.isEmpty())
            QCOMPARE(failures[0].split('\n'), expected.split('\n'));
    }

    // Files as the reader lists them: a date whose tag is of a type that keeps no place
    // stands at 0, and stops the whole run; a good one is written, and the modification
    // time goes back to the nanosecond, the access time untouched.
    void listedByTheReader_data()
    {
        QTest::addColumn<bool>("longAgain");  // a later tag 306 of type LONG
        QTest::newRow("camera layout") << false;
        QTest::newRow("tag 306 again, as a LONG") << true;
    }
    void listedByTheReader()
    {
        QFETCH(bool, longAgain);
        TiffBuilder tiff = camera(true, "2021:07:04 08:09:10", kBase.toLatin1(), "2019:05:31 23:08:10");
        if (longAgain)
            tiff.entry(0, 306, 4, 1, tiff.number(5, 4));
        const QString path = dir->filePath("camera.tif");
        QVERIFY(writeBytes(path, tiff.bytes()));
        // An access time ahead of every other time of the file, which reading leaves alone.
        const qint64 later = QDateTime::currentSecsSinceEpoch() + 3600;
        const timespec times[2] = {{later, 5}, {kOwn, 123456789}};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
        QByteArray expected = readAll(path);
        w->addFileToTable(FolderItem(path));
        if (longAgain)
            QCOMPARE(w->ListBox1->CellTag(0, 3), QVariant(0.0));
        for (int c = 3; c <= 5 && !longAgain; ++c)
            expected.replace(qint64(w->ListBox1->CellTag(0, c).toDouble()), 19, kAim.toLatin1());
        w->ListBox1->setCellCheck(0, 2, false);
        run();
        QCOMPARE(readAll(path), expected);
        QCOMPARE(failures.size(), int(longAgain));
        if (longAgain)
            QVERIFY2(failures[0].endsWith(", Exif Img mod. date: the place of this date in the file is not known."),
                     qPrintable(failures[0]));
        struct stat st;
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &st), 0);
        QCOMPARE(QList<qint64>({st.st_mtim.tv_sec, st.st_mtim.tv_nsec, st.st_atim.tv_sec, st.st_atim.tv_nsec}),
                 QList<qint64>({kOwn, 123456789, later, 5}));
    }

    // Camera-like JPEGs as the reader lists them; only the ticked 19-byte dates change.
    void exiftoolOracle_data()
    {
        QTest::addColumn<QString>("byteOrder");
        QTest::addColumn<QString>("ticks");
        QTest::newRow("Intel byte order, all three") << "II" << "345";
        QTest::newRow("Motorola byte order, shooting date only") << "MM" << "4";
    }
    void exiftoolOracle()
    {
        QFETCH(QString, byteOrder);
        QFETCH(QString, ticks);
        if (QStandardPaths::findExecutable(QStringLiteral("exiftool")).isEmpty())
            QSKIP("exiftool is not installed (scripts/test installs it)");
        const QString path = dir->filePath(byteOrder + ".jpg");
        QImage picture(96, 64, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        QVERIFY(picture.save(path, "JPEG"));
        QStringList dates{"2021:07:04 08:09:10", kBase, "2019:05:31 23:08:10"};  // columns 3, 4, 5
        exiftool({"-q", "-overwrite_original", "-ExifByteOrder=" + byteOrder, "-Make=Velkaro", "-ExposureTime=1/125",
                  "-ModifyDate=" + dates[0], "-DateTimeOriginal=" + dates[1], "-CreateDate=" + dates[2], path});
        const QStringList validate{"-s", "-s", "-validate", "-warning", "-a", path};
        const QStringList validBefore = exiftool(validate).split('\n');
        QByteArray expected = readAll(path);
        w->addFileToTable(FolderItem(path));
        for (int c = 1; c <= 5; ++c) {
            w->ListBox1->setCellCheck(0, c, ticks.contains(QString::number(c)));
            if (ticks.contains(QString::number(c))) {
                expected.replace(qint64(w->ListBox1->CellTag(0, c).toDouble()), 19, kAim.toLatin1());
                dates[c - 3] = kAim;
            }
        }
        run();
        QCOMPARE(failures, QStringList());
        QCOMPARE(readAll(path), expected);
        QCOMPARE(exiftool({"-s3", "-ModifyDate", "-DateTimeOriginal", "-CreateDate", path}).split('\n'), dates);
        for (const QString& line : exiftool(validate).split('\n'))
            QVERIFY2(validBefore.contains(line), qPrintable(line));
    }

    // Copies of the dates in XMP, IPTC, the thumbnail's directory and sidecars, made by
    // exiftool or as real files keep them; all three Exif dates ticked. After the run,
    // exiftool reads the new time in each copy that showed the old one and the rest as they
    // were; the confirmation named those that stay, and no byte but digits changed.
    void copies_data()
    {
        QTest::addColumn<QString>("sample");      // "": a photo made here, with sidecars
        QTest::addColumn<bool>("inStep");         // the menu item
        QTest::addColumn<QStringList>("moved");   // exiftool's lines that change, as they read after
        QTest::addColumn<int>("kept");
        const QString n = "=" + kAim;
        const QStringList exif{"-IFD1:ModifyDate" + n, "-ExifIFD:DateTimeOriginal" + n, "-ExifIFD:CreateDate" + n};
        QTest::newRow("made by exiftool")
            << "" << true
            << exif + QStringList{"-IFD0:ModifyDate" + n, "-IPTC:DateCreated=2019:06:02", "-IPTC:TimeCreated=00:08:09+02:00",
                                  "-IPTC:DigitalCreationDate=2019:06:02", "-XMP-exif:DateTimeOriginal=2019:06:02 00:08:09.25+02:00",
                                  "-XMP-photoshop:DateCreated=2019:06:02", "-XMP-xmp:CreateDate=2019:06:02 00:08:09Z",
                                  ".xmp-XMP-xmp:CreateDate=2019:06:02 00:08", ".jpg.xmp-XMP-exif:DateTimeOriginal=2019:06:02 00:08:09-07:00"}
            << 1;
        QTest::newRow("not kept in step") << "" << false << exif << 0;
        const QString fuji = "=2002:07:14 16:58:28", berlin = "=2008:05:26 20:31:26";
        QTest::newRow("IPTC and XMP days that differ")
            << "FujiFilm_FinePixS1Pro_1.jpg" << true
            << QStringList{"-IFD0:ModifyDate" + fuji, "-ExifIFD:DateTimeOriginal" + fuji, "-ExifIFD:CreateDate" + fuji} << 2;
        QTest::newRow("zones of one digit")
            << "type_error_33.jpg" << true
            << QStringList{"-IFD0:ModifyDate" + berlin, "-ExifIFD:DateTimeOriginal" + berlin, "-ExifIFD:CreateDate" + berlin,
                           "-XMP-exif:DateTimeOriginal=2008:05:26 20:31:26.0+1:00", "-XMP-exif:DateTimeDigitized=2008:05:26 20:31:26.0+1:00"}
            << 2;
    }
    void copies()
    {
        QFETCH(QString, sample);
        QFETCH(bool, inStep);
        QFETCH(QStringList, moved);
        QFETCH(int, kept);
        if (QStandardPaths::findExecutable(QStringLiteral("exiftool")).isEmpty())
            QSKIP("exiftool is not installed (scripts/test installs it)");
        const QString path = dir->filePath("a.jpg"), thumb = dir->filePath("t.jpg");
        const QStringList files{path, dir->filePath("a.xmp"), path + ".xmp"};
        if (sample.isEmpty()) {
            QImage(96, 64, QImage::Format_RGB32).save(path, "JPEG");
            QImage(16, 12, QImage::Format_RGB32).save(thumb, "JPEG");
            exiftool({"-q", "-overwrite_original", "-ModifyDate=" + kBase, "-DateTimeOriginal=" + kBase, "-CreateDate=" + kBase,
                      "-ThumbnailImage<=" + thumb, "-IFD1:ModifyDate=" + kBase, "-XMP-xmp:CreateDate=" + kBase + "Z",
                      "-XMP-exif:DateTimeOriginal=" + kBase + ".25+02:00", "-XMP-photoshop:DateCreated=2019:05:31",
                      "-XMP-xmp:ModifyDate=2019:05:31 23:08:10", "-IPTC:DateCreated=2019:05:31", "-IPTC:TimeCreated=23:08:09+02:00",
                      "-IPTC:DigitalCreationDate=2019:05:31", path});
            exiftool({"-q", "-XMP-xmp:CreateDate=2019:05:31 23:08", "-o", files[1]});
            exiftool({"-q", "-XMP-exif:DateTimeOriginal=" + kBase + "-07:00", "-o", files[2]});
        } else {
            const QString real = QStringLiteral(VELKARO_SAMPLES "/") + sample;
            if (!QFile::exists(real))
                QSKIP("the real sample files are not beside the checkout");
            QVERIFY(QFile::copy(real, path));
        }
        const auto listing = [&] {
            QStringList lines;
            for (const QString& f : files)
                for (const QString& line : exiftool({"-args", "-G1", "-a", "-time:all", "--System:all", "--Composite:all", f}).split('\n', Qt::SkipEmptyParts))
                    lines << f.mid(dir->filePath("a").size()).replace(".jpg", f == path ? "" : ".jpg") + line;
            return lines;
        };
        QStringList want = listing();
        for (const QString& line : moved) {
            const qsizetype at = want.indexOf(QRegularExpression("^" + QRegularExpression::escape(line.section('=', 0, 0)) + "=.*"));
            QVERIFY2(at >= 0, qPrintable(line));
            want[at] = line;
        }
        QList<QByteArray> bytes;
        for (const QString& f : files)
            bytes << readAll(f);
        w->addFileToTable(FolderItem(path));
        MenuBar1::instance()->lookup("EditKeepCopies")->setChecked(inStep);
        run();
        QCOMPARE(failures, QStringList());
        QCOMPARE(listing(), want);
        for (int i = 0; i < files.size(); ++i)
            QVERIFY2(digitsOnly(bytes[i], readAll(files[i])), qPrintable(files[i]));
        QVERIFY2(asked.value(1).contains(QString("stay as they are: %1.").arg(kept)) == (kept > 0), qPrintable(asked.value(1)));
    }
};

QTEST_MAIN(ExecuteRunTest)
#include "tst_executerun.moc"
