// The run as the journal keeps it: each file it touches as it is before the first byte, the
// changes to it, and the file times the run leaves.

#include <QHash>
#include <QHashFunctions>
#include <QLineEdit>

#include "journal/Journal.h"
#include "platform/files/PinnedItem.h"
#include "platform/text/Text.h"
#include "platform/base/TextId.h"
#include "shell/Window1.h"
#include "writeback/RunPlan.h"

namespace {

RunFault& fault()
{
    static RunFault f;
    return f;
}

struct Place {
    quint64 device, inode, position;
    bool operator==(const Place& o) const { return device == o.device && inode == o.inode && position == o.position; }
};
size_t qHash(const Place& p, size_t seed = 0) { return qHashMulti(seed, p.device, p.inode, p.position); }

// The file as it is now, with its changes; a place that an earlier row of the run writes
// goes from what that row put there.
JournalFile journalFile(const FolderItem& f, std::optional<ItemStatus> s, const std::vector<Patch>& patches,
                        QHash<Place, QByteArray>& written, QString* why)
{
    JournalFile j;
    j.path = f.nativePath();
    if (!s)
        s = f.Status(why);
    if (!s)
        return j;
    j.device = s->device;
    j.inode = s->inode;
    j.size = s->size;
    j.modification = s->modification;
    if (s->hasBirth)
        j.birth = s->birth;
    j.patches = patches;
    for (Patch& p : j.patches) {
        QByteArray& now = written[Place{s->device, s->inode, p.position}];
        if (!now.isNull())
            p.before = now;
        now = p.after;
    }
    return j;
}

}  // namespace

void setRunFault(RunFault f) { fault() = std::move(f); }

static bool journalled = true;
void setRunJournalled(bool on) { journalled = on; }
bool runJournalled() { return journalled; }

QString runFault(int index)
{
    return fault() ? fault()(index) : QString();
}

// The offset as the add values give it: years/months/days hours:minutes:seconds.
QString offsetText(Window1& w)
{
    QStringList v;
    for (int i = 0; i < 6; ++i)
        v << QString::number(qint64(Val(w.AddValue(i)->text())));
    return QStringLiteral("%1/%2/%3 %4:%5:%6").arg(v[0], v[1], v[2], v[3], v[4], v[5]);
}

std::optional<JournalRun> journalOf(Window1& w, const RunPlan& plan, const std::vector<ItemStatus>& seen,
                                    QString* why)
{
    JournalRun run;
    run.started = QDateTime::currentMSecsSinceEpoch();
    run.offset = offsetText(w);
    run.files.reserve(plan.rows.size());
    QHash<Place, QByteArray> written;
    const bool creationSettable = PinnedItem::canSetCreationTime();
    for (size_t i = 0; i < plan.rows.size(); ++i) {
        const RowPlan& p = plan.rows[i];
        run.dates += int(p.exifColumns.size()) + (p.creation && creationSettable) + p.modification;
        const bool checked = i < seen.size() && (seen[i].device || seen[i].inode);
        JournalFile f = journalFile(p.file, checked ? std::optional(seen[i]) : std::nullopt, p.patches, written, why);
        if (f.device == 0 && f.inode == 0)
            return std::nullopt;
        if (p.restore)
            f.modificationAfter = *p.noted;
        else if (p.modification)
            f.modificationAfter = p.aim;
        if (p.creation && creationSettable)
            f.creationAfter = p.aim;
        run.files.push_back(std::move(f));
        for (const FilePatches& other : p.others)
            if (!other.patches.empty()) {
                run.files.push_back(journalFile(other.file, std::nullopt, other.patches, written, why));
                if (run.files.back().device == 0 && run.files.back().inode == 0)
                    return std::nullopt;
            }
    }
    run.fileCount = qint64(run.files.size());
    return run;
}
