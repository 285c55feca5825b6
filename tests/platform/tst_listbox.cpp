#include "platform/Exceptions.h"
#include "platform/Listbox.h"
#include "platform/ListboxModel.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

using ListOp = std::function<void(Listbox&)>;
Q_DECLARE_METATYPE(ListOp)

namespace {

// A table set up as the file table is: seven columns, check boxes in 0 to 5, five rows
// "a" to "e" unless asked otherwise. The model runs under Qt's model tester.
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

// The point x pixels into a cell, halfway down, in viewport coordinates.
QPoint inCell(Listbox& lb, int row, int col, int x)
{
    const QRect r = lb.visualRect(lb.model()->index(row, col));
    return QPoint(r.left() + x, r.top() + r.height() / 2);
}

}  // namespace

class TestListbox : public QObject {
    Q_OBJECT
private slots:
    void outOfBoundsThrows_data();
    void outOfBoundsThrows();
    void cellsStartEmpty();
    void cellTagAt_data();
    void cellTagAt();
    void columnsStandAboveEachOther_data();
    void columnsStandAboveEachOther();
    void sortIsStableAndMovesRowsWhole_data();
    void sortIsStableAndMovesRowsWhole();
    void headingChoiceStaysForLaterSorts();
    void changeIsRaised_data();
    void changeIsRaised();
    void pressTogglesOnlyOnTheBox_data();
    void pressTogglesOnlyOnTheBox();
    void stripTakesBackItsSelection();
    void mouseMoveCountsFromTheTopLeft_data();
    void mouseMoveCountsFromTheTopLeft();
};

void TestListbox::outOfBoundsThrows_data()
{
    QTest::addColumn<ListOp>("op");
    using Op = ListOp;
    QTest::newRow("Cell row -1") << Op([](Listbox& l) { l.Cell(-1, 0); });
    QTest::newRow("Cell row past the end") << Op([](Listbox& l) { l.Cell(5, 0); });
    QTest::newRow("setCell column 7") << Op([](Listbox& l) { l.setCell(0, 7, "x"); });
    QTest::newRow("setCellCheck column -1") << Op([](Listbox& l) { l.setCellCheck(0, -1, true); });
    QTest::newRow("CellTag row past the end") << Op([](Listbox& l) { l.CellTag(5, 6); });
    QTest::newRow("CellTagAt column 7") << Op([](Listbox& l) { l.CellTagAt(0, 7); });
    QTest::newRow("RemoveRow past the end") << Op([](Listbox& l) { l.RemoveRow(5); });
    QTest::newRow("ListIndex -2") << Op([](Listbox& l) { l.setListIndex(-2); });
    QTest::newRow("Selected past the end") << Op([](Listbox& l) { l.Selected(5); });
    QTest::newRow("PressHeader column 7") << Op([](Listbox& l) { l.PressHeader(7); });
}

void TestListbox::outOfBoundsThrows()
{
    QFETCH(ListOp, op);
    auto lb = fileTable();
    QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, op(*lb));
    QCOMPARE(lb->ListCount(), 5);
}

void TestListbox::cellsStartEmpty()
{
    auto lb = fileTable(true, 1);
    lb->setCell(0, 3, "x");
    lb->setCellCheck(0, 3, true);
    lb->setCellTag(0, 3, 7.0);
    lb->AddRow("second");
    QCOMPARE(lb->Cell(1, 0), QStringLiteral("second"));
    for (int c = 1; c < 7; ++c) {
        QCOMPARE(lb->Cell(1, c), QString());
        QVERIFY(!lb->CellCheck(1, c) && !lb->CellTag(1, c).isValid());
    }
    QCOMPARE(lb->Cell(0, 3), QStringLiteral("x"));
    QVERIFY(lb->CellCheck(0, 3));
    // The headings are no row; a table without a header has its initial line as row 0.
    QCOMPARE(lb->model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("A"));
    auto strip = fileTable(false, 0);
    QCOMPARE(strip->ListCount(), 1);
    QCOMPARE(strip->Cell(0, 0), QStringLiteral("All"));
    QVERIFY(strip->horizontalHeader()->isHidden());
}

void TestListbox::cellTagAt_data()
{
    QTest::addColumn<QVariant>("tag");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("never written") << QVariant() << qint64(0);
    QTest::newRow("64-bit integer") << QVariant(qint64(5000000000)) << qint64(5000000000);
    QTest::newRow("double truncates toward zero") << QVariant(-3.9) << qint64(-3);
    QTest::newRow("NaN") << QVariant(std::nan("")) << qint64(0);
    QTest::newRow("huge double saturates") << QVariant(1e300) << std::numeric_limits<qint64>::max();
    QTest::newRow("text that is no number") << QVariant(QStringLiteral("abc")) << qint64(0);
}

void TestListbox::cellTagAt()
{
    QFETCH(QVariant, tag);
    QFETCH(qint64, expected);
    auto lb = fileTable();
    if (tag.isValid())
        lb->setCellTag(0, 6, tag);
    QCOMPARE(lb->CellTagAt(0, 6), expected);
}

// The file table and the strip above it, equally wide: their columns must line up.
void TestListbox::columnsStandAboveEachOther_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("rows");
    QTest::newRow("design width, few rows") << 830 << 3;
    QTest::newRow("design width, scroll bar shown") << 830 << 200;
    QTest::newRow("wide, scroll bar shown") << 1500 << 200;
    QTest::newRow("minimum width") << 640 << 200;
}

void TestListbox::columnsStandAboveEachOther()
{
    QFETCH(int, width);
    QFETCH(int, rows);
    QWidget window;
    auto list = fileTable(true, rows);
    auto strip = fileTable(false, 0);
    list->setParent(&window);
    strip->setParent(&window);
    list->setGeometry(0, 30, width, 212);
    strip->setGeometry(0, 0, width, 20);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(list->verticalScrollBar()->isVisible(), rows > 10);

    for (int c = 0; c <= 5; ++c) {
        QCOMPARE(strip->columnViewportPosition(c), list->columnViewportPosition(c));
        QCOMPARE(strip->columnWidth(c), list->columnWidth(c));
    }
    const int total = list->columnViewportPosition(5) + list->columnWidth(5);
    QVERIFY(list->isColumnHidden(6));
    QVERIFY(std::abs(list->columnWidth(1) - total * 15 / 100) <= 1);
    QVERIFY(total <= list->viewport()->width());
    QCOMPARE(list->horizontalScrollBar()->maximum(), 0);
}

void TestListbox::sortIsStableAndMovesRowsWhole_data()
{
    QTest::addColumn<int>("direction");
    QTest::newRow("ascending") << 1;
    QTest::newRow("descending") << -1;
}

// Many rows with few keys, so that a sort which is not stable shows it. Each row's tag
// holds its first place, and its tick tells whether that place was even.
void TestListbox::sortIsStableAndMovesRowsWhole()
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
        if (r == 0)
            continue;
        const int order = QString::compare(lb->Cell(r - 1, 2), lb->Cell(r, 2)) * direction;
        QVERIFY2(order < 0 || (order == 0 && lb->CellTagAt(r - 1, 6) < was), qPrintable(QString::number(r)));
    }
    QCOMPARE(lb->CellTagAt(lb->ListIndex(), 6), qint64(150));  // the selection followed its row
    QCOMPARE(lb->SelCount(), 1);
    QCOMPARE(change.count(), 0);
    QCOMPARE(lb->horizontalHeader()->sortIndicatorSection(), 2);
    QCOMPARE(lb->horizontalHeader()->sortIndicatorOrder(), direction < 0 ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void TestListbox::headingChoiceStaysForLaterSorts()
{
    auto lb = fileTable(true, 3);
    const auto names = [&] { return QStringList{lb->Cell(0, 0), lb->Cell(1, 0), lb->Cell(2, 0)}; };
    for (int r = 0; r < 3; ++r)
        lb->setCell(r, 2, QString::number((r + 1) % 3));  // a 1, b 2, c 0
    lb->setColumnSortDirection(2, -1);
    lb->PressHeader(2);  // the start order: newest first
    QCOMPARE(names(), (QStringList{"b", "a", "c"}));

    lb->show();
    QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
    QHeaderView* heads = lb->horizontalHeader();
    const auto clickHeading = [&](int c) {
        QTest::mouseClick(heads->viewport(), Qt::LeftButton, {},
                          QPoint(heads->sectionViewportPosition(c) + 30, heads->height() / 2));
    };
    clickHeading(2);  // the sort column again: the direction turns
    QCOMPARE(names(), (QStringList{"c", "a", "b"}));
    QCOMPARE(lb->ColumnSortDirection(2), 1);
    clickHeading(0);  // another column: sorted by it, in its own direction
    QCOMPARE(names(), (QStringList{"a", "b", "c"}));
    QCOMPARE(heads->sortIndicatorSection(), 0);

    lb->DeleteAllRows();
    for (const char* name : {"z", "x", "y"})
        lb->AddRow(name);
    lb->Sort();
    QCOMPARE(names(), (QStringList{"x", "y", "z"}));
}

void TestListbox::changeIsRaised_data()
{
    QTest::addColumn<int>("selected");  // before the step; -1 none
    QTest::addColumn<ListOp>("step");
    QTest::addColumn<int>("changes");
    QTest::addColumn<int>("indexSeen");  // ListIndex inside the last Change
    using Op = ListOp;
    QTest::newRow("select a row") << -1 << Op([](Listbox& l) { l.setListIndex(2); }) << 1 << 2;
    QTest::newRow("select another row") << 1 << Op([](Listbox& l) { l.setListIndex(2); }) << 1 << 2;
    QTest::newRow("select none") << 1 << Op([](Listbox& l) { l.setListIndex(-1); }) << 1 << -1;
    QTest::newRow("remove the selected row") << 1 << Op([](Listbox& l) { l.RemoveRow(1); }) << 1 << -1;
    QTest::newRow("remove the last row, selected") << 4 << Op([](Listbox& l) { l.RemoveRow(4); }) << 1 << -1;
    QTest::newRow("remove another row") << 1 << Op([](Listbox& l) { l.RemoveRow(3); }) << 0 << -1;
    QTest::newRow("delete all with a selection") << 0 << Op([](Listbox& l) { l.DeleteAllRows(); }) << 1 << -1;
    QTest::newRow("delete all without one") << -1 << Op([](Listbox& l) { l.DeleteAllRows(); }) << 0 << -1;
}

void TestListbox::changeIsRaised()
{
    QFETCH(int, selected);
    QFETCH(ListOp, step);
    QFETCH(int, changes);
    QFETCH(int, indexSeen);
    auto lb = fileTable();
    for (int r = 0; r < 5; ++r)
        lb->setCell(r, 2, "text not yet told to the views");
    if (selected >= 0)
        lb->setListIndex(selected);
    int count = 0;
    int seen = -2;
    connect(lb.get(), &Listbox::Change, this, [&] {
        ++count;
        seen = lb->ListIndex();
    });
    step(*lb);
    QCOMPARE(count, changes);
    if (changes > 0)
        QCOMPARE(seen, indexSeen);
    QCoreApplication::processEvents();  // the pending cell changes reach the model tester
}

void TestListbox::pressTogglesOnlyOnTheBox_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("x");
    QTest::addColumn<bool>("toggles");
    QTest::newRow("x 2, left of the box") << 0 << 2 << false;
    QTest::newRow("x 3, the box's left edge") << 0 << 3 << true;
    QTest::newRow("x 19, the box's right edge") << 0 << 19 << true;
    QTest::newRow("x 20, on the text") << 0 << 20 << false;
    QTest::newRow("date column, on the box") << 4 << 10 << true;
    QTest::newRow("column without boxes") << 6 << 10 << false;
}

void TestListbox::pressTogglesOnlyOnTheBox()
{
    QFETCH(int, column);
    QFETCH(int, x);
    QFETCH(bool, toggles);
    auto lb = fileTable();
    lb->setColumnWidths(",15%,15%,15%,15%,10%,5%");  // column 6 visible, without boxes
    lb->show();
    QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
    QList<QVariantList> clicks;  // row, column, x, and what the handler saw of the table
    connect(lb.get(), &Listbox::CellClick, this, [&](int row, int col, int cx, int) {
        clicks.append({row, col, cx, lb->CellCheck(row, col), lb->ListIndex()});
    });

    const QPoint at = inCell(*lb, 1, column, x);
    QTest::mouseClick(lb->viewport(), Qt::LeftButton, {}, at);
    QCOMPARE(clicks, (QList<QVariantList>{{1, column, x, false, -1}}));  // before the default handling
    QCOMPARE(lb->ListIndex(), 1);
    QCOMPARE(lb->CellCheck(1, column), toggles);
    QVERIFY(!lb->CellCheck(0, column));

    // The double-click event that follows a second press adds no toggle of its own.
    QTest::mouseDClick(lb->viewport(), Qt::LeftButton, {}, at);
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(lb->CellCheck(1, column), toggles);
}

// A several-row strip whose Change handler takes any selection back at once, as the
// header strip above the file table does: the press still toggles, and no row stays selected.
void TestListbox::stripTakesBackItsSelection()
{
    auto strip = fileTable(false, 0);
    strip->setRowSelectionType(1);
    connect(strip.get(), &Listbox::Change, this, [&] {
        if (strip->SelCount() > 0)
            strip->setSelected(0, false);
    });
    strip->show();
    QVERIFY(QTest::qWaitForWindowExposed(strip.get()));
    for (int c : {0, 3, 3}) {
        const bool before = strip->CellCheck(0, c);
        QTest::mouseClick(strip->viewport(), Qt::LeftButton, {}, inCell(*strip, 0, c, 10));
        QCOMPARE(strip->CellCheck(0, c), !before);
        QCOMPARE(strip->SelCount(), 0);
    }
}

void TestListbox::mouseMoveCountsFromTheTopLeft_data()
{
    QTest::addColumn<bool>("overHeader");
    QTest::addColumn<QPoint>("at");  // in the header's or the rows' own coordinates
    QTest::addColumn<int>("scrolled");
    QTest::newRow("on the heading") << true << QPoint(40, 5) << 0;
    QTest::newRow("on row 0") << false << QPoint(40, 5) << 0;
    QTest::newRow("on row 3") << false << QPoint(300, 70) << 0;
    QTest::newRow("scrolled by 3 rows") << false << QPoint(40, 5) << 3;
}

void TestListbox::mouseMoveCountsFromTheTopLeft()
{
    QFETCH(bool, overHeader);
    QFETCH(QPoint, at);
    QFETCH(int, scrolled);
    QWidget window;
    window.resize(900, 300);
    auto lb = fileTable(true, 40);
    lb->setParent(&window);
    lb->move(20, 20);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    lb->setScrollPosition(scrolled);
    QCOMPARE(lb->ScrollPosition(), scrolled);
    QSignalSpy moves(lb.get(), &Listbox::MouseMove);
    QSignalSpy exits(lb.get(), &Listbox::MouseExit);

    // Through the window, as the desktop delivers moves: that also makes enter and leave.
    QWidget* surface = overHeader ? lb->horizontalHeader()->viewport() : lb->viewport();
    QTest::mouseMove(window.windowHandle(), surface->mapTo(&window, at));
    QTRY_VERIFY(!moves.isEmpty());
    const int frame = lb->frameWidth();
    const QPoint expected = at + QPoint(frame, frame + (overHeader ? 0 : lb->horizontalHeader()->height()));
    QCOMPARE(QPoint(moves.last().at(0).toInt(), moves.last().at(1).toInt()), expected);
    QCOMPARE(exits.count(), 0);

    QTest::mouseMove(window.windowHandle(), QPoint(5, 5));
    QTRY_COMPARE(exits.count(), 1);
}

QTEST_MAIN(TestListbox)
#include "tst_listbox.moc"
