// The scheduled value of the selected row: computed from its base cell and the add values,
// shown zero-padded, and recomputed on Return, on leaving a field, through the box for
// years and months and through Clear, never while the user types.

#include <QtTest>
#include <QtWidgets>

#include <ctime>
#include <memory>

#include "platform/widgets/DateTimeQuestion.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/OneShotTimer.h"
#include "shell/MenuBar1.h"
#include "shell/Window1.h"

using Adds = QMap<int, QString>;  // add values other than "0", by unit

class TestAimValue : public QObject {
    Q_OBJECT
    std::unique_ptr<Window1> w;
    QStringList failures;
    const QString blank = QStringLiteral("-- ::");  // the display with all six fields empty

    QLineEdit* field(int i) const { return w->AddValue(i); }
    QString typed() const { QStringList t; for (int i = 0; i < 6; ++i) t << field(i)->text(); return t.join(' '); }
    // The six fields of the display read as a date, "2021-05-06 07:08:09".
    QString shown() const { QString t; for (int i = 0; i < 6; ++i) t += w->AimValue(i)->text() + blank.mid(i, 1); return t; }
    // Selects a new row of a file with text in column base and no date in the others.
    void addRow(const QString& text, int base = 4)
    {
        Listbox* t = w->ListBox1;
        t->AddRow(QStringLiteral("f.jpg"));
        for (int c = 1; c <= 5; ++c)
            t->setCell(t->ListCount() - 1, c, c == base ? text : kNoExif);
        t->setCellTag(t->ListCount() - 1, 0, QVariant::fromValue(FolderItem(QStringLiteral("/tmp/f.jpg"))));
        t->setListIndex(t->ListCount() - 1);
    }
    static void click(QWidget* c) { QTest::mouseClick(c, Qt::LeftButton, {}, QPoint(6, c->height() / 2)); }

private slots:
    void initTestCase()
    {
        qputenv("TZ", "Europe/Berlin");  // a zone with a gap in spring, which dates ignore
        tzset();
        setFailureReport([this](const QString& action, const QString& reason) { failures << action + ": " + reason; });
    }
    void init()
    {
        failures.clear();
        w = std::make_unique<Window1>();
        w->show();
        QVERIFY(QTest::qWaitForWindowActive(w.get()));
        QTRY_COMPARE(w->Timer4->Mode(), 0);  // the opening's sort has passed
    }
    // The window goes while a field holds the focus, as when the program is closed.
    void cleanup() { w.reset(); QVERIFY(failures.isEmpty()); }

    // (A marker in the base cell is the next test's first step.)
    void computation_data()
    {
        QTest::addColumn<QString>("cell");  // in column 1 if a file date, else in 4
        QTest::addColumn<Adds>("adds");
        QTest::addColumn<QString>("expected");  // empty: no writable date, the display blank
        QTest::newRow("no time piece: the guard ends the table's Change, naming the cell")
            << "2021-05-06" << Adds{} << "show the scheduled value of the selected file: The date “2021-05-06” in row 1 "
                                         "of the list is incomplete: it needs a day and a time, as in 2021:05:06 07:08:09.";
        QTest::newRow("file date as it is") << "2021-05-06 07:08:09" << Adds{} << "2021-05-06 07:08:09";
        QTest::newRow("last day of a short month") << "2021:04:30 23:59:59" << Adds{} << "2021-04-30 23:59:59";
        QTest::newRow("year 0") << "0000:01:02 03:04:05" << Adds{} << "0000-01-02 03:04:05";
        QTest::newRow("year 9999") << "9999:12:31 23:59:59" << Adds{} << "9999-12-31 23:59:59";
        QTest::newRow("leap day plus a year, a month") << "2020:02:29 00:00:00" << Adds{{0, "1"}, {1, "1"}} << "2021-04-01 00:00:00";
        QTest::newRow("1.9 days") << "2021:05:10 00:00:00" << Adds{{2, "1.9"}} << "2021-05-11 00:00:00";
        QTest::newRow("-0.5 days on the first") << "2021:03:01 00:00:00" << Adds{{2, "-0.5"}} << "2021-02-28 00:00:00";
        QTest::newRow("hour into the spring gap") << "2021:03:28 01:30:00" << Adds{{3, "1"}} << "2021-03-28 02:30:00";
        QTest::newRow("unset Exif date") << "0000:00:00 00:00:00" << Adds{} << "";
        QTest::newRow("beyond 9999") << "9999:12:31 23:59:59" << Adds{{5, "1"}} << "";
        QTest::newRow("1e308 days") << "2021:05:06 07:08:09" << Adds{{2, "1e308"}} << "";
    }
    void computation()
    {
        QFETCH(QString, cell);
        QFETCH(Adds, adds);
        QFETCH(QString, expected);
        w->baseChoice = cell.contains('-') ? 1 : 4;
        for (int i = 0; i < 6; ++i) {
            field(i)->setText(adds.value(i, QStringLiteral("0")));
            w->AimValue(i)->setText(QStringLiteral("x"));
        }
        addRow(cell, w->baseChoice);
        QCOMPARE(failures.isEmpty() ? shown() : failures.join('\n'), expected.isEmpty() ? blank : expected);
        failures.clear();
    }

    // The display follows the selected row and the base; a row without a file leaves it be.
    // The offset from a known time is there only while it shows a date.
    void followsSelectionAndBase()
    {
        QAction* knownTime = MenuBar1::instance()->lookup(QStringLiteral("EditOffsetFromKnownTime"));
        QVERIFY(!knownTime->isEnabled());
        addRow(QStringLiteral("2019-01-02 03:04:05"), 2);
        QCOMPARE(shown(), blank);
        QVERIFY(!knownTime->isEnabled());
        click(w->BaseKind(2));
        QCOMPARE(shown(), "2019-01-02 03:04:05");
        QVERIFY(knownTime->isEnabled());
        w->ListBox1->AddRow(QStringLiteral("not a file"));
        w->ListBox1->setCell(1, 2, QStringLiteral("2020-01-01 00:00:00"));
        w->ListBox1->setListIndex(1);
        QCOMPARE(shown(), "2019-01-02 03:04:05");
        w->ListBox1->DeleteAllRows();
        QCOMPARE(shown(), blank);
        QVERIFY(!knownTime->isEnabled());
    }

    // Typed into the days field: the display follows on Return, and on leaving the field its
    // text as a number, shown again only if that changed the text. Meanwhile the base has
    // moved to day 1 behind the display's back. Tab then walks the fields and, by the
    // handler, on to the usage text, also in a window that is not the active one, as under
    // an X server without a window manager.
    void typing_data()
    {
        QTest::addColumn<QStringList>("steps");  // typed, shown on Return, text left, shown on leaving
        QTest::newRow("5, kept") << QStringList{"5", "11", "5", "11"};
        QTest::newRow("12abc, cut to 12") << QStringList{"12abc", "18", "12", "13"};
    }
    void typing()
    {
        QFETCH(QStringList, steps);
        addRow(QStringLiteral("2021:05:06 07:08:09"));
        QVERIFY(QApplication::focusWidget() == field(2) && field(2)->hasSelectedText());  // where the user starts
        QTest::keyClicks(field(2), steps[0]);
        QTest::keyClick(field(2), Qt::Key_Return);
        QCOMPARE(w->AimValue(2)->text(), steps[1]);
        w->ListBox1->setCell(0, 4, QStringLiteral("2021:05:01 07:08:09"));
        QTest::keyClick(field(2), Qt::Key_Return);  // nothing pending
        QCOMPARE(w->AimValue(2)->text(), steps[1]);
        QTest::keyClick(field(2), Qt::Key_Tab);
        QCOMPARE(field(2)->text(), steps[2]);
        QCOMPARE(w->AimValue(2)->text(), steps[3]);
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        for (QWidget* next : std::initializer_list<QWidget*>{field(4), field(5), w->TextArea1}) {
            QTest::keyClick(w->focusWidget(), Qt::Key_Tab);
            QCOMPARE(w->focusWidget(), next);
        }
    }

    // Switching the box off throws pending years away; on and off with nothing pending
    // recompute nothing. Clear always recomputes.
    void yearsBoxAndClear()
    {
        addRow(QStringLiteral("2021:05:06 07:08:09"));
        click(w->AddValCheckBox);
        QVERIFY(field(0)->isEnabled() && field(1)->isEnabled());
        field(0)->setFocus();
        QTest::keyClicks(field(0), QStringLiteral("2"));
        click(w->AddValCheckBox);
        QVERIFY(!field(0)->isEnabled() && !field(1)->isEnabled());
        QCOMPARE(field(0)->text() + ' ' + shown(), "0 2021-05-06 07:08:09");
        click(w->AddValCheckBox);
        w->ListBox1->setCell(0, 4, QStringLiteral("2030:05:06 07:08:09"));
        click(w->AddValCheckBox);
        QCOMPARE(shown(), "2021-05-06 07:08:09");
        click(w->ClearBtn);
        QCOMPARE(shown(), "2030-05-06 07:08:09");
        field(3)->setFocus();
        QTest::keyClicks(field(3), QStringLiteral("5"));
        click(w->ClearBtn);
        QCOMPARE(typed() + ' ' + shown(), "0 0 0 0 0 0 2030-05-06 07:08:09");
        QVERIFY(QApplication::focusWidget() == field(2) && field(2)->hasSelectedText());
    }
    // Ctrl+T: the true time typed for the selected row becomes the add values, with years
    // and months only where the box opened them, and the scheduled value shows that time.
    void knownTime_data()
    {
        QTest::addColumn<QString>("cell");  // in column 1 if a file date, else in 4
        QTest::addColumn<QString>("known");
        QTest::addColumn<bool>("yearsAndMonths");
        QTest::addColumn<QString>("adds");
        QTest::newRow("an hour and a half fast") << "2021:05:06 07:08:09" << "2021-05-06 05:38:09" << false << "0 0 0 -1 -30 0";
        QTest::newRow("years behind, in days") << "2019:01:31 12:00:00" << "2021-03-01 12:00:01" << false << "0 0 760 0 0 1";
        QTest::newRow("leap day to a year later") << "2020:02:29 10:00:00" << "2021-03-01 10:00:00" << true << "1 0 0 0 0 0";
        QTest::newRow("31 January to 1 March: no month fits") << "2021:01:31 00:00:00" << "2021-03-01 00:00:00" << true << "0 0 29 0 0 0";
        QTest::newRow("back over a month end") << "2022:03:31 08:00:00" << "2021-02-28 07:59:59" << true << "-1 -1 -3 0 0 -1";
        QTest::newRow("file date into the spring gap") << "2021-03-28 01:30:00" << "2021-03-28 02:30:00" << false << "0 0 0 1 0 0";
    }
    void knownTime()
    {
        QFETCH(QString, cell);
        QFETCH(QString, known);
        QFETCH(bool, yearsAndMonths);
        click(w->BaseKind(cell.contains('-') ? 1 : 4));
        addRow(cell, cell.contains('-') ? 1 : 4);
        if (yearsAndMonths)
            click(w->AddValCheckBox);
        field(4)->setText(QStringLiteral("7"));  // a guess entered before, replaced
        setDateTimeAnswer([&](const QString&, const QString&, const Date&) {
            const QStringList n = known.split(QRegularExpression("[- :]"));
            return std::optional(Date(n[0].toInt(), n[1].toInt(), n[2].toInt(), n[3].toInt(), n[4].toInt(), n[5].toInt()));
        });
        QTest::keyClick(w.get(), Qt::Key_T, Qt::ControlModifier);
        setDateTimeAnswer({});
        QTEST(typed(), "adds");
        QCOMPARE(shown(), known);
    }
};

QTEST_MAIN(TestAimValue)
#include "tst_aimvalue.moc"
