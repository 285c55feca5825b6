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

enum Unit { Year, Month, Day, Hour, Minute, Second };

void setUnit(Date& d, int unit, qint64 v)
{
    switch (unit) {
    case Year: d.setYear(v); break;
    case Month: d.setMonth(v); break;
    case Day: d.setDay(v); break;
    case Hour: d.setHour(v); break;
    case Minute: d.setMinute(v); break;
    default: d.setSecond(v); break;
    }
}

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
        row("29 January to leap February", Date(2020, 1, 29), Month, 2, "2020-02-29 00:00:00");
        row("leap day in 2000", Date(2000, 1, 29), Month, 2, "2000-02-29 00:00:00");
        row("no leap day in 1900", Date(1900, 1, 29), Month, 2, "1900-03-01 00:00:00");
        row("month 13", Date(2020, 12, 15, 10), Month, 13, "2021-01-15 10:00:00");
        row("month 0", Date(2021, 5, 6), Month, 0, "2020-12-06 00:00:00");
        row("month -13", Date(2021, 5, 6), Month, -13, "2019-11-06 00:00:00");
        row("day 31 of a 30-day month", Date(2021, 4, 1), Day, 31, "2021-05-01 00:00:00");
        row("day 0", Date(2021, 3, 15), Day, 0, "2021-02-28 00:00:00");
        row("day 0 in a leap year", Date(2024, 3, 15), Day, 0, "2024-02-29 00:00:00");
        row("hour 24", Date(2021, 12, 31, 5), Hour, 24, "2022-01-01 00:00:00");
        row("hour -1", Date(2021, 3, 1, 5), Hour, -1, "2021-02-28 23:00:00");
        row("second -1 at new year", Date(2021, 1, 1), Second, -1, "2020-12-31 23:59:59");
        row("minute 60", Date(2021, 1, 1, 23, 5), Minute, 60, "2021-01-02 00:00:00");
        row("a million days", Date(2000, 1, 1), Day, 1000000, "4737-11-27 00:00:00");
        row("a billion seconds back", Date(2021, 3, 1), Second, -1000000000, "1989-06-22 22:13:20");
        row("a hundred million minutes", Date(1970, 1, 1), Minute, 100000000, "2160-02-18 10:40:00");
        row("hour -100000", Date(2021, 5, 6, 7, 8, 9), Hour, -100000, "2009-12-08 08:08:09");
        row("400000 years of days", Date(2000, 1, 1), Day, 1 + 146097LL * 1000, "402000-01-01 00:00:00");
        row("negative years of days", Date(2000, 3, 1), Day, 1 - 146097LL * 5000, "-1998000-03-01 00:00:00");
        row("leap day in year 0", Date(4, 2, 29), Year, 0, "0000-02-29 00:00:00");
        row("no leap day in year -1", Date(4, 2, 29), Year, -1, "-0001-03-01 00:00:00");
        row("largest year", Date(2021, 1, 1), Year, Date::kMaxYear, "9999999-01-01 00:00:00");
        row("year beyond the range", Date(2021, 1, 1), Year, Date::kMaxYear + 1, kLast);
        row("largest day", Date(2021, 1, 1), Day, kMax, kLast);
        row("smallest day", Date(2021, 1, 1), Day, kMin, kFirst);
        row("largest second", Date(2021, 1, 1), Second, kMax, kLast);
        row("smallest second", Date(2021, 1, 1), Second, kMin, kFirst);
        row("smallest month", Date(2021, 1, 1), Month, kMin, kFirst);
        row("largest hour", Date(2021, 1, 1), Hour, kMax, kLast);
        row("smallest minute", Date(2021, 1, 1), Minute, kMin, kFirst);
        row("smallest year", Date(2021, 1, 1), Year, kMin, kFirst);
    }
    void setterRollsOver()
    {
        QFETCH(Date, start);
        QFETCH(int, unit);
        QFETCH(qint64, value);
        QFETCH(QString, expected);
        setUnit(start, unit, value);
        QCOMPARE(start.SQLDateTime(), expected);
        // The fields read back what the text shows: ...YYYY-MM-DD HH:MM:SS.
        const QString tail = expected.right(14);
        QCOMPARE(start.Year(), expected.left(expected.size() - 15).toLongLong());
        QCOMPARE(start.Month(), tail.mid(0, 2).toLongLong());
        QCOMPARE(start.Day(), tail.mid(3, 2).toLongLong());
        QCOMPARE(start.Hour(), tail.mid(6, 2).toLongLong());
        QCOMPARE(start.Minute(), tail.mid(9, 2).toLongLong());
        QCOMPARE(start.Second(), tail.mid(12, 2).toLongLong());
    }

    void constructorNormalisesAtOnce_data()
    {
        QTest::addColumn<Date>("date");
        QTest::addColumn<QString>("expected");
        QTest::newRow("31st whatever today is") << Date(2021, 5, 31, 7, 8, 9) << "2021-05-31 07:08:09";
        QTest::newRow("day 31 in February") << Date(2021, 2, 31) << "2021-03-03 00:00:00";
        QTest::newRow("everything over") << Date(2021, 14, 0, 25, 61, 61) << "2022-02-01 02:02:01";
        QTest::newRow("cancelling carries beyond the range") << Date(Date::kMaxYear + 1, -11, 1) << "9999999-01-01 00:00:00";
        QTest::newRow("padding") << Date(5, 6, 7, 8, 9, 1) << "0005-06-07 08:09:01";
        QTest::newRow("five-digit year") << Date(10000, 1, 1) << "10000-01-01 00:00:00";
        QTest::newRow("all extremes") << Date(kMax, kMax, kMax, kMax, kMax, kMax) << kLast;
        QTest::newRow("all negative extremes") << Date(kMin, kMin, kMin, kMin, kMin, kMin) << kFirst;
    }
    void constructorNormalisesAtOnce()
    {
        QFETCH(Date, date);
        QFETCH(QString, expected);
        QCOMPARE(date.SQLDateTime(), expected);
        const qint64 y = date.Year();
        QCOMPARE(date.SQLDateTime().size() == 19, y >= 0 && y <= 9999);
    }

    void unixTimeThroughLocalTime_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<QString>("local");
        QTest::newRow("epoch UTC") << QByteArray("UTC") << 0LL << "1970-01-01 00:00:00";
        QTest::newRow("one second before the epoch") << QByteArray("UTC") << -1LL << "1969-12-31 23:59:59";
        QTest::newRow("Berlin one second before the epoch") << QByteArray("Europe/Berlin") << -1LL << "1970-01-01 00:59:59";
        QTest::newRow("Berlin winter") << QByteArray("Europe/Berlin") << 1609459200LL << "2021-01-01 01:00:00";
        QTest::newRow("Berlin summer") << QByteArray("Europe/Berlin") << 1625097600LL << "2021-07-01 02:00:00";
        QTest::newRow("Berlin before the change back") << QByteArray("Europe/Berlin") << 1635641999LL << "2021-10-31 02:59:59";
        QTest::newRow("Tokyo") << QByteArray("Asia/Tokyo") << 1625097600LL << "2021-07-01 09:00:00";
        QTest::newRow("Tokyo 1900") << QByteArray("Asia/Tokyo") << -2208988800LL << "1900-01-01 09:00:00";
        QTest::newRow("UTC year 3000") << QByteArray("UTC") << 32503680000LL << "3000-01-01 00:00:00";
        QTest::newRow("Berlin 2100 summer") << QByteArray("Europe/Berlin") << 4118083200LL << "2100-07-01 02:00:00";
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
