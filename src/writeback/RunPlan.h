#pragma once
// The execute run worked out before anything is written: from the table alone, which dates
// of which files go where, then from the files, what moves with them. Every change is a
// Patch, so that the check before the first byte, the writes and the report see one kind of
// thing, whatever the date's form or the copy's place.

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "platform/files/FolderItem.h"
#include "platform/files/Patch.h"

class Window1;

// What the run does to one row.
struct RowPlan {
    int row = 0;
    FolderItem file;
    QString fileDate, exifDate;  // the scheduled date as columns 1-2 and 3-5 show it
    FileTime aim;
    std::vector<int> exifColumns;       // the ticked Exif dates, 3 to 5 in this order
    std::vector<Patch> patches;         // those that can be written, then what moves with them
    std::map<int, QString> unwritable;  // by column: why its date cannot become a change
    std::vector<FilePatches> others;    // what moves with them in files beside it
    bool creation = false;
    bool modification = false;
    bool restore = false;  // the modification time noted at listing is put back
    std::optional<FileTime> noted;

    bool touchesFile() const { return !exifColumns.empty() || creation || modification || restore; }
    bool writesContents() const { return !exifColumns.empty(); }
};

struct RunPlan {
    std::vector<RowPlan> rows;  // in table order, only rows that the run touches
    int exifDates = 0;
    int exifFiles = 0;
    int creationsKept = 0;  // ticked creation dates that this system cannot set
    int copies = 0;         // copies of dates that move with them
    bool dateCopies = true; // whether they move at all (the menu's "Keep copies in XMP and IPTC in step")
    QStringList kept;       // copies that stay as they are, and why
};

// The run's rows with the dates, ticks and places of each, as the table gives them and
// without touching a file.
RunPlan planRun(Window1& w, int count);
// What moves with each row's dates, read from the files as they are now.
void findCompanions(RunPlan& plan);
// The confirmation's smaller text: what the run will do.
QString summaryOf(const RunPlan& plan);

struct JournalRun;
// The run as the journal keeps it, with each row's file as the check saw it (seen, by
// row) and each file beside one as it is now; nothing, with why, where one gives no status.
std::optional<JournalRun> journalOf(Window1& w, const RunPlan& plan, const std::vector<ItemStatus>& seen,
                                    QString* why);

// Tests stop a run part-way: before each row (counted from 0) the fault is asked; a reason
// stops the run there as a failed write would, and what it throws ends the run as a crash
// would, without its closing record.
using RunFault = std::function<QString(int index)>;
void setRunFault(RunFault fault);
QString runFault(int index);
// Benchmarks time the run as it was before its journal too (no journal, nothing read
// back), beside the run with them.
void setRunJournalled(bool on);
bool runJournalled();
