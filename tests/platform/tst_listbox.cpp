#include "platform/Exceptions.h"
#include "platform/Listbox.h"
#include "platform/ListboxModel.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

using ListOp = std::function<void(Listbox&)>;
Q_DECLARE_METATYPE(ListOp)

namespace {

const QString kWidths = QStringLiteral(",15%,15%,15%,15%,15%,0");

// A table set up as the file table is: seven columns, check boxes in 0 to 5.
std::unique_ptr<Listbox> fileTable(bool hasHeader = true, int width = 830, int height = 212)
{
    auto lb = std::make_unique<Listbox>();
    new QAbstractItemModelTester(lb->model(), QAbstractItemModelTester::FailureReportingMode::QtTest, lb.get());
    lb->setColumnCount(7);
    lb->setColumnWidths(kWidths);
    lb->setHasHeader(hasHeader);
    lb->setInitialValue(hasHeader ? QStringLiteral("Name\tA\tB\tC\tD\tE") : QStringLiteral("All\tx\tx\tx\tx\tx"));
    for (int c = 0; c <= 5; ++c)
        lb->setColumnType(c, 2);
    lb->resize(width, height);
    return lb;
}

void addRows(Listbox& lb, const QStringList& names, const QStringList& column2 = {})
{
    for (int i = 0; i < names.size(); ++i) {
        lb.AddRow(names.at(i));
        if (i < column2.size())
            lb.setCell(lb.ListCount() - 1, 2, column2.at(i));
    }
}

QStringList column(const Listbox& lb, int c)
{
    QStringList out;
    for (int r = 0; r < lb.ListCount(); ++r)
        out << lb.Cell(r, c);
    return out;
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
    void addRowStartsEmpty();
    void cellTagAt_data();
    void cellTagAt();
    void initialValue_data();
    void initialValue();
    void columnsStandAboveEachOther_data();
    void columnsStandAboveEachOther();
    void sortIsStableAndMovesRowsWhole_data();
    void sortIsStableAndMovesRowsWhole();
    void headingChoiceStaysForLaterSorts();
    void changeIsRaised_data();
    void changeIsRaised();
    void pressTogglesOnlyOnTheBox_data();
    void pressTogglesOnlyOnTheBox();
    void cellClickSeesTheOldState();
    void doubleClickTogglesNoMore();
    void mouseMoveCountsFromTheTopLeft_data();
    void mouseMoveCountsFromTheTopLeft();
    void scrollPosition();
};

// ---- cells --------------------------------------------------------------------------------

void TestListbox::outOfBoundsThrows_data()
{
    QTest::addColumn<ListOp>("op");
    using Op = ListOp;
    QTest::newRow("Cell row -1") << Op([](Listbox& l) { l.Cell(-1, 0); });
    QTest::newRow("Cell row past the end") << Op([](Listbox& l) { l.Cell(3, 0); });
    QTest::newRow("Cell column 7") << Op([](Listbox& l) { l.Cell(0, 7); });
    QTest::newRow("setCell column -1") << Op([](Listbox& l) { l.setCell(0, -1, "x"); });
    QTest::newRow("CellCheck row past the end") << Op([](Listbox& l) { l.CellCheck(3, 1); });
    QTest::newRow("setCellCheck column 7") << Op([](Listbox& l) { l.setCellCheck(0, 7, true); });
    QTest::newRow("CellTag row -1") << Op([](Listbox& l) { l.CellTag(-1, 6); });
    QTest::newRow("setCellTag row past the end") << Op([](Listbox& l) { l.setCellTag(3, 6, 1); });
    QTest::newRow("CellTagAt column 7") << Op([](Listbox& l) { l.CellTagAt(0, 7); });
    QTest::newRow("RemoveRow past the end") << Op([](Listbox& l) { l.RemoveRow(3); });
    QTest::newRow("ListIndex past the end") << Op([](Listbox& l) { l.setListIndex(3); });
    QTest::newRow("ListIndex -2") << Op([](Listbox& l) { l.setListIndex(-2); });
    QTest::newRow("Selected row past the end") << Op([](Listbox& l) { l.Selected(3); });
    QTest::newRow("ColumnType column 7") << Op([](Listbox& l) { l.setColumnType(7, 2); });
    QTest::newRow("PressHeader column -1") << Op([](Listbox& l) { l.PressHeader(-1); });
    QTest::newRow("ColumnCount 0") << Op([](Listbox& l) { l.setColumnCount(0); });
}

void TestListbox::outOfBoundsThrows()
{
    QFETCH(ListOp, op);
    auto lb = fileTable();
    addRows(*lb, {"a", "b", "c"});
    QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, op(*lb));
    QCOMPARE(lb->ListCount(), 3);
}

void TestListbox::addRowStartsEmpty()
{
    auto lb = fileTable();
    lb->AddRow("first");
    lb->setCell(0, 3, "x");
    lb->setCellCheck(0, 3, true);
    lb->setCellTag(0, 3, 7.0);
    lb->AddRow("second");
    QCOMPARE(lb->ListCount(), 2);
    QCOMPARE(lb->Cell(1, 0), QStringLiteral("second"));
    for (int c = 0; c < 7; ++c) {
        if (c > 0)
            QCOMPARE(lb->Cell(1, c), QString());
        QVERIFY(!lb->CellCheck(1, c));
        QVERIFY(!lb->CellTag(1, c).isValid());
    }
    QCOMPARE(lb->Cell(0, 3), QStringLiteral("x"));
    QVERIFY(lb->CellCheck(0, 3));
}

void TestListbox::cellTagAt_data()
{
    QTest::addColumn<QVariant>("tag");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("never written") << QVariant() << qint64(0);
    QTest::newRow("integer") << QVariant(6) << qint64(6);
    QTest::newRow("64-bit offset") << QVariant(qint64(5000000000)) << qint64(5000000000);
    QTest::newRow("double truncates up") << QVariant(3.9) << qint64(3);
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
    lb->AddRow("a");
    if (tag.isValid())
        lb->setCellTag(0, 6, tag);
    QCOMPARE(lb->CellTagAt(0, 6), expected);
}

void TestListbox::initialValue_data()
{
    QTest::addColumn<bool>("hasHeader");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("heading1");
    QTest::addColumn<QString>("row0column1");
    QTest::newRow("with header: the headings") << true << 0 << "A" << "";
    QTest::newRow("without header: row 0") << false << 1 << "" << "x";
}

void TestListbox::initialValue()
{
    QFETCH(bool, hasHeader);
    QFETCH(int, rows);
    QFETCH(QString, heading1);
    QFETCH(QString, row0column1);
    auto lb = fileTable(hasHeader);
    QCOMPARE(lb->ListCount(), rows);
    QCOMPARE(lb->model()->headerData(1, Qt::Horizontal).toString(), heading1);
    QCOMPARE(lb->horizontalHeader()->isHidden(), !hasHeader);
    if (rows > 0) {
        QCOMPARE(lb->Cell(0, 1), row0column1);
        QCOMPARE(lb->Cell(0, 6), QString());
    }
}

// Both tables side by side in one window, as the file table and its header strip stand.
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
    auto list = fileTable(true, width, 212);
    auto strip = fileTable(false, width, 20);
    list->setParent(&window);
    strip->setParent(&window);
    list->setGeometry(0, 30, width, 212);
    strip->setGeometry(0, 0, width, 20);
    for (int i = 0; i < rows; ++i)
        list->AddRow(QString::number(i));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(list->verticalScrollBar()->isVisible(), rows > 10);

    const int total = list->columnViewportPosition(5) + list->columnWidth(5);
    for (int c = 0; c <= 5; ++c) {
        QCOMPARE(strip->columnViewportPosition(c), list->columnViewportPosition(c));
        QCOMPARE(strip->columnWidth(c), list->columnWidth(c));
    }
    QVERIFY(list->isColumnHidden(6));
    QVERIFY(std::abs(list->columnWidth(1) - total * 15 / 100) <= 1);
    QVERIFY(list->columnWidth(0) >= list->columnWidth(1));
    QVERIFY(total <= list->viewport()->width());
    QCOMPARE(list->horizontalScrollBar()->maximum(), 0);
}

// ---- sorting ------------------------------------------------------------------------------

void TestListbox::sortIsStableAndMovesRowsWhole_data()
{
    QTest::addColumn<int>("direction");
    QTest::addColumn<QStringList>("expected");
    // Keys of a, b, c, d, e: b and d are equal, as are a and e.
    QTest::newRow("ascending") << 1 << QStringList{"c", "a", "e", "b", "d"};
    QTest::newRow("descending keeps equal rows in order") << -1 << QStringList{"b", "d", "a", "e", "c"};
}

void TestListbox::sortIsStableAndMovesRowsWhole()
{
    QFETCH(int, direction);
    QFETCH(QStringList, expected);
    auto lb = fileTable();
    addRows(*lb, {"a", "b", "c", "d", "e"},
            {"2021-01-02 00:00:00", "2021-03-01 00:00:00", "2020-12-31 23:59:59", "2021-03-01 00:00:00",
             "2021-01-02 00:00:00"});
    for (int r = 0; r < 5; ++r) {
        lb->setCellCheck(r, 3, r % 2 == 0);
        lb->setCellTag(r, 6, r);
    }
    lb->setListIndex(3);  // "d"
    QSignalSpy change(lb.get(), &Listbox::Change);

    lb->setColumnSortDirection(2, direction);
    lb->PressHeader(2);

    QCOMPARE(column(*lb, 0), expected);
    for (int r = 0; r < 5; ++r) {
        const int was = lb->Cell(r, 0).at(0).unicode() - 'a';
        QCOMPARE(lb->CellTagAt(r, 6), qint64(was));
        QCOMPARE(lb->CellCheck(r, 3), was % 2 == 0);
    }
    QCOMPARE(lb->Cell(lb->ListIndex(), 0), QStringLiteral("d"));
    QCOMPARE(lb->SelCount(), 1);
    QCOMPARE(lb->horizontalHeader()->sortIndicatorSection(), 2);
    QCOMPARE(lb->horizontalHeader()->sortIndicatorOrder(), direction < 0 ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void TestListbox::headingChoiceStaysForLaterSorts()
{
    auto lb = fileTable();
    addRows(*lb, {"b", "c", "a"}, {"2", "3", "1"});
    lb->setColumnSortDirection(2, -1);
    lb->PressHeader(2);
    QCOMPARE(column(*lb, 0), (QStringList{"c", "b", "a"}));

    lb->show();
    QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
    QHeaderView* heads = lb->horizontalHeader();
    const auto clickHeading = [&](int c) {
        const QPoint at(heads->sectionViewportPosition(c) + 30, heads->height() / 2);
        QTest::mouseClick(heads->viewport(), Qt::LeftButton, {}, at);
    };
    clickHeading(2);  // the sort column: turns the direction
    QCOMPARE(column(*lb, 0), (QStringList{"a", "b", "c"}));
    QCOMPARE(lb->ColumnSortDirection(2), 1);
    clickHeading(0);  // another column: sorts by it, in its own direction
    QCOMPARE(lb->SortedColumn(), 0);
    QCOMPARE(heads->sortIndicatorSection(), 0);

    lb->DeleteAllRows();
    addRows(*lb, {"z", "x", "y"}, {"1", "3", "2"});
    lb->Sort();
    QCOMPARE(column(*lb, 0), (QStringList{"x", "y", "z"}));
}

// ---- selection ----------------------------------------------------------------------------

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
    QTest::newRow("remove the last row, selected") << 3 << Op([](Listbox& l) { l.RemoveRow(3); }) << 1 << -1;
    QTest::newRow("remove another row") << 1 << Op([](Listbox& l) { l.RemoveRow(3); }) << 0 << -1;
    QTest::newRow("delete all with a selection") << 0 << Op([](Listbox& l) { l.DeleteAllRows(); }) << 1 << -1;
    QTest::newRow("delete all without one") << -1 << Op([](Listbox& l) { l.DeleteAllRows(); }) << 0 << -1;
    QTest::newRow("sort moves the selected row") << 0 << Op([](Listbox& l) { l.PressHeader(0); }) << 0 << -1;
}

void TestListbox::changeIsRaised()
{
    QFETCH(int, selected);
    QFETCH(ListOp, step);
    QFETCH(int, changes);
    QFETCH(int, indexSeen);
    auto lb = fileTable();
    addRows(*lb, {"d", "c", "b", "a"});
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
}

// ---- mouse --------------------------------------------------------------------------------

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
    addRows(*lb, {"a", "b", "c"});
    lb->setColumnWidths(",15%,15%,15%,15%,10%,5%");  // column 6 visible for the last row
    lb->setColumnType(6, 0);
    lb->show();
    QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
    QSignalSpy clicks(lb.get(), &Listbox::CellClick);

    QTest::mouseClick(lb->viewport(), Qt::LeftButton, {}, inCell(*lb, 1, column, x));

    QCOMPARE(clicks.count(), 1);
    QCOMPARE(clicks.at(0).at(0).toInt(), 1);
    QCOMPARE(clicks.at(0).at(1).toInt(), column);
    QCOMPARE(clicks.at(0).at(2).toInt(), x);
    QCOMPARE(lb->ListIndex(), 1);
    QCOMPARE(lb->CellCheck(1, column), toggles);
    QVERIFY(!lb->CellCheck(0, column));
}

void TestListbox::cellClickSeesTheOldState()
{
    auto lb = fileTable();
    addRows(*lb, {"a", "b"});
    lb->setCellCheck(1, 0, true);
    lb->show();
    QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
    bool checkSeen = false;
    int indexSeen = -2;
    connect(lb.get(), &Listbox::CellClick, this, [&](int row, int col, int, int) {
        checkSeen = lb->CellCheck(row, col);
        indexSeen = lb->ListIndex();
    });
    QTest::mouseClick(lb->viewport(), Qt::LeftButton, {}, inCell(*lb, 1, 0, 10));
    QVERIFY(checkSeen);
    QCOMPARE(indexSeen, -1);
    QVERIFY(!lb->CellCheck(1, 0));
    QCOMPARE(lb->ListIndex(), 1);
}

void TestListbox::doubleClickTogglesNoMore()
{
    auto lb = fileTable();
    addRows(*lb, {"a"});
    lb->show();
    QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
    QSignalSpy clicks(lb.get(), &Listbox::CellClick);
    const QPoint box = inCell(*lb, 0, 2, 10);
    QTest::mouseClick(lb->viewport(), Qt::LeftButton, {}, box);
    QTest::mouseDClick(lb->viewport(), Qt::LeftButton, {}, box);
    QCOMPARE(clicks.count(), 1);
    QVERIFY(lb->CellCheck(0, 2));
}

void TestListbox::mouseMoveCountsFromTheTopLeft_data()
{
    QTest::addColumn<bool>("overHeader");
    QTest::addColumn<QPoint>("at");  // in the header's or the rows' own coordinates
    QTest::newRow("on the heading") << true << QPoint(40, 5);
    QTest::newRow("on row 0") << false << QPoint(40, 5);
    QTest::newRow("on row 3") << false << QPoint(300, 70);
}

void TestListbox::mouseMoveCountsFromTheTopLeft()
{
    QFETCH(bool, overHeader);
    QFETCH(QPoint, at);
    QWidget window;
    window.resize(900, 300);
    auto lb = fileTable();
    lb->setParent(&window);
    lb->move(20, 20);
    addRows(*lb, {"a", "b", "c", "d", "e"});
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QSignalSpy moves(lb.get(), &Listbox::MouseMove);
    QSignalSpy exits(lb.get(), &Listbox::MouseExit);

    // Through the window, as the desktop delivers moves: it also makes the enter and leave.
    QWidget* surface = overHeader ? lb->horizontalHeader()->viewport() : lb->viewport();
    QTest::mouseMove(window.windowHandle(), surface->mapTo(&window, at));
    QTRY_VERIFY(!moves.isEmpty());
    const int frame = lb->frameWidth();
    const int headerHeight = lb->horizontalHeader()->height();
    const QPoint expected = at + QPoint(frame, frame + (overHeader ? 0 : headerHeight));
    QCOMPARE(QPoint(moves.last().at(0).toInt(), moves.last().at(1).toInt()), expected);
    QCOMPARE(exits.count(), 0);

    QTest::mouseMove(window.windowHandle(), QPoint(5, 5));
    QTRY_COMPARE(exits.count(), 1);
}

void TestListbox::scrollPosition()
{
    auto lb = fileTable();
    for (int i = 0; i < 100; ++i)
        lb->AddRow(QString::number(i));
    lb->show();
    QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
    QCOMPARE(lb->ScrollPosition(), 0);
    lb->setScrollPosition(3);
    QCOMPARE(lb->ScrollPosition(), 3);
    QCOMPARE(lb->rowAt(1), 3);
}

QTEST_MAIN(TestListbox)
#include "tst_listbox.moc"
