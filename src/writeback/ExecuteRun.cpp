// The execute run: the scheduled dates go into the ticked cells' files. The table is the
// only source of what to do and where; the files are not parsed again. Before the first
// byte is written, every item that the run will touch is checked against what was listed,
// and every date's 19 bytes against its cell: if anything fails, nothing is written at
// all, and the report names each date that failed.

#include <QHashFunctions>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>

#include <map>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/BusyPointer.h"
#include "platform/Convert.h"
#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/ListboxModel.h"
#include "platform/MsgBox.h"
#include "platform/PinnedItem.h"
#include "platform/Text.h"
#include "platform/TextId.h"
#include "shell/Window1.h"

namespace {

// The confirmation before anything is written; OK (1) goes on.
const QString kExecuteQuestion =
    QStringLiteral("変更予定値を直接ファイルに書込みます。") + QStringLiteral("\n") + QStringLiteral("よろしいですか。");
constexpr int kOkCancelQuestion = 33;
constexpr int kDateLength = 19;  // an Exif date's text, without its NUL
constexpr int kNamedAtMost = 20;  // dates named in a report; the rest are counted

// One ticked Exif date of a row.
struct ExifWrite {
    int column;
    quint64 position;   // 0: not known (never noted, or no place a date can start)
    QByteArray cell;    // the cell's text: what the file held there when it was listed
    QByteArray before;  // what the run expects there: the cell's text, or the date that an
                        // earlier row of the same file writes to the same place
    QByteArray after;
};

// What the run does to one row, worked out from the table alone.
struct RowPlan {
    int row = 0;
    FolderItem file;
    QString fileDate, exifDate;  // the scheduled date as columns 1-2 and 3-5 show it
    FileTime aim;
    std::vector<ExifWrite> exif;  // columns 3 to 5, in this order
    bool creation = false;
    bool modification = false;
    bool restore = false;  // the modification time noted at listing is put back
    std::optional<FileTime> noted;

    bool touchesFile() const { return !exif.empty() || creation || modification || restore; }
};

struct RunPlan {
    std::vector<RowPlan> rows;  // in table order, only rows that the run touches
    int exifDates = 0;
    int exifFiles = 0;
    int creationsKept = 0;  // ticked creation dates that this system cannot set
};

// An Exif date text, "dddd:dd:dd dd:dd:dd": exactly the 19 bytes that replace a date in a
// file. Any other text would spill over the field or leave part of the old one.
bool isExifDateText(QByteArrayView s)
{
    static constexpr char form[] = "dddd:dd:dd dd:dd:dd";
    if (s.size() != kDateLength)
        return false;
    for (qsizetype i = 0; i < s.size(); ++i) {
        const bool digit = s[i] >= '0' && s[i] <= '9';
        if (form[i] == 'd' ? !digit : s[i] != form[i])
            return false;
    }
    return true;
}

// The time to put back: the Date of the tag, which the row keeps in whole seconds, to the
// nanosecond where the listing noted that same moment.
FileTime restoreTime(const Date& tagged, const FolderItem& f)
{
    if (f.Listing() && f.Listing()->modification.toDate() == tagged)
        return f.Listing()->modification;
    return {tagged.toUnixTime(), 0};
}

// A place in a file from a cell's tag: none for a tag that is no number, and none at 0 or
// before, where no date can start.
quint64 placeOf(const QVariant& tag)
{
    bool number = false;
    const double at = tag.toDouble(&number);
    return number && at >= 1 ? toPosition(at) : 0;
}

// The run's rows with the dates, ticks and positions of each, as the table gives them and
// without touching a file. The restore flag is carried from row to row as the run carries
// it: set by an Exif date, cleared by a ticked modification date, left by a row without a
// scheduled date.
RunPlan planRun(Window1& w, int count)
{
    Listbox* t = w.ListBox1;
    RunPlan plan;
    // Where an earlier row writes a date: its file's identity and the place.
    struct Place {
        quint64 device, inode, position;
        bool operator==(const Place& o) const { return device == o.device && inode == o.inode && position == o.position; }
    };
    struct PlaceHash {
        size_t operator()(const Place& p) const { return qHashMulti(0, p.device, p.inode, p.position); }
    };
    std::unordered_map<Place, QByteArray, PlaceHash> written;
    written.reserve(size_t(count) * 3);
    QSet<QString> exifFiles;
    bool restore = false;
    for (int row = 0; row < count; ++row) {
        // One date serves all of the row's ticks, so that writing the base column does not
        // move the columns after it.
        const std::optional<Date> aim = w.culcAimValue(row);
        if (!aim)
            continue;
        RowPlan p;
        p.row = row;
        p.file = t->CellTag(row, 0).value<FolderItem>();
        p.fileDate = aim->SQLDateTime();
        p.exifDate = ReplaceAll(p.fileDate, QStringLiteral("-"), QStringLiteral(":"));
        p.aim = {aim->toUnixTime(), 0};
        const QByteArray after = p.exifDate.toLatin1();
        for (int column = 3; column <= 5; ++column) {
            if (!t->CellCheck(row, column))
                continue;
            ExifWrite e{column, placeOf(t->CellTag(row, column)), t->Cell(row, column).toLatin1(), {}, after};
            e.before = e.cell;
            if (p.file.Listing() && e.position) {
                const Place place{p.file.Listing()->device, p.file.Listing()->inode, e.position};
                auto [earlier, first] = written.try_emplace(place, after);
                if (!first)
                    e.before = std::exchange(earlier->second, after);
            }
            p.exif.push_back(std::move(e));
            restore = true;
        }
        p.creation = t->CellCheck(row, 1);
        p.modification = t->CellCheck(row, 2);
        if (p.modification)
            restore = false;
        p.restore = restore;
        const QVariant tagged = t->CellTag(row, 2);
        if (p.restore && tagged.metaType() == QMetaType::fromType<Date>() && !p.file.isNil())
            p.noted = restoreTime(tagged.value<Date>(), p.file);
        if (!p.touchesFile())
            continue;
        plan.exifDates += int(p.exif.size());
        if (!p.exif.empty())
            exifFiles.insert(p.file.isNil() ? QString() : p.file.path());
        if (p.creation && !PinnedItem::canSetCreationTime())
            ++plan.creationsKept;
        plan.rows.push_back(std::move(p));
    }
    plan.exifFiles = int(exifFiles.size());
    return plan;
}

// The confirmation's smaller text: what the run will do, counted from the ticks.
QString summaryOf(const RunPlan& plan)
{
    QString text = textById("Run.summary", "Dates to be overwritten in place: %1, in %2 files.")
                       .arg(plan.exifDates)
                       .arg(plan.exifFiles);
    if (plan.creationsKept > 0)
        text += QLatin1Char('\n')
                + textById("Run.creationsKept",
                            "Ticked creation dates that stay as they are, since this system cannot set them: %1.")
                      .arg(plan.creationsKept);
    return text;
}

QString changedWhy(quint64 position, const QByteArray& expected)
{
    return textById("Run.changed", "it has changed since it was listed: at byte %1 it no longer holds %2")
        .arg(position)
        .arg(QString::fromLatin1(expected));
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

// The reasons, by column, why a row's ticked dates cannot be changed safely; empty when
// they all can. Reads the 19 bytes of each Exif date and nothing else.
std::map<int, QString> checkRow(const RowPlan& p)
{
    std::map<int, QString> why;
    std::vector<int> columns;
    for (const ExifWrite& e : p.exif) {
        columns.push_back(e.column);
        if (!isExifDateText(e.after))
            why[e.column] = textById("Run.aimNoExifDate", "the scheduled date %1 cannot be written as an Exif date")
                                .arg(p.exifDate);
        else if (e.position == 0)
            why[e.column] = textById("Run.placeUnknown", "the place of this date in the file is not known");
        else if (!isExifDateText(e.cell))
            why[e.column] = textById("Run.noDateInCell", "the table holds no Exif date here");
    }
    if (p.creation)
        columns.push_back(1);
    if (p.modification || p.restore)
        columns.push_back(2);
    if (p.restore && !p.noted)
        why[2] = textById("Run.notedUnknown",
                           "the modification date it had when it was listed is not known, so it could not be put back");

    // The item itself: the one listed, and open to what the run does to it.
    QString itemWhy;
    std::optional<PinnedItem> item;
    ItemStatus now;
    if (p.file.isNil())
        itemWhy = textById("Run.noFile", "no file is known for this row");
    else if (!p.file.Listing())
        itemWhy = textById("Run.notListed", "it is not known which file was listed here");
    else {
        item.emplace(p.file, p.exif.empty() ? PinnedItem::Dates : PinnedItem::Contents);
        if (!item->isOpen() || !item->status(now))
            itemWhy = item->why();
        else if (!now.sameItem(*p.file.Listing()))
            itemWhy = replacedWhy(p.file, now);
    }
    for (int column : columns)
        if (!itemWhy.isEmpty() && !why.count(column))
            why[column] = itemWhy;
    if (!itemWhy.isEmpty())
        return why;
    for (const ExifWrite& e : p.exif) {
        if (why.count(e.column))
            continue;
        const QByteArray there = item->readAt(e.position, kDateLength);
        if (there.size() < kDateLength)
            why[e.column] = textById("Run.pastEnd", "the file ends before the place of this date (byte %1)")
                                .arg(e.position);
        else if (there != e.cell)
            why[e.column] = changedWhy(e.position, e.cell);
    }
    return why;
}

// The lines of the report, one for each date that cannot be changed safely, in the order
// in which the run would have come to them.
QStringList checkPlan(Listbox* table, const RunPlan& plan)
{
    QStringList lines;
    for (const RowPlan& p : plan.rows) {
        stillBusy();
        const std::map<int, QString> why = checkRow(p);
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

// One row, in the order the run has always had: Exif dates, creation date, modification
// date, then the noted modification time put back. Each Exif date is compared once more
// through the same open just before it is written.
void carryOut(Listbox* t, const RowPlan& p)
{
    PinnedItem item(p.file, p.exif.empty() ? PinnedItem::Dates : PinnedItem::Contents);
    ItemStatus now;
    if (!item.isOpen() || !item.status(now))
        throw RunStopped(t, p, -1, item.why());
    if (!now.sameItem(*p.file.Listing()))
        throw RunStopped(t, p, -1, replacedWhy(p.file, now));
    for (const ExifWrite& e : p.exif) {
        if (item.readAt(e.position, kDateLength) != e.before)
            throw RunStopped(t, p, e.column, changedWhy(e.position, e.before));
        if (!item.writeAt(e.position, e.after))
            throw RunStopped(t, p, e.column, item.why());
        t->setCell(p.row, e.column, p.exifDate);
    }
    const bool creationSettable = PinnedItem::canSetCreationTime();
    if (p.creation && creationSettable) {
        if (!item.setCreationTime(p.aim))
            throw RunStopped(t, p, 1, item.why());
        t->setCell(p.row, 1, p.fileDate);
    }
    if (p.modification) {
        if (!item.setModificationTime(p.aim))
            throw RunStopped(t, p, 2, item.why());
        t->setCell(p.row, 2, p.fileDate);
    }
    // Writing into a file moves its modification time; this puts back the one it had
    // when it was listed. Cell(row, 2) is not touched.
    if (p.restore && !item.setModificationTime(*p.noted))
        throw RunStopped(t, p, 2, item.why());
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
    return checkPlan(ListBox1, planRun(*this, ListBox1->ListCount()));
}

void Window1::ExecuteBtn_Action()
{
    const int count = ListBox1->ListCount();
    if (count < 1 || AimValue(0)->text().isEmpty())
        return;
    const RunPlan plan = planRun(*this, count);
    if (MsgBox(kExecuteQuestion, kOkCancelQuestion, QString(), summaryOf(plan)) != 1)
        return;
    const QStringList failed = checkPlan(ListBox1, plan);
    if (!failed.isEmpty())
        throw CheckFailed(failed);
    for (const RowPlan& p : plan.rows) {
        stillBusy();
        carryOut(ListBox1, p);
    }
}
