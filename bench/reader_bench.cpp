// reader_bench [runs=7] [case]
//
// How long the worst files we know of take to list: addFileToTable on crafted TIFF files of
// up to about 1 MB whose Exif pointers would take a plain walk exponential time, against a
// plain camera file of the same size as the floor. Each case is timed alternately with
// the floor (floor, case, floor, case, ...), R times after a warm-up, on an emptied table;
// prints the medians of wall and CPU time. A case named
// runs that case alone. Run it on a Release build:
//   cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DVELKARO_TESTS=OFF
//   cmake --build build-bench --target reader_bench && build-bench/bench/reader_bench
// The layouts (all big-endian, header at 0, directory 0 at 8):
//   self      one directory of 65,535 entries: an Exif pointer to itself, then tag 306 as
//             RATIONAL; the chain leads back to it (the 786 KB file that froze for 11 s)
//   tree      levels of directories of M Exif pointers all to the next level; a date at the
//             bottom
//   stairs    one run of entries that is many overlapping directories: each filler entry's
//             value ends in 65535, the count of a directory that starts there and holds all
//             entries after it; every pointer leads to the next such directory, so each
//             directory points to all that start after it
//   mesh      a looping chain of 101 directories of P pointers each, to all the others in turn
//   random    directories of N Exif pointers in all to random positions of the file, where
//             whatever bytes stand there are read as a directory

#include <QApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>

#include "platform/files/FolderItem.h"
#include "platform/listbox/Listbox.h"
#include "shell/Window1.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

struct Tiff {
    QByteArray b = QByteArray("MM\0\x2A\0\0\0\x08", 8);
    void u16(qint64 at, quint16 v) { grow(at + 2), qToBigEndian(v, b.data() + at); }
    void u32(qint64 at, quint32 v) { grow(at + 4), qToBigEndian(v, b.data() + at); }
    void entry(qint64 at, quint16 tag, quint16 type, quint32 count, quint32 value)
    {
        u16(at, tag), u16(at + 2, type), u32(at + 4, count), u32(at + 8, value);
    }
    void grow(qint64 size)
    {
        if (b.size() < size)
            b.resize(size, '\0');
    }
    // A directory of n entries at at, each made by f(i, entryPosition); next offset given.
    template <class F>
    qint64 directory(qint64 at, int n, quint32 next, F f)
    {
        u16(at, quint16(n));
        for (int i = 0; i < n; ++i)
            f(i, at + 2 + 12 * qint64(i));
        u32(at + 2 + 12 * qint64(n), next);
        return at + 6 + 12 * qint64(n);
    }
    void date(qint64 at, quint16 tag, qint64 value)  // an ASCII entry and its date at value
    {
        entry(at, tag, 2, 20, quint32(value));
        grow(value + 20);
        b.replace(value, 19, "2001:02:03 04:05:06");
    }
};

QByteArray self()
{
    Tiff t;
    const qint64 values = 8 + 6 + 12 * 65535;
    t.directory(8, 65535, 8, [&](int i, qint64 at) {
        i == 0 ? t.entry(at, 34665, 4, 1, 8) : t.entry(at, 306, 5, 1, quint32(values));
    });
    t.u32(values, 1), t.u32(values + 4, 1);
    return t.b;
}

QByteArray tree(int levels, int pointers)
{
    Tiff t;
    qint64 at = 8;
    for (int level = 0; level < levels; ++level) {
        const qint64 next = at + 6 + 12 * qint64(pointers);
        at = t.directory(at, pointers, 0, [&](int, qint64 e) { t.entry(e, 34665, 4, 1, quint32(next)); });
    }
    t.directory(at, 1, 0, [&](int, qint64 e) { t.date(e, 36867, at + 20); });
    return t.b;
}

QByteArray stairs(int entries)
{
    // Filler 2k ends at 20 + 24k: a directory of 65535 entries from pointer 2k + 1 on.
    Tiff t;
    t.directory(8, entries, 0, [&](int i, qint64 at) {
        i % 2 ? t.entry(at, 34665, 4, 1, quint32(20 + 24 * (i / 2 + 1))) : t.entry(at, 1, 1, 1, 0xFFFF);
    });
    return t.b;
}

QByteArray mesh(int pointers)
{
    Tiff t;
    const qint64 size = 6 + 12 * qint64(pointers + 1);
    for (int d = 0; d < 101; ++d) {
        const qint64 at = 8 + d * size;
        t.directory(at, pointers + 1, quint32(8 + (d + 1) % 101 * size), [&](int i, qint64 e) {
            i == 0 ? t.date(e, 36868, 8 + 101 * size)
                   : t.entry(e, 34665, 4, 1, quint32(8 + (d + i) % 101 * size));
        });
    }
    return t.b;
}

QByteArray scattered(int pointers)
{
    Tiff t;
    QRandomGenerator r(1);
    const int first = std::min(pointers, 65535);
    const quint32 size = 8 + 6 + 12 * first + 6 + 12 * (pointers - first);
    auto scatter = [&](int, qint64 at) { t.entry(at, 34665, 4, 1, 8 + r.bounded(size - 8)); };
    const qint64 second = t.directory(8, first, pointers > first ? 8 + 6 + 12 * first : 0, scatter);
    if (pointers > first)
        t.directory(second, pointers - first, 0, scatter);
    return t.b;
}

// The floor: a camera's layout padded with an ordinary 1 MB picture.
QByteArray camera()
{
    Tiff t;
    t.directory(8, 3, 0, [&](int i, qint64 e) {
        if (i == 0)
            t.entry(e, 274, 3, 1, 6u << 16);
        else if (i == 1)
            t.date(e, 306, 300);
        else
            t.entry(e, 34665, 4, 1, 200);
    });
    t.directory(200, 2, 0, [&](int i, qint64 e) { t.date(e, quint16(36867 + i), 320 + 20 * i); });
    t.grow(1 << 20);
    return t.b;
}

using Clock = std::chrono::steady_clock;

double cpuSeconds()
{
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return double(ts.tv_sec) + double(ts.tv_nsec) * 1e-9;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2;
}

struct Time {
    double wall, cpu;
};

Time list(Window1& w, const QString& path)
{
    w.clearTables();
    const auto t0 = Clock::now();
    const double c0 = cpuSeconds();
    w.addFileToTable(FolderItem(path));
    return {std::chrono::duration<double>(Clock::now() - t0).count(), cpuSeconds() - c0};
}

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 7;
    Window1* w = Window1::instance();
    QTemporaryDir dir;
    auto write = [&](const QString& name, const QByteArray& bytes) {
        QFile f(dir.filePath(name));
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(f.fileName()));
        return f.fileName();
    };
    const QString floor = write("floor", camera());
    const std::vector<std::pair<QString, QByteArray>> cases{
        {"self 65535", self()},
        {"tree 3 x 21845", tree(3, 21845)},
        {"tree 10 x 8191", tree(10, 8191)},
        {"tree 3 x 65535 (2.4 MB)", tree(3, 65535)},
        {"stairs 87000", stairs(87000)},
        {"mesh 101 x 700", mesh(700)},
        {"random 65535", scattered(65535)},
        {"random 87000", scattered(87000)},
    };
    std::printf("%-26s %9s %10s %10s %10s %10s\n", "case", "bytes", "wall ms", "cpu ms", "floor wall", "floor cpu");
    for (const auto& [name, bytes] : cases) {
        if (argc > 2 && !name.startsWith(argv[2]))
            continue;
        const QString path = write("case", bytes);
        list(*w, path), list(*w, floor);  // warm-up
        std::vector<double> wall, cpu, floorWall, floorCpu;
        for (int r = 0; r < runs; ++r) {
            const Time f = list(*w, floor), c = list(*w, path);
            floorWall.push_back(f.wall * 1e3), floorCpu.push_back(f.cpu * 1e3);
            wall.push_back(c.wall * 1e3), cpu.push_back(c.cpu * 1e3);
        }
        std::printf("%-26s %9lld %10.2f %10.2f %10.2f %10.2f   %s\n", qPrintable(name), qint64(bytes.size()), median(wall),
                    median(cpu), median(floorWall), median(floorCpu),
                    qPrintable(w->ListBox1->Cell(0, 3) + " | " + w->ListBox1->Cell(0, 4) + " | " + w->ListBox1->Cell(0, 5)));
    }
    return 0;
}
