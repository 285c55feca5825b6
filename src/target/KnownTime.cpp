// The offset from one known time: the user knows the true time of one picture (a photo of
// a clock, of a phone's screen), and the add values become the difference between it and
// that row's base date, so that the scheduled value shows the time typed.

#include "shell/Window1.h"

#include <QCheckBox>
#include <QLineEdit>

#include "platform/widgets/DateTimeQuestion.h"
#include "platform/base/Exceptions.h"
#include "platform/listbox/Listbox.h"
#include "platform/base/TextId.h"
#include "shell/MenuBar1.h"

namespace {

constexpr qint64 kSecondsPerDay = 86400;

// Days, hours, minutes and seconds of a span, each with the span's sign.
void split(qint64 seconds, std::array<qint64, 6>& into)
{
    into[2] = seconds / kSecondsPerDay;
    into[3] = seconds % kSecondsPerDay / 3600;
    into[4] = seconds % 3600 / 60;
    into[5] = seconds % 60;
}

Date addMonths(const Date& base, qint64 months)
{
    return Window1::culcAddValues(base, {double(months / 12), double(months % 12), 0, 0, 0, 0});
}

}  // namespace

// Years and months, where asked for, are the whole months between the two dates that do not
// overshoot the known time once added as the run adds them (31 January plus one month is
// 3 March); days to seconds take the rest, measured from the date the months reach. So the
// result is exact whatever the months' lengths, and no unit goes the other way.
std::array<qint64, 6> Window1::offsetBetween(const Date& base, const Date& known, bool withYearsAndMonths)
{
    std::array<qint64, 6> offset{};
    Date from = base;
    if (withYearsAndMonths) {
        qint64 months = (known.Year() - base.Year()) * 12 + known.Month() - base.Month();
        from = addMonths(base, months);
        const auto overshoots = [&] {
            const qint64 rest = known.civilSeconds() - from.civilSeconds();
            return (months > 0 && rest < 0) || (months < 0 && rest > 0);
        };
        while (months != 0 && overshoots()) {
            months += months > 0 ? -1 : 1;
            from = addMonths(base, months);
        }
        offset[0] = months / 12;
        offset[1] = months % 12;
    }
    split(known.civilSeconds() - from.civilSeconds(), offset);
    return offset;
}

bool Window1::canOffsetFromKnownTime()
{
    const int row = ListBox1->ListIndex();
    if (row < 0)
        return false;
    try {
        return culcBaseDate(row).has_value();
    } catch (const OutOfBoundsException&) {
        return false;  // a date without its time is no base to count from
    }
}

void Window1::enableOffsetFromKnownTime()
{
    if (QAction* item = MenuBar1::instance()->lookup(QStringLiteral("EditOffsetFromKnownTime")))
        item->setEnabled(canOffsetFromKnownTime());
}

// Asked with the scheduled value as it stands, so that a guess already entered is refined.
void Window1::EditOffsetFromKnownTime_Action()
{
    if (!canOffsetFromKnownTime())
        return;
    const int row = ListBox1->ListIndex();
    const Date base = *culcBaseDate(row);
    const std::optional<Date> known =
        askDateTime(this, textById("KnownTime.title", "Offset from a Known Time"),
                    textById("KnownTime.question",
                             "The true date and time of “%1”:\nits reference date reads %2; the addition "
                             "value becomes the difference.")
                        .arg(ListBox1->Cell(row, 0), base.SQLDateTime()),
                    culcAimValue(row).value_or(base));
    if (!known)
        return;
    const std::array<qint64, 6> offset = offsetBetween(base, *known, AddValCheckBox->isChecked());
    for (int i = 0; i < 6; ++i)
        AddValue(i)->setText(QString::number(offset[i]));
    dirtyValue = false;
    changeAimValue();
}
