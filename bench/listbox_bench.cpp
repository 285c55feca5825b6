// Fills the file table as a drop of 100,000 files would (AddRow, five texts, six ticks,
// four tags per row: the file, its modification date and two offsets) with the table shown, sorts it, removes every tenth row, and prints
// the times and the process's resident memory. Run by hand on a Release build:
//   QT_QPA_PLATFORM=offscreen build-bench/bench/listbox_bench [rows] [screenshot.png]
#include "platform/text/Date.h"
#include "platform/files/FolderItem.h"
#include "platform/listbox/Listbox.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QVBoxLayout>

#include <cstdio>
#include <vector>

namespace {

long residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    return -1;
}

QString stamp(int i, char sep)
{
    return QStringLiteral("20%1%2%3%4%5 %6:%7:%8")
        .arg(10 + i % 13)
        .arg(QChar(sep))
        .arg(1 + i % 12, 2, 10, QChar('0'))
        .arg(QChar(sep))
        .arg(1 + i % 28, 2, 10, QChar('0'))
        .arg(i % 24, 2, 10, QChar('0'))
        .arg(i % 60, 2, 10, QChar('0'))
        .arg((i * 7) % 60, 2, 10, QChar('0'));
}

}  // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int rows = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 100000;

    QWidget window;
    window.resize(870, 520);
    auto* strip = new Listbox(&window);
    auto* table = new Listbox(&window);
    QFont font = window.font();
    font.setPixelSize(12);
    for (Listbox* lb : {strip, table}) {
        lb->setFont(font);
        lb->setColumnCount(7);
        lb->setColumnWidths(QStringLiteral(",15%,15%,15%,15%,15%,0"));
    }
    strip->setHasHeader(false);
    strip->setRowSelectionType(1);
    strip->setInitialValue(QStringLiteral("All data\tAll this column\tAll this column\tAll this column\t"
                                          "All this column\tAll this column"));
    table->setInitialValue(QStringLiteral("File name\tFile creat. date\tFile mod. date\tExif Img mod. date\t"
                                          "Exif Shoot. date\tExif Digitiz. date"));
    for (int c = 0; c <= 5; ++c) {
        strip->setColumnType(c, 2);
        strip->setCellCheck(0, c, true);
        table->setColumnType(c, 2);
    }
    strip->setGeometry(20, 244, 830, 20);
    table->setGeometry(20, 268, 830, 212);
    window.show();
    QCoreApplication::processEvents();

    // The texts are made first, so that the time is the table's alone.
    const QString marker = QStringLiteral("Exif取得不能");
    struct Texts {
        QString name, path, created, modified, exif306, exif36867;
    };
    std::vector<Texts> texts;
    texts.reserve(size_t(rows));
    for (int i = 0; i < rows; ++i)
        texts.push_back({QStringLiteral("IMG_%1.JPG").arg(i, 6, 10, QChar('0')),
                         QStringLiteral("/home/user/Pictures/IMG_%1.JPG").arg(i), stamp(i, '-'), stamp(i * 31, '-'),
                         i % 5 ? stamp(i * 17, ':') : marker, stamp(i * 17, ':')});
    const long before = residentKilobytes();

    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < rows; ++i) {
        const Texts& t = texts[size_t(i)];
        table->AddRow(t.name);
        const int r = table->ListCount() - 1;
        table->setCellCheck(r, 0, true);
        table->setCellTag(r, 0, QVariant::fromValue(FolderItem(t.path)));
        table->setCell(r, 1, t.created);
        table->setCell(r, 2, t.modified);
        table->setCellTag(r, 2, QVariant::fromValue(Date(2022, 12, 28, 1, 2, i % 60)));
        table->setCell(r, 3, t.exif306);
        table->setCell(r, 4, t.exif36867);
        table->setCellTag(r, 4, double(i) * 3 + 0.5);
        table->setCell(r, 5, t.exif36867);
        table->setCellTag(r, 5, double(i) * 3 + 40.5);
        for (int c = 1; c <= 5; ++c)
            table->setCellCheck(r, c, table->Cell(r, c) != marker);
    }
    const qint64 fill = clock.elapsed();
    QCoreApplication::processEvents();  // the view lays the rows out once
    const qint64 shown = clock.elapsed();

    table->setColumnSortDirection(2, -1);
    clock.restart();
    table->PressHeader(2);
    table->setListIndex(0);
    QCoreApplication::processEvents();
    const qint64 sorted = clock.elapsed();
    const long after = residentKilobytes();

    // A pruning walk: from the end, every tenth row goes.
    clock.restart();
    for (int r = table->ListCount() - 1; r >= 0; --r)
        if (r % 10 == 0)
            table->RemoveRow(r);
    QCoreApplication::processEvents();
    const qint64 pruned = clock.elapsed();

    std::printf("rows %d: remove every tenth row from the end %lld ms\n", rows, pruned);
    std::printf("rows %d: fill %lld ms, first layout %lld ms, sort and select %lld ms\n", rows, fill, shown - fill,
                sorted);
    std::printf("resident memory: %ld MB with the texts made, %ld MB with the table filled (%ld bytes a row)\n", before / 1024, after / 1024,
                rows ? (after - before) * 1024 / rows : 0);
    if (argc > 2)
        window.grab().save(QString::fromLocal8Bit(argv[2]));
    return 0;
}
