// Per-file cost of taking photographs in: the file dates, a read stream and the reads that
// the Exif walk makes, against a bare open, six preads and a close of the same files.
// Usage: stream_bench [files=2000] [rounds=5]. Run it on a Release build.
#include "platform/files/FolderItem.h"
#include "platform/files/MemoryBlock.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QtEndian>

#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

struct ReadOp {
    quint64 position;
    qint64 count;  // 0: a ReadUInt16
};

// A JPEG-like file: an APP1 segment whose TIFF header stands at 12, a first directory of
// 10 entries, an Exif directory of 20 and a thumbnail directory, with their values.
QByteArray photo(std::vector<ReadOp>& reads)
{
    QByteArray b(60000, '\0');
    auto u16 = [&](int at, quint16 v) { qToBigEndian(v, b.data() + at); };
    auto u32 = [&](int at, quint32 v) { qToBigEndian(v, b.data() + at); };
    b.replace(0, 12, QByteArray::fromHex("ffd8ffe1fffe457869660000"));
    b.replace(12, 4, "MM\0*");
    const int tiff = 12;
    int values = 1200;  // values after the directories
    auto directory = [&](int at, int entries, int next) {
        u16(tiff + at, quint16(entries));
        reads.push_back({quint64(tiff + at), 0});
        reads.push_back({quint64(tiff + at + 2), entries * 12 + 4});
        for (int i = 0; i < entries; ++i) {
            const int e = tiff + at + 2 + i * 12;
            const bool ascii = i % 3 == 0, rational = i % 3 == 1;
            const int count = ascii ? 20 : 1;
            u16(e, quint16(306 + i));
            u16(e + 2, ascii ? 2 : rational ? 5 : 3);
            u32(e + 4, quint32(count));
            if (ascii || rational) {
                u32(e + 8, quint32(values));
                reads.push_back({quint64(tiff + values), ascii ? count : 8});
                values += 20;
            }
        }
        u32(tiff + at + 2 + entries * 12, quint32(next));
    };
    reads.push_back({0, 256});
    directory(8, 10, 400);
    directory(200, 20, 0);
    directory(400, 6, 0);
    return b;
}

double nsPerFile(qint64 ns, int files) { return double(ns) / files; }

// The thread's CPU time rather than the wall clock: the machine is shared, and time spent
// waiting for a core says nothing about the code.
class CpuTimer {
public:
    void start() { start_ = now(); }
    void restart() { start_ = now(); }
    qint64 nsecsElapsed() const { return now() - start_; }

private:
    static qint64 now()
    {
        timespec ts;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
        return qint64(ts.tv_sec) * 1000000000 + ts.tv_nsec;
    }
    qint64 start_ = 0;
};

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int files = argc > 1 ? atoi(argv[1]) : 2000;
    const int rounds = argc > 2 ? atoi(argv[2]) : 5;
    QTemporaryDir dir(QDir::currentPath() + "/bench-XXXXXX");
    std::vector<ReadOp> reads;
    const QByteArray bytes = photo(reads);
    QStringList paths;
    for (int i = 0; i < files; ++i) {
        QFile f(dir.filePath(QString("IMG_%1.JPG").arg(i, 5, 10, QChar('0'))));
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
            return 1;
        paths << f.fileName();
    }
    std::vector<QByteArray> native;
    for (const QString& p : paths)
        native.push_back(QFile::encodeName(p));

    qint64 bare = -1, stream = -1, intake = -1;
    volatile quint64 sink = 0;
    char buf[1024];
    for (int r = 0; r < rounds; ++r) {
        CpuTimer t;
        t.start();
        for (const QByteArray& p : native) {
            const int fd = ::open(p.constData(), O_RDONLY | O_CLOEXEC);
            for (int i = 0; i < 6; ++i)
                sink = sink + quint64(::pread(fd, buf, reads[size_t(i)].count ? size_t(reads[size_t(i)].count) : 2,
                                             off_t(reads[size_t(i)].position)));
            ::close(fd);
        }
        const qint64 b = t.nsecsElapsed();
        bare = bare < 0 ? b : qMin(bare, b);

        for (int withDates = 0; withDates < 2; ++withDates) {
            t.restart();
            for (const QString& p : paths) {
                const FolderItem f(p);
                if (withDates) {
                    sink = sink + quint64(f.CreationDate().SQLDateTime().size());
                    sink = sink + quint64(f.ModificationDate().SQLDateTime().size());
                    sink = sink + quint64(f.ModificationDate().Second());
                }
                auto bs = f.OpenAsBinaryFile(false);
                for (const ReadOp& op : reads) {
                    bs->setPosition(op.position);
                    if (op.count == 0) {
                        sink = sink + bs->ReadUInt16();
                        continue;
                    }
                    MemoryBlock mb(op.count);
                    mb.setStringValue(0, op.count, bs->Read(op.count));
                    for (qint64 e = 0; e + 12 <= op.count && op.count > 20; e += 12) {
                        MemoryBlock value(4);  // one per entry, as the value decoding makes
                        value.setStringValue(0, 4, mb.StringValue(e + 8, 4));
                        sink = sink + quint64(value.Long(0)) + mb.UInt16Value(e);
                    }
                }
            }
            const qint64 s = t.nsecsElapsed();
            qint64& best = withDates ? intake : stream;
            best = best < 0 ? s : qMin(best, s);
        }
    }
    // Where the time goes, one part at a time.
    const auto part = [&](const char* what, auto&& perFile) {
        qint64 best = -1;
        for (int r = 0; r < rounds; ++r) {
            CpuTimer t;
            t.start();
            for (const QString& p : paths)
                perFile(p);
            best = best < 0 ? t.nsecsElapsed() : qMin(best, t.nsecsElapsed());
        }
        std::printf("  %-28s %8.0f\n", what, nsPerFile(best, files));
    };
    part("FolderItem from a path", [&](const QString& p) { sink = sink + quint64(FolderItem(p).Name().size()); });
    part("CreationDate", [&](const QString& p) { sink = sink + quint64(FolderItem(p).CreationDate().Second()); });
    part("Date.SQLDateTime", [&](const QString&) { sink = sink + quint64(Date(2001, 2, 3, 4, 5, 6).SQLDateTime().size()); });
    part("open and close a stream", [&](const QString& p) { sink = sink + FolderItem(p).OpenAsBinaryFile(false)->Position(); });
    part("open, Read(256), close", [&](const QString& p) { sink = sink + quint64(FolderItem(p).OpenAsBinaryFile(false)->Read(256).size()); });
    std::printf("%d files, %zu reads each, best of %d rounds (ns per file)\n", files, reads.size(), rounds);
    std::printf("bare open + 6 preads + close: %8.0f\n", nsPerFile(bare, files));
    std::printf("stream and walk reads:        %8.0f  (%.2fx)\n", nsPerFile(stream, files), double(stream) / double(bare));
    std::printf("whole intake with dates:      %8.0f  (%.2fx)\n", nsPerFile(intake, files), double(intake) / double(bare));
    return sink == 42 ? 2 : 0;
}
