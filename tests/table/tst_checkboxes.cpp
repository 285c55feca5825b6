// The ticks after real clicks on the boxes of the table and of the header row, and beside
// them, in both sort orders. A row is "name:cells 3 to 5:ticks of columns 0 to 5", with d
// for a date and m for the marker; rows sort by name. A click is "H" (the header row) or a
// row's name, then the column and the x in the cell.

#include <QtTest>

#include <memory>

#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/OneShotTimer.h"
#include "shell/Window1.h"

class TestCheckBoxes : public QObject {
    Q_OBJECT
    std::unique_ptr<Window1> w;
    QStringList failures;

    void addRow(const QString& spec)
    {
        const QStringList part = spec.split(':');
        Listbox* t = w->ListBox1;
        t->AddRow(part[0]);
        const int row = t->ListCount() - 1;
        t->setCell(row, 1, QStringLiteral("2020-01-01 00:00:00"));
        t->setCell(row, 2, QStringLiteral("2021-01-01 00:00:0") + part[0]);  // sorts by name
        for (int c = 3; c <= 5; ++c)
            t->setCell(row, c, part[1][c - 3] == 'm' ? kNoExif : QStringLiteral("2021:02:03 04:05:06"));
        setTicks(t, row, part[2]);
    }
    static void setTicks(Listbox* t, int row, const QString& ticks)
    {
        for (int c = 0; c < 6; ++c)
            t->setCellCheck(row, c, ticks[c] == '1');
    }
    static QString ticks(Listbox* t, int row)
    {
        QString s;
        for (int c = 0; c < 6; ++c)
            s += t->CellCheck(row, c) ? '1' : '0';
        return s;
    }
    int rowOf(const QString& name) const
    {
        for (int row = 0; row < w->ListBox1->ListCount(); ++row)
            if (w->ListBox1->Cell(row, 0) == name)
                return row;
        return -1;
    }
    static void click(Listbox* t, int row, int column, int x)
    {
        const QPoint at(t->columnViewportPosition(column) + x, t->rowViewportPosition(row) + t->rowHeight(row) / 2);
        QTest::mouseClick(t->viewport(), Qt::LeftButton, {}, at);
    }

private slots:
    void initTestCase() { setFailureReport([this](const QString& where, const QString&) { failures << where; }); }
    void init()
    {
        failures.clear();
        w = std::make_unique<Window1>();
        w->show();
        QVERIFY(QTest::qWaitForWindowExposed(w.get()));
        QTRY_COMPARE(w->Timer4->Mode(), 0);  // the opening's sort has passed
    }
    void cleanup() { w.reset(); }

    void clicks_data()
    {
        for (const char* column : {"rows", "header", "where", "expected", "expectedHeader"})
            QTest::addColumn<QString>(column);
        QTest::addColumn<int>("order");  // 1 ascending, -1 descending
        QTest::addColumn<int>("timer");  // the one armed, 0 for none
        const auto row = [](const char* name, const char* rows, const char* header, const char* where, int timer,
                            const char* expected, const char* expectedHeader, int order = 1) {
            QTest::newRow(name) << rows << header << where << expected << expectedHeader << order << timer;
        };
        const char* abc = "A:ddd:100100 B:mdd:100000 C:ddd:100100";
        row("column box, empty table", "", "111011", "H 3 10", 1, "", "111111");
        row("corner box off, empty table", "", "100000", "H 0 10", 1, "", "000000");
        row("column box down to the marker", abc, "111011", "H 3 10", 1, "A:100100 B:100000 C:100000", "111111");
        row("column box down to the marker, descending", abc, "111011", "H 3 10", 1, "A:100000 B:100000 C:100100", "111111", -1);
        row("column box off, markers or not", "A:ddd:111111 B:dmd:111101", "111111", "H 4 10", 1, "A:111101 B:111101", "111101");
        row("beside a column box re-applies it", "A:ddd:110111", "111111", "H 2 40", 1, "A:111111", "111111");
        row("corner box, folder first", "A:ddd:000000 B:mmm:000000", "011111", "H 0 10", 1, "A:111000 B:111000", "111111", -1);
        row("corner box, folder last", "A:ddd:000000 B:mmm:000000", "011111", "H 0 10", 1, "A:111111 B:111000", "111111");
        row("row box right from the marker", "A:dmd:000000", "111111", "A 0 10", 2, "A:111100", "111111");
        row("row box at x 3, folder", "A:mmm:000000", "111111", "A 0 3", 2, "A:111000", "111111", -1);
        row("row box off at x 19", "A:ddd:111111 B:ddd:111111", "111111", "B 0 19", 2, "A:111111 B:000000", "111111");
        row("beside the row box at x 2", "A:ddd:011111", "111111", "A 0 2", 0, "A:011111", "111111");
        row("on the file name at x 20", "A:ddd:011111", "111111", "A 0 20", 0, "A:011111", "111111");
        row("a file date box by hand", "A:ddd:111111", "111111", "A 1 10", 0, "A:101111", "111111");
        row("a tick on a marker goes", "A:mdd:110011", "111111", "A 3 10", 3, "A:110011", "111111");
        row("an Exif date box by hand", "A:ddd:111111", "111111", "A 4 10", 3, "A:111101", "111111", -1);
    }
    void clicks()
    {
        QFETCH(QString, rows);
        QFETCH(QString, header);
        QFETCH(QString, where);
        QFETCH(QString, expected);
        QFETCH(QString, expectedHeader);
        QFETCH(int, order);
        QFETCH(int, timer);
        for (const QString& spec : rows.split(' ', Qt::SkipEmptyParts))
            addRow(spec);
        setTicks(w->ListHeader, 0, header);
        w->ListBox1->setColumnSortDirection(2, order);
        w->ListBox1->Sort();
        if (w->ListBox1->ListCount() > 1)
            QCOMPARE(w->ListBox1->Cell(0, 0) < w->ListBox1->Cell(1, 0), order > 0);

        OneShotTimer* timers[] = {w->Timer1, w->Timer2, w->Timer3};
        QSignalSpy fired(timers[qMax(timer, 1) - 1], &OneShotTimer::Action);
        const QStringList at = where.split(' ');
        const bool onHeader = at[0] == "H";
        click(onHeader ? w->ListHeader : w->ListBox1, onHeader ? 0 : rowOf(at[0]), at[1].toInt(), at[2].toInt());
        for (int i = 1; i <= 3; ++i)
            QCOMPARE(timers[i - 1]->Mode(), i == timer ? 1 : 0);
        if (timer)
            QVERIFY(fired.wait());

        for (const QString& row : expected.split(' ', Qt::SkipEmptyParts))
            QCOMPARE(row.left(2) + ticks(w->ListBox1, rowOf(row.left(1))), row);
        QCOMPARE(ticks(w->ListHeader, 0), expectedHeader);
        QCOMPARE(w->ListHeader->SelCount(), 0);
        QCOMPARE(w->ListBox1->ListIndex(), onHeader ? -1 : rowOf(at[0]));
        QVERIFY(failures.isEmpty());
    }

    // One pending slot: two clicks before the timer fires are carried out for the second.
    void twoRowBoxClicksInOnePeriod()
    {
        addRow(QStringLiteral("A:ddd:000000"));
        addRow(QStringLiteral("B:ddd:000000"));
        QSignalSpy fired(w->Timer2, &OneShotTimer::Action);
        click(w->ListBox1, 0, 0, 10);
        click(w->ListBox1, 1, 0, 10);
        QVERIFY(fired.wait());
        QCOMPARE(ticks(w->ListBox1, 0) + ' ' + ticks(w->ListBox1, 1), QStringLiteral("100000 111111"));
    }

    // The row went before the timer fired: the action ends through the guard.
    void timerAfterTheRowWent()
    {
        addRow(QStringLiteral("A:mdd:111011"));
        QSignalSpy fired(w->Timer3, &OneShotTimer::Action);
        click(w->ListBox1, 0, 3, 10);
        QVERIFY(w->ListBox1->CellCheck(0, 3));
        w->ListBox1->DeleteAllRows();
        QVERIFY(fired.wait());
        QCOMPARE(failures, QStringList{"apply the tick"});
    }
};

QTEST_MAIN(TestCheckBoxes)
#include "tst_checkboxes.moc"
