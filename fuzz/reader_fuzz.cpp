// libFuzzer target for the Exif reader. The bytes are listed as addFileToTable lists a file,
// through a stream over memory: the row must be consistent (a date's text and position come
// together, the orientation code is a number of quarter turns). Where the first 256 bytes
// hold a TIFF header, the row is the plain walk's, where that gets through within its
// budget; where they hold none, every date found lies in an Exif block that the container
// walkers give. Sanitizers catch any read out of bounds.
// Built by scripts/test when clang is there (build-fuzz/); by hand:
//   cmake -S . -B build-fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
//         -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELKARO_SANITIZE=ON -DVELKARO_FUZZ=ON \
//         -DVELKARO_TESTS=OFF -DVELKARO_BENCH=OFF
//   cmake --build build-fuzz --target reader_fuzz reader_seeds
//   build-fuzz/fuzz/reader_seeds seeds && build-fuzz/fuzz/reader_fuzz -dict=fuzz/reader.dict corpus seeds

#include <QApplication>

#include <cstdio>
#include <cstdlib>

#include "exif/Container.h"
#include "exif/DateCopies.h"
#include "exif/Movie.h"
#include "exif/TiffCopies.h"
#include "platform/files/BinaryStream.h"
#include "platform/listbox/Listbox.h"
#include "platform/base/Convert.h"
#include "shell/Window1.h"
#include "support/TiffBuilder.h"

#include <algorithm>

namespace {

// Entries the plain walk may take for one input: enough for a looping chain of a few
// entries, all 101 passes of it, and few enough that an input of many pointers costs no more
// than a few milliseconds. About one input in eight goes beyond it and is checked for
// consistency only (the three-level tree among the seeds, whose plain walk runs to thousands).
constexpr qint64 kPlainBudget = 1000;

void fail(const char* what, const QString& detail)
{
    std::fprintf(stderr, "%s: %s\n", what, qPrintable(detail));
    std::abort();
}

// What is wrong with a row's Exif cells ("" for nothing): a date's text and position come
// together, and the orientation code is a number of quarter turns.
QString rowProblem(const Window1& w, int row)
{
    QString problem;
    for (int column = 3; column <= 5; ++column) {
        const QVariant tag = w.ListBox1->CellTag(row, column);
        const bool marker = w.ListBox1->Cell(row, column) == kNoExif;
        const bool movie = tag.metaType() == QMetaType::fromType<MovieTime>();  // a movie's field of seconds
        if (marker == tag.isValid() || (marker && w.ListBox1->CellCheck(row, column)) ||
            (!marker && ((tag.typeId() != QMetaType::Double && !movie) || w.ListBox1->Cell(row, column).size() > 254)))
            problem += QStringLiteral(" column %1").arg(column);
    }
    const QVariant turns = w.ListBox1->CellTag(row, 6);
    if (turns.isValid() && (turns.typeId() != QMetaType::LongLong || turns.toLongLong() < 0 || turns.toLongLong() > 3))
        problem += QStringLiteral(" orientation code");
    return problem;
}

// For a file without a TIFF header in its first 256 bytes: the columns whose text was read
// from bytes outside the Exif blocks that the walkers find ("" for none). A read outside
// its block gives nothing, so a text that stands at its position there was read from the file.
QString outsideBlocks(const Window1& w, const QByteArray& bytes)
{
    static const QByteArrayView headers[] = {QByteArrayView("MM\0\x2A", 4), QByteArrayView("II\x2A\0", 4)};
    const QByteArrayView head = QByteArrayView(bytes).first(std::min<qsizetype>(bytes.size(), 256));
    if (head.contains(headers[0]) || head.contains(headers[1]))
        return {};
    const Handle<BinaryStream> s = BinaryStream::overBytes(bytes);
    const ContainerLayout layout = locateContainer(*s, Reach::Exif);
    QString outside;
    for (int column = 3; column <= 5; ++column) {
        const QVariant tag = w.ListBox1->CellTag(0, column);
        const QString text = w.ListBox1->Cell(0, column);
        if (tag.metaType() == QMetaType::fromType<MovieTime>()) {  // a field of the movie header
            const MovieTime m = tag.value<MovieTime>();
            if (m.position < 0 || m.width <= 0 || m.position + m.width > double(bytes.size()))
                outside += QStringLiteral(" column %1").arg(column);
            continue;
        }
        const quint64 at = toPosition(tag.toDouble());
        bool inside = !tag.isValid() || text.isEmpty() || at >= quint64(bytes.size()) ||
                      bytes.mid(qsizetype(at), text.size()) != text.toLatin1();
        for (const Span& block : layout.tiff)
            inside = inside || block.contains(at, quint64(text.size()));
        if (!inside)
            outside += QStringLiteral(" column %1").arg(column);
    }
    return outside;
}

}  // namespace

// Fontconfig keeps what it allocates when the window first lays out text, for good.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "reader_fuzz";
    static char* argv[] = {name, nullptr};
    static QApplication* app = new QApplication(argc, argv);  // for good: nothing tears Qt down at exit
    Q_UNUSED(app);
    // A first file read here, so that what Qt sets up once is not counted against an input.
    readBytes(*Window1::instance(), camera(false, "2001:02:03 04:05:06", {}, {}).bytes(), true);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Window1& w = *Window1::instance();
    // No copy: the input outlives every use of it here.
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString shown = readBytes(w, bytes);
    if (const QString problem = rowProblem(w, 0); !problem.isEmpty())
        fail("inconsistent row", problem + " in " + shown);
    if (const QString outside = outsideBlocks(w, bytes); !outside.isEmpty())
        fail("a date outside the Exif blocks", outside + " in " + shown);
    const QString plain = readBytes(w, bytes, true, kPlainBudget);
    if (!plain.isEmpty() && w.TiffOfs >= 0 && plain != shown)
        fail("not as the plain walk", "shown " + shown + ", plain " + plain);
    // The finders of date copies, on the same bytes as an XMP packet, as IPTC datasets and as
    // a TIFF block: every change they find lies inside, keeps its length, changes digits only.
    const QByteArray old = "2001:02:03 04:05:06", aim = "2002:03:04 05:06:07";
    CopyFindings found;
    moveXmpCopies(bytes, 0, {{4, old, aim}, {5, old, aim}}, {}, found);
    moveIptcCopies(bytes, 0, {{4, old, aim}, {5, old, aim}}, {}, found);
    for (const CopyEdit& e : found.edits)
        for (qsizetype i = 0; i < e.before.size(); ++i)
            if (e.after.size() != e.before.size() || bytes.mid(qsizetype(e.position), e.before.size()) != e.before
                || (e.before[i] != e.after[i] && !(isdigit(e.before[i]) && isdigit(e.after[i]))))
                fail("a copy's change", e.what + " at " + QString::number(e.position));
    findTiffCopies(*BinaryStream::overBytes(bytes), {0, quint64(bytes.size())});
    // What the input made goes with it, so that the fuzzer's leak check finds nothing to do.
    w.ListBox1->DeleteAllRows();
    w.bs = {};
    QCoreApplication::sendPostedEvents();  // the table's updates, which would pile up
    return 0;
}
