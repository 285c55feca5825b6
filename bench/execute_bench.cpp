// execute_bench --floor FLOOR [--runs R] [--copies] LIST
//
// How fast the execute run shifts every date of the files named in LIST (one path a line),
// against "FLOOR -w" on the same files: the least I/O that rewriting those dates in place
// needs. The two are timed turn about, R times each (default 4), after one warm-up of the
// floor, each on clean pages (a sync before it); the floor's process start-up (timed on
// an empty list) is taken off.
//
// Each run lists the files (not timed), ticks all five date columns of every row and
// times ExecuteBtn_Action from the confirmation to its return; after it, the check that
// the run makes before its first byte is timed alone, for its share of the run. The offset is one hour,
// forward in odd runs and back in even ones, so an even R, in UTC, leaves every date and
// modification time of the files as it found them. Each run is made twice, turn about: with
// the run's journal and read-back (as the program runs) and without them, as the run was
// before the journal, for what they cost a file.
// Last, the plan of a made-up run of 100,000 files is written to the journal alone, timed.
// Journals go to a temporary folder. Run it through bench/execute.
// With --copies, the runs alternate between copies kept in step (the Edit menu's item
// ticked) and not, and both are printed: the same dates, with and without the copies that
// move with them.

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <cstdio>
#include <vector>

#include "journal/Journal.h"
#include "exif/DateCopies.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/MsgBox.h"
#include "shell/MenuBar1.h"
#include "shell/Window1.h"
#include "writeback/RunPlan.h"

namespace {

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    const size_t n = v.size();
    return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// Wall seconds of one "floor -w" over the list.
double timeFloor(const QString& floor, const QString& list)
{
    ::sync();  // the files' pages clean, as a user's files are
    QProcess p;
    p.setStandardOutputFile(QProcess::nullDevice());
    QElapsedTimer t;
    t.start();
    p.start(floor, {QStringLiteral("-w"), QStringLiteral("-@"), list});
    p.waitForFinished(-1);
    const double s = double(t.nsecsElapsed()) / 1e9;
    if (p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        qFatal("%s failed", qPrintable(floor));
    return s;
}

// Lists the files, ticks all five dates of each row and times one execute run, and its
// check alone after it; counts the rows whose three Exif dates all moved.
double timeRun(Window1& w, const QStringList& files, int hours, int& moved, double& check)
{
    w.clearTables();
    for (const QString& f : files)
        w.addFileToTable(FolderItem(f));
    Listbox* t = w.ListBox1;
    for (int row = 0; row < t->ListCount(); ++row)
        for (int c = 1; c <= 5; ++c)
            t->setCellCheck(row, c, c < 3 || t->Cell(row, c) != kNoExif);
    w.baseChoice = 4;
    w.AddValue(3)->setText(QString::number(hours));
    w.AimValue(0)->setText(QStringLiteral("-"));
    std::vector<QString> before;  // the Exif texts, three a row
    for (int row = 0; row < t->ListCount(); ++row)
        for (int c = 3; c <= 5; ++c)
            before.push_back(t->Cell(row, c));

    ::sync();
    QElapsedTimer timer;
    timer.start();
    w.ExecuteBtn_Action();
    const double s = double(timer.nsecsElapsed()) / 1e9;

    // The check alone, as the run made it before its first byte, on the files as they are
    // now (the table shows their new dates): its share of the run. After the run, so that
    // both find the same caches warm.
    ::sync();
    timer.start();
    const QStringList failed = w.checkExecute();
    check = double(timer.nsecsElapsed()) / 1e9;
    if (!failed.isEmpty())
        qFatal("the check failed: %s", qPrintable(failed.first()));

    moved = 0;
    for (int row = 0; row < t->ListCount(); ++row) {
        bool all = true;
        for (int c = 3; c <= 5; ++c)
            all = all && t->Cell(row, c) != before[size_t(row) * 3 + size_t(c - 3)];
        moved += all;
    }
    return s;
}

// Seconds to write and sync the plan of a made-up run of n files, three dates each; the
// processor's share of them (a loaded machine stretches the rest) in cpuSeconds.
double timePlan(int n, double& cpuSeconds)
{
    JournalRun run;
    run.started = QDateTime::currentMSecsSinceEpoch();
    run.offset = QStringLiteral("0/0/0 1:0:0");
    for (int i = 0; i < n; ++i) {
        JournalFile f;
        f.path = "/home/someone/Pictures/2019/holiday/IMG_" + QByteArray::number(10000 + i) + ".JPG";
        f.device = 2049;
        f.inode = quint64(1000000 + i);
        f.size = 24000000;
        f.modification = {1559344089, 123456789};
        f.modificationAfter = f.modification;
        for (quint64 at : {200, 400, 420})
            f.patches.push_back({at, "2019:05:31 23:08:09", "2019:06:01 00:08:09", 4, {}});
        run.files.push_back(std::move(f));
    }
    Journal journal;
    QString why;
    QElapsedTimer t;
    const std::clock_t cpu = std::clock();
    t.start();
    if (!journal.begin(run, &why))
        qFatal("%s", qPrintable(why));
    cpuSeconds = double(std::clock() - cpu) / CLOCKS_PER_SEC;
    return double(t.nsecsElapsed()) / 1e9;
}

// Milliseconds to find and move the dates of a 1-MiB XMP packet (median of 21): a long
// history before the description's dates, as an editor leaves it.
double timeLargePacket()
{
    QByteArray history;
    while (history.size() < (1 << 20) - 1024)
        history += "<rdf:li stEvt:action='saved' stEvt:when='2020-01-01T00:00:00+01:00' stEvt:softwareAgent='x'/>\n";
    const QByteArray packet =
        "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
        "<rdf:Description xmlns:xmp='http://ns.adobe.com/xap/1.0/' xmlns:xmpMM='http://ns.adobe.com/xap/1.0/mm/' "
        "xmlns:stEvt='http://ns.adobe.com/xap/1.0/sType/ResourceEvent#' xmp:CreateDate='2020-01-01T00:00:00'>"
        "<xmpMM:History><rdf:Seq>" + history + "</rdf:Seq></xmpMM:History></rdf:Description></rdf:RDF></x:xmpmeta>";
    const std::vector<Shift> shifts{{5, "2020:01:01 00:00:00", "2020:01:01 01:00:00"}};
    std::vector<double> ms;
    for (int i = 0; i < 21; ++i) {
        CopyFindings found;
        QElapsedTimer t;
        t.start();
        moveXmpCopies(packet, 0, shifts, QString(), found);
        ms.push_back(double(t.nsecsElapsed()) / 1e6);
        if (found.moved != 1)
            qFatal("the packet's date did not move");
    }
    return median(ms);
}

}  // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    QString floor, listPath;
    int runs = 4;
    bool copies = false;
    while (!args.isEmpty()) {
        const QString a = args.takeFirst();
        if (a == QLatin1String("--floor") && !args.isEmpty())
            floor = args.takeFirst();
        else if (a == QLatin1String("--runs") && !args.isEmpty())
            runs = std::max(1, args.takeFirst().toInt());
        else if (a == QLatin1String("--copies"))
            copies = true;
        else
            listPath = a;
    }
    QFile list(listPath);
    if (floor.isEmpty() || !list.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "usage: execute_bench --floor FLOOR [--runs R] LIST\n");
        return 2;
    }
    QStringList files;
    for (const QByteArray& line : list.readAll().split('\n'))
        if (!line.trimmed().isEmpty())
            files << QString::fromLocal8Bit(line.trimmed());
    QTemporaryFile empty;
    if (!empty.open())
        qFatal("cannot make an empty list");

    QTemporaryDir state;
    qputenv("XDG_STATE_HOME", state.path().toUtf8());
    Window1 w;
    setMsgBoxAnswer([](const QString&, int, const QString&, const QString&) { return 1; });
    int failures = 0;
    setFailureReport([&](const QString& where, const QString& what) {
        ++failures;
        std::fprintf(stderr, "%s: %s\n", qPrintable(where), qPrintable(what));
    });

    std::vector<double> floorTimes, startTimes, runTimes, checkTimes, bareTimes, plainTimes;
    timeFloor(floor, listPath);  // warm-up
    if (copies)
        runs = std::max(4, (runs + 3) / 4 * 4);
    for (int r = 0; r < runs; ++r) {
        const bool inStep = !copies || r % 2 == 0;
        MenuBar1::instance()->lookup(QStringLiteral("EditKeepCopies"))->setChecked(inStep);
        startTimes.push_back(timeFloor(floor, empty.fileName()));
        floorTimes.push_back(timeFloor(floor, listPath));
        int moved = 0, bareMoved = 0;
        double check = 0, bareCheck = 0, journalled = 0, bare = 0;
        // Forth and back each time, so that the pair leaves the files as they were; which
        // of the two goes first changes from run to run.
        for (bool withJournal : {r % 2 == 0, r % 2 != 0}) {
            setRunJournalled(withJournal);
            const int hours = withJournal == (r % 2 == 0) ? 1 : -1;
            if (withJournal)
                journalled = timeRun(w, files, hours, moved, check);
            else
                bare = timeRun(w, files, hours, bareMoved, bareCheck);
        }
        (inStep ? runTimes : plainTimes).push_back(journalled);
        if (inStep) {
            bareTimes.push_back(bare);
            checkTimes.push_back(check);
        }
        std::printf("run %d: floor %.4f s, start-up %.4f s, execute%s %.4f s (its check alone %.4f s), "
                    "without journal %.4f s, %d and %d files with all three Exif dates moved\n",
                    r + 1, floorTimes.back(), startTimes.back(), inStep ? "" : " without copies", journalled, check,
                    bare, moved, bareMoved);
    }
    const double n = double(files.size());
    const double f = median(floorTimes) - median(startTimes), e = median(runTimes);
    std::printf("%d files, medians of %d runs\n", int(files.size()), runs);
    std::printf("floor -w  %8.2f us/file  %9.0f files/s  (its process start-up taken off)\n", f * 1e6 / n, n / f);
    const double b = median(bareTimes);
    std::printf("execute   %8.2f us/file  %9.0f files/s  x%.2f the floor, x%.3f without the journal\n",
                e * 1e6 / n, n / e, e / f, e / b);
    std::printf("  without %8.2f us/file  %9.0f files/s  x%.2f the floor (no journal, nothing read back)\n",
                b * 1e6 / n, n / b, b / f);
    if (copies) {
        const double p = median(plainTimes);
        std::printf("  without copies %8.2f us/file  x%.2f the floor; with them x%.2f of that\n", p * 1e6 / n, p / f, e / p);
    }
    const double c = median(checkTimes);
    std::printf("  check   %8.2f us/file  %.0f%% of the execute run\n", c * 1e6 / n, 100 * c / e);
    double planCpu = 0;
    const double plan = timePlan(100000, planCpu);
    std::printf("plan of 100000 files written and synced: %.3f s (%.3f s of it on the processor)\n", plan, planCpu);
    std::printf("a 1-MiB XMP packet: %.2f ms to find and move its date\n", timeLargePacket());
    return failures ? 1 : 0;
}
