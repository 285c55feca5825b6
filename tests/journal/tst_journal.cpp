// The journal of runs, on disk: a run undone, refused, stopped part-way and found again at
// start, each file compared byte for byte and time for time with what it was; and journals
// cut or damaged at every length, read without a crash.

#include <QtTest>
#include <QtWidgets>

#include <fcntl.h>
#include <sys/stat.h>

#include "journal/Journal.h"
#include "journal/RunChoice.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/MsgBox.h"
#include "shell/Window1.h"
#include "writeback/RunPlan.h"

namespace {

const QByteArray kBase = "2019:05:31 23:08:09";
constexpr qint64 kDatePos[2] = {100, 140};  // columns 3 and 4

struct Snapshot {
    QByteArray bytes;
    qint64 mtime = 0;  // in nanoseconds
    bool operator==(const Snapshot& o) const { return bytes == o.bytes && mtime == o.mtime; }
};
Snapshot snapshot(const QString& path)
{
    QFile f(path);
    struct stat st;
    if (!f.open(QIODevice::ReadOnly) || ::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return {f.readAll(), qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec};
}

}  // namespace

class JournalTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir, state;
    std::unique_ptr<Window1> w;
    QStringList paths, said;  // the files; what the program said (messages and choices)
    QList<Snapshot> before;
    RunChoice choice = RunChoice::UndoDone;

    // Files of filler with a date at each place, listed with columns 2, 3 and 4 ticked,
    // each with a modification time to the nanosecond.
    void listFiles(int n)
    {
        for (int i = 0; i < n; ++i) {
            const QString path = dir->filePath(QStringLiteral("p%1.jpg").arg(i));
            QByteArray bytes(256, char(0xA5));
            for (qint64 pos : kDatePos)
                bytes.replace(pos, 19, kBase);
            QFile f(path);
            QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == 256);
            f.close();
            const timespec times[2] = {{1000, 0}, {1262304000 + i, 123456789 + i}};
            QVERIFY(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) == 0);
            FolderItem item(path);
            item.noteListing(item.Status());
            Listbox* t = w->ListBox1;
            t->AddRow(item.Name());
            const int row = t->ListCount() - 1;
            t->setCellTag(row, 0, QVariant::fromValue(item));
            t->setCellTag(row, 2, QVariant::fromValue(item.Listing()->modificationDate()));
            for (int c = 1; c <= 5; ++c) {
                t->setCell(row, c, c <= 2 ? item.Listing()->modificationDate().SQLDateTime() : QString::fromLatin1(kBase));
                t->setCellCheck(row, c, c >= 2 && c <= 4);
                if (c >= 3)
                    t->setCellTag(row, c, double(kDatePos[qMin(c - 3, 1)]));
            }
            paths << path;
            before << snapshot(path);
        }
    }
    void run(bool guarded = false)
    {
        w->baseChoice = 4;
        w->AddValue(2)->setText(QStringLiteral("1"));
        w->AimValue(0)->setText(QStringLiteral("2019"));
        guarded ? w->ExecuteBtn->click() : w->ExecuteBtn_Action();
    }
    int unchanged() const
    {
        int n = 0;
        for (int i = 0; i < paths.size(); ++i)
            n += snapshot(paths[i]) == before[i];
        return n;
    }

private slots:
    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        state = std::make_unique<QTemporaryDir>();
        qputenv("XDG_STATE_HOME", state->path().toUtf8());
        w = std::make_unique<Window1>();
        paths.clear();
        said.clear();
        before.clear();
        setMsgBoxAnswer([this](const QString& text, int, const QString&, const QString& informative) {
            said << text + (informative.isEmpty() ? QString() : " | " + informative);
            return 1;
        });
        setRunChoiceAnswer([this](const QString& text, const QString& informative) {
            said << "?" + text + (informative.isEmpty() ? QString() : " | " + informative);
            return choice;
        });
        setFailureReport([this](const QString& action, const QString& reason) { said << "!" + action + ": " + reason; });
    }
    void cleanup()
    {
        w.reset();
        setMsgBoxAnswer({});
        setRunChoiceAnswer({});
        setFailureReport({});
        setRunFault({});
    }

    // A run of N files, stopped before file K (-1: not stopped) by a failure the run sees
    // ("stop") or by a crash that leaves its journal without a closing record, then settled:
    // by Undo Last Run, or by the choice offered (at once, or at the next start). Counted:
    // the files as they were before the run, and what the program asked.
    void settle_data()
    {
        QTest::addColumn<int>("k");
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("choice");
        QTest::addColumn<int>("unchanged");
        QTest::addColumn<QString>("asked");
        const int undo = int(RunChoice::UndoDone), finish = int(RunChoice::Finish), leave = int(RunChoice::Leave);
        QTest::newRow("undo last run") << -1 << "undo" << undo << 4 << "";
        QTest::newRow("undo refused: a place edited since") << -1 << "edit" << undo << 0 << "";
        QTest::newRow("stopped part-way, undone") << 2 << "stop" << undo << 4 << "on 4 files was interrupted; 2 files";
        QTest::newRow("crashed, undone at start") << 3 << "crash" << undo << 4 << "on 4 files was interrupted; 3 files";
        QTest::newRow("crashed, finished at start") << 1 << "crash" << finish << 0 << "on 4 files was interrupted; 1 files";
        QTest::newRow("crashed, left, then undone") << 1 << "leave" << leave << 4 << "on 4 files was interrupted; 1 files";
    }
    void settle()
    {
        QFETCH(int, k);
        QFETCH(QString, how);
        QFETCH(int, choice);
        QFETCH(int, unchanged);
        QFETCH(QString, asked);
        this->choice = RunChoice(choice);
        listFiles(4);
        setRunFault([&](int i) {
            if (i == k && how != "stop")
                throw std::runtime_error("crash");
            return i == k ? QStringLiteral("injected") : QString();
        });
        if (how == "stop" || k < 0)
            run();
        else
            QVERIFY_THROWS_EXCEPTION(std::runtime_error, run());
        setRunFault({});
        // A run that stops is settled before it returns.
        QCOMPARE(this->unchanged(), k < 0 ? 0 : how == "stop" ? unchanged : 4 - k);
        if (how == "edit") {
            QFile f(paths[1]);
            QVERIFY(f.open(QIODevice::ReadWrite) && f.seek(kDatePos[1]) && f.write("2000") == 4);
        }
        if (k < 0 || how == "leave") {
            if (how == "leave")
                w->recoverInterruptedRuns();
            w->FileUndoLastRun_Action();
        } else if (how == "crash") {
            w->recoverInterruptedRuns();
        }
        QCOMPARE(this->unchanged(), unchanged);
        if (!asked.isEmpty())
            QVERIFY2(said.filter("?The run of").value(0).contains(asked), qPrintable(said.join('\n')));
        const std::vector<JournalEntry> runs = Journal::runs();
        QCOMPARE(int(runs.size()), 1);
        const JournalRun::State expected = how == "edit" ? JournalRun::Done
                                           : choice == int(RunChoice::Finish) ? JournalRun::Done
                                                                             : JournalRun::Undone;
        QCOMPARE(runs[0].run->state, expected);
        if (how == "edit") {
            QVERIFY2(said.last().contains(QStringLiteral("p1.jpg”, byte %1").arg(kDatePos[1])), qPrintable(said.last()));
            QVERIFY(!said.last().contains("p0.jpg"));
        }
        // The table shows what the files hold.
        QCOMPARE(w->ListBox1->Cell(0, 3), QString::fromLatin1(unchanged == 4 ? kBase : "2019:06:01 23:08:09"));
        if (unchanged == 4) {
            w->FileUndoLastRun_Action();
            QVERIFY(said.last().startsWith("There is no run to undo"));
        }
    }

    // Where the journal cannot be written, the run does not start, and the report says where.
    void unwritable()
    {
        listFiles(2);
        qputenv("XDG_STATE_HOME", paths[0].toUtf8());  // a file, where a folder is needed
        run(true);
        QCOMPARE(unchanged(), 2);
        QVERIFY2(said.last().contains("Nothing has been written: the journal cannot be written to “" + paths[0]),
                 qPrintable(said.last()));
    }

    // A journal cut at every length, or with any one byte changed, is told apart from a
    // whole one, and only its records after the plan may be lost.
    void damaged()
    {
        listFiles(2);
        run();
        const std::vector<JournalEntry> runs = Journal::runs();
        QVERIFY(runs.size() == 1 && runs[0].run);
        QFile f(runs[0].fileName);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray whole = f.readAll();
        struct stat file, folder;
        QVERIFY(::stat(QFile::encodeName(runs[0].fileName).constData(), &file) == 0);
        QVERIFY(::stat(QFile::encodeName(Journal::folder()).constData(), &folder) == 0);
        QCOMPARE(file.st_mode & 0777, 0600u);
        QCOMPARE(folder.st_mode & 0777, 0700u);
        const qsizetype plan = whole.size() - 17;  // the closing record takes 17 bytes
        for (qsizetype n = 0; n < whole.size(); ++n) {
            QString why;
            const std::optional<JournalRun> cut = decodeJournal(whole.left(n), &why);
            QCOMPARE(bool(cut), n >= plan);
            QVERIFY(cut ? cut->state == JournalRun::Interrupted : !why.isEmpty());
            QByteArray flipped = whole;
            flipped[n] = char(flipped[n] ^ 0x10);
            const std::optional<JournalRun> bad = decodeJournal(flipped, &why);
            if (bad)
                QVERIFY(n >= plan && bad->state == JournalRun::Interrupted);
            else if (n < 6)
                QCOMPARE(why, n < 4 ? "it is not a journal of this program" : "it was written by a newer version of this program");
            else
                QVERIFY2(why == "its contents are damaged" || why == "it is cut short", qPrintable(why));
        }
        const std::optional<JournalRun> read = decodeJournal(whole, nullptr);
        QVERIFY(read && read->state == JournalRun::Done && read->files.size() == 2);
        QCOMPARE(read->files[1].patches[1].after, QByteArray("2019:06:01 23:08:09"));
        QCOMPARE(read->files[1].path, QFile::encodeName(paths[1]));
    }
};

QTEST_MAIN(JournalTest)
#include "tst_journal.moc"
