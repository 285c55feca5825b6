#include "writeback/RunPlan.h"

#include <QSet>

#include "exif/Companions.h"
#include "exif/Movie.h"
#include "platform/widgets/BusyPointer.h"
#include "platform/base/Convert.h"
#include "platform/listbox/Listbox.h"
#include "platform/files/PinnedItem.h"
#include "platform/text/Text.h"
#include "platform/base/TextId.h"
#include "shell/Window1.h"

namespace {

constexpr int kDateLength = 19;  // an Exif date's text, without its NUL
constexpr int kKeptNamed = 10;   // copies that stay, named in the confirmation; the rest counted

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

// A place in a file from a cell's tag: none for a tag that is no number, and none at 0 or
// before, where no date can start.
quint64 placeOf(const QVariant& tag)
{
    bool number = false;
    const double at = tag.toDouble(&number);
    return number && at >= 1 ? toPosition(at) : 0;
}

// A movie's time: the field as listed becomes the scheduled date in UTC seconds since 1904,
// as wide as the field.
std::optional<Patch> moviePatch(int column, const MovieTime& m, const Date& aim, const QString& exifDate, QString& why)
{
    const std::optional<quint64> seconds = movieSeconds(aim, m.width);
    if (m.position < 1 || (m.width != 4 && m.width != 8))
        why = textById("Run.placeUnknown", "the place of this date in the file is not known");
    else if (!seconds)
        why = textById("Run.movieRange", "the scheduled date %1 does not fit this movie time, which holds %2 to %3")
                  .arg(exifDate, movieTimeText(1),
                       m.width == 4 ? movieTimeText(0xFFFFFFFFull) : QStringLiteral("9999:12:31 23:59:59"));
    else
        return Patch{toPosition(m.position), movieBytes(m.seconds, m.width), movieBytes(*seconds, m.width), column, {}};
    return std::nullopt;
}

// The change that puts the row's scheduled date into one ticked cell's place, or why there
// is none. The tag says where the date lies and in what form; the cell's text is what the
// file held there when it was listed.
std::optional<Patch> datePatch(int column, const QVariant& tag, const QString& cell, const Date& aim,
                               const QString& exifDate, QString& why)
{
    if (tag.metaType() == QMetaType::fromType<MovieTime>())
        return moviePatch(column, tag.value<MovieTime>(), aim, exifDate, why);
    Patch p{placeOf(tag), cell.toLatin1(), exifDate.toLatin1(), column, {}};
    if (!isExifDateText(p.after))
        why = textById("Run.aimNoExifDate", "the scheduled date %1 cannot be written as an Exif date").arg(exifDate);
    else if (p.position == 0)
        why = textById("Run.placeUnknown", "the place of this date in the file is not known");
    else if (!isExifDateText(p.before))
        why = textById("Run.noDateInCell", "the table holds no Exif date here");
    else
        return p;
    return std::nullopt;
}

// The time to put back: the Date of the tag, which the row keeps in whole seconds, to the
// nanosecond where the listing noted that same moment.
FileTime restoreTime(const Date& tagged, const FolderItem& f)
{
    if (f.Listing() && f.Listing()->modification.toDate() == tagged)
        return f.Listing()->modification;
    return {tagged.toUnixTime(), 0};
}

}  // namespace

// The restore flag is carried from row to row as the run carries it: set by an Exif date,
// cleared by a ticked modification date, left by a row without a scheduled date.
RunPlan planRun(Window1& w, int count)
{
    Listbox* t = w.ListBox1;
    RunPlan plan;
    plan.dateCopies = w.keepCopiesInStep();
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
        for (int column = 3; column <= 5; ++column) {
            if (!t->CellCheck(row, column))
                continue;
            p.exifColumns.push_back(column);
            QString why;
            if (auto patch = datePatch(column, t->CellTag(row, column), t->Cell(row, column), *aim, p.exifDate, why))
                p.patches.push_back(std::move(*patch));
            else
                p.unwritable[column] = why;
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
        plan.exifDates += int(p.exifColumns.size());
        if (p.writesContents())
            exifFiles.insert(p.file.isNil() ? QString() : p.file.path());
        if (p.creation && !PinnedItem::canSetCreationTime())
            ++plan.creationsKept;
        plan.rows.push_back(std::move(p));
    }
    plan.exifFiles = int(exifFiles.size());
    return plan;
}

// A file that cannot be read now is left to the check, which names it.
void findCompanions(RunPlan& plan)
{
    for (RowPlan& p : plan.rows) {
        if (p.patches.empty() || p.file.isNil() || !p.file.Listing())
            continue;
        stillBusy();
        const Handle<BinaryStream> stream = p.file.OpenAsBinaryFile(false);
        if (stream.isNil())
            continue;
        Companions found;
        found.dateCopies = plan.dateCopies;
        findCompanions(*stream, p.file, p.patches, found);
        plan.copies += found.copies;
        p.patches.insert(p.patches.end(), found.patches.begin(), found.patches.end());
        p.others.insert(p.others.end(), found.others.begin(), found.others.end());
        plan.kept += found.kept;
    }
}

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
    if (plan.copies > 0)
        text += QLatin1Char('\n')
                + textById("Run.copies", "Copies of these dates in XMP, IPTC and other Exif directories that move with them: %1.")
                      .arg(plan.copies);
    if (!plan.kept.isEmpty()) {
        text += QLatin1Char('\n')
                + textById("Run.copiesKept", "Copies that differ or cannot be written, and stay as they are: %1.")
                      .arg(plan.kept.size());
        for (qsizetype i = 0; i < plan.kept.size() && i < kKeptNamed; ++i)
            text += QLatin1Char('\n') + plan.kept[i];
        if (plan.kept.size() > kKeptNamed)
            text += QLatin1Char('\n') + textById("Run.andMore", "and %1 more.").arg(plan.kept.size() - kKeptNamed);
    }
    return text;
}
