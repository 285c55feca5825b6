// The selection of rows, and removing rows that may hold it.

#include "platform/listbox/Listbox.h"

#include "platform/listbox/ListboxModel.h"

#include <QScrollBar>

#include <algorithm>

namespace {

// The selected rows as sorted, disjoint [top, bottom] spans.
std::vector<std::pair<int, int>> selectedSpans(const QItemSelectionModel* selection)
{
    std::vector<std::pair<int, int>> spans;
    if (!selection)
        return spans;
    for (const QItemSelectionRange& r : selection->selection())
        if (r.isValid())
            spans.emplace_back(r.top(), r.bottom());
    std::sort(spans.begin(), spans.end());
    std::vector<std::pair<int, int>> merged;
    for (const auto& s : spans) {
        if (!merged.empty() && s.first <= merged.back().second + 1)
            merged.back().second = std::max(merged.back().second, s.second);
        else
            merged.push_back(s);
    }
    return merged;
}

}  // namespace

void Listbox::RemoveRows(std::vector<int> rows)
{
    for (int row : rows)
        checkRow(row);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    if (rows.empty())
        return;
    // A layout change takes the selection of removed rows without saying so.
    for (const auto& [top, bottom] : selectedSpans(selectionModel())) {
        const auto first = std::lower_bound(rows.begin(), rows.end(), top);
        if (first != rows.end() && *first <= bottom)
            changePending_ = true;
    }
    changeRows([&] { model_->removeRowsAt(rows); });
}

int Listbox::ListIndex() const
{
    const auto spans = selectedSpans(selectionModel());
    return spans.empty() ? -1 : spans.front().first;
}

void Listbox::setListIndex(int row)
{
    if (row == -1) {
        selectionModel()->clear();
        return;
    }
    checkRow(row);
    model_->flushChanges();
    selectionModel()->setCurrentIndex(model_->index(row, 0),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

bool Listbox::Selected(int row) const
{
    checkRow(row);
    for (const auto& [top, bottom] : selectedSpans(selectionModel()))
        if (row >= top && row <= bottom)
            return true;
    return false;
}

void Listbox::setSelected(int row, bool selected)
{
    checkRow(row);
    QItemSelectionModel::SelectionFlags how = QItemSelectionModel::Rows;
    if (!selected)
        how |= QItemSelectionModel::Deselect;
    else if (rowSelectionType_ == 0)
        how |= QItemSelectionModel::ClearAndSelect;
    else
        how |= QItemSelectionModel::Select;
    model_->flushChanges();
    selectionModel()->select(model_->index(row, 0), how);
}

int Listbox::SelCount() const
{
    int n = 0;
    for (const auto& [top, bottom] : selectedSpans(selectionModel()))
        n += bottom - top + 1;
    return n;
}

int Listbox::ScrollPosition() const
{
    const int row = rowAt(0);
    return row < 0 ? 0 : row;
}

void Listbox::setScrollPosition(int row)
{
    if (ListCount() == 0)
        return;
    row = std::clamp(row, 0, ListCount() - 1);
    model_->flushChanges();
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(row);
}

void Listbox::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QTableView::selectionChanged(selected, deselected);
    if (changingRows_)
        changePending_ = true;
    else
        emit Change();
}

