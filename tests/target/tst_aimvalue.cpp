// The scheduled value of a row: its computation from the base cell and the add values, and
// the display that follows the selection and the base. Every case runs in a zone without
// and in a zone with daylight saving.

#include <QApplication>
#include <QLineEdit>
#include <QRadioButton>
#include <QtTest>

#include <ctime>
#include <memory>

#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/OneShotTimer.h"
#include "shell/Window1.h"

namespace {
// Six add values, all "0" but those given as {unit, text}.
QStringList adds(std::initializer_list<std::pair<int, QString>> given = {})
{
    QStringList texts(6, QStringLiteral("0"));
    for (const auto& [unit, text] : given)
        texts[unit] = text;
    return texts;
}
const QString nil;  // the expected result of a cell that gives no writable date
}  // namespace

class TestAimValue : public QObject {
    Q_OBJECT
    std::unique_ptr<Window1> w;
    QStringList failures;

    // A new row with text in column base and a file in its tag.
    void addRow(int base, const QString& text)
    {
        w->ListBox1->AddRow(QStringLiteral("f.jpg"));
        const int row = w->ListBox1->ListCount() - 1;
        w->ListBox1->setCell(row, base, text);
        w->ListBox1->setCellTag(row, 0, QVariant::fromValue(FolderItem(QStringLiteral("/tmp/f.jpg"))));
    }
    QStringList shown() const
    {
        QStringList texts;
        for (int i = 0; i < 6; ++i)
            texts << w->AimValue(i)->text();
        return texts;
    }

private slots:
    void initTestCase()
    {
        setFailureReport([this](const QString& action, const QString& reason) { failures << action + ": " + reason; });
        // The zone is really in force: 2021-07-01 12:00 UTC is 14:00 in summer in Berlin.
        const bool berlin = qgetenv("TZ") == "Europe/Berlin";
        QCOMPARE(Date::fromUnixTime(1625140800).Hour(), berlin ? 14 : 12);
    }
    void init() { w = std::make_unique<Window1>(); failures.clear(); }
    void cleanup() { w.reset(); }

    void computation_data()
    {
        QTest::addColumn<int>("base");
        QTest::addColumn<QString>("cell");
        QTest::addColumn<QStringList>("add");
        QTest::addColumn<QString>("expected");
        QTest::newRow("file date as it is") << 1 << "2021-05-06 07:08:09" << adds() << "2021-05-06 07:08:09";
        QTest::newRow("a year of one digit") << 5 << "0005:01:02 03:04:05" << adds() << "0005-01-02 03:04:05";
        for (const char* cell : {"2021:01:31 12:00:00", "2021:04:30 23:59:59", "2020:02:29 06:00:00"})
            QTest::newRow(cell) << 3 << cell << adds() << QString(cell).replace(4, 1, '-').replace(7, 1, '-');
        QTest::newRow("month into next year") << 4 << "2020:12:15 10:00:00" << adds({{1, "1"}}) << "2021-01-15 10:00:00";
        QTest::newRow("second back over a month end") << 4 << "2021:03:01 00:00:00" << adds({{5, "-1"}}) << "2021-02-28 23:59:59";
        QTest::newRow("second back onto a leap day") << 4 << "2020:03:01 00:00:00" << adds({{5, "-1"}}) << "2020-02-29 23:59:59";
        QTest::newRow("second into the new year") << 4 << "2021:12:31 23:59:59" << adds({{5, "1"}}) << "2022-01-01 00:00:00";
        QTest::newRow("month, then day after rollover") << 4 << "2021:01:31 00:00:00" << adds({{1, "1"}, {2, "1"}}) << "2021-03-04 00:00:00";
        QTest::newRow("leap day plus a year") << 4 << "2020:02:29 00:00:00" << adds({{0, "1"}}) << "2021-03-01 00:00:00";
        QTest::newRow("leap day plus a year, a month") << 4 << "2020:02:29 00:00:00" << adds({{0, "1"}, {1, "1"}}) << "2021-04-01 00:00:00";
        QTest::newRow("day after 28 Feb 1900") << 4 << "1900:02:28 12:00:00" << adds({{2, "1"}}) << "1900-03-01 12:00:00";
        QTest::newRow("day after 28 Feb 2000") << 4 << "2000:02:28 12:00:00" << adds({{2, "1"}}) << "2000-02-29 12:00:00";
        QTest::newRow("minus 13 months") << 4 << "2021:01:15 08:00:00" << adds({{1, "-13"}}) << "2019-12-15 08:00:00";
        QTest::newRow("minus 25 hours") << 4 << "2021:01:01 00:30:00" << adds({{3, "-25"}}) << "2020-12-30 23:30:00";
        QTest::newRow("1.9 days") << 4 << "2021:05:10 00:00:00" << adds({{2, "1.9"}}) << "2021-05-11 00:00:00";
        QTest::newRow("-1.9 days") << 4 << "2021:05:10 00:00:00" << adds({{2, "-1.9"}}) << "2021-05-08 00:00:00";
        QTest::newRow("-0.5 days on the first") << 4 << "2021:03:01 00:00:00" << adds({{2, "-0.5"}}) << "2021-02-28 00:00:00";
        QTest::newRow("abc and 12abc") << 4 << "2021:05:06 07:08:09" << adds({{2, "12abc"}, {3, "abc"}, {4, "-"}}) << "2021-05-18 07:08:09";
        QTest::newRow("hour into the spring gap") << 4 << "2021:03:28 01:30:00" << adds({{3, "1"}}) << "2021-03-28 02:30:00";
        QTest::newRow("four date fields") << 4 << "2021:05:06:99 07:08:09" << adds() << "2021-05-06 07:08:09";
        QTest::newRow("a field of letters") << 4 << "2021:xx:06 07:08:09" << adds() << "2020-12-06 07:08:09";
        QTest::newRow("the marker") << 4 << kNoExif << adds({{2, "1"}}) << nil;
        QTest::newRow("two date fields") << 4 << "2021:05 07:08:09" << adds() << nil;
        QTest::newRow("unset Exif date") << 4 << "0000:00:00 00:00:00" << adds() << nil;
        QTest::newRow("beyond 9999") << 4 << "9999:12:31 23:59:59" << adds({{5, "1"}}) << nil;
        QTest::newRow("a year of 20 digits") << 4 << "99999999999999999999:01:01 00:00:00" << adds() << nil;
        QTest::newRow("1e308 days") << 4 << "2021:05:06 07:08:09" << adds({{2, "1e308"}}) << nil;
        QTest::newRow("-1e400 years") << 4 << "2021:05:06 07:08:09" << adds({{0, "-1e400"}}) << nil;
        QTest::newRow("largest hexadecimal seconds") << 4 << "2021:05:06 07:08:09" << adds({{5, "&h7FFFFFFFFFFFFFFF"}}) << nil;
    }
    // The display shows the result's fields, zero-padded, or six blanks.
    void computation()
    {
        QFETCH(int, base);
        QFETCH(QString, cell);
        QFETCH(QStringList, add);
        QFETCH(QString, expected);
        addRow(base, cell);
        w->baseChoice = base;
        for (int i = 0; i < 6; ++i) {
            w->AddValue(i)->setText(add[i]);
            w->AimValue(i)->setText(QStringLiteral("x"));
        }
        const std::optional<Date> d = w->culcAimValue(0);
        QCOMPARE(d ? d->SQLDateTime() : nil, expected);
        w->ListBox1->setListIndex(0);
        QCOMPARE(shown(), d ? expected.split(QRegularExpression("[- :]")) : QStringList(6, QString()));
    }

    void missingTimePiece_data()
    {
        QTest::addColumn<QString>("cell");
        for (const char* cell : {"2021:05:06", "2021-05-06", "2021:05:06 ", "2021:05:06 07:08", "2021:05:06  07:08:09"})
            QTest::newRow(cell) << QString(cell);
    }
    void missingTimePiece()
    {
        QFETCH(QString, cell);
        addRow(4, cell);
        w->baseChoice = 4;
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, w->culcAimValue(0));
        // Through the table's Change the guard ends the handler, saying which cell is at
        // fault, and the next row still shows.
        addRow(4, QStringLiteral("2021:05:06 07:08:09"));
        w->ListBox1->setListIndex(0);
        QCOMPARE(failures.size(), 1);
        QVERIFY2(failures[0].startsWith(QStringLiteral("show the scheduled value of the selected file: The date “%1” "
                                                       "in row 1 of the list is incomplete")
                                            .arg(cell)),
                 qPrintable(failures[0]));
        w->ListBox1->setListIndex(1);
        QCOMPARE(shown(), QStringList({"2021", "05", "06", "07", "08", "09"}));
    }

    void followsSelectionAndBase()
    {
        w->show();
        QVERIFY(QTest::qWaitForWindowExposed(w.get()));
        QTRY_COMPARE(w->Timer4->Mode(), 0);  // the opening's sort has passed
        QCOMPARE(w->baseChoice, 4);
        addRow(2, QStringLiteral("2019-01-02 03:04:05"));
        w->ListBox1->setCell(0, 4, kNoExif);
        w->ListBox1->setListIndex(0);
        QCOMPARE(shown(), QStringList(6, QString()));
        QTest::mouseClick(w->BaseKind(2), Qt::LeftButton, {}, QPoint(8, w->BaseKind(2)->height() / 2));
        QCOMPARE(w->baseChoice, 2);
        QCOMPARE(shown(), QStringList({"2019", "01", "02", "03", "04", "05"}));
        // A row that holds no file leaves the display as it was.
        w->ListBox1->AddRow(QStringLiteral("no file"));
        w->ListBox1->setCell(1, 2, QStringLiteral("2020-01-01 00:00:00"));
        w->ListBox1->setListIndex(1);
        QCOMPARE(shown(), QStringList({"2019", "01", "02", "03", "04", "05"}));
        w->ListBox1->DeleteAllRows();
        QCOMPARE(shown(), QStringList(6, QString()));
        QVERIFY(failures.isEmpty());
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    int status = 0;
    for (const char* zone : {"UTC", "Europe/Berlin"}) {
        qputenv("TZ", zone);
        tzset();
        TestAimValue test;
        status |= QTest::qExec(&test, argc, argv);
    }
    return status;
}

#include "tst_aimvalue.moc"
