// The hover tag over the table's first column: where it shows, what it says, how wide.

#include <QLineEdit>
#include <QtTest>

#include "platform/Listbox.h"
#include "platform/OneShotTimer.h"
#include "shell/Window1.h"

class TestHoverTag : public QObject {
    Q_OBJECT

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
    }
    void width()
    {
        QFETCH(QString, name);
        QFETCH(int, width);
        Window1 w;
        w.ListBox1->AddRow(name);
        w.ListBox1_MouseMove(30, 20);
        QCOMPARE(w.FileNameTag->text(), name);
        QCOMPARE(w.FileNameTag->size(), QSize(width, 22));
        QCOMPARE(w.FileNameTag->font().pixelSize(), 12);
    }

    // Real pointer moves over a table 830 wide: rows counted at 15 pixels below a 15-pixel
    // header, the first quarter of the width; leaving the table hides the tag.
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
        for (int i = 0; i < rows; ++i)
            w.ListBox1->AddRow(QStringLiteral("row %1").arg(i));
        w.ListBox1->setScrollPosition(scroll);
        w.FileNameTag->setVisible(true);  // a move that doesn't show it hides it

        QWidget* view = w.ListBox1->viewport();
        QTest::mouseMove(view, at - view->mapTo(w.ListBox1, QPoint(0, 0)));
        QTRY_COMPARE(w.FileNameTag->isVisible(), shownRow >= 0);
        if (shownRow >= 0) {
            QCOMPARE(w.FileNameTag->text(), w.ListBox1->Cell(shownRow, 0));
            QCOMPARE(w.FileNameTag->mapTo(&w, QPoint(0, 0)), w.ListBox1->mapTo(&w, at + QPoint(5, 5)));
            QTest::mouseMove(&w, w.ListBox1->mapTo(&w, QPoint(-10, -10)));
            QTRY_VERIFY(!w.FileNameTag->isVisible());
        }
    }
};

QTEST_MAIN(TestHoverTag)
#include "tst_hovertag.moc"
