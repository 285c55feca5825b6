#pragma once
// A run of the journal against the files as they are now: which files it changed, and
// putting them back (undo) or forward (finishing an interrupted run). Nothing is written
// unless every file is still the one the run wrote (device, inode, size) and every place
// holds either the bytes the run found or those it wrote.

#include <QStringList>

#include "journal/Journal.h"

enum class RunDirection { Back, Forward };

struct RunCheck {
    QStringList problems;  // a line for each file or place that does not hold
    int changedFiles = 0;  // files of which the run changed something
};

RunCheck checkRun(const JournalRun& run, RunDirection direction);
// Checks, then puts each file back or forward: its bytes, read again after writing, and
// its file times, read back after setting. The lines name what failed; empty when all did.
QStringList applyRun(const JournalRun& run, RunDirection direction);
// A report's lines, the first of them named and the rest counted.
QString listLines(const QStringList& lines);
