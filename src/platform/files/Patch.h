#pragma once
#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

#include "platform/files/FolderItem.h"

// One change that a run makes to a file: the bytes at `position` go from `before` (what the
// file held when the change was planned) to `after`, of the same length. Nothing else of
// the file moves.
struct Patch {
    quint64 position = 0;
    QByteArray before;
    QByteArray after;
    int column = 0;  // the table column (3 to 5) of the date that the change belongs to
    QString what;    // empty for the cell's own date; else the copy it is, for reports
    bool isDate() const { return what.isEmpty(); }
};

// Changes to a file that is not a row of the table (an XMP sidecar beside one), with what
// it was when they were planned, so that the run can tell it is still the same file.
struct FilePatches {
    FolderItem file;
    std::optional<ItemStatus> found;
    std::vector<Patch> patches;
};
