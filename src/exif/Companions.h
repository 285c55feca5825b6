#pragma once
// What else moves with a row's dates: the changes that keep other copies of a date, and
// checksums over changed bytes, in step with it. Found when the run is asked for, from the
// file as it is then; each step answers with patches, never writes.

#include <QStringList>

#include <vector>

#include "platform/files/Patch.h"

class BinaryStream;

struct Companions {
    std::vector<Patch> patches;       // in the same file, after the dates
    std::vector<FilePatches> others;  // in other files beside it
    QStringList kept;                 // copies left as they are, each "place: why"
    int copies = 0;                   // copies of dates that move (an IPTC date with its time is one)
    bool dateCopies = true;           // in: whether copies of dates move with them at all
};

// The companions of `dates` (the patches of one row's ticked dates) in the file read through
// `file`, appended to `out`. Its steps, in their order, are in CompanionSteps.cpp.
void findCompanions(BinaryStream& file, const FolderItem& item, const std::vector<Patch>& dates, Companions& out);
