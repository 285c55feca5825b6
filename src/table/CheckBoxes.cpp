// The ticks: which dates of which files the execute run changes. A row box, a column box
// and the corner box each push their state down when clicked; nothing pushes back up.
//
// A click handler runs before the table toggles the box, so it only notes where the click
// was and arms a timer; the timer's action finds the box in its new state and does the work.

#include "shell/Window1.h"

#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/OneShotTimer.h"
#include "platform/text/Text.h"

namespace {

bool isMarker(const QString& cellText)
{
    return sameText(cellText, kNoExif);
}

// Where the box of column 0 is drawn in its cell.
bool onRowBox(int x)
{
    return x > 2 && x < 20;
}

}  // namespace

bool Window1::ListBox1_CellClick(int row, int column, int x, int)
{
    if (column > 2) {
        clickedCell[0] = row;
        clickedCell[1] = column;
        Timer3->setMode(1);
    } else if (column == 0 && onRowBox(x)) {
        clickedCheckRow = row;
        Timer2->setMode(1);
    }
    return false;
}

// Anywhere in a cell, also beside the box: the box's state is applied again.
bool Window1::ListHeader_CellClick(int, int column, int, int)
{
    clickedCheckColumn = column;
    Timer1->setMode(1);
    return false;
}

// The header row serves as a header, not as a list: it never stays selected.
void Window1::ListHeader_Change()
{
    if (ListHeader->SelCount() > 0)
        ListHeader->setSelected(0, false);
}

void Window1::Timer1_Action()
{
    if (clickedCheckColumn != 0) {
        setColumnCheck(clickedCheckColumn);
        return;
    }
    // The corner box: every column box, every column, then every row box.
    const bool v = ListHeader->CellCheck(0, 0);
    for (int column = 1; column <= 5; ++column) {
        ListHeader->setCellCheck(0, column, v);
        setColumnCheck(column);
    }
    const int n = ListBox1->ListCount();
    for (int row = 0; row < n; ++row)
        ListBox1->setCellCheck(row, 0, v);
}

void Window1::Timer2_Action()
{
    setRowCheck(clickedCheckRow);
}

// A marker cell cannot stay ticked.
void Window1::Timer3_Action()
{
    if (isMarker(ListBox1->Cell(clickedCell[0], clickedCell[1])))
        ListBox1->setCellCheck(clickedCell[0], clickedCell[1], false);
}

// The row box, read once, goes to the five date boxes from left to right. From the first
// marker on, the rest of the row is unticked too, dates included. This run to the right is
// intended; keep it.
void Window1::setRowCheck(int row)
{
    bool v = ListBox1->CellCheck(row, 0);
    for (int column = 1; column <= 5; ++column) {
        if (isMarker(ListBox1->Cell(row, column)))
            v = false;
        ListBox1->setCellCheck(row, column, v);
    }
}

// The column box, read once, goes down the column in the table's present order. From the
// first marker on, every row below is unticked in that column, dates included, so the
// result depends on the sort order. This run downward is intended; keep it.
void Window1::setColumnCheck(int column)
{
    const int n = ListBox1->ListCount();
    bool v = ListHeader->CellCheck(0, column);
    for (int row = 0; row < n; ++row) {
        if (isMarker(ListBox1->Cell(row, column)))
            v = false;
        ListBox1->setCellCheck(row, column, v);
    }
}

void Window1::bindCheckBoxHandlers()
{
    connect(ListBox1, &Listbox::CellClick, this, [this](int row, int column, int x, int y) {
        guard("take the click in the list", [&] { ListBox1_CellClick(row, column, x, y); });
    });
    connect(ListHeader, &Listbox::CellClick, this, [this](int row, int column, int x, int y) {
        guard("take the click on the select-all boxes", [&] { ListHeader_CellClick(row, column, x, y); });
    });
    connect(ListHeader, &Listbox::Change, this,
            [this] { guard("take the click on the select-all row", [&] { ListHeader_Change(); }); });
    connect(Timer1, &OneShotTimer::Action, this,
            [this] { guard("apply the select-all tick", [&] { Timer1_Action(); }); });
    connect(Timer2, &OneShotTimer::Action, this,
            [this] { guard("apply the tick to the row", [&] { Timer2_Action(); }); });
    connect(Timer3, &OneShotTimer::Action, this, [this] { guard("apply the tick", [&] { Timer3_Action(); }); });
}
