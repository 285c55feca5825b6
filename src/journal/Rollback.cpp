#include "journal/Rollback.h"

#include <QHashFunctions>

#include <unordered_map>

#include "platform/widgets/BusyPointer.h"
#include "platform/files/PinnedItem.h"
#include "platform/base/TextId.h"

namespace {

constexpr int kNamedAtMost = 20;

QString nameOf(const JournalFile& f)
{
    return QStringLiteral("“%1”").arg(QString::fromLocal8Bit(f.path));
}

QString placeOf(const JournalFile& f, const Patch& p)
{
    QString s = textById("Journal.place", "%1, byte %2").arg(nameOf(f)).arg(p.position);
    return p.what.isEmpty() ? s : s + QStringLiteral(" (%1)").arg(p.what);
}

struct Place {
    quint64 device, inode, position;
    bool operator==(const Place& o) const { return device == o.device && inode == o.inode && position == o.position; }
};
struct PlaceHash {
    size_t operator()(const Place& p) const { return qHashMulti(0, p.device, p.inode, p.position); }
};
// What a place will hold once the files before it in the pass are done: a place that two
// files of a run (two rows of one file) wrote goes through both of its changes.
using Overlay = std::unordered_map<Place, QByteArray, PlaceHash>;

// Opens the file of the run and checks that it is still the one written.
bool openChecked(const JournalFile& f, PinnedItem& item, QStringList& problems)
{
    ItemStatus now;
    if (!item.isOpen() || !item.status(now)) {
        problems << textById("Journal.fileWhy", "%1: %2.").arg(nameOf(f), item.why());
        return false;
    }
    // A folder's size follows its entries: only a file's is compared.
    if (now.device != f.device || now.inode != f.inode || (!f.patches.empty() && now.size != f.size)) {
        problems << textById("Journal.notSameFile",
                             "%1: it is no longer the file the run wrote (replaced, or its size has changed).")
                        .arg(nameOf(f));
        return false;
    }
    return true;
}

// Walks the files in the pass's order (back: last first) and calls act(file, item, which
// places to write) for each that holds; the places are those still to be changed.
template <class Act>
void pass(const JournalRun& run, RunDirection d, QStringList& problems, int& changed, Act&& act)
{
    Overlay overlay;
    const qsizetype n = qsizetype(run.files.size());
    for (qsizetype k = 0; k < n; ++k) {
        stillBusy();
        const JournalFile& f = run.files[size_t(d == RunDirection::Back ? n - 1 - k : k)];
        PinnedItem item(FolderItem(f.path), f.patches.empty() ? PinnedItem::Dates : PinnedItem::Contents);
        if (!openChecked(f, item, problems))
            continue;
        std::vector<size_t> toWrite;
        bool changedHere = false, holds = true;
        for (size_t i = 0; i < f.patches.size(); ++i) {
            const Patch& p = f.patches[d == RunDirection::Back ? f.patches.size() - 1 - i : i];
            const Place place{f.device, f.inode, p.position};
            auto known = overlay.find(place);
            const QByteArray there = known != overlay.end() ? known->second : item.readAt(p.position, p.before.size());
            const QByteArray& from = d == RunDirection::Back ? p.after : p.before;
            const QByteArray& to = d == RunDirection::Back ? p.before : p.after;
            changedHere = changedHere || there == p.after;
            if (there == from && from != to)
                toWrite.push_back(d == RunDirection::Back ? f.patches.size() - 1 - i : i);
            else if (there != to) {
                problems << textById("Journal.placeNeither",
                                     "%1: it holds neither the bytes the run found there nor those it wrote.")
                                .arg(placeOf(f, p));
                holds = false;
            }
            overlay[place] = to;
        }
        ItemStatus now;
        if (f.patches.empty() && f.modificationAfter && *f.modificationAfter != f.modification && item.status(now))
            changedHere = now.modification == *f.modificationAfter;
        changed += changedHere;
        if (holds)
            act(f, item, toWrite);
    }
}

// Sets a time and reads it back; the line names the file where it did not land.
bool setTime(PinnedItem& item, const JournalFile& f, const FileTime& t, bool creation, QStringList& lines)
{
    ItemStatus now;
    const bool set = creation ? item.setCreationTime(t) : item.setModificationTime(t);
    if (!set) {
        lines << textById("Journal.fileWhy", "%1: %2.").arg(nameOf(f), item.why());
        return false;
    }
    if (!item.status(now) || !timeLanded(t, creation ? now.birth : now.modification)) {
        lines << textById("Journal.timeNotLanded", "%1: its file time was set, but reads back as %2.")
                     .arg(nameOf(f), (creation ? now.birth : now.modification).toDate().SQLDateTime());
        return false;
    }
    return true;
}

}  // namespace

RunCheck checkRun(const JournalRun& run, RunDirection direction)
{
    RunCheck c;
    pass(run, direction, c.problems, c.changedFiles, [](const JournalFile&, PinnedItem&, const std::vector<size_t>&) {});
    return c;
}

QStringList applyRun(const JournalRun& run, RunDirection d)
{
    const RunCheck c = checkRun(run, d);
    if (!c.problems.isEmpty())
        return c.problems;
    QStringList lines;
    int changed = 0;
    QStringList problems;
    pass(run, d, problems, changed, [&](const JournalFile& f, PinnedItem& item, const std::vector<size_t>& places) {
        for (size_t i : places) {
            const Patch& p = f.patches[i];
            const QByteArray& to = d == RunDirection::Back ? p.before : p.after;
            if (!item.writeAt(p.position, to)) {
                lines << textById("Journal.placeWhy", "%1: %2.").arg(placeOf(f, p), item.why());
                return;
            }
            if (item.readAt(p.position, to.size()) != to) {
                lines << textById("Journal.placeNotLanded", "%1: written, but reads back otherwise.").arg(placeOf(f, p));
                return;
            }
        }
        const std::optional<FileTime> creation =
            d == RunDirection::Back ? (f.creationAfter ? f.birth : std::nullopt) : f.creationAfter;
        if (creation && PinnedItem::canSetCreationTime() && !setTime(item, f, *creation, true, lines))
            return;
        const std::optional<FileTime> modification =
            d == RunDirection::Back ? std::optional<FileTime>(f.modification) : f.modificationAfter;
        if (modification && (!places.empty() || f.modificationAfter))
            setTime(item, f, *modification, false, lines);
    });
    return lines + problems;
}

QString listLines(const QStringList& lines)
{
    QString s;
    for (qsizetype i = 0; i < lines.size() && i < kNamedAtMost; ++i)
        s += (i ? QStringLiteral("\n") : QString()) + lines[i];
    if (lines.size() > kNamedAtMost)
        s += QLatin1Char('\n') + textById("Run.andMore", "and %1 more.").arg(lines.size() - kNamedAtMost);
    return s;
}
