// The execute run, checked on disk: every changed file is compared byte for byte with its
// copy taken before the run, and file dates are read back from the file system.

#include <QDateTime>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

#include <cmath>
#include <ctime>
#include <memory>

#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/MsgBox.h"
#include "shell/Window1.h"

namespace {

// Dates of the fixture rows: the base cell, the date noted when the row was added, the
// file's own modification date (it was touched since it was listed), and the aim, which is
// the base plus one day and one hour.
const QString kBase = QStringLiteral("2019:05:31 23:08:09");
const QString kAim = QStringLiteral("2019:06:02 00:08:09");
// Functions, not constants: local time is read after the test has chosen its time zone.
QDateTime noted() { return QDateTime(QDate(2001, 2, 3), QTime(4, 5, 6)); }
QDateTime touched() { return QDateTime(QDate(2010, 6, 15), QTime(12, 0, 0)); }
QDateTime aimTime() { return QDateTime(QDate(2019, 6, 2), QTime(0, 8, 9)); }
const QString kTouchedText = QStringLiteral("2010-06-15 12:00:00");
constexpr qint64 kDatePos[3] = {100, 140, 180};  // columns 3, 4, 5
constexpr qint64 kFileSize = 256;

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void setMTime(const QString& path, const QDateTime& t)
{
    const struct timespec ts[2] = {{0, UTIME_OMIT}, {time_t(t.toSecsSinceEpoch()), 0}};
    QVERIFY(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), ts, 0) == 0);
}

QDateTime mTime(const QString& path)
{
    struct stat st;
    return stat(QFile::encodeName(path).constData(), &st) == 0
               ? QDateTime::fromSecsSinceEpoch(st.st_mtim.tv_sec)
               : QDateTime();
}

// The same dates as file dates show them.
const QString kBaseFileForm = QStringLiteral("2019-05-31 23:08:09");
const QString kAimFileForm = QStringLiteral("2019-06-02 00:08:09");

}  // namespace

class ExecuteRunTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir;  // a fresh one for every case
    std::unique_ptr<Window1> w;
    QStringList asked;       // texts the confirmation was shown with
    int answer = 1;          // what the confirmation answers
    QStringList failures;    // what the failure report was given

    // A 256-byte file of filler with a NUL-terminated date at each of kDatePos, listed as
    // a row with the base date in every Exif column and the given ticks ("1" to "5"; "x"
    // for a row whose base cell holds no date).
    QString listFile(const QString& name, const QString& ticks, const QString& exif = kBase)
    {
        const QString path = dir->filePath(name);
        QByteArray bytes(kFileSize, char(0xA5));
        QByteArray field = exif.toLatin1();
        field.resize(20, '\0');
        for (qint64 pos : kDatePos)
            bytes.replace(pos, 20, field);
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != kFileSize)
            qFatal("cannot write %s", qPrintable(path));
        f.close();
        setMTime(path, touched());
        listItem(path, ticks, ticks == QLatin1String("x") ? kNoExif : exif);
        for (int c = 3; c <= 5; ++c)
            w->ListBox1->setCellTag(w->ListBox1->ListCount() - 1, c, double(kDatePos[c - 3]));
        return path;
    }
    void listItem(const QString& path, const QString& ticks, const QString& exif)
    {
        Listbox* t = w->ListBox1;
        const FolderItem f(path);
        t->AddRow(f.Name());
        const int row = t->ListCount() - 1;
        t->setCellTag(row, 0, QVariant::fromValue(f));
        t->setCell(row, 1, kTouchedText);
        t->setCell(row, 2, kTouchedText);
        t->setCellTag(row, 2, QVariant::fromValue(Date(2001, 2, 3, 4, 5, 6)));  // noted()
        for (int c = 3; c <= 5; ++c)
            t->setCell(row, c, exif);
        for (int c = 1; c <= 5; ++c)
            t->setCellCheck(row, c, ticks.contains(QString::number(c)));
    }
    void run(int addDays = 1, int addHours = 1)
    {
        w->baseChoice = 4;
        w->AddValue(2)->setText(QString::number(addDays));
        w->AddValue(3)->setText(QString::number(addHours));
        w->AimValue(0)->setText(QStringLiteral("2019"));
        w->ExecuteBtn->click();
    }

private slots:
    void initTestCase()
    {
        qputenv("TZ", "Europe/Berlin");
        tzset();
    }
    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
        w = std::make_unique<Window1>();
        asked.clear();
        failures.clear();
        answer = 1;
        setMsgBoxAnswer([this](const QString& text, int buttons, const QString& title) {
            asked << text;
            return buttons == 33 && title.isEmpty() ? answer : -1;
        });
        setFailureReport([this](const QString& where, const QString& what) { failures << where + ": " + what; });
    }
    void cleanup()
    {
        w.reset();
        setMsgBoxAnswer({});
        setFailureReport({});
    }

    void nothingChanges_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("aim");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("questions");
        QTest::newRow("empty table: no question") << 0 << "2019" << 1 << 0;
        QTest::newRow("empty aim value: no question") << 2 << "" << 1 << 0;
        QTest::newRow("Cancel") << 2 << "2019" << 2 << 1;
        QTest::newRow("box closed") << 2 << "2019" << 0 << 1;
    }
    void nothingChanges()
    {
        QFETCH(int, rows);
        QFETCH(QString, aim);
        QFETCH(int, answer);
        QFETCH(int, questions);
        this->answer = answer;
        QStringList paths;
        QList<QByteArray> before;
        for (int i = 0; i < rows; ++i) {
            paths << listFile(QStringLiteral("n%1.tif").arg(i), QStringLiteral("12345"));
            before << readAll(paths.last());
        }
        w->AimValue(0)->setText(aim);
        w->ExecuteBtn->click();

        QCOMPARE(asked.size(), questions);
        if (questions)
            QCOMPARE(asked.first(), QStringLiteral("変更予定値を直接ファイルに書込みます。\nよろしいですか。"));
        for (int i = 0; i < rows; ++i) {
            QCOMPARE(readAll(paths[i]), before[i]);
            QCOMPARE(mTime(paths[i]), touched());
            QCOMPARE(w->ListBox1->Cell(i, 2), kTouchedText);
            QCOMPARE(w->ListBox1->Cell(i, 4), kBase);
        }
        QVERIFY(failures.isEmpty());
    }

    // One row, Exif columns ticked: exactly the ticked 19-byte fields change, the size does
    // not, and the modification date goes back to the noted one.
    void exifBytes_data()
    {
        QTest::addColumn<QString>("ticks");
        QTest::newRow("all three") << "345";
        QTest::newRow("shooting date, the base, alone") << "4";
        QTest::newRow("base column ticked before a later one") << "45";
        QTest::newRow("image modification and digitization") << "35";
        QTest::newRow("nothing ticked") << "";
    }
    void exifBytes()
    {
        QFETCH(QString, ticks);
        const QString path = listFile(QStringLiteral("b.tif"), ticks);
        const QByteArray before = readAll(path);
        run();

        const QByteArray after = readAll(path);
        QCOMPARE(after.size(), before.size());
        QByteArray expected = before;
        for (int c = 3; c <= 5; ++c) {
            const bool ticked = ticks.contains(QString::number(c));
            if (ticked)
                expected.replace(kDatePos[c - 3], 19, kAim.toLatin1());
            QCOMPARE(w->ListBox1->Cell(0, c), ticked ? kAim : kBase);
        }
        QCOMPARE(after, expected);
        QCOMPARE(mTime(path), ticks.isEmpty() ? touched() : noted());
        QCOMPARE(asked.size(), 1);
        QVERIFY(failures.isEmpty());
    }

    // The restore flag carries over between rows until a row sets its own modification
    // date. Per row: K the file's date kept, N the noted date put back, A the aim set.
    void restoreFlag_data()
    {
        QTest::addColumn<QStringList>("ticks");
        QTest::addColumn<QString>("expected");
        QTest::newRow("Exif and column 2: the aim, no restore") << QStringList{"342"} << "A";
        QTest::newRow("column 1 only: no restore") << QStringList{"1"} << "K";
        QTest::newRow("carried to a row without ticks") << QStringList{"3", ""} << "NN";
        QTest::newRow("cleared by column 2") << QStringList{"3", "2", ""} << "NAK";
        QTest::newRow("kept across a row without a date") << QStringList{"5", "x", ""} << "NKN";
        QTest::newRow("not set before the first write") << QStringList{"", "1", "4"} << "KKN";
        QTest::newRow("column 2 then a write sets it again") << QStringList{"2", "3", ""} << "ANN";
    }
    void restoreFlag()
    {
        QFETCH(QStringList, ticks);
        QFETCH(QString, expected);
        QStringList paths;
        for (int i = 0; i < ticks.size(); ++i)
            paths << listFile(QStringLiteral("r%1.tif").arg(i), ticks[i]);
        run();

        for (int i = 0; i < ticks.size(); ++i) {
            const QChar e = expected[i];
            QCOMPARE(mTime(paths[i]), e == 'A' ? aimTime() : e == 'N' ? noted() : touched());
            for (int c = 1; c <= 2; ++c)
                QCOMPARE(w->ListBox1->Cell(i, c), ticks[i].contains(QString::number(c)) ? kAimFileForm : kTouchedText);
            QVERIFY(w->ListBox1->CellTag(i, 2).value<Date>() == Date(2001, 2, 3, 4, 5, 6));
        }
        QVERIFY(failures.isEmpty());
    }

    void folder()
    {
        const QString path = dir->filePath(QStringLiteral("folder"));
        QVERIFY(QDir().mkpath(path));
        setMTime(path, touched());
        listItem(path, QStringLiteral("2"), kNoExif);
        w->ListBox1->setCell(0, 2, kBaseFileForm);
        w->baseChoice = 2;
        w->AddValue(2)->setText(QStringLiteral("1"));
        w->AddValue(3)->setText(QStringLiteral("1"));
        w->AimValue(0)->setText(QStringLiteral("2019"));
        w->ExecuteBtn->click();
        QCOMPARE(mTime(path), aimTime());
        QCOMPARE(w->ListBox1->Cell(0, 2), kAimFileForm);
        QVERIFY(failures.isEmpty());
    }

    // A position the file cannot reach writes nothing and the run goes on; a position of 0,
    // or one never noted, is the file's first bytes.
    void positions_data()
    {
        QTest::addColumn<QVariant>("tag");
        QTest::addColumn<qint64>("writtenAt");  // -1: nowhere
        QTest::newRow("beyond the end") << QVariant(1e12) << qint64(-1);
        QTest::newRow("last byte short of 19") << QVariant(double(kFileSize - 18)) << qint64(-1);
        QTest::newRow("exactly at the end") << QVariant(double(kFileSize - 19)) << kFileSize - 19;
        QTest::newRow("negative") << QVariant(-1.0) << qint64(-1);
        QTest::newRow("not a number") << QVariant(std::nan("")) << qint64(0);
        QTest::newRow("fraction truncated") << QVariant(7.9) << qint64(7);
        QTest::newRow("zero") << QVariant(0.0) << qint64(0);
        QTest::newRow("never noted") << QVariant() << qint64(0);
    }
    void positions()
    {
        QFETCH(QVariant, tag);
        QFETCH(qint64, writtenAt);
        const QString path = listFile(QStringLiteral("p.tif"), QStringLiteral("35"));
        const QString next = listFile(QStringLiteral("q.tif"), QStringLiteral("4"));
        w->ListBox1->setCellTag(0, 3, tag);
        const QByteArray before = readAll(path);
        run();

        QByteArray expected = before;
        expected.replace(kDatePos[2], 19, kAim.toLatin1());
        if (writtenAt >= 0)
            expected.replace(writtenAt, 19, kAim.toLatin1());
        QCOMPARE(readAll(path), expected);
        QVERIFY(readAll(next).contains(kAim.toLatin1()));
        QVERIFY(failures.isEmpty());
    }

    // What stops a run: a file that can't be opened for writing, or a row that fails. The
    // rows before stay written, the rest is left alone, and the report names the file.
    void stopsAtFailure_data()
    {
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("named");  // where the report says that the run stopped, and why
        QTest::newRow("file gone since it was listed")
            << "gone" << "“%1”. “f1” could not be opened for writing; it may have been moved or deleted.";
        QTest::newRow("a folder with an Exif tick") << "folder" << "“%1”. “f1” is a folder, not a file.";
        QTest::newRow("a row without its file") << "nil" << "row 2. No file was given.";
    }
    void stopsAtFailure()
    {
        QFETCH(QString, cause);
        QFETCH(QString, named);
        const QString y2000 = QStringLiteral("2000:01:01 00:00:00");
        const QString first = listFile(QStringLiteral("f0.tif"), QStringLiteral("34"), y2000);
        const QString bad = dir->filePath(QStringLiteral("f1"));
        if (cause == QLatin1String("folder")) {
            QVERIFY(QDir().mkpath(bad));
            listItem(bad, QStringLiteral("345"), y2000);
        } else {
            listFile(QStringLiteral("f1"), QStringLiteral("342"), y2000);
        }
        if (cause == QLatin1String("gone"))
            QVERIFY(QFile::remove(bad));
        if (cause == QLatin1String("nil"))
            w->ListBox1->setCellTag(1, 0, QVariant());
        const QString last = listFile(QStringLiteral("f2.tif"), QStringLiteral("342"), y2000);
        const QByteArray lastBefore = readAll(last), badBefore = readAll(bad);
        run(1, 0);

        QCOMPARE(failures.size(), 1);
        if (cause != QLatin1String("nil"))
            named = named.arg(bad);
        QVERIFY2(failures[0].startsWith(QStringLiteral("change the dates in the files: It stopped at ") + named),
                 qPrintable(failures[0]));
        const QString done = QStringLiteral("2000:01:02 00:00:00");
        QCOMPARE(readAll(first).count(done.toLatin1()), 2);
        QCOMPARE(w->ListBox1->Cell(0, 4), done);
        QCOMPARE(mTime(first), noted());
        QCOMPARE(readAll(bad), badBefore);
        QCOMPARE(readAll(last), lastBefore);
        QCOMPARE(mTime(last), touched());
        for (int row = 1; row <= 2; ++row)
            for (int c = 2; c <= 5; ++c)
                QCOMPARE(w->ListBox1->Cell(row, c), c == 2 ? kTouchedText : y2000);
    }

    // A date whose year has no four-digit form is never written: such a row is passed over
    // like a row without a date, and the restore flag carries across it.
    void unwritableYear_data()
    {
        QTest::addColumn<QString>("badYear");
        QTest::addColumn<int>("addYears");
        QTest::newRow("beyond 9999") << "2021" << 7990;
        QTest::newRow("below 0") << "0005" << -10;
    }
    void unwritableYear()
    {
        QFETCH(QString, badYear);
        QFETCH(int, addYears);
        const QString y2000 = QStringLiteral("2000:01:01 00:00:00");
        const QString first = listFile(QStringLiteral("u0.tif"), QStringLiteral("4"), y2000);
        const QString bad = listFile(QStringLiteral("u1.tif"), QStringLiteral("345"), badYear + y2000.mid(4));
        const QString last = listFile(QStringLiteral("u2.tif"), QStringLiteral(""), y2000);
        const QByteArray badBefore = readAll(bad);
        w->AddValue(0)->setText(QString::number(addYears));
        run(0, 0);

        QCOMPARE(readAll(bad), badBefore);
        QCOMPARE(mTime(bad), touched());
        QCOMPARE(w->ListBox1->Cell(1, 4), badYear + y2000.mid(4));
        QVERIFY(readAll(first).contains(QStringLiteral("%1:01:01").arg(2000 + addYears).toLatin1()));
        QCOMPARE(mTime(last), noted());
        QVERIFY(failures.isEmpty());
    }
};

QTEST_MAIN(ExecuteRunTest)
#include "tst_executerun.moc"
