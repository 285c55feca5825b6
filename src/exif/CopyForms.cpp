#include "exif/CopyForms.h"

#include "platform/base/TextId.h"

#include <algorithm>

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The number of width digits at `at`, or -1 where there are not that many digits.
int digits(QByteArrayView s, qsizetype at, int width)
{
    if (at < 0 || s.size() - at < width)
        return -1;
    int v = 0;
    for (int i = 0; i < width; ++i) {
        if (!isDigit(s[at + i]))
            return -1;
        v = v * 10 + (s[at + i] - '0');
    }
    return v;
}

void put(QByteArray& s, qsizetype at, int value, int width)
{
    for (int i = width - 1; i >= 0; --i, value /= 10)
        s[at + i] = char('0' + value % 10);
}

int daysIn(int year, int month)
{
    static constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 && leap ? 29 : days[month - 1];
}

bool validDay(int year, int month, int day) { return month >= 1 && month <= 12 && day >= 1 && day <= daysIn(year, month); }
bool validTime(int hour, int minute, int second) { return hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60; }

// A field of a copy: where its digits stand, how many, and which field of a Stamp.
struct Field {
    qsizetype at;
    int width;
    int Stamp::*of;
};

// Compares the fields that a copy shows with the old time, and writes the new time's.
Moved move(QByteArrayView text, const std::vector<Field>& fields, const Stamp& old, const Stamp& aim)
{
    for (const Field& f : fields)
        if (digits(text, f.at, f.width) != old.*f.of)
            return {Moved::Differs, {}};
    QByteArray after = text.toByteArray();
    for (const Field& f : fields)
        put(after, f.at, aim.*f.of, f.width);
    return {Moved::Moves, after};
}

// A zone suffix from `at` to the end: "Z", "+hh:mm" or "-hh:mm" (or "+h:mm", as some editors
// write it; the zone is kept as it stands).
bool isZone(QByteArrayView s, qsizetype at)
{
    const qsizetype n = s.size() - at;
    if (n == 1)
        return s[at] == 'Z';
    if ((n != 6 && n != 5) || (s[at] != '+' && s[at] != '-') || s[s.size() - 3] != ':')
        return false;
    const int h = digits(s, at + 1, int(n) - 4), m = digits(s, s.size() - 2, 2);
    return h >= 0 && h < 24 && m >= 0 && m < 60;
}

}  // namespace

std::optional<Stamp> exifStamp(QByteArrayView t)
{
    if (t.size() != 19 || t[4] != ':' || t[7] != ':' || t[10] != ' ' || t[13] != ':' || t[16] != ':')
        return std::nullopt;
    const Stamp s{digits(t, 0, 4), digits(t, 5, 2), digits(t, 8, 2), digits(t, 11, 2), digits(t, 14, 2), digits(t, 17, 2)};
    if (s.year < 0 || !validDay(s.year, s.month, s.day) || !validTime(s.hour, s.minute, s.second))
        return std::nullopt;
    return s;
}

//   0    5  8  11 14 17
//   YYYY-MM-DDThh:mm:ss.f...Z
Moved moveXmpDate(QByteArrayView t, const Stamp& old, const Stamp& aim)
{
    std::vector<Field> fields{{0, 4, &Stamp::year}};
    const int year = digits(t, 0, 4);
    if (year < 0)
        return {};
    qsizetype end = 4;
    const auto sep = [&](qsizetype at, char c) { return t.size() > at && t[at] == c; };
    int month = 1, day = 1, hour = 0, minute = 0, second = 0;
    if (sep(4, '-')) {
        month = digits(t, 5, 2);
        fields.push_back({5, 2, &Stamp::month});
        end = 7;
        if (sep(7, '-')) {
            day = digits(t, 8, 2);
            fields.push_back({8, 2, &Stamp::day});
            end = 10;
        }
    }
    if (end == 10 && sep(10, 'T')) {
        hour = digits(t, 11, 2);
        minute = sep(13, ':') ? digits(t, 14, 2) : -1;
        fields.push_back({11, 2, &Stamp::hour});
        fields.push_back({14, 2, &Stamp::minute});
        end = 16;
        if (sep(16, ':')) {
            second = digits(t, 17, 2);
            fields.push_back({17, 2, &Stamp::second});
            end = 19;
            if (sep(19, '.')) {
                end = 20;
                while (end < t.size() && isDigit(t[end]))
                    ++end;
                if (end == 20)
                    return {};
            }
        }
        if (end < t.size() && !isZone(t, end))
            return {};
        end = t.size();
    }
    if (end != t.size() || month < 1 || day < 1 || !validDay(year, month, day) || !validTime(hour, minute, second))
        return {};
    return move(t, fields, old, aim);
}

//   CCYYMMDD (MM or DD 00 where not known)     HHMMSS±HHMM
Moved moveIptcDate(QByteArrayView date, QByteArrayView time, const Stamp& old, const Stamp& aim, QByteArray& timeAfter)
{
    const int year = digits(date, 0, 4), month = digits(date, 4, 2), day = digits(date, 6, 2);
    if (date.size() != 8 || year < 0 || month < 0 || day < 0 || (month == 0 && day != 0)
        || (month != 0 && day != 0 && !validDay(year, month, day)) || month > 12)
        return {};
    std::vector<Field> fields{{0, 4, &Stamp::year}};
    if (month)
        fields.push_back({4, 2, &Stamp::month});
    if (day)
        fields.push_back({6, 2, &Stamp::day});
    Moved d = move(date, fields, old, aim);
    if (time.isEmpty() || d.fate != Moved::Moves) {
        timeAfter.clear();
        return d;
    }
    const int hour = digits(time, 0, 2), minute = digits(time, 2, 2), second = digits(time, 4, 2);
    if ((time.size() != 6 && time.size() != 11) || !validTime(hour, minute, second)
        || (time.size() == 11 && ((time[6] != '+' && time[6] != '-') || digits(time, 7, 4) < 0)))
        return {};
    const Moved t = move(time, {{0, 2, &Stamp::hour}, {2, 2, &Stamp::minute}, {4, 2, &Stamp::second}}, old, aim);
    if (t.fate != Moved::Moves)
        return t;
    timeAfter = t.after;
    return d;
}

QString copyWhy(Moved::Fate fate, QByteArrayView text)
{
    const QString shown = QString::fromUtf8(text.first(std::min<qsizetype>(text.size(), 40)));
    return fate == Moved::Differs
               ? textById("Copy.differs", "it shows %1, another time than the date in the table").arg(shown)
               : textById("Copy.notADate", "“%1” is no date of its kind").arg(shown);
}
