// What holding the Down arrow through a column of large photos costs the window.
//
//   bench/preview (or build-bench/bench/preview_bench) [FILE | [heic|heic-thumb|raw] WIDTH HEIGHT] [ROWS]
//
// Makes a WIDTHxHEIGHT JPEG (default 6000x4000, quality 92) of a smooth scene under heavy
// sensor-like noise (each channel off by up to 40 either way; noise is what makes the
// entropy decoding, the part no reduced scale saves, expensive), or takes the picture named;
// with heic, the same scene as a HEIC without a thumbnail (heif-enc, quality 80), with
// heic-thumb with a phone's 320-pixel thumbnail, with raw a DNG whose camera preview is
// that JPEG; it
// lists it ROWS times (default 100), and presses Down from the first row to the last,
// one press every 33 ms as a held key repeats, then waits for the last picture. Prints:
//   press         the time each key press takes (the Change handler), median and worst
//   loop busy     the longest stretch the event loop spent without waiting for input
//                 between presses (drawing a picture that came back, painting the window),
//                 and the drawing of a picture that came back alone, median of 7
//   pictures      how many were drawn, and how long the last row's took after its press
//   decode        what one press cost when the decode ran inside it: the reduced decode
//                 alone (openScaledPicture), and a full decode by the image plugins where
//                 one reads the file, medians of 7
// Run it on a Release build; a sanitizer build is several times slower.

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QImageReader>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTextStream>

#include <algorithm>
#include <ctime>
#include <vector>

#include "platform/widgets/Canvas.h"
#include "platform/listbox/Listbox.h"
#include "platform/pictures/PictureWorker.h"
#include "platform/pictures/ScaledPicture.h"
#include "shell/Window1.h"
#include "support/MadeFiles.h"

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
    QString kind = QStringLiteral("jpeg");
    if (args.size() > 1 && QStringList{"heic", "heic-thumb", "raw"}.contains(args[1]))
        kind = args.takeAt(1);
    const int width = args.size() > 2 ? args[1].toInt() : 6000;
    const int height = args.size() > 2 ? args[2].toInt() : 4000;
    const int rows = qMax(2, args.size() > 3 ? args[3].toInt() : args.size() == 2 ? args[1].toInt() : 100);
    const int runs = 7;
    QTextStream out(stdout);

    QTemporaryDir dir;
    const QString file = given.isEmpty() ? dir.filePath(QStringLiteral("noisy.") + kind) : given;
    if (given.isEmpty()) {
        QImage noisy(width, height, QImage::Format_RGB32);
        QRandomGenerator rng(20240501);
        auto noise = [&](int v) { return qBound(0, v + int(rng.bounded(81u)) - 40, 255); };
        for (int y = 0; y < height; ++y) {
            auto* line = reinterpret_cast<QRgb*>(noisy.scanLine(y));
            for (int x = 0; x < width; ++x)
                line[x] = qRgb(noise(255 * x / width), noise(255 * y / height), noise(128));
        }
        QByteArray jpeg;
        QBuffer buffer(&jpeg);
        buffer.open(QIODevice::WriteOnly);
        noisy.save(&buffer, "JPEG", 92);
        const QByteArray bytes = kind == "heic" ? heifEncoded(noisy, {"-q", "80"})
                                 : kind == "heic-thumb" ? heifEncoded(noisy, {"-q", "80", "-t", "320"})
                                 : kind == "raw" ? dngWithPreview(jpeg, noisy.size())
                                                 : jpeg;
        QFile f(file);
        if (bytes.isEmpty() || !f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size()) {
            out << "could not write " << file << "\n";
            return 1;
        }
    }
    out << (given.isEmpty() ? QStringLiteral("%1x%2 noisy %3").arg(width).arg(height).arg(kind) : given) << ", "
        << QFileInfo(file).size() / 1024 << " KiB, listed " << rows << " times\n";

    Window1 w;
    w.show();
    for (int row = 0; row < rows; ++row) {
        w.ListBox1->AddRow(QStringLiteral("photo %1").arg(row));
        w.ListBox1->setCellTag(row, 0, QVariant::fromValue(FolderItem(file)));
    }
    QCoreApplication::processEvents();

    // The event loop's busy stretches between presses: each turn of the loop handles what
    // is pending (a picture that came back, say) and is timed.
    QElapsedTimer clock;
    clock.start();
    std::vector<double> busy;
    const auto runLoopFor = [&](int ms) {
        const qint64 until = clock.nsecsElapsed() + qint64(ms) * 1000000;
        while (clock.nsecsElapsed() < until) {
            const qint64 t0 = clock.nsecsElapsed();
            QCoreApplication::processEvents();
            busy.push_back((clock.nsecsElapsed() - t0) / 1e6);
            QThread::usleep(200);
        }
    };
    int drawn = 0;
    qint64 lastDrawnAt = 0;
    quint64 version = w.Canvas1->backdropVersion();
    QObject::connect(w.previewWorker, &PictureWorker::handedBack, [&] {
        if (w.Canvas1->backdropVersion() != version && !w.Canvas1->Backdrop().isNull()) {
            ++drawn;
            lastDrawnAt = clock.nsecsElapsed();
        }
        version = w.Canvas1->backdropVersion();
    });

    w.ListBox1->setFocus();
    w.ListBox1->setListIndex(0);
    std::vector<double> presses;
    qint64 lastPressAt = 0;
    for (int row = 1; row < rows; ++row) {
        const qint64 t0 = clock.nsecsElapsed();
        QTest::keyClick(w.ListBox1, Qt::Key_Down);
        lastPressAt = clock.nsecsElapsed();
        presses.push_back((lastPressAt - t0) / 1e6);
        version = w.Canvas1->backdropVersion();  // the press empties the pane
        runLoopFor(33);
    }
    for (int waited = 0; lastDrawnAt <= lastPressAt && waited < 10000; waited += 10)
        runLoopFor(10);
    const bool last = lastDrawnAt > lastPressAt;
    const int selected = w.ListBox1->ListIndex();
    const double worstBusy = busy.empty() ? 0 : *std::max_element(busy.begin(), busy.end());

    const Times reduced = timeMs(runs, [&] { (void)openScaledPicture(FolderItem(file), w.Canvas1->size()); });
    const ScaledPicture decoded = openScaledPicture(FolderItem(file), w.Canvas1->size());
    const Times draw = timeMs(runs, [&] { w.drawPicture(decoded); });
    const bool plugin = QImageReader(file).canRead();
    const Times full = timeMs(plugin ? runs : 1, [&] {
        QImageReader r(file);
        r.setAutoTransform(false);
        (void)r.read();
    });
    out << "press (Change handler): median " << QString::number(median(presses), 'f', 2) << " ms, worst "
        << QString::number(*std::max_element(presses.begin(), presses.end()), 'f', 2) << " ms over "
        << presses.size() << " presses\n";
    out << "loop busy between presses (pictures drawn, the window painted): worst "
        << QString::number(worstBusy, 'f', 2) << " ms; drawing a picture that came back: " << ms(draw) << "\n";
    out << "pictures drawn: " << drawn << "; row " << selected << " selected at the end, its picture "
        << (last ? QStringLiteral("drawn %1 ms after its press").arg((lastDrawnAt - lastPressAt) / 1e6, 0, 'f', 1)
                 : QStringLiteral("NOT drawn"))
        << "\n";
    out << "decode inside a press, as before: reduced " << ms(reduced) << "; full "
        << (plugin ? ms(full) : QStringLiteral("(no image plugin reads it)")) << "\n";
    return last ? 0 : 1;
}
