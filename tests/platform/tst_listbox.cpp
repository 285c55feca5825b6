#include "platform/Exceptions.h"
#include "platform/Listbox.h"
#include "platform/ListboxModel.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

using ListOp = std::function<void(Listbox&)>;
Q_DECLARE_METATYPE(ListOp)

namespace {

// A table set up as the file table is: seven columns, check boxes in 0 to 5, rows "a", "b"...
// (five unless asked otherwise). The model runs under Qt's model tester.
std::unique_ptr<Listbox> fileTable(bool hasHeader = true, int rows = 5)
{
    auto lb = std::make_unique<Listbox>();
    new QAbstractItemModelTester(lb->model(), QAbstractItemModelTester::FailureReportingMode::QtTest, lb.get());
    lb->setColumnCount(7);
    lb->setColumnWidths(QStringLiteral(",15%,15%,15%,15%,15%,0"));
    lb->setHasHeader(hasHeader);
    lb->setInitialValue(hasHeader ? QStringLiteral("Name\tA\tB\tC\tD\tE") : QStringLiteral("All\tx\tx\tx\tx\tx"));
    for (int c = 0; c <= 5; ++c)
        lb->setColumnType(c, 2);
    lb->resize(830, hasHeader ? 212 : 40);
    for (int i = 0; i < rows; ++i)
        lb->AddRow(QString(QChar('a' + i)));
    return lb;
}

}  // namespace

class TestListbox : public QObject {
    Q_OBJECT
private slots:
    void outOfBoundsThrows_data()
    {
        QTest::addColumn<ListOp>("op");
        using Op = ListOp;
        QTest::newRow("Cell row -1") << Op([](Listbox& l) { l.Cell(-1, 0); });
        QTest::newRow("Cell row past the end") << Op([](Listbox& l) { l.Cell(5, 0); });
        QTest::newRow("setCell column 7") << Op([](Listbox& l) { l.setCell(0, 7, "x"); });
        QTest::newRow("setCellCheck column -1") << Op([](Listbox& l) { l.setCellCheck(0, -1, true); });
        QTest::newRow("RemoveRow past the end") << Op([](Listbox& l) { l.RemoveRow(5); });
        QTest::newRow("RemoveRows, one past the end") << Op([](Listbox& l) { l.RemoveRows({0, 5}); });
        QTest::newRow("ListIndex -2") << Op([](Listbox& l) { l.setListIndex(-2); });
        QTest::newRow("Selected past the end") << Op([](Listbox& l) { l.Selected(5); });
        QTest::newRow("PressHeader column 7") << Op([](Listbox& l) { l.PressHeader(7); });
    }
    void outOfBoundsThrows()
    {
        QFETCH(ListOp, op);
        auto lb = fileTable();
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, op(*lb));
        QCOMPARE(lb->ListCount(), 5);
    }

    // The file table and the strip above it, equally wide, have their columns above each
    // other, though only the table shows a scroll bar.
    void columnsStandAboveEachOther()
    {
        QWidget window;
        auto list = fileTable(true, 200);
        auto strip = fileTable(false, 0);
        list->setParent(&window);
        strip->setParent(&window);
        list->setGeometry(0, 30, 830, 212);
        strip->setGeometry(0, 0, 830, 20);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_VERIFY(list->verticalScrollBar()->isVisible());
        for (int c = 0; c <= 5; ++c) {
            QCOMPARE(strip->columnViewportPosition(c), list->columnViewportPosition(c));
            QCOMPARE(strip->columnWidth(c), list->columnWidth(c));
        }
        const int total = list->columnViewportPosition(5) + list->columnWidth(5);
        QVERIFY(list->isColumnHidden(6));
        QVERIFY(qAbs(list->columnWidth(1) - total * 15 / 100) <= 1);
        QVERIFY(total <= list->viewport()->width());
    }

    void sortIsStableAndMovesRowsWhole_data()
    {
        QTest::addColumn<int>("direction");
        QTest::newRow("ascending") << 1;
        QTest::newRow("descending") << -1;
    }
    // Many rows with few keys, so that a sort which is not stable shows it. Each row's tag
    // holds its first place, and its tick tells whether that place was even.
    void sortIsStableAndMovesRowsWhole()
    {
        QFETCH(int, direction);
        auto lb = fileTable(true, 0);
        for (int i = 0; i < 300; ++i) {
            lb->AddRow(QString::number(i));
            lb->setCell(i, 2, QStringLiteral("2021-0%1").arg((i * 7) % 3));
            lb->setCellTag(i, 6, i);
            lb->setCellCheck(i, 3, i % 2 == 0);
        }
        lb->setListIndex(150);
        QSignalSpy change(lb.get(), &Listbox::Change);
        lb->setColumnSortDirection(2, direction);
        lb->PressHeader(2);
        for (int r = 0; r < lb->ListCount(); ++r) {
            const qint64 was = lb->CellTagAt(r, 6);
            QCOMPARE(lb->Cell(r, 0), QString::number(was));
            QCOMPARE(lb->CellCheck(r, 3), was % 2 == 0);
            const int order = r ? QString::compare(lb->Cell(r - 1, 2), lb->Cell(r, 2)) * direction : -1;
            QVERIFY2(order < 0 || (order == 0 && lb->CellTagAt(r - 1, 6) < was), qPrintable(QString::number(r)));
        }
        QCOMPARE(lb->CellTagAt(lb->ListIndex(), 6), qint64(150));  // the selection followed its row
        QCOMPARE(change.count(), 0);
    }

    void headingChoiceStaysForLaterSorts()
    {
        auto lb = fileTable(true, 3);
        for (int r = 0; r < 3; ++r)
            lb->setCell(r, 2, QString::number((r + 1) % 3));  // a 1, b 2, c 0
        lb->setColumnSortDirection(2, -1);
        lb->show();
        QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
        QHeaderView* heads = lb->horizontalHeader();
        const auto clickHeading = [&](int c) {
            QTest::mouseClick(heads->viewport(), Qt::LeftButton, {}, QPoint(heads->sectionViewportPosition(c) + 30, 5));
            return lb->Cell(0, 0) + lb->Cell(1, 0) + lb->Cell(2, 0);
        };
        QCOMPARE(clickHeading(2), QStringLiteral("bac"));  // in the column's own direction
        QCOMPARE(clickHeading(2), QStringLiteral("cab"));  // the sort column again: the direction turns
        QCOMPARE(clickHeading(0), QStringLiteral("abc"));  // another column
        lb->DeleteAllRows();
        for (const char* name : {"z", "x", "y"})
            lb->AddRow(name);
        lb->Sort();
        QCOMPARE(lb->Cell(0, 0) + lb->Cell(1, 0) + lb->Cell(2, 0), QStringLiteral("xyz"));
    }

    void changeIsRaised_data()
    {
        QTest::addColumn<int>("selected");  // before the step; -1 none
        QTest::addColumn<ListOp>("step");
        QTest::addColumn<int>("indexSeen");  // ListIndex inside the one Change; -2: no Change
        QTest::addColumn<QString>("rowsAfter");  // column 0 of the rows, the selected one in brackets
        using Op = ListOp;
        QTest::newRow("select a row") << -1 << Op([](Listbox& l) { l.setListIndex(2); }) << 2 << "ab[c]de";
        QTest::newRow("select none") << 1 << Op([](Listbox& l) { l.setListIndex(-1); }) << -1 << "abcde";
        QTest::newRow("remove the selected row") << 1 << Op([](Listbox& l) { l.RemoveRow(1); }) << -1 << "acde";
        QTest::newRow("remove another row") << 1 << Op([](Listbox& l) { l.RemoveRow(3); }) << -2 << "a[b]ce";
        QTest::newRow("remove rows, the selected among them") << 1 << Op([](Listbox& l) { l.RemoveRows({4, 1, 4}); }) << -1 << "acd";
        QTest::newRow("remove rows around the selected") << 2 << Op([](Listbox& l) { l.RemoveRows({0, 3, 4}); }) << -2 << "b[c]";
        QTest::newRow("rows added in a batch, one selected")
            << -1 << Op([](Listbox& l) { const Listbox::RowBatch batch(l); l.AddRow("f"); l.setListIndex(5); l.AddRow("g"); })
            << 5 << "abcde[f]g";
        QTest::newRow("delete all with a selection") << 0 << Op([](Listbox& l) { l.DeleteAllRows(); }) << -1 << "";
        QTest::newRow("delete all without one") << -1 << Op([](Listbox& l) { l.DeleteAllRows(); }) << -2 << "";
    }
    void changeIsRaised()
    {
        QFETCH(int, selected);
        QFETCH(ListOp, step);
        QFETCH(int, indexSeen);
        auto lb = fileTable();
        for (int r = 0; r < 5; ++r)
            lb->setCell(r, 2, "text not yet told to the views");
        if (selected >= 0)
            lb->setListIndex(selected);
        QList<int> seen;
        connect(lb.get(), &Listbox::Change, this, [&] { seen << lb->ListIndex(); });
        step(*lb);
        QCOMPARE(seen, indexSeen == -2 ? QList<int>() : QList<int>{indexSeen});
        QString rows;
        for (int r = 0; r < lb->ListCount(); ++r)
            rows += lb->Selected(r) ? "[" + lb->Cell(r, 0) + "]" : lb->Cell(r, 0);
        QTEST(rows, "rowsAfter");
        QCoreApplication::processEvents();  // the pending cell changes reach the model tester
    }

    void pressTogglesOnlyOnTheBox_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<bool>("toggles");
        QTest::newRow("x 2, left of the box") << 2 << false;
        QTest::newRow("x 3, the box's left edge") << 3 << true;
        QTest::newRow("x 19, the box's right edge") << 19 << true;
        QTest::newRow("x 20, on the text") << 20 << false;
    }
    void pressTogglesOnlyOnTheBox()
    {
        QFETCH(int, x);
        QFETCH(bool, toggles);
        auto lb = fileTable();
        lb->show();
        QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
        QList<QVariantList> clicks;  // row, column, x, and what the handler saw of the table
        connect(lb.get(), &Listbox::CellClick, this, [&](int row, int col, int cx, int) {
            clicks.append({row, col, cx, lb->CellCheck(row, col), lb->ListIndex()});
        });
        const QRect cell = lb->visualRect(lb->model()->index(1, 0));
        const QPoint at(cell.left() + x, cell.center().y());
        QTest::mouseClick(lb->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(clicks, (QList<QVariantList>{{1, 0, x, false, -1}}));  // before the default handling
        QCOMPARE(lb->ListIndex(), 1);
        QCOMPARE(lb->CellCheck(1, 0), toggles);
        // The double-click event that follows a second press adds no toggle of its own.
        QTest::mouseDClick(lb->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(lb->CellCheck(1, 0), toggles);
    }
};

QTEST_MAIN(TestListbox)
#include "tst_listbox.moc"
