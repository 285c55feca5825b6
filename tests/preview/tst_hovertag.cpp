// The hover tag over the table's first column: where it shows, what it says, how wide.

#include <QLineEdit>
#include <QtTest>

#include "platform/Listbox.h"
#include "platform/OneShotTimer.h"
#include "shell/Window1.h"

class TestHoverTag : public QObject {
    Q_OBJECT

    static void fill(Window1& w, int rows)
    {
        for (int i = 0; i < rows; ++i)
            w.ListBox1->AddRow(QStringLiteral("row %1").arg(i));
    }

private slots:
    // 9 pixels for a one-byte character, 15 for a three-byte one, 20 besides.
    void width_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("width");
        QTest::newRow("twelve one-byte") << QStringLiteral("IMG_0001.JPG") << 128;
        QTest::newRow("two three-byte and four one-byte") << QStringLiteral("写真.jpg") << 86;
        QTest::newRow("two three-byte alone") << QStringLiteral("写真") << 50;
        QTest::newRow("two-byte characters") << QStringLiteral("éèàç") << 68;
        QTest::newRow("300 characters") << QString(300, QLatin1Char('a')) << 2720;
        QTest::newRow("all Japanese, long") << QString(100, QChar(0x65E5)) << 1520;
        QTest::newRow("empty name") << QString() << 20;
    }
    void width()
    {
        QFETCH(QString, name);
        QFETCH(int, width);
        Window1 w;
        w.ListBox1->AddRow(name);
        w.ListBox1_MouseMove(30, 20);
        QVERIFY(w.FileNameTag->isVisibleTo(&w));
        QCOMPARE(w.FileNameTag->text(), name);
        QCOMPARE(w.FileNameTag->width(), width);
        QCOMPARE(w.FileNameTag->height(), 22);
        QCOMPARE(w.FileNameTag->font().pixelSize(), 12);
    }

    // Rows counted at 15 pixels below a 15-pixel header; the first quarter of the width.
    void where_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("scroll");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("shownRow");  // -1: hidden
        QTest::newRow("y 15 is the header") << 5 << 0 << QPoint(10, 15) << -1;
        QTest::newRow("y 16 is the first row") << 5 << 0 << QPoint(10, 16) << 0;
        QTest::newRow("y 46 is row 2") << 5 << 0 << QPoint(10, 46) << 2;
        QTest::newRow("scrolled by 3, y 16") << 40 << 3 << QPoint(10, 16) << 3;
        QTest::newRow("x at the limit") << 5 << 0 << QPoint(207, 20) << -1;
        QTest::newRow("x one below the limit") << 5 << 0 << QPoint(206, 20) << 0;
        QTest::newRow("below the last row") << 2 << 0 << QPoint(10, 50) << -1;
        QTest::newRow("last row") << 2 << 0 << QPoint(10, 44) << 1;
        QTest::newRow("empty table") << 0 << 0 << QPoint(10, 20) << -1;
    }
    void where()
    {
        QFETCH(int, rows);
        QFETCH(int, scroll);
        QFETCH(QPoint, at);
        QFETCH(int, shownRow);
        Window1 w;
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QTRY_COMPARE(w.Timer4->Mode(), 0);  // the opening's sort has passed
        QCOMPARE(w.ListBox1->width(), 830);
        fill(w, rows);
        w.ListBox1->setScrollPosition(scroll);
        QCOMPARE(w.ListBox1->ScrollPosition(), scroll);
        w.FileNameTag->setVisible(true);  // a move that doesn't show it hides it
        w.ListBox1_MouseMove(at.x(), at.y());
        QCOMPARE(w.FileNameTag->isVisibleTo(&w), shownRow >= 0);
        if (shownRow < 0)
            return;
        QCOMPARE(w.FileNameTag->text(), w.ListBox1->Cell(shownRow, 0));
        const QPoint table = w.ListBox1->mapTo(&w, QPoint(0, 0));
        QCOMPARE(w.FileNameTag->mapTo(&w, QPoint(0, 0)), table + at + QPoint(5, 5));
    }

    void emptyTableLeavesTheFont()
    {
        Window1 w;
        const int before = w.FileNameTag->font().pixelSize();
        w.ListBox1_MouseMove(10, 20);
        QCOMPARE(w.FileNameTag->font().pixelSize(), before);
    }

    // The pointer itself: over a name, into the right part, back, and out of the table.
    void realMoves()
    {
        Window1 w;
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QTRY_COMPARE(w.Timer4->Mode(), 0);
        fill(w, 3);
        QWidget* view = w.ListBox1->viewport();
        const QPoint header = view->mapTo(w.ListBox1, QPoint(0, 0));
        auto moveTo = [&](QPoint inTable) { QTest::mouseMove(view, inTable - header); };

        moveTo(QPoint(30, 16 + 15));
        QTRY_VERIFY(w.FileNameTag->isVisible());
        QCOMPARE(w.FileNameTag->text(), QStringLiteral("row 1"));
        moveTo(QPoint(600, 16 + 15));
        QTRY_VERIFY(!w.FileNameTag->isVisible());
        moveTo(QPoint(30, 16));
        QTRY_VERIFY(w.FileNameTag->isVisible());
        QTest::mouseMove(&w, w.ListBox1->mapTo(&w, QPoint(-10, -10)));
        QTRY_VERIFY(!w.FileNameTag->isVisible());
    }
};

QTEST_MAIN(TestHoverTag)
#include "tst_hovertag.moc"
