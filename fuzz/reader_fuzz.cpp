// libFuzzer target for the Exif reader. The bytes are listed as addFileToTable lists a file,
// through a stream over memory: the row must be consistent (a date's text and position come
// together, the orientation code is a number of quarter turns) and, where the plain walk
// gets through within its budget, the same as it. Sanitizers catch any read out of bounds.
// Built by scripts/test when clang is there (build-fuzz/); by hand:
//   cmake -S . -B build-fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
//         -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELKARO_SANITIZE=ON -DVELKARO_FUZZ=ON \
//         -DVELKARO_TESTS=OFF -DVELKARO_BENCH=OFF
//   cmake --build build-fuzz --target reader_fuzz reader_seeds
//   build-fuzz/fuzz/reader_seeds seeds && build-fuzz/fuzz/reader_fuzz -dict=fuzz/reader.dict corpus seeds

#include <QApplication>

#include <cstdio>
#include <cstdlib>

#include "exif/DateCopies.h"
#include "exif/TiffCopies.h"
#include "platform/Listbox.h"
#include "shell/Window1.h"
#include "support/TiffBuilder.h"

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
        if (marker == tag.isValid() || (marker && w.ListBox1->CellCheck(row, column)) ||
            (!marker && (tag.typeId() != QMetaType::Double || w.ListBox1->Cell(row, column).size() > 254)))
            problem += QStringLiteral(" column %1").arg(column);
    }
    const QVariant turns = w.ListBox1->CellTag(row, 6);
    if (turns.isValid() && (turns.typeId() != QMetaType::LongLong || turns.toLongLong() < 0 || turns.toLongLong() > 3))
        problem += QStringLiteral(" orientation code");
    return problem;
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
    const QString plain = readBytes(w, bytes, true, kPlainBudget);
    if (!plain.isEmpty() && plain != shown)
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
