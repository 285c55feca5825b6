#include "platform/text/Date.h"

#include <ctime>
#include <limits>

namespace {

constexpr qint64 kInt64Max = std::numeric_limits<qint64>::max();
constexpr qint64 kInt64Min = std::numeric_limits<qint64>::min();
constexpr qint64 kSecondsPerDay = 86400;
constexpr qint64 kDaysPer400Years = 146097;

// Division and remainder rounding toward minus infinity, for a positive divisor.
constexpr qint64 floorDiv(qint64 a, qint64 b)
{
    const qint64 q = a / b;
    return (a % b != 0 && a < 0) ? q - 1 : q;
}

constexpr qint64 floorMod(qint64 a, qint64 b)
{
    const qint64 r = a % b;
    return r < 0 ? r + b : r;
}

constexpr qint64 saturatingAdd(qint64 a, qint64 b)
{
    if (b > 0 && a > kInt64Max - b)
        return kInt64Max;
    if (b < 0 && a < kInt64Min - b)
        return kInt64Min;
    return a + b;
}

// Days from 1970-01-01 to the given civil date (month 1..12, day 1..31), in the
// proleptic Gregorian calendar. The year must be small enough that year * 366 fits.
constexpr qint64 daysFromCivil(qint64 y, qint64 m, qint64 d)
{
    y -= m <= 2 ? 1 : 0;
    const qint64 era = floorDiv(y, 400);
    const qint64 yearOfEra = y - era * 400;                            // 0..399
    const qint64 dayOfYear = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;  // 0 = 1 March
    const qint64 dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * kDaysPer400Years + dayOfEra - 719468;
}

constexpr void civilFromDays(qint64 z, qint64& y, qint64& m, qint64& d)
{
    z += 719468;
    const qint64 era = floorDiv(z, kDaysPer400Years);
    const qint64 dayOfEra = z - era * kDaysPer400Years;  // 0..146096
    const qint64 yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const qint64 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const qint64 mp = (5 * dayOfYear + 2) / 153;  // 0 = March
    d = dayOfYear - (153 * mp + 2) / 5 + 1;
    m = mp < 10 ? mp + 3 : mp - 9;
    y = yearOfEra + era * 400 + (m <= 2 ? 1 : 0);
}

constexpr qint64 daysInMonth(qint64 y, qint64 m)
{
    if (m != 2)
        return m == 4 || m == 6 || m == 9 || m == 11 ? 30 : 31;
    const bool leap = floorMod(y, 4) == 0 && (floorMod(y, 100) != 0 || floorMod(y, 400) == 0);
    return leap ? 29 : 28;
}

// Seconds from 1970-01-01 00:00:00 of the same (zone-less) clock.
constexpr qint64 kMinSeconds = daysFromCivil(Date::kMinYear, 1, 1) * kSecondsPerDay;
constexpr qint64 kMaxSeconds =
    daysFromCivil(Date::kMaxYear, 12, 31) * kSecondsPerDay + kSecondsPerDay - 1;

constexpr qint64 clampSeconds(qint64 s)
{
    return s < kMinSeconds ? kMinSeconds : (s > kMaxSeconds ? kMaxSeconds : s);
}

#ifdef _WIN32
bool toLocalFields(std::time_t t, std::tm& out)
{
    return localtime_s(&out, &t) == 0;
}
std::time_t fromLocalFields(std::tm& fields)
{
    return _mktime64(&fields);
}
#else
bool toLocalFields(std::time_t t, std::tm& out)
{
    return localtime_r(&t, &out) != nullptr;
}
std::time_t fromLocalFields(std::tm& fields)
{
    return std::mktime(&fields);
}
#endif

}  // namespace

Date::Date()
{
    *this = fromUnixTime(static_cast<qint64>(std::time(nullptr)));
}

Date::Date(qint64 year, qint64 month, qint64 day, qint64 hour, qint64 minute, qint64 second)
{
    normalise(year, month, day, hour, minute, second);
}

void Date::normalise(qint64 year, qint64 month, qint64 day, qint64 hour, qint64 minute,
                     qint64 second)
{
    // Every unit below the month becomes whole days plus a rest within the day, and the
    // days become whole 400-year cycles (which always have the same length) plus a rest.
    // Each part is small, so the sums below cannot overflow, whatever the inputs.
    qint64 cycles = 0;
    qint64 days = 0;  // counted from "day 0" of the month
    const auto addDays = [&](qint64 d) {
        cycles += floorDiv(d, kDaysPer400Years);
        days += floorMod(d, kDaysPer400Years);
    };
    addDays(day);
    addDays(floorDiv(hour, 24));
    addDays(floorDiv(minute, 24 * 60));
    addDays(floorDiv(second, kSecondsPerDay));
    qint64 rest = floorMod(hour, 24) * 3600 + floorMod(minute, 24 * 60) * 60
                  + floorMod(second, kSecondsPerDay);
    addDays(floorDiv(rest, kSecondsPerDay));
    rest = floorMod(rest, kSecondsPerDay);

    // Month 0 is December of the year before: count months from 1, not 0.
    qint64 yearCarry = floorDiv(month, 12);
    month = floorMod(month, 12);
    if (month == 0) {
        month = 12;
        yearCarry -= 1;
    }
    // Only this sum can leave 64 bits, and then it is far beyond the range either way.
    year = saturatingAdd(year, yearCarry + cycles * 400);

    // The rest of the days is at most 5 cycles (2000 years).
    qint64 seconds;
    if (year > kMaxYear + 1)
        seconds = kMaxSeconds;
    else if (year < kMinYear - 2001)
        seconds = kMinSeconds;
    else
        seconds = clampSeconds((daysFromCivil(year, month, 1) + days - 1) * kSecondsPerDay + rest);

    civilFromDays(floorDiv(seconds, kSecondsPerDay), year_, month_, day_);
    const qint64 timeOfDay = floorMod(seconds, kSecondsPerDay);
    hour_ = timeOfDay / 3600;
    minute_ = timeOfDay / 60 % 60;
    second_ = timeOfDay % 60;
}

qint64 Date::Year() const { return year_; }
qint64 Date::Month() const { return month_; }
qint64 Date::Day() const { return day_; }
qint64 Date::Hour() const { return hour_; }
qint64 Date::Minute() const { return minute_; }
qint64 Date::Second() const { return second_; }

void Date::setYear(qint64 v) { normalise(v, month_, day_, hour_, minute_, second_); }
void Date::setMonth(qint64 v) { normalise(year_, v, day_, hour_, minute_, second_); }
void Date::setDay(qint64 v) { normalise(year_, month_, v, hour_, minute_, second_); }
void Date::setHour(qint64 v) { normalise(year_, month_, day_, v, minute_, second_); }
void Date::setMinute(qint64 v) { normalise(year_, month_, day_, hour_, v, second_); }
void Date::setSecond(qint64 v) { normalise(year_, month_, day_, hour_, minute_, v); }

qint64 Date::civilSeconds() const
{
    return daysFromCivil(year_, month_, day_) * kSecondsPerDay + hour_ * 3600 + minute_ * 60 + second_;
}

QString Date::SQLDateTime() const
{
    // Written into a fixed buffer: the intake asks for two of these per file. A negative
    // year keeps four digits after its sign, so that it never passes for a 19-character date.
    if (year_ >= 0 && year_ <= 9999) {
        // The usual case, a four-digit year: every field has its fixed place.
        char16_t d[19] = {u'0', u'0', u'0', u'0', u'-', u'0', u'0', u'-', u'0', u'0',
                          u' ', u'0', u'0', u':', u'0', u'0', u':', u'0', u'0'};
        const auto two = [&d](int at, qint64 v) {
            d[at] = char16_t(u'0' + v / 10);
            d[at + 1] = char16_t(u'0' + v % 10);
        };
        two(0, year_ / 100);
        two(2, year_ % 100);
        two(5, month_);
        two(8, day_);
        two(11, hour_);
        two(14, minute_);
        two(17, second_);
        return QString(reinterpret_cast<const QChar*>(d), 19);
    }
    char16_t buf[40];
    int n = 0;
    auto put = [&](qint64 v, int width) {
        char16_t digits[20];
        int k = 0;
        do {
            digits[k++] = char16_t(u'0' + v % 10);
            v /= 10;
        } while (v > 0);
        for (int i = k; i < width; ++i)
            buf[n++] = u'0';
        while (k > 0)
            buf[n++] = digits[--k];
    };
    if (year_ < 0)
        buf[n++] = u'-';
    put(year_ < 0 ? -year_ : year_, 4);
    buf[n++] = u'-';
    put(month_, 2);
    buf[n++] = u'-';
    put(day_, 2);
    buf[n++] = u' ';
    put(hour_, 2);
    buf[n++] = u':';
    put(minute_, 2);
    buf[n++] = u':';
    put(second_, 2);
    return QString(reinterpret_cast<const QChar*>(buf), n);
}

Date Date::fromUnixTime(qint64 secondsSinceEpoch, qint64 nanoseconds)
{
    const qint64 seconds = clampSeconds(
        saturatingAdd(secondsSinceEpoch, floorDiv(nanoseconds, 1000000000)));

    std::tm local{};
    if (seconds >= std::numeric_limits<std::time_t>::min()
        && seconds <= std::numeric_limits<std::time_t>::max()
        && toLocalFields(static_cast<std::time_t>(seconds), local)) {
        const qint64 year = qint64(local.tm_year) + 1900;
        const qint64 month = qint64(local.tm_mon) + 1;
        // The usual case, fields that are a valid date already, is taken as it is: every
        // file of a drop passes here three times. A leap second or a year beyond the
        // range is carried and clamped like any other input.
        if (year >= kMinYear && year <= kMaxYear && month >= 1 && month <= 12
            && local.tm_mday >= 1 && local.tm_mday <= daysInMonth(year, month)
            && local.tm_hour >= 0 && local.tm_hour < 24 && local.tm_min >= 0
            && local.tm_min < 60 && local.tm_sec >= 0 && local.tm_sec < 60) {
            static const Date epoch(1970, 1, 1, 0, 0, 0);  // not Date(): that is now
            Date d = epoch;
            d.year_ = year;
            d.month_ = month;
            d.day_ = local.tm_mday;
            d.hour_ = local.tm_hour;
            d.minute_ = local.tm_min;
            d.second_ = local.tm_sec;
            return d;
        }
        return Date(year, month, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    }
    return Date(1970, 1, 1, 0, 0, seconds);
}

qint64 Date::toUnixTime() const
{
    const qint64 asUtc = (daysFromCivil(year_, month_, day_) * kSecondsPerDay)
                         + hour_ * 3600 + minute_ * 60 + second_;
    // struct tm counts years from 1900 in an int; the range keeps that in bounds.
    std::tm fields{};
    fields.tm_year = static_cast<int>(year_ - 1900);
    fields.tm_mon = static_cast<int>(month_ - 1);
    fields.tm_mday = static_cast<int>(day_);
    fields.tm_hour = static_cast<int>(hour_);
    fields.tm_min = static_cast<int>(minute_);
    fields.tm_sec = static_cast<int>(second_);
    fields.tm_isdst = -1;
    // -1 is both a failure and a valid moment; a failed call leaves tm_wday untouched.
    fields.tm_wday = -1;
    const std::time_t t = fromLocalFields(fields);
    if (t == std::time_t(-1) && fields.tm_wday == -1)
        return asUtc;
    return static_cast<qint64>(t);
}

bool Date::operator==(const Date& o) const
{
    return year_ == o.year_ && month_ == o.month_ && day_ == o.day_ && hour_ == o.hour_
           && minute_ == o.minute_ && second_ == o.second_;
}
