// The mouse over the table: CellClick before the default handling of a press, the box
// toggled by a press on it, and the pointer's moves reported from the table's own corner.

#include "platform/listbox/Listbox.h"

#include "platform/listbox/ListboxModel.h"

#include <QHeaderView>
#include <QMouseEvent>

void Listbox::mousePressEvent(QMouseEvent* e)
{
    const QPoint pos = e->position().toPoint();
    QModelIndex cell = indexAt(pos);
    int row = -1;
    int column = -1;
    int x = -1;
    if (e->button() == Qt::LeftButton && cell.isValid()) {
        const QRect r = visualRect(cell);
        row = cell.row();
        column = cell.column();
        x = pos.x() - r.left();
        emit CellClick(row, column, x, pos.y() - r.top());
        // The handler may have changed the table; the default handling acts on what is
        // under the pointer now.
        cell = indexAt(pos);
    }
    QTableView::mousePressEvent(e);
    if (cell.isValid() && cell.row() == row && cell.column() == column && model_->isCheckColumn(column)
        && x >= kBoxLeft && x <= kBoxRight)
        model_->setCheck(row, column, !model_->check(row, column));
}

void Listbox::mouseDoubleClickEvent(QMouseEvent* e)
{
    // The second press of a double click has come as a press already; the double click
    // itself neither toggles nor edits.
    e->accept();
}

void Listbox::mouseMoveEvent(QMouseEvent* e)
{
    const QPoint at = viewport()->mapTo(this, e->position().toPoint());
    emit MouseMove(at.x(), at.y());
    QTableView::mouseMoveEvent(e);
}

bool Listbox::eventFilter(QObject* watched, QEvent* e)
{
    if (e->type() == QEvent::MouseMove && watched == horizontalHeader()->viewport()) {
        const auto* me = static_cast<QMouseEvent*>(e);
        const QPoint at = horizontalHeader()->viewport()->mapTo(this, me->position().toPoint());
        emit MouseMove(at.x(), at.y());
    }
    return QTableView::eventFilter(watched, e);
}

void Listbox::leaveEvent(QEvent* e)
{
    QTableView::leaveEvent(e);
    emit MouseExit();
}

