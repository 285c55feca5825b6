#pragma once
#include <QByteArray>
#include <QString>

// One change to a file: the bytes at position go from before to after (the same length).
// column is the table column (3..5) of the date it belongs to (1-2 for none); what is empty
// for the cell's own date, else names the copy for reports ("XMP xmp:CreateDate").
struct Patch {
    quint64 position = 0;
    QByteArray before, after;
    int column = 0;
    QString what;
};
