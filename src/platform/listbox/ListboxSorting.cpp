// Sorting: a click on a heading sorts by that column and turns its direction; Sort sorts
// again by the texts of the sort column, stably.

#include "platform/listbox/Listbox.h"

#include "platform/listbox/ListboxModel.h"

#include <QHeaderView>

void Listbox::connectHeadingClicks()
{
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
        if (column >= 0 && column < ColumnCount())
            PressHeader(column);
    });
}

void Listbox::setColumnSortDirection(int column, int direction)
{
    checkColumn(column);
    sortDirections_[size_t(column)] = direction < 0 ? -1 : 1;
    if (column == sortColumn_)
        showSortIndicator();
}

int Listbox::ColumnSortDirection(int column) const
{
    checkColumn(column);
    return sortDirections_[size_t(column)];
}

int Listbox::SortedColumn() const
{
    return sortColumn_;
}

void Listbox::PressHeader(int column)
{
    checkColumn(column);
    if (column == sortColumn_)
        sortDirections_[size_t(column)] = -sortDirections_[size_t(column)];
    else
        sortColumn_ = column;
    showSortIndicator();
    Sort();
}

void Listbox::Sort()
{
    if (sortColumn_ < 0 || sortColumn_ >= ColumnCount())
        return;
    changeRows([&] { model_->sortByColumn(sortColumn_, sortDirections_[size_t(sortColumn_)] < 0); });
}

void Listbox::showSortIndicator()
{
    QHeaderView* heads = horizontalHeader();
    if (sortColumn_ < 0) {
        heads->setSortIndicatorShown(false);
        return;
    }
    heads->setSortIndicatorShown(true);
    heads->setSortIndicator(sortColumn_,
                            sortDirections_[size_t(sortColumn_)] < 0 ? Qt::DescendingOrder : Qt::AscendingOrder);
}

