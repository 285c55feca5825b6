#pragma once
#include <QMetaType>
#include <QString>
#include <QtGlobal>

// A civil date and time in local time with six 64-bit fields. Every setter rolls an
// out-of-range value over into the neighbouring units at once (month 13, day 0, hour 24,
// second -1, of any size), so all calendar arithmetic lives here.
//
// Range: the moment is kept as seconds from 0001-01-01 00:00:00 of the proleptic
// Gregorian calendar; every input is clamped so that the year stays within
// kMinYear..kMaxYear. No input, however large, reaches undefined behaviour.
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

    // YYYY-MM-DD HH:MM:SS; every field after the year zero-padded to two digits. A year
    // outside 0..9999 gives more (or fewer) than 19 characters.
    QString SQLDateTime() const;

    // The file system's time stamps, through local time.
    static Date fromUnixTime(qint64 secondsSinceEpoch, qint64 nanoseconds = 0);
    qint64 toUnixTime() const;

    bool operator==(const Date& o) const;

private:
    // (representation: the implementer's)
};
Q_DECLARE_METATYPE(Date)
