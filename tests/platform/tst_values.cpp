// Dates, texts and number conversions: the values every subsystem computes with.

#include <QtTest>

#include <ctime>
#include <limits>

#include "platform/base/Convert.h"
#include "platform/text/Date.h"
#include "platform/text/Text.h"

namespace {
constexpr qint64 kMax = std::numeric_limits<qint64>::max();
constexpr qint64 kMin = std::numeric_limits<qint64>::min();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const char* const kLast = "9999999-12-31 23:59:59";
const char* const kFirst = "-9999999-01-01 00:00:00";

enum Unit { Year, Month, Day, Hour, Minute, Second, None };
constexpr void (Date::*kSetters[])(qint64) = {&Date::setYear, &Date::setMonth, &Date::setDay,
                                              &Date::setHour, &Date::setMinute, &Date::setSecond};
}  // namespace

// One table row each: a Date with one setter applied (None: as made), and the text it shows.
struct Rollover { Date start; Unit unit; qint64 value; QString shown; };
struct Moment { const char* zone; qint64 seconds, nanoseconds; QString local; };
struct Reading { QString text; double value; QString shown; };  // Val(text), Str(Val(text))
struct Fields { QString text, separator; qint64 count, index; QString field; };
struct Slice { qint64 start, length; QByteArray expected; };  // of "abcdef"
struct Conversion { double value; qint64 integer; quint64 position; QString shown; };  // shown: Str(value)
Q_DECLARE_METATYPE(Rollover)
Q_DECLARE_METATYPE(Moment)
Q_DECLARE_METATYPE(Reading)
Q_DECLARE_METATYPE(Fields)
Q_DECLARE_METATYPE(Slice)
Q_DECLARE_METATYPE(Conversion)

class TestValues : public QObject {
    Q_OBJECT
private slots:
    void dateRollsOver_data()
    {
        QTest::addColumn<Rollover>("c");
        QTest::newRow("day 0 in a leap year") << Rollover{Date(2024, 3, 15), Day, 0, "2024-02-29 00:00:00"};
        QTest::newRow("every unit below the day at -1") << Rollover{Date(2021, 1, 1, -1, -1, -1), None, 0, "2020-12-31 22:58:59"};
        QTest::newRow("negative years of days") << Rollover{Date(2000, 3, 1), Day, 1 - 146097LL * 5000, "-1998000-03-01 00:00:00"};
        QTest::newRow("no leap day in year -1") << Rollover{Date(4, 2, 29), Year, -1, "-0001-03-01 00:00:00"};
        QTest::newRow("year 4 keeps four digits") << Rollover{Date(4, 2, 28), Day, 29, "0004-02-29 00:00:00"};
        QTest::newRow("into year 10000") << Rollover{Date(9999, 12, 31, 23, 59, 59), Second, 60, "10000-01-01 00:00:00"};
        QTest::newRow("year beyond the range") << Rollover{Date(2021, 1, 1), Year, Date::kMaxYear + 1, kLast};
        QTest::newRow("smallest second") << Rollover{Date(2021, 1, 1), Second, kMin, kFirst};
        QTest::newRow("everything over at once") << Rollover{Date(2021, 14, 0, 25, 61, 61), None, 0, "2022-02-01 02:02:01"};
        QTest::newRow("carries cancel beyond the range") << Rollover{Date(Date::kMaxYear + 1, -11, 1), None, 0, "9999999-01-01 00:00:00"};
        QTest::newRow("all extremes") << Rollover{Date(kMax, kMax, kMax, kMax, kMax, kMax), None, 0, kLast};
        // kMax minutes and kMax seconds are 6511871461205339 days and 09:37:07.
        QTest::newRow("extremes cancelled exactly") << Rollover{Date(2000, 1, -6511871461205338LL, 0, kMax, kMax), None, 0, "2000-01-01 09:37:07"};
    }
    void dateRollsOver()
    {
        QFETCH(Rollover, c);
        if (c.unit != None)
            (c.start.*kSetters[c.unit])(c.value);
        QCOMPARE(c.start.SQLDateTime(), c.shown);
        const Date& d = c.start;
        QCOMPARE(Date(d.Year(), d.Month(), d.Day(), d.Hour(), d.Minute(), d.Second()), d);
    }

    // (Summer time and a moment before 1970 are the file items' test, through the file system.)
    void unixTimeThroughLocalTime_data()
    {
        QTest::addColumn<Moment>("c");
        const char* const berlin = "Europe/Berlin";
        QTest::newRow("whole seconds in the nanoseconds") << Moment{berlin, 0, 1999999999, "1970-01-01 01:00:01"};
        QTest::newRow("negative nanoseconds") << Moment{berlin, 0, -1, "1970-01-01 00:59:59"};
        QTest::newRow("largest moment") << Moment{berlin, kMax, kMax, kLast};
        QTest::newRow("smallest moment") << Moment{"UTC", kMin, kMin, kFirst};
    }
    void unixTimeThroughLocalTime()
    {
        QFETCH(Moment, c);
        qputenv("TZ", c.zone);
        tzset();
        const Date d = Date::fromUnixTime(c.seconds, c.nanoseconds);
        QCOMPARE(d.SQLDateTime(), c.local);
        QCOMPARE(Date::fromUnixTime(d.toUnixTime()), d);  // the same moment again
    }

    void valAndStr_data()
    {
        QTest::addColumn<Reading>("c");
        QTest::newRow("blanks, sign, fraction, exponent") << Reading{" \t-4.5e-1x", -0.45, "-0.45"};
        QTest::newRow("no digit before the point") << Reading{"-.5", -0.5, "-0.5"};
        QTest::newRow("negative zero") << Reading{"-0", 0, "0"};
        QTest::newRow("shortest text") << Reading{"0.30000000000000004", 0.1 + 0.2, "0.3"};
        QTest::newRow("largest plain whole") << Reading{"999999999999999", 999999999999999.0, "999999999999999"};
        QTest::newRow("1e15") << Reading{"1000000000000000", 1e15, "1e+15"};
        QTest::newRow("hex in any case") << Reading{"&HfF", 255, "255"};
        QTest::newRow("hex 32-bit pattern") << Reading{"&hFFFFFFFF", 4294967295.0, "4294967295"};
        QTest::newRow("hex 64-bit pattern is negative") << Reading{"&hFFFFFFFFFFFFFFFF", -1, "-1"};
        QTest::newRow("overflow") << Reading{"-1e400", -kInf, "-INF"};
        QTest::newRow("underflow") << Reading{"1e-400", 0, "0"};
        QTest::newRow("exponent of many digits") << Reading{"1e99999999999999999999999", kInf, "INF"};
        QTest::newRow("long digits") << Reading{QString(400, u'9'), kInf, "INF"};
    }
    void valAndStr()
    {
        QFETCH(Reading, c);
        QCOMPARE(Val(c.text), c.value);
        QCOMPARE(Str(Val(c.text)), c.shown);
    }

    void fields_data()
    {
        QTest::addColumn<Fields>("c");
        QTest::newRow("date piece") << Fields{"2021:05:06", ":", 3, 2, "05"};
        QTest::newRow("index past the end") << Fields{"2021:05:06", ":", 3, 4, ""};
        QTest::newRow("index 0") << Fields{"a,b", ",", 2, 0, ""};
        QTest::newRow("separator at the end") << Fields{"1 2 ", " ", 3, 3, ""};
    }
    void fields()
    {
        QFETCH(Fields, c);
        QCOMPARE(CountFields(c.text, c.separator), c.count);
        QCOMPARE(NthField(c.text, c.separator, c.index), c.field);
        const QStringList parts = Split(c.text, c.separator);
        QCOMPARE(parts.size(), c.count);
        for (qint64 i = 0; i < c.count; ++i)
            QCOMPARE(parts[i], NthField(c.text, c.separator, i + 1));
    }

    void sameText_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("same");
        QTest::newRow("the marker and a date") << QStringLiteral("Exif取得不能") << QStringLiteral("2021:05:06 07:08:09") << false;
        QTest::newRow("letters in other case") << QStringLiteral("Exif取得不能") << QStringLiteral("EXIF取得不能") << true;
        QTest::newRow("one is longer") << QStringLiteral("abc") << QStringLiteral("ABCD") << false;
    }
    void sameText()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, same);
        QCOMPARE(::sameText(a, b), same);
        QCOMPARE(::sameText(b, a), same);
    }

    void midB_data()
    {
        QTest::addColumn<Slice>("c");
        QTest::newRow("one character") << Slice{2, 1, "b"};
        QTest::newRow("negative start reads as 1") << Slice{kMin, 2, "ab"};
        QTest::newRow("to the end") << Slice{5, -1, "ef"};
        QTest::newRow("huge length") << Slice{3, kMax, "cdef"};
        QTest::newRow("just past the end") << Slice{7, 1, ""};
        QTest::newRow("huge start and length") << Slice{kMax, kMax, ""};
    }
    void midB()
    {
        QFETCH(Slice, c);
        QCOMPARE(MidB("abcdef", c.start, c.length), c.expected);
    }

    // (Where InStrB finds the TIFF signature, and where a part of it does not count, is the
    // reader's test.)
    void textsAndBytes()
    {
        QCOMPARE(Len(QString::fromUtf8("a😀b")), 3);  // a surrogate pair is one character
        QCOMPARE(AscB(QByteArray("\xFF\xD8")), 0xFFu);
        QCOMPARE(AscB(QByteArray()), 0u);
    }

    void conversions_data()
    {
        QTest::addColumn<Conversion>("c");
        const quint64 top = std::numeric_limits<quint64>::max(), half = quint64(1) << 63;
        QTest::newRow("negative fraction") << Conversion{-1.9, -1, top, "-1.9"};
        QTest::newRow("small negative") << Conversion{-0.5, 0, 0, "-0.5"};
        // A Double read from a file may be any pattern.
        QTest::newRow("not a number") << Conversion{kNaN, 0, 0, "NAN"};
        QTest::newRow("negative infinity") << Conversion{-kInf, kMin, half, "-INF"};
        QTest::newRow("2^63") << Conversion{9223372036854775808.0, kMax, half, "9.22337203685478e+18"};
        QTest::newRow("2^64") << Conversion{18446744073709551616.0, kMax, top, "1.84467440737096e+19"};
    }
    void conversions()
    {
        QFETCH(Conversion, c);
        QCOMPARE(toInteger(c.value), c.integer);
        QCOMPARE(toPosition(c.value), c.position);
        QCOMPARE(Str(c.value), c.shown);
    }
};

QTEST_MAIN(TestValues)
#include "tst_values.moc"
