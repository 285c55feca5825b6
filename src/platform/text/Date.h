#pragma once
#include <QMetaType>
#include <QString>
#include <QtGlobal>

// A civil date and time in local time with six 64-bit fields. Every setter rolls an
// out-of-range value over into the neighbouring units at once (month 13, day 0, hour 24,
// second -1, of any size), so all calendar arithmetic lives here.
//
// Calendar: proleptic Gregorian, with a year 0 (year -1 is the year before it).
// Range: kMinYear-01-01 00:00:00 to kMaxYear-12-31 23:59:59. Carries are exact for any
// 64-bit input; a result beyond the range is clamped to its nearest end, so setDay(huge)
// gives the last second of kMaxYear. No input, however large, reaches undefined
// behaviour.
class Date {
public:
    static constexpr qint64 kMinYear = -9999999;
    static constexpr qint64 kMaxYear = 9999999;

    Date();  // now, local time
    Date(qint64 year, qint64 month, qint64 day, qint64 hour = 0, qint64 minute = 0, qint64 second = 0);

    qint64 Year() const;
    qint64 Month() const;
    qint64 Day() const;
    qint64 Hour() const;
    qint64 Minute() const;
    qint64 Second() const;
    void setYear(qint64 v);
    void setMonth(qint64 v);
    void setDay(qint64 v);
    void setHour(qint64 v);
    void setMinute(qint64 v);
    void setSecond(qint64 v);

    // YYYY-MM-DD HH:MM:SS; the year zero-padded to four digits, every other field to two.
    // Exactly 19 characters for the years 0..9999 and only for them: a later year has
    // more digits, and a negative year is "-" and at least four digits.
    QString SQLDateTime() const;

    // The file system's time stamps, through local time (the TZ of the process).
    // fromUnixTime drops the fraction of a second (whole seconds in the nanoseconds are
    // carried). toUnixTime asks the C library which moment the local date means: a time
    // in the gap of a change to summer time, and the repeated hour of the change back,
    // get the library's choice (glibc moves a gap time forward by the gap). Moments the
    // library cannot express (beyond time_t or struct tm, or before 1970 on Windows) are
    // converted as if local time were UTC, and fromUnixTime clamps its input to the range
    // above first.
    static Date fromUnixTime(qint64 secondsSinceEpoch, qint64 nanoseconds = 0);
    qint64 toUnixTime() const;

    // Seconds since 1970-01-01 00:00:00 counted in civil time, without a time zone: the
    // difference of two is the civil time between them.
    qint64 civilSeconds() const;

    bool operator==(const Date& o) const;

private:
    // Sets all six from any values, carrying and clamping as described above.
    void normalise(qint64 year, qint64 month, qint64 day, qint64 hour, qint64 minute,
                   qint64 second);

    // Always normalised: month 1..12, day 1..length of the month, and so on.
    qint64 year_ = 1970;
    qint64 month_ = 1;
    qint64 day_ = 1;
    qint64 hour_ = 0;
    qint64 minute_ = 0;
    qint64 second_ = 0;
};
Q_DECLARE_METATYPE(Date)
