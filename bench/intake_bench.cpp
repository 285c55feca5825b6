// intake_bench [--runs R] [--show] [--no-read-ahead] [--walk] LIST
//
// Builds the window offscreen and times what a drop of the files named in LIST (one path a
// line) costs: the read-ahead that a drop starts on a cold disk, addFileToTable for every
// file in one batch of rows, then the one sort. One unmeasured warm-up run, then R timed runs (default 5), each
// on an emptied table; --runs 0 times one run without a warm-up (a cold run).
// --no-read-ahead leaves the read-ahead out. --walk then ticks "list only still image
// files" and times the walk that prunes the table (Timer5_Action), once.
// Prints one line per run and a summary line: medians of wall and CPU time, the best wall
// time, and the process's peak resident size. Run it through bench/intake, which builds
// it in Release and makes the files.

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QSignalBlocker>
#include <QStringList>

#include "platform/files/FolderItem.h"
#include "platform/listbox/Listbox.h"
#include "platform/files/ReadAhead.h"
#include "shell/Window1.h"

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::time_point from, Clock::time_point to) { return std::chrono::duration<double>(to - from).count(); }

// CPU time of the process, which other processes on a busy machine disturb less than the
// wall clock.
double cpuSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    const size_t n = v.size();
    return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

long peakRssKb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

}  // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    int runs = 5;
    bool show = false, walk = false;
    while (!args.isEmpty() && args.first().startsWith(QLatin1String("--"))) {
        const QString option = args.takeFirst();
        if (option == QLatin1String("--runs") && !args.isEmpty())
            runs = std::max(0, args.takeFirst().toInt());
        else if (option == QLatin1String("--show"))
            show = true;
        else if (option == QLatin1String("--no-read-ahead"))
            ReadAhead::setPolicy(ReadAhead::Policy::Never);
        else if (option == QLatin1String("--walk"))
            walk = true;
    }
    if (args.size() != 1) {
        std::fprintf(stderr, "usage: intake_bench [--runs R] [--show] [--no-read-ahead] [--walk] LIST\n");
        return 2;
    }
    QFile list(args.first());
    if (!list.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(args.first()));
        return 1;
    }
    std::vector<FolderItem> items;
    for (const QByteArray& line : list.readAll().split('\n'))
        if (!line.isEmpty())
            items.emplace_back(QFile::decodeName(line));

    Window1 w;
    if (show)
        w.show();
    std::vector<double> adds, sorts, cpus;
    int withDates = 0;
    const int warmUps = runs > 0 ? 1 : 0;
    for (int run = 1 - warmUps; run <= std::max(runs, 1); ++run) {
        w.clearTables();
        const double c0 = cpuSeconds();
        const auto t0 = Clock::now();
        {
            // As a drop does it.
            const ReadAhead ahead(items);
            const Listbox::RowBatch batch(*w.ListBox1);
            for (const FolderItem& f : items)
                w.addFileToTable(f);
        }
        const auto t1 = Clock::now();
        if (w.ListBox1->ListCount() > 0)
            w.ListBox1->Sort();
        const auto t2 = Clock::now();
        const double c2 = cpuSeconds();
        if (run == 0)  // warm-up
            continue;
        adds.push_back(seconds(t0, t1));
        sorts.push_back(seconds(t1, t2));
        cpus.push_back(c2 - c0);
        std::printf("run %d: add %.6f s, sort %.6f s, cpu %.6f s\n", run, adds.back(), sorts.back(), cpus.back());
    }
    for (int row = 0; row < w.ListBox1->ListCount(); ++row)
        withDates += w.ListBox1->CellTag(row, 4).isValid();
    const long tableRssKb = peakRssKb();  // before the walk, which the table doesn't need
    double walkSeconds = 0, walkCpu = 0;
    int rowsAfterWalk = w.ListBox1->ListCount();
    if (walk) {
        {
            const QSignalBlocker quiet(w.OnlyPicture);
            w.OnlyPicture->setChecked(true);
        }
        const double c0 = cpuSeconds();
        const auto t0 = Clock::now();
        w.Timer5_Action();
        walkSeconds = seconds(t0, Clock::now());
        walkCpu = cpuSeconds() - c0;
        rowsAfterWalk = w.ListBox1->ListCount();
    }
    std::vector<double> totals;
    for (size_t i = 0; i < adds.size(); ++i)
        totals.push_back(adds[i] + sorts[i]);
    const double add = median(adds), sort = median(sorts), total = median(totals), n = double(items.size());
    std::printf("files=%zu rows=%d with_shooting_date=%d add_s=%.6f sort_s=%.6f total_s=%.6f best_s=%.6f "
                "cpu_s=%.6f us_per_file=%.2f files_per_s=%.0f walk_s=%.6f walk_cpu_s=%.6f rows_after_walk=%d peak_rss_kb=%ld\n",
                items.size(), w.ListBox1->ListCount(), withDates, add, sort, total,
                *std::min_element(totals.begin(), totals.end()), median(cpus), n > 0 ? total * 1e6 / n : 0.0,
                total > 0 ? n / total : 0.0, walkSeconds, walkCpu, rowsAfterWalk, tableRssKb);
    return 0;
}
