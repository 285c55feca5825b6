// How long selecting a large photo takes to show its preview.
//
//   bench/preview (or build-bench/bench/preview_bench) [WIDTH HEIGHT] [RUNS]
//
// Makes a WIDTHxHEIGHT JPEG (default 6000x4000, quality 92) of a smooth scene under heavy
// sensor-like noise (each channel off by up to 40 either way; noise is what makes the
// entropy decoding, the part no reduced scale saves, expensive), then times drawCanvas on
// it and, for comparison, a full decode of the same file. Prints the median of RUNS
// (default 7) of each in milliseconds, as wall time and as the process's CPU time, which
// other work on the machine disturbs less. Run it on a Release build; a sanitizer build
// is several times slower.

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QImageReader>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <ctime>
#include <vector>

#include "platform/Listbox.h"
#include "shell/Window1.h"

namespace {

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

struct Times {
    double wall;
    double cpu;
};

template <class F>
Times timeMs(int runs, F f)
{
    std::vector<double> wall, cpu;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        const std::clock_t c = std::clock();
        t.start();
        f();
        wall.push_back(t.nsecsElapsed() / 1e6);
        cpu.push_back(double(std::clock() - c) * 1000.0 / CLOCKS_PER_SEC);
    }
    return {median(wall), median(cpu)};
}

QString ms(Times t)
{
    return QStringLiteral("%1 ms wall, %2 ms CPU").arg(t.wall, 0, 'f', 1).arg(t.cpu, 0, 'f', 1);
}

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    QStringList args = app.arguments();
    // A JPEG named first is timed as it is (e.g. a photo of the intake corpus).
    QString given;
    if (args.size() > 1 && QFileInfo(args[1]).isFile())
        given = args.takeAt(1);
    const int width = args.size() > 2 ? args[1].toInt() : 6000;
    const int height = args.size() > 2 ? args[2].toInt() : 4000;
    const int runs = qMax(1, args.size() > 3 ? args[3].toInt() : 7);
    QTextStream out(stdout);

    QTemporaryDir dir;
    const QString file = given.isEmpty() ? dir.filePath(QStringLiteral("noisy.jpg")) : given;
    if (given.isEmpty()) {
        QImage noisy(width, height, QImage::Format_RGB32);
        QRandomGenerator rng(20240501);
        auto noise = [&](int v) { return qBound(0, v + int(rng.bounded(81u)) - 40, 255); };
        for (int y = 0; y < height; ++y) {
            auto* line = reinterpret_cast<QRgb*>(noisy.scanLine(y));
            for (int x = 0; x < width; ++x)
                line[x] = qRgb(noise(255 * x / width), noise(255 * y / height), noise(128));
        }
        if (!noisy.save(file, "JPEG", 92)) {
            out << "could not write " << file << "\n";
            return 1;
        }
    }
    out << (given.isEmpty() ? QStringLiteral("%1x%2 noisy JPEG").arg(width).arg(height) : given) << ", " << QFileInfo(file).size() / 1024 << " KiB, median of " << runs
        << " runs\n";

    Window1 w;
    w.ListBox1->AddRow(QStringLiteral("noisy.jpg"));
    w.ListBox1->setCellTag(0, 0, QVariant::fromValue(FolderItem(file)));

    const Times preview = timeMs(runs, [&] { w.drawCanvas(0); });
    const Times full = timeMs(runs, [&] {
        QImageReader r(file);
        r.setAutoTransform(false);
        (void)r.read();
    });
    out << "drawCanvas (reduced decode, scale, centre): " << ms(preview) << "\n";
    out << "full decode alone, for comparison:          " << ms(full) << "\n";
    return 0;
}
