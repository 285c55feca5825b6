#include <QDateTime>
#include <QVariant>
#include <QtTest>

#include <ctime>
#include <limits>

#include "platform/Date.h"

namespace {
constexpr qint64 kMax = std::numeric_limits<qint64>::max();
constexpr qint64 kMin = std::numeric_limits<qint64>::min();
const char* const kLast = "9999999-12-31 23:59:59";
const char* const kFirst = "-9999999-01-01 00:00:00";

enum Unit { Year, Month, Day, Hour, Minute, Second, None };
constexpr void (Date::*kSetters[])(qint64) = {&Date::setYear, &Date::setMonth, &Date::setDay,
                                              &Date::setHour, &Date::setMinute, &Date::setSecond};

void useZone(const QByteArray& zone)
{
    qputenv("TZ", zone);
    tzset();
}
}  // namespace

class TestDate : public QObject {
    Q_OBJECT
private slots:
    void setterRollsOver_data()
    {
        QTest::addColumn<Date>("start");
        QTest::addColumn<int>("unit");
        QTest::addColumn<qint64>("value");
        QTest::addColumn<QString>("expected");
        auto row = [](const char* name, Date d, int unit, qint64 v, const char* want) {
            QTest::newRow(name) << d << unit << v << QString::fromLatin1(want);
        };
        row("31 January to February", Date(2021, 1, 31), Month, 2, "2021-03-03 00:00:00");
        row("leap day plus one year", Date(2020, 2, 29), Year, 2021, "2021-03-01 00:00:00");
        row("month 13", Date(2020, 12, 15, 10), Month, 13, "2021-01-15 10:00:00");
        row("month 0", Date(2021, 5, 6), Month, 0, "2020-12-06 00:00:00");
        row("day 31 of a 30-day month", Date(2021, 4, 1), Day, 31, "2021-05-01 00:00:00");
        row("day 0 in a leap year", Date(2024, 3, 15), Day, 0, "2024-02-29 00:00:00");
        row("hour 24", Date(2021, 12, 31, 5), Hour, 24, "2022-01-01 00:00:00");
        row("second -1 at new year", Date(2021, 1, 1), Second, -1, "2020-12-31 23:59:59");
        row("a million days", Date(2000, 1, 1), Day, 1000000, "4737-11-27 00:00:00");
        row("hour -100000", Date(2021, 5, 6, 7, 8, 9), Hour, -100000, "2009-12-08 08:08:09");
        row("400000 years of days", Date(2000, 1, 1), Day, 1 + 146097LL * 1000, "402000-01-01 00:00:00");
        row("negative years of days", Date(2000, 3, 1), Day, 1 - 146097LL * 5000, "-1998000-03-01 00:00:00");
        row("leap day in year 0", Date(4, 2, 29), Year, 0, "0000-02-29 00:00:00");
        row("no leap day in year -1", Date(4, 2, 29), Year, -1, "-0001-03-01 00:00:00");
        row("year beyond the range", Date(2021, 1, 1), Year, Date::kMaxYear + 1, kLast);
        row("largest day", Date(2021, 1, 1), Day, kMax, kLast);
        row("smallest day", Date(2021, 1, 1), Day, kMin, kFirst);
        row("smallest second", Date(2021, 1, 1), Second, kMin, kFirst);
        row("smallest month", Date(2021, 1, 1), Month, kMin, kFirst);
        row("31st whatever today is", Date(2021, 5, 31, 7, 8, 9), None, 0, "2021-05-31 07:08:09");
        row("everything over at once", Date(2021, 14, 0, 25, 61, 61), None, 0, "2022-02-01 02:02:01");
        row("carries cancel beyond the range", Date(Date::kMaxYear + 1, -11, 1), None, 0, "9999999-01-01 00:00:00");
        row("all extremes", Date(kMax, kMax, kMax, kMax, kMax, kMax), None, 0, kLast);
        // kMax minutes and kMax seconds are 6511871461205339 days and 09:37:07.
        row("extremes cancelled exactly", Date(2000, 1, -6511871461205338LL, 0, kMax, kMax), None, 0, "2000-01-01 09:37:07");
        row("padding", Date(5, 6, 7, 8, 9, 1), None, 0, "0005-06-07 08:09:01");
        row("five-digit year", Date(10000, 1, 1), None, 0, "10000-01-01 00:00:00");
    }
    void setterRollsOver()
    {
        QFETCH(Date, start);
        QFETCH(int, unit);
        QFETCH(qint64, value);
        QFETCH(QString, expected);
        if (unit != None)
            (start.*kSetters[unit])(value);
        QCOMPARE(start.SQLDateTime(), expected);
        // 19 characters are a promise that the text is a four-digit-year date.
        QCOMPARE(expected.size() == 19, start.Year() >= 0 && start.Year() <= 9999);
        // The fields read back what the text shows: ...YYYY-MM-DD HH:MM:SS.
        const QString tail = expected.right(14);
        QCOMPARE(start.Year(), expected.left(expected.size() - 15).toLongLong());
        QCOMPARE(start.Month(), tail.mid(0, 2).toLongLong());
        QCOMPARE(start.Day(), tail.mid(3, 2).toLongLong());
        QCOMPARE(start.Hour(), tail.mid(6, 2).toLongLong());
        QCOMPARE(start.Minute(), tail.mid(9, 2).toLongLong());
        QCOMPARE(start.Second(), tail.mid(12, 2).toLongLong());
    }

    void unixTimeThroughLocalTime_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<QString>("local");
        QTest::newRow("one second before the epoch") << QByteArray("UTC") << -1LL << "1969-12-31 23:59:59";
        QTest::newRow("Berlin one second before the epoch") << QByteArray("Europe/Berlin") << -1LL << "1970-01-01 00:59:59";
        QTest::newRow("Berlin summer") << QByteArray("Europe/Berlin") << 1625097600LL << "2021-07-01 02:00:00";
        QTest::newRow("Berlin before the change back") << QByteArray("Europe/Berlin") << 1635641999LL << "2021-10-31 02:59:59";
        QTest::newRow("Tokyo") << QByteArray("Asia/Tokyo") << 1625097600LL << "2021-07-01 09:00:00";
    }
    void unixTimeThroughLocalTime()
    {
        QFETCH(QByteArray, zone);
        QFETCH(qint64, seconds);
        QFETCH(QString, local);
        useZone(zone);
        const Date d = Date::fromUnixTime(seconds);
        QCOMPARE(d.SQLDateTime(), local);
        QCOMPARE(d.toUnixTime(), seconds);
    }

    void unixTimeEdges()
    {
        useZone("Europe/Berlin");
        QCOMPARE(Date::fromUnixTime(0, 1999999999).SQLDateTime(), QString("1970-01-01 01:00:01"));
        QCOMPARE(Date::fromUnixTime(0, -1).SQLDateTime(), QString("1970-01-01 00:59:59"));
        QCOMPARE(Date::fromUnixTime(kMax, kMax).SQLDateTime(), QString(kLast));
        // The repeated hour of the change back means one of its two moments.
        const qint64 repeated = Date(2021, 10, 31, 2, 30).toUnixTime();
        QVERIFY2(repeated == 1635640200 || repeated == 1635643800, qPrintable(QString::number(repeated)));
        // A time in the gap comes out within the hour around it.
        const qint64 gap = Date(2021, 3, 28, 2, 30).toUnixTime();
        QVERIFY(gap >= 1616891400 - 3600 && gap <= 1616891400 + 3600);
        // Far years round-trip whatever the library can express.
        for (const Date& far : {Date(Date::kMaxYear, 12, 31, 23, 59, 59), Date(-5000, 3, 1)})
            QCOMPARE(Date::fromUnixTime(far.toUnixTime()), far);
        useZone("UTC");
        QCOMPARE(Date::fromUnixTime(kMin, kMin).SQLDateTime(), QString(kFirst));
    }

    void nowIsLocalNow()
    {
        useZone("Asia/Tokyo");
        const QDateTime before = QDateTime::currentDateTime();
        const Date now;
        const QDateTime read(QDate(now.Year(), now.Month(), now.Day()), QTime(now.Hour(), now.Minute(), now.Second()));
        QVERIFY(qAbs(before.secsTo(read)) <= 2);
        QCOMPARE(QVariant::fromValue(now).value<Date>(), now);
        useZone("UTC");
    }
};

QTEST_MAIN(TestDate)
#include "tst_date.moc"
