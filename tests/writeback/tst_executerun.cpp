// The execute run, checked on disk: every file is compared byte for byte with its copy from
// before the run and file dates are read back; on camera-like JPEGs exiftool reads the new
// dates and its validation finds nothing that it did not find before.

#include <QtTest>
#include <QtWidgets>

#include <memory>

#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/MsgBox.h"
#include "shell/Window1.h"

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

}  // namespace

class ExecuteRunTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir;  // a fresh one for every case
    std::unique_ptr<Window1> w;
    QStringList asked;     // texts the confirmation was shown with
    int answer = 1;        // what the confirmation answers
    QStringList failures;  // what the failure report was given
    // Modification dates: the one noted when the row was added, the file's own, the aim.
    const Date noted{2001, 2, 3, 4, 5, 6};
    const qint64 kNoted = noted.toUnixTime(), kOwn = Date(2010, 6, 15, 12).toUnixTime();
    const qint64 kAimTime = Date(2019, 6, 2, 0, 8, 9).toUnixTime();

    // A 256-byte file of filler with kBase and a NUL at each of kDatePos, listed in a row
    // with the given ticks ("1" to "5"; "x": the Exif cells hold no date; "g": the file has
    // gone since; "n": the row holds no file; "@p": column 3 noted at p, "@" not noted).
    QString listFile(const QString& name, const QString& setup)
    {
        const QString ticks = setup.section('@', 0, 0);
        const QString path = dir->filePath(name);
        QByteArray bytes(256, char(0xA5));
        for (qint64 pos : kDatePos)
            bytes.replace(pos, 20, kBase.toLatin1() + '\0');
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != 256 || !f.flush()
            || !f.setFileTime(QDateTime::fromSecsSinceEpoch(kOwn), QFileDevice::FileModificationTime))
            qFatal("cannot write %s", qPrintable(path));
        Listbox* t = w->ListBox1;
        t->AddRow(name);
        const int row = t->ListCount() - 1;
        t->setCellTag(row, 0, ticks.contains('n') ? QVariant() : QVariant::fromValue(FolderItem(path)));
        t->setCellTag(row, 2, QVariant::fromValue(noted));
        for (int c = 1; c <= 5; ++c) {
            t->setCell(row, c, c <= 2 ? kListed : ticks == QLatin1String("x") ? kNoExif : kBase);
            t->setCellCheck(row, c, ticks.contains(QString::number(c)));
            if (c >= 3)
                t->setCellTag(row, c, double(kDatePos[c - 3]));
        }
        if (setup.contains('@'))
            t->setCellTag(row, 3, setup.endsWith('@') ? QVariant() : QVariant(setup.section('@', 1).toDouble()));
        if (ticks.contains('g'))
            QFile::remove(path);
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
        setMsgBoxAnswer([this](const QString& text, int buttons, const QString& title) {
            asked << text;
            return buttons == 33 && title.isEmpty() ? answer : -1;
        });
        setFailureReport([this](const QString& action, const QString& reason) { failures << action + ": " + reason; });
    }
    void cleanup() { w.reset(); setMsgBoxAnswer({}); setFailureReport({}); }

    // Per row, the ticks and what becomes of the file's modification date: K kept, N the
    // noted one put back, A the aim; "-" not reached. An Exif write asks for the noted date
    // back, and the request carries over to the rows after until a row sets its own date.
    // A position that the file cannot reach writes nothing. A row that fails stops the run,
    // and the report names its file. Nothing is written without a scheduled value, or
    // unless the user answers OK.
    void execute_data()
    {
        QTest::addColumn<QStringList>("ticks");
        QTest::addColumn<QString>("dates");
        QTest::addColumn<QString>("confirm");  // the answer to the question; "no aim": the display is blank
        QTest::newRow("the base column before a later one") << QStringList{"45"} << "N" << "OK";
        QTest::newRow("restore carried to a row without ticks") << QStringList{"35", ""} << "NN" << "OK";
        QTest::newRow("Exif and column 2: the aim, no restore") << QStringList{"342"} << "A" << "OK";
        QTest::newRow("cleared by column 2") << QStringList{"3", "2", ""} << "NAK" << "OK";
        QTest::newRow("carried across a row without a date") << QStringList{"5", "x", ""} << "NKN" << "OK";
        QTest::newRow("not set before the first write") << QStringList{"", "1", "4"} << "KKN" << "OK";
        QTest::newRow("position beyond the end, the run goes on") << QStringList{"3@1e12", "4"} << "NN" << "OK";
        QTest::newRow("negative position") << QStringList{"3@-1"} << "N" << "OK";
        QTest::newRow("position with a fraction") << QStringList{"3@7.9"} << "N" << "OK";
        QTest::newRow("position never noted: the first bytes") << QStringList{"3@"} << "N" << "OK";
        QTest::newRow("stops at a file gone since it was listed") << QStringList{"34", "342g", "342"} << "N--" << "OK";
        QTest::newRow("stops at a row without its file") << QStringList{"34", "342n", "342"} << "N--" << "OK";
        QTest::newRow("empty table: no question") << QStringList{} << "" << "OK";
        QTest::newRow("no scheduled value: no question") << QStringList{"12345"} << "-" << "no aim";
        QTest::newRow("Cancel") << QStringList{"12345"} << "-" << "Cancel";
        QTest::newRow("box closed") << QStringList{"12345"} << "-" << "closed";
    }
    void execute()
    {
        QFETCH(QStringList, ticks);
        QFETCH(QString, dates);
        QFETCH(QString, confirm);
        answer = confirm == "OK" ? 1 : confirm == "Cancel" ? 2 : 0;
        QStringList paths, texts;
        QString report;  // what the failure report says, if the run stops
        QList<QByteArray> bytes;
        for (int i = 0; i < ticks.size(); ++i) {
            paths << listFile(QStringLiteral("r%1.tif").arg(i), ticks[i]);
            bytes << readAll(paths[i]);
            texts << cells(i).join('|');
            if (ticks[i].contains('g'))
                report = QStringLiteral("It stopped at “%1”. “r%2.tif” could not be opened for writing; it may have been "
                                        "moved or deleted.").arg(paths[i]).arg(i);
            if (ticks[i].contains('n'))
                report = QStringLiteral("It stopped at row %1. No file was given.").arg(i + 1);
        }
        run(confirm == "no aim" ? QString() : QStringLiteral("2019"));
        for (int i = 0; i < ticks.size(); ++i) {
            QStringList want = texts[i].split('|');
            for (const QChar c : ticks[i].section('@', 0, 0)) {
                const int column = c.digitValue();
                double at = column >= 3 ? kDatePos[column - 3] : -1;
                if (column == 3 && ticks[i].contains('@'))
                    at = ticks[i].section('@', 1).toDouble();  // "" gives 0
                if (at >= 0 && at + 19 <= 256 && dates[i] != '-')
                    bytes[i].replace(qint64(at), 19, kAim.toLatin1());
                if (column >= 1 && dates[i] != '-')
                    want[column - 1] = column >= 3 ? kAim : kAimFileForm;
            }
            QCOMPARE(readAll(paths[i]), bytes[i]);
            QCOMPARE(cells(i), want);
            if (!ticks[i].contains('g'))
                QCOMPARE(mTime(paths[i]), dates[i] == 'A' ? kAimTime : dates[i] == 'N' ? kNoted : kOwn);
        }
        const QString question = QStringLiteral("変更予定値を直接ファイルに書込みます。\nよろしいですか。");
        QCOMPARE(asked, QStringList(ticks.isEmpty() || confirm == "no aim" ? 0 : 1, question));
        QVERIFY2(report.isEmpty() ? failures.isEmpty()
                                  : failures.size() == 1 && failures[0].startsWith("change the dates in the files: " + report),
                 qPrintable(failures.join('\n')));
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
        QVERIFY(failures.isEmpty());
        QCOMPARE(readAll(path), expected);
        QCOMPARE(exiftool({"-s3", "-ModifyDate", "-DateTimeOriginal", "-CreateDate", path}).split('\n'), dates);
        for (const QString& line : exiftool(validate).split('\n'))
            QVERIFY2(validBefore.contains(line), qPrintable(line));
    }
};

QTEST_MAIN(ExecuteRunTest)
#include "tst_executerun.moc"
