#include "exif/DateCopies.h"

#include <algorithm>

#include "exif/Boxes.h"
#include "exif/Companions.h"
#include "exif/IptcDates.h"
#include "exif/Movie.h"
#include "exif/Sidecars.h"
#include "exif/TiffCopies.h"
#include "exif/XmpDates.h"
#include "platform/files/BinaryStream.h"
#include "platform/base/TextId.h"

namespace {

// A shifted column with its old and new times.
struct Step {
    const Shift* shift = nullptr;
    Stamp old, aim;
};

Step stepOf(const std::vector<Shift>& shifts, int column)
{
    for (const Shift& s : shifts) {
        if (s.column != column)
            continue;
        const auto old = exifStamp(s.before), aim = exifStamp(s.after);
        if (old && aim)
            return {&s, *old, *aim};
    }
    return {};
}

QString keptLine(const QString& place, const QString& what, const QString& why)
{
    return QStringLiteral("%1, %2: %3").arg(place, what, why);
}

void add(CopyFindings& out, quint64 at, QByteArrayView before, const QByteArray& after, int column, const QString& what)
{
    if (before != after)
        out.edits.push_back({at, before.toByteArray(), after, column, what});
}

QString xmpAt(quint64 position)
{
    return textById("Copy.xmpAt", "XMP at byte %1").arg(position);
}

// Reads a span of metadata, never more than a packet may hold.
QByteArray readSpan(BinaryStream& s, const Span& span)
{
    return span.length > quint64(kMaxXmpPacket) ? QByteArray() : readBounded(s, span.position, span.length, span.end());
}

}  // namespace

void moveXmpCopies(QByteArrayView packet, quint64 base, const std::vector<Shift>& shifts, const QString& place,
                   CopyFindings& out)
{
    const XmpDates found = findXmpDates(packet);
    if (!found.why.isEmpty()) {
        out.kept << keptLine(place, xmpAt(base), found.why);
        return;
    }
    for (const XmpDate& d : found.dates) {
        const Step step = stepOf(shifts, d.column);
        if (!step.shift)
            continue;
        const QByteArrayView text = packet.sliced(d.at, d.length);
        const QString what = QStringLiteral("XMP ") + QLatin1String(d.name);
        const Moved m = moveXmpDate(text, step.old, step.aim);
        if (m.fate != Moved::Moves) {
            out.kept << keptLine(place, what, copyWhy(m.fate, text));
            continue;
        }
        add(out, base + quint64(d.at), text, m.after, d.column, what);
        ++out.moved;
    }
}

void moveIptcCopies(QByteArrayView block, quint64 base, const std::vector<Shift>& shifts, const QString& place,
                    CopyFindings& out)
{
    for (const IptcDate& d : findIptcDates(block)) {
        const Step step = stepOf(shifts, d.column);
        if (!step.shift || d.dateAt < 0)
            continue;  // a time without its date shows no day to compare
        const QByteArrayView date = block.sliced(d.dateAt, d.dateLength);
        const QByteArrayView time = d.timeAt < 0 ? QByteArrayView() : block.sliced(d.timeAt, d.timeLength);
        const QString what = QLatin1String(d.name);
        QByteArray timeAfter;
        const Moved m = moveIptcDate(date, time, step.old, step.aim, timeAfter);
        if (m.fate != Moved::Moves) {
            out.kept << keptLine(place, what, copyWhy(m.fate, time.isEmpty() ? date : date.toByteArray() + ' ' + time.toByteArray()));
            continue;
        }
        add(out, base + quint64(d.dateAt), date, m.after, d.column, what);
        if (!time.isEmpty())
            add(out, base + quint64(d.timeAt), time, timeAfter, d.column, what);
        ++out.moved;
    }
}

void moveDateCopies(BinaryStream& s, const FolderItem& item, const ContainerLayout& layout,
                    const std::vector<Patch>& dates, Companions& out)
{
    std::vector<Shift> shifts;
    std::vector<quint64> datePositions;
    for (const Patch& d : dates)
        if (d.isDate()) {
            shifts.push_back({d.column, d.before, d.after});
            // A movie's date is a field of seconds; its copies compare with the wall-clock
            // time that the cell shows for it.
            if (d.before.size() != 19) {
                shifts.back().before = movieTimeText(bigEndian(d.before, 0, int(d.before.size()))).toLatin1();
                shifts.back().after = movieTimeText(bigEndian(d.after, 0, int(d.after.size()))).toLatin1();
            }
            datePositions.push_back(d.position);
        }
    if (shifts.empty())
        return;
    const QString place = QStringLiteral("“%1”").arg(item.path());
    CopyFindings inFile;
    std::vector<Span> xmp = layout.xmp, iptc = layout.iptc;
    for (const Span& block : layout.tiff) {
        TiffCopies t = findTiffCopies(s, block);
        xmp.insert(xmp.end(), t.xmp.begin(), t.xmp.end());
        iptc.insert(iptc.end(), t.iptc.begin(), t.iptc.end());
        for (const TiffDate& d : t.dates) {
            const Step step = stepOf(shifts, d.column);
            if (!step.shift || std::find(datePositions.begin(), datePositions.end(), d.position) != datePositions.end())
                continue;
            const QByteArray there = readBounded(s, d.position, 19, d.position + 19);
            if (there == step.shift->before) {
                add(inFile, d.position, there, step.shift->after, d.column, d.what);
                ++inFile.moved;
            } else if (exifStamp(there)) {
                inFile.kept << keptLine(place, d.what, copyWhy(Moved::Differs, there));
            }
        }
    }
    // A TIFF file's tag 700 may be in the layout as well: each span once.
    for (std::vector<Span>* spans : {&xmp, &iptc}) {
        std::sort(spans->begin(), spans->end(), [](const Span& a, const Span& b) { return a.position < b.position; });
        spans->erase(std::unique(spans->begin(), spans->end(),
                                 [](const Span& a, const Span& b) { return a.position == b.position; }),
                     spans->end());
    }
    for (const Span& span : xmp) {
        if (span.length > quint64(kMaxXmpPacket))
            inFile.kept << keptLine(place, xmpAt(span.position), xmpTooLargeWhy());
        else
            moveXmpCopies(readSpan(s, span), span.position, shifts, place, inFile);
    }
    for (const Span& span : iptc)
        moveIptcCopies(readSpan(s, span), span.position, shifts, place, inFile);
    for (const CopyEdit& e : inFile.edits)
        out.patches.push_back({e.position, e.before, e.after, e.column, e.what});
    out.kept += inFile.kept;
    out.copies += inFile.moved;

    for (Sidecar& c : findSidecars(item)) {
        const QString where = QStringLiteral("“%1”").arg(c.file.path());
        CopyFindings found;
        if (!c.why.isEmpty())
            found.kept << keptLine(where, QStringLiteral("XMP"), c.why);
        else
            moveXmpCopies(c.bytes, 0, shifts, where, found);
        out.kept += found.kept;
        out.copies += found.moved;
        if (found.edits.empty())
            continue;
        FilePatches beside{c.file, c.file.Listing(), {}};
        for (const CopyEdit& e : found.edits)
            beside.patches.push_back({e.position, e.before, e.after, e.column, e.what});
        out.others.push_back(std::move(beside));
    }
}
