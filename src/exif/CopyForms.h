#pragma once
// Copies of a date that a file keeps besides its Exif date (in XMP, in IPTC, in another
// directory of the chain) and how one moves with it. A copy moves only where it showed the
// same wall-clock time as the cell's old date, to its own precision; it keeps its own form
// (separators, fraction, zone, length), and only the digits of the date change.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <optional>
#include <vector>

// A ticked cell's date: the Exif text it holds and the one it gets, both "YYYY:MM:DD HH:MM:SS".
struct Shift {
    int column = 0;  // 3..5
    QByteArray before, after;
};

// One change to a copy: the bytes at position go from before to after (same length).
struct CopyEdit {
    quint64 position = 0;
    QByteArray before, after;
    int column = 0;
    QString what;  // "XMP xmp:CreateDate", "IPTC 2:55/2:60", "Exif 306 of IFD0"
};

// What the copies of one file (or sidecar) come to: the edits that move them, a line for
// each copy that stays ("place: why"), and how many copies move.
struct CopyFindings {
    std::vector<CopyEdit> edits;
    QStringList kept;
    int moved = 0;
};

// A wall-clock time, as its fields.
struct Stamp {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};
// The fields of an Exif date text "YYYY:MM:DD HH:MM:SS" that names a real time.
std::optional<Stamp> exifStamp(QByteArrayView text);

// What a copy comes to: it moves (to `after`, its own form with the new digits), it shows
// another time, or it is no date of its form.
struct Moved {
    enum Fate { Moves, Differs, NotADate } fate = NotADate;
    QByteArray after;
};

// An XMP date: YYYY, YYYY-MM, YYYY-MM-DD, YYYY-MM-DDThh:mm[:ss[.f...]][Z|+hh:mm|-hh:mm].
Moved moveXmpDate(QByteArrayView text, const Stamp& old, const Stamp& aim);
// An IPTC date CCYYMMDD, and its time HHMMSS±HHMM (or HHMMSS), which may be missing (empty):
// then the day alone is compared. On Moves, `after` is the date and timeAfter the time.
Moved moveIptcDate(QByteArrayView date, QByteArrayView time, const Stamp& old, const Stamp& aim,
                   QByteArray& timeAfter);

// A copy's place and its text as a report shows them.
QString copyWhy(Moved::Fate fate, QByteArrayView text);
