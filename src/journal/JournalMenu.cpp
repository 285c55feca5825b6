// The way back from a run: Undo Last Run and Run History in the File menu, and the choice
// offered for a run that did not end, at start or when it stopped part-way.

#include <QAction>
#include <QHash>
#include <QLocale>

#include "journal/Journal.h"
#include "journal/Rollback.h"
#include "journal/RunChoice.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/MsgBox.h"
#include "shell/MenuBar1.h"
#include "shell/Window1.h"

namespace {

constexpr int kOkCancelQuestion = 33;
constexpr int kNote = 64;
constexpr int kCaution = 48;

}  // namespace

static QString describeRun(const JournalRun& run)
{
    const QLocale l;
    return textById("Journal.runOf", "the run of %1 on %2 files")
        .arg(l.toString(QDateTime::fromMSecsSinceEpoch(run.started), QStringLiteral("d MMM HH:mm")),
             l.toString(run.fileCount));
}

void Window1::bindJournalHandlers()
{
    // The File menu holds the two items, hidden until the journal shows and connects them.
    MenuBar1* bar = MenuBar1::instance();
    if (QAction* undo = bar->lookup(QStringLiteral("FileUndoLastRun"))) {
        undo->setVisible(true);
        connect(undo, &QAction::triggered, this,
                [this] { guard("undo the last run", [this] { FileUndoLastRun_Action(); }); });
    }
    if (QAction* history = bar->lookup(QStringLiteral("FileRunHistory"))) {
        history->setVisible(true);
        connect(history, &QAction::triggered, this,
                [this] { guard("show the run history", [this] { FileRunHistory_Action(); }); });
    }
}

// The whole run of a kept journal; throws, naming the journal, where it cannot be read.
static JournalRun wholeRun(const QString& fileName, const char* id, const char* text)
{
    const JournalEntry e = Journal::read(fileName);
    if (!e.run)
        throw std::runtime_error(textById(id, text).arg(e.fileName, e.why).toStdString());
    return *e.run;
}

void Window1::FileUndoLastRun_Action()
{
    for (const JournalEntry& e : Journal::runs()) {
        if (e.run && e.run->state == JournalRun::Undone)
            continue;
        const JournalRun run = wholeRun(e.fileName, "Journal.unreadable",
                                        "The journal of the last run, “%1”, cannot be read: %2.");
        if (MsgBox(textById("Journal.undoQuestion", "Undo %1?").arg(describeRun(run)), kOkCancelQuestion, QString(),
                   textById("Journal.offsetWas", "Its offset was %1.").arg(run.offset))
            != 1)
            return;
        settleRun(e.fileName, run, RunChoice::UndoDone);
        return;
    }
    MsgBox(textById("Journal.nothingToUndo", "There is no run to undo."), kNote);
}

void Window1::recoverInterruptedRuns()
{
    for (const JournalEntry& e : Journal::runs()) {
        if (e.run && (e.run->state != JournalRun::Interrupted || e.run->left))
            continue;
        const JournalEntry whole = Journal::read(e.fileName);
        if (whole.run)
            offerRunChoices(e.fileName, *whole.run, QString());
        else
            MsgBox(textById("Journal.unreadableAtStart", "The journal of a run, “%1”, cannot be read: %2.")
                       .arg(whole.fileName, whole.why),
                   kCaution);
    }
}

void Window1::offerRunChoices(const QString& fileName, const JournalRun& run, const QString& stopped)
{
    const RunCheck c = checkRun(run, RunDirection::Back);
    const QString text = textById("Journal.interrupted", "%1 was interrupted; %2 files were changed.")
                             .arg(describeRun(run), QLocale().toString(c.changedFiles));
    QString first = text;
    first[0] = first[0].toUpper();
    settleRun(fileName, run, askRunChoice(first, stopped));
}

void Window1::settleRun(const QString& fileName, const JournalRun& run, RunChoice choice)
{
    QString why;
    if (choice == RunChoice::Leave) {
        if (!Journal::mark(fileName, JournalRun::Interrupted, true, &why))
            MsgBox(why, kCaution);
        return;
    }
    const RunDirection d = choice == RunChoice::UndoDone ? RunDirection::Back : RunDirection::Forward;
    const RunCheck c = checkRun(run, d);
    if (!c.problems.isEmpty()) {
        MsgBox(textById("Journal.refused", "Nothing has been written: these files no longer hold what the run left."),
               kCaution, QString(), listLines(c.problems));
        return;
    }
    const QStringList failed = applyRun(run, d);
    showRunInTable(run);
    changeAimValue();
    if (!failed.isEmpty()) {
        MsgBox(textById("Journal.partly", "Not every file could be put back or forward; these were not:"), kCaution,
               QString(), listLines(failed));
        return;
    }
    if (!Journal::mark(fileName, d == RunDirection::Back ? JournalRun::Undone : JournalRun::Done, false, &why))
        MsgBox(why, kCaution);
    MsgBox(d == RunDirection::Back
               ? textById("Journal.undone", "Every file of %1 is as it was before it.").arg(describeRun(run))
               : textById("Journal.finished", "%1 has been finished.").arg(describeRun(run)),
           kNote);
}

// The rows of the run's files show what the files hold now: the dates at the run's places
// and the file dates.
void Window1::showRunInTable(const JournalRun& run)
{
    QHash<QByteArray, const JournalFile*> byPath;
    for (const JournalFile& f : run.files)
        byPath.insert(f.path, &f);
    for (int row = 0; row < ListBox1->ListCount(); ++row) {
        const FolderItem item = ListBox1->CellTag(row, 0).value<FolderItem>();
        const JournalFile* f = item.isNil() ? nullptr : byPath.value(item.nativePath());
        if (!f)
            continue;
        QString why;
        if (const std::optional<ItemStatus> s = item.Status(&why)) {
            ListBox1->setCell(row, 1, s->creationDate().SQLDateTime());
            ListBox1->setCell(row, 2, s->modificationDate().SQLDateTime());
        }
        Handle<BinaryStream> in = item.OpenAsBinaryFile(false);
        for (const Patch& p : f->patches) {
            if (in.isNil() || p.column < 3 || p.column > 5 || !p.what.isEmpty())
                continue;
            in->setPosition(p.position);
            showDateHeld(row, p.column, in->Read(p.after.size()));
        }
    }
}
