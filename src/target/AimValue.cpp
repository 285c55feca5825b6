// The aim value: the date that the ticked dates of a row are to receive, computed from the
// row's base cell and the six add values, and its display for the selected row.

#include "shell/Window1.h"

#include <QLineEdit>
#include <QStringList>

#include "platform/widgets/Canvas.h"
#include "platform/base/Convert.h"
#include "platform/base/Exceptions.h"
#include "platform/listbox/Listbox.h"
#include "platform/text/Text.h"
#include "platform/base/TextId.h"

namespace {

// The base cell being read, for the report of a date that lacks a piece.
struct BaseCell {
    QString text;
    int row;
};

// The cell's text as the report quotes it: one line, and no longer than a date needs.
QString quoted(const QString& text)
{
    constexpr qsizetype kShown = 30;
    QString shown = text.left(kShown);
    for (QChar& c : shown)
        if (!c.isPrint())
            c = u' ';
    return QStringLiteral("“%1%2”").arg(shown, text.size() > kShown ? QStringLiteral("…") : QString());
}

// Element i of a split text of the cell, or the array's out-of-bounds failure, which says
// that the cell's date is incomplete.
const QString& fieldAt(const QStringList& fields, qsizetype i, const BaseCell& cell)
{
    if (i < 0 || i >= fields.size())
        throw OutOfBoundsException(
            textById("Report.incompleteDate",
                      "The date %1 in row %2 of the list is incomplete: it needs a day and a time, "
                      "as in 2021:05:06 07:08:09.")
                .arg(quoted(cell.text))
                .arg(qint64(cell.row) + 1));
    return fields.at(i);
}

qint64 integerOf(const QString& text)
{
    return toInteger(Val(text));
}

// The six units in the order in which the add values are applied: AddValue(i) goes to
// kUnits[i].
struct Unit {
    qint64 (Date::*get)() const;
    void (Date::*set)(qint64);
};
constexpr Unit kUnits[6] = {
    {&Date::Year, &Date::setYear},     {&Date::Month, &Date::setMonth},
    {&Date::Day, &Date::setDay},       {&Date::Hour, &Date::setHour},
    {&Date::Minute, &Date::setMinute}, {&Date::Second, &Date::setSecond},
};

// Years that SQLDateTime writes with exactly four digits, so that the date is 19 characters.
constexpr qint64 kFirstWritableYear = 0;
constexpr qint64 kLastWritableYear = 9999;

}  // namespace

// The base cell of the row (column baseChoice), in either date form, plus the add values
// (culcBaseDate is the first half: the cell as a date).
//
// The cell is parsed as YYYY:MM:DD HH:MM:SS after every "-" became ":", so a file date
// and an Exif date take the same path. A date piece of fewer than three fields is no date:
// nullopt. A date piece of three fields without a time piece of three fields throws
// OutOfBoundsException, which ends the handler. Every field goes through Val, so any text
// gives a number; the parse starts from the first of a month at midnight, so that a
// well-formed cell gives its own date on any day of the month.
//
// Each add value is then added in Double to its unit as the unit stands after the previous
// one rolled over, year first, second last, and the sum is truncated toward zero. The date
// class carries every overflow into the neighbouring units and clamps the year to its own
// range, so no text in a cell or a field reaches undefined behaviour.
//
// Range: a result is given only for a year from 0 to 9999, whose SQLDateTime is exactly 19
// characters and can be written over an Exif date. A result outside it is nullopt, as for
// a cell that holds no date: the display stays blank and the run leaves the row alone.
std::optional<Date> Window1::culcBaseDate(int row)
{
    const BaseCell cell{ListBox1->Cell(row, baseChoice), row};
    const QString text = ReplaceAll(cell.text, QStringLiteral("-"), QStringLiteral(":"));
    const QStringList pieces = Split(text, QStringLiteral(" "));
    const QString& datePiece = fieldAt(pieces, 0, cell);
    if (CountFields(datePiece, QStringLiteral(":")) < 3)
        return std::nullopt;

    const QStringList dateFields = Split(datePiece, QStringLiteral(":"));
    Date d(2000, 1, 1);
    d.setYear(integerOf(fieldAt(dateFields, 0, cell)));
    d.setMonth(integerOf(fieldAt(dateFields, 1, cell)));
    d.setDay(integerOf(fieldAt(dateFields, 2, cell)));
    const QStringList timeFields = Split(fieldAt(pieces, 1, cell), QStringLiteral(":"));
    d.setHour(integerOf(fieldAt(timeFields, 0, cell)));
    d.setMinute(integerOf(fieldAt(timeFields, 1, cell)));
    d.setSecond(integerOf(fieldAt(timeFields, 2, cell)));
    return d;
}

std::optional<Date> Window1::culcAimValue(int row)
{
    const std::optional<Date> base = culcBaseDate(row);
    if (!base)
        return std::nullopt;
    std::array<double, 6> add{};
    for (int i = 0; i < 6; ++i)
        add[i] = Val(AddValue(i)->text());
    const Date d = culcAddValues(*base, add);
    if (d.Year() < kFirstWritableYear || d.Year() > kLastWritableYear)
        return std::nullopt;
    return d;
}

Date Window1::culcAddValues(Date d, const std::array<double, 6>& add)
{
    for (int i = 0; i < 6; ++i) {
        const double sum = double((d.*kUnits[i].get)()) + add[i];
        (d.*kUnits[i].set)(toInteger(sum));
    }
    return d;
}

void Window1::changeAimValue()
{
    const int row = ListBox1->ListIndex();
    if (row < 0) {
        clearAimValue();
        return;
    }
    dispAimValue(culcAimValue(row));
}

// The fields of SQLDateTime as they are: the leading zeros come from there.
void Window1::dispAimValue(const std::optional<Date>& d)
{
    if (!d) {
        clearAimValue();
        return;
    }
    const QStringList pieces = Split(d->SQLDateTime(), QStringLiteral(" "));
    if (pieces.size() < 2) {
        clearAimValue();
        return;
    }
    const QStringList dateFields = Split(pieces.at(0), QStringLiteral("-"));
    const QStringList timeFields = Split(pieces.at(1), QStringLiteral(":"));
    if (dateFields.size() < 3 || timeFields.size() < 3) {
        clearAimValue();
        return;
    }
    for (int i = 0; i < 3; ++i)
        AimValue(i)->setText(dateFields.at(i));
    for (int i = 3; i < 6; ++i)
        AimValue(i)->setText(timeFields.at(i - 3));
}

void Window1::clearAimValue()
{
    for (int i = 0; i < 6; ++i)
        AimValue(i)->setText(QString());
}

void Window1::ListBox1_Change()
{
    // A file that can't be shown leaves the pane empty, not with the former picture.
    Canvas1->setBackdrop(QImage());
    const int row = ListBox1->ListIndex();
    if (row < 0) {
        clearAimValue();
        return;
    }
    const QVariant tag = ListBox1->CellTag(row, 0);
    if (tag.metaType() != QMetaType::fromType<FolderItem>() || tag.value<FolderItem>().isNil())
        return;  // not a file: the display keeps what it shows
    changeAimValue();
    drawCanvas(row);
}
