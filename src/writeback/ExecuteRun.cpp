// The execute run: the scheduled dates go into the ticked cells' files. The table is the
// only source of what to do and where; the files are read again only for what moves with
// the dates. Before the first byte is written, every item that the run will touch is
// checked against what was listed, and every change's bytes against what they were: if
// anything fails, nothing is written at all, and the report names each date that failed.

#include <QHashFunctions>
#include <QLineEdit>
#include <QPushButton>

#include <functional>
#include <map>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

#include "journal/Journal.h"
#include "journal/RunChoice.h"
#include "platform/widgets/BusyPointer.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/listbox/ListboxModel.h"
#include "platform/widgets/MsgBox.h"
#include "platform/files/PinnedItem.h"
#include "platform/base/TextId.h"
#include "shell/Window1.h"
#include "writeback/RunPlan.h"

namespace {

// The confirmation before anything is written; OK (1) goes on.
const QString kExecuteQuestion =
    QStringLiteral("変更予定値を直接ファイルに書込みます。") + QStringLiteral("\n") + QStringLiteral("よろしいですか。");
constexpr int kOkCancelQuestion = 33;
constexpr int kNamedAtMost = 20;  // dates named in a report; the rest are counted

// Bytes as a report shows them: a text as it is, a number (a movie's time) in hexadecimal.
QString shown(const QByteArray& bytes)
{
    for (const char c : bytes)
        if (uchar(c) < 0x20 || uchar(c) > 0x7E)
            return QStringLiteral("0x") + QString::fromLatin1(bytes.toHex().toUpper());
    return QString::fromLatin1(bytes);
}

QString changedWhy(quint64 position, const QByteArray& expected)
{
    return textById("Run.changed", "it has changed since it was listed: at byte %1 it no longer holds %2")
        .arg(position)
        .arg(shown(expected));
}

// Why the path no longer names the object that was listed.
QString replacedWhy(const FolderItem& f, const ItemStatus& now)
{
    if (PinnedItem::isLink(f))
        return textById("Run.nowLink", "it is now a link to another file");
    if (now.kind == ItemStatus::Folder)
        return textById("Run.nowFolder", "it is now a folder");
    return textById("Run.replaced", "it has been replaced by another file since it was listed");
}

QString nameOf(const RowPlan& p)
{
    return p.file.isNil() ? textById("Run.row", "row %1").arg(qint64(p.row) + 1)
                          : QStringLiteral("“%1”").arg(p.file.path());
}

// Why a change can no longer be made as planned: the bytes at its place are not what they
// were; empty when they are.
QString patchWhy(PinnedItem& item, const Patch& c)
{
    const QByteArray there = item.readAt(c.position, c.before.size());
    QString why;
    if (there.size() < c.before.size())
        why = textById("Run.pastEnd", "the file ends before the place of this date (byte %1)").arg(c.position);
    else if (there != c.before)
        why = changedWhy(c.position, c.before);
    return why.isEmpty() || c.isDate() ? why : QStringLiteral("%1: %2").arg(c.what, why);
}

// Why the item is not the one that was found, or cannot be opened for the change; empty
// when it can.
QString itemWhy(PinnedItem& item, const FolderItem& f, const ItemStatus& was, ItemStatus* seen = nullptr)
{
    ItemStatus now;
    if (!item.isOpen() || !item.status(now))
        return item.why();
    if (seen)
        *seen = now;
    return now.sameItem(was) ? QString() : replacedWhy(f, now);
}

// The reasons, by column, why a row's ticked dates cannot be changed safely; empty when
// they all can. Reads the bytes of each change and nothing else.
std::map<int, QString> checkRow(const RowPlan& p, ItemStatus* seen)
{
    std::map<int, QString> why = p.unwritable;
    std::vector<int> columns = p.exifColumns;
    if (p.creation)
        columns.push_back(1);
    if (p.modification || p.restore)
        columns.push_back(2);
    if (p.restore && !p.noted)
        why[2] = textById("Run.notedUnknown",
                           "the modification date it had when it was listed is not known, so it could not be put back");

    // The item itself: the one listed, and open to what the run does to it.
    QString whyNot;
    std::optional<PinnedItem> item;
    if (p.file.isNil())
        whyNot = textById("Run.noFile", "no file is known for this row");
    else if (!p.file.Listing())
        whyNot = textById("Run.notListed", "it is not known which file was listed here");
    else {
        item.emplace(p.file, p.writesContents() ? PinnedItem::Contents : PinnedItem::Dates);
        whyNot = itemWhy(*item, p.file, *p.file.Listing(), seen);
    }
    for (int column : columns)
        if (!whyNot.isEmpty() && !why.count(column))
            why[column] = whyNot;
    if (!whyNot.isEmpty())
        return why;
    for (const Patch& c : p.patches)
        if (!why.count(c.column))
            if (const QString w = patchWhy(*item, c); !w.isEmpty())
                why[c.column] = w;
    for (const FilePatches& other : p.others) {
        PinnedItem beside(other.file, PinnedItem::Contents);
        const QString besideWhy = other.found ? itemWhy(beside, other.file, *other.found) : beside.why();
        for (const Patch& c : other.patches) {
            if (why.count(c.column))
                continue;
            const QString w = besideWhy.isEmpty() ? patchWhy(beside, c) : besideWhy;
            if (!w.isEmpty())
                why[c.column] = QStringLiteral("“%1”, %2").arg(other.file.path(), w);
        }
    }
    return why;
}

// The lines of the report, one for each date that cannot be changed safely, in the order
// in which the run would have come to them.
QStringList checkPlan(Listbox* table, const RunPlan& plan, std::vector<ItemStatus>* seen = nullptr)
{
    QStringList lines;
    if (seen)
        seen->resize(plan.rows.size());
    for (size_t i = 0; i < plan.rows.size(); ++i) {
        const RowPlan& p = plan.rows[i];
        stillBusy();
        const std::map<int, QString> why = checkRow(p, seen ? &(*seen)[i] : nullptr);
        for (int column : {3, 4, 5, 1, 2}) {
            auto it = why.find(column);
            if (it != why.end())
                lines << textById("Run.failedDate", "%1, %2: %3.")
                             .arg(nameOf(p), table->model()->headerData(column, Qt::Horizontal).toString(), it->second);
        }
    }
    return lines;
}

// The report of a check that failed: nothing has been written.
class CheckFailed : public std::runtime_error {
public:
    explicit CheckFailed(const QStringList& lines) : std::runtime_error(text(lines).toStdString()) {}

private:
    static QString text(const QStringList& lines)
    {
        QString s = textById("Run.checkFailed",
                              "Nothing has been written. These dates cannot be changed safely; untick them, or "
                              "drop the files again, and press the button once more:");
        for (qsizetype i = 0; i < lines.size() && i < kNamedAtMost; ++i)
            s += QLatin1Char('\n') + lines[i];
        if (lines.size() > kNamedAtMost)
            s += QLatin1Char('\n') + textById("Run.andMore", "and %1 more.").arg(lines.size() - kNamedAtMost);
        return s;
    }
};

// A run that fails after the check stops where it stands: what came before it in the run
// stays written.
class RunStopped : public std::runtime_error {
public:
    RunStopped(Listbox* table, const RowPlan& p, int column, const QString& why)
        : std::runtime_error(text(table, p, column, why).toStdString())
    {
    }

private:
    static QString text(Listbox* table, const RowPlan& p, int column, const QString& why)
    {
        const QString where =
            column < 0 ? nameOf(p)
                       : textById("Run.whereDate", "%1, %2")
                             .arg(nameOf(p), table->model()->headerData(column, Qt::Horizontal).toString());
        return textById("Run.stopped",
                         "It stopped at %1: %2. The dates before it have been changed as ticked; this one and "
                         "those after it have not.")
            .arg(where, why);
    }
};

// What each place of the run holds now, where the run has written it: a file listed in
// two rows has its second date compared with what the first wrote.
class Written {
public:
    QByteArray expected(const ItemStatus& s, const Patch& c) const
    {
        auto it = now_.find(Place{s.device, s.inode, c.position});
        return it == now_.end() ? c.before : it->second;
    }
    void wrote(const ItemStatus& s, const Patch& c) { now_[Place{s.device, s.inode, c.position}] = c.after; }

private:
    struct Place {
        quint64 device, inode, position;
        bool operator==(const Place& o) const { return device == o.device && inode == o.inode && position == o.position; }
    };
    struct PlaceHash {
        size_t operator()(const Place& p) const { return qHashMulti(0, p.device, p.inode, p.position); }
    };
    std::unordered_map<Place, QByteArray, PlaceHash> now_;
};

// The changes of one file through its open item, each compared once more just before it is
// written.
void writePatches(PinnedItem& item, const ItemStatus& s, const std::vector<Patch>& patches, Written& written,
                  const std::function<void(const Patch&, const QString&)>& stop,
                  const std::function<void(const Patch&, const QByteArray&)>& done)
{
    for (const Patch& c : patches) {
        const QByteArray expected = written.expected(s, c);
        if (item.readAt(c.position, expected.size()) != expected)
            stop(c, changedWhy(c.position, expected));
        if (!item.writeAt(c.position, c.after))
            stop(c, item.why());
        written.wrote(s, c);
        done(c, c.after);
    }
    // Read again once all are written: a driver that puts bytes elsewhere and reports
    // success is caught here, and the table shows what the file holds.
    for (const Patch& c : runJournalled() ? patches : std::vector<Patch>()) {
        const QByteArray there = item.readAt(c.position, c.after.size());
        if (there != c.after) {
            done(c, there);
            stop(c, textById("Run.notLanded", "it was written at byte %1, but reads back as “%2”")
                        .arg(c.position)
                        .arg(shown(there)));
        }
    }
}

// Sets a file time and reads it back; throws where it did not land, after the table's
// cell shows the time the file has.
void setTime(Listbox* t, const RowPlan& p, PinnedItem& item, int column, const FileTime& time)
{
    const bool creation = column == 1;
    if (!(creation ? item.setCreationTime(time) : item.setModificationTime(time)))
        throw RunStopped(t, p, column, item.why());
    ItemStatus s;
    if (!runJournalled())
        return;
    if (!item.status(s))
        throw RunStopped(t, p, column, item.why());
    const FileTime holds = creation ? s.birth : s.modification;
    if (timeLanded(time, holds))
        return;
    t->setCell(p.row, column, holds.toDate().SQLDateTime());
    throw RunStopped(t, p, column,
                     textById("Run.timeNotLanded", "it was set to %1, but reads back as %2")
                         .arg(time.toDate().SQLDateTime(), holds.toDate().SQLDateTime()));
}

// One row, in the order the run has always had: Exif dates (and what moves with them),
// creation date, modification date, then the noted modification time put back.
void carryOut(Window1& w, const RowPlan& p, Written& written)
{
    Listbox* t = w.ListBox1;
    PinnedItem item(p.file, p.writesContents() ? PinnedItem::Contents : PinnedItem::Dates);
    ItemStatus now;
    if (!item.isOpen() || !item.status(now))
        throw RunStopped(t, p, -1, item.why());
    if (!now.sameItem(*p.file.Listing()))
        throw RunStopped(t, p, -1, replacedWhy(p.file, now));
    writePatches(
        item, now, p.patches, written, [&](const Patch& c, const QString& why) { throw RunStopped(t, p, c.column, why); },
        [&](const Patch& c, const QByteArray& holds) {
            if (c.isDate())
                w.showDateHeld(p.row, c.column, holds);
        });
    for (const FilePatches& other : p.others) {
        if (other.patches.empty())
            continue;
        PinnedItem beside(other.file, PinnedItem::Contents);
        ItemStatus s;
        const auto stop = [&](const Patch& c, const QString& why) {
            throw RunStopped(t, p, c.column, QStringLiteral("“%1”, %2").arg(other.file.path(), why));
        };
        if (!beside.isOpen() || !beside.status(s))
            stop(other.patches.front(), beside.why());
        if (other.found && !s.sameItem(*other.found))
            stop(other.patches.front(), replacedWhy(other.file, s));
        writePatches(beside, s, other.patches, written, stop, [](const Patch&, const QByteArray&) {});
        if (!beside.close())
            stop(other.patches.front(), beside.why());
    }
    const bool creationSettable = PinnedItem::canSetCreationTime();
    if (p.creation && creationSettable) {
        setTime(t, p, item, 1, p.aim);
        t->setCell(p.row, 1, p.fileDate);
    }
    if (p.modification) {
        setTime(t, p, item, 2, p.aim);
        t->setCell(p.row, 2, p.fileDate);
    }
    // Writing into a file moves its modification time; this puts back the one it had
    // when it was listed. Cell(row, 2) is not touched.
    if (p.restore)
        setTime(t, p, item, 2, *p.noted);
    // A creation date that cannot be set shows what the file really has: its birth, which
    // nothing here changes, or where none is kept, the modification time it now has.
    if (p.creation && !creationSettable) {
        now.modification = p.restore ? *p.noted : p.modification ? p.aim : now.modification;
        t->setCell(p.row, 1, now.creationDate().SQLDateTime());
    }
    if (!item.close())
        throw RunStopped(t, p, -1, item.why());
}

}  // namespace

void Window1::bindWritebackHandlers()
{
    connect(ExecuteBtn, &QPushButton::clicked, this,
            [this] { guard("change the dates in the files", [this] { ExecuteBtn_Action(); }); });
}

QStringList Window1::checkExecute()
{
    RunPlan plan = planRun(*this, ListBox1->ListCount());
    findCompanions(plan);
    return checkPlan(ListBox1, plan);
}

void Window1::ExecuteBtn_Action()
{
    const int count = ListBox1->ListCount();
    if (count < 1 || AimValue(0)->text().isEmpty())
        return;
    RunPlan plan = planRun(*this, count);
    findCompanions(plan);
    if (MsgBox(kExecuteQuestion, kOkCancelQuestion, QString(), summaryOf(plan)) != 1)
        return;
    std::vector<ItemStatus> seen;  // each row's file as the check found it
    const QStringList failed = checkPlan(ListBox1, plan, &seen);
    if (!failed.isEmpty())
        throw CheckFailed(failed);
    if (plan.rows.empty())
        return;
    // The plan is on disk before the first byte: whatever ends the run, it can be undone.
    QString why;
    Journal journal;
    const std::optional<JournalRun> run = journalOf(*this, plan, seen, &why);
    if (!run || (runJournalled() && !journal.begin(*run, &why)))
        throw std::runtime_error(textById("Run.noJournal", "Nothing has been written: %1.").arg(why).toStdString());
    Written written;
    try {
        for (size_t i = 0; i < plan.rows.size(); ++i) {
            stillBusy();
            if (const QString fault = runFault(int(i)); !fault.isEmpty())
                throw RunStopped(ListBox1, plan.rows[i], -1, fault);
            carryOut(*this, plan.rows[i], written);
        }
    } catch (const RunStopped& stopped) {
        offerRunChoices(journal.fileName(), *run, QString::fromUtf8(stopped.what()));
        return;
    }
    if (runJournalled() && !journal.close(&why))
        MsgBox(textById("Run.notClosed", "Every date has been changed, but the journal could not note the end of "
                                         "the run: %1. At the next start the run will be offered for undo.")
                   .arg(why),
               48);
}
