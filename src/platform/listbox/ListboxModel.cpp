#include "platform/listbox/ListboxModel.h"

#include "platform/listbox/ListboxCells.h"
#include "platform/text/Text.h"

#include <algorithm>
#include <numeric>

using listboxCells::CellTag;
using listboxCells::CellText;

struct ListboxModel::Cell {
    CellText text;
    CellTag tag;
};

ListboxModel::ListboxModel(QObject* parent) : QAbstractTableModel(parent) {}

ListboxModel::~ListboxModel() = default;

int ListboxModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : told_;
}

int ListboxModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : columns_;
}

QVariant ListboxModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row(), index.column());
    case Qt::CheckStateRole:
        if (isCheckColumn(index.column()))
            return check(index.row(), index.column()) ? Qt::Checked : Qt::Unchecked;
        return {};
    default:
        return {};
    }
}

QVariant ListboxModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= headings_.size())
        return {};
    return headings_.at(section);
}

Qt::ItemFlags ListboxModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    // Not user-checkable: the box changes only through the Listbox's own press handling.
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

ListboxModel::Row ListboxModel::makeRow(const QString& column0) const
{
    Row row;
    row.cells = std::make_unique<Cell[]>(size_t(columns_));
    row.cells[0].text.assign(column0);
    return row;
}

void ListboxModel::setColumns(int columns)
{
    columns = std::clamp(columns, 1, kMaxColumns);
    if (columns == columns_)
        return;
    flushChanges();
    beginResetModel();
    const int kept = std::min(columns, columns_);
    for (Row& row : rows_) {
        auto cells = std::make_unique<Cell[]>(size_t(columns));
        std::move(row.cells.get(), row.cells.get() + kept, cells.get());
        row.cells = std::move(cells);
        if (columns < kMaxColumns)
            row.checks &= (quint64(1) << columns) - 1;
    }
    columns_ = columns;
    if (columns < kMaxColumns)
        checkColumns_ &= (quint64(1) << columns) - 1;
    endResetModel();
}

void ListboxModel::setHeadings(const QStringList& headings)
{
    headings_ = headings;
    emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
}

void ListboxModel::setCheckColumn(int column, bool isCheck)
{
    const quint64 bit = quint64(1) << column;
    const quint64 next = isCheck ? (checkColumns_ | bit) : (checkColumns_ & ~bit);
    if (next == checkColumns_)
        return;
    checkColumns_ = next;
    if (told_ > 0)
        emit dataChanged(index(0, column), index(told_ - 1, column));
}

void ListboxModel::appendRow(const QString& column0)
{
    if (held_ > 0) {
        rows_.push_back(makeRow(column0));
        return;
    }
    flushChanges();
    const int at = int(rows_.size());
    beginInsertRows(QModelIndex(), at, at);
    rows_.push_back(makeRow(column0));
    told_ = int(rows_.size());
    endInsertRows();
}

void ListboxModel::holdRows(bool hold)
{
    held_ += hold ? 1 : -1;
    if (held_ == 0)
        flushChanges();
}

void ListboxModel::removeRowAt(int row)
{
    flushChanges();
    beginRemoveRows(QModelIndex(), row, row);
    rows_.erase(rows_.begin() + row);
    told_ = int(rows_.size());
    endRemoveRows();
}

void ListboxModel::removeRowsAt(const std::vector<int>& rows)
{
    if (rows.empty())
        return;
    flushChanges();
    emit layoutAboutToBeChanged({}, QAbstractItemModel::NoLayoutChangeHint);
    const size_t n = rows_.size();
    std::vector<int> newRowOf(n);  // -1: removed
    size_t kept = 0, next = 0;
    for (size_t r = 0; r < n; ++r) {
        if (next < rows.size() && size_t(rows[next]) == r) {
            newRowOf[r] = -1;
            ++next;
            continue;
        }
        newRowOf[r] = int(kept);
        if (kept != r)
            rows_[kept] = std::move(rows_[r]);
        ++kept;
    }
    rows_.erase(rows_.begin() + std::ptrdiff_t(kept), rows_.end());
    told_ = int(rows_.size());
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& i : from) {
        const int row = newRowOf[size_t(i.row())];
        to.append(row < 0 ? QModelIndex() : index(row, i.column()));
    }
    changePersistentIndexList(from, to);
    emit layoutChanged({}, QAbstractItemModel::NoLayoutChangeHint);
}

void ListboxModel::clear()
{
    if (rows_.empty())
        return;
    pending_ = {};  // the reset tells the views all
    beginResetModel();
    rows_.clear();
    told_ = 0;
    endResetModel();
}

QString ListboxModel::text(int row, int column) const
{
    return rows_[size_t(row)].cells[size_t(column)].text.toString();
}

bool ListboxModel::textIs(int row, int column, const QString& text) const
{
    return rows_[size_t(row)].cells[size_t(column)].text.sameAs(text);
}

void ListboxModel::setText(int row, int column, const QString& text)
{
    CellText& cell = rows_[size_t(row)].cells[size_t(column)].text;
    if (cell.equals(text))
        return;
    cell.assign(text);
    noteChange(row, column);
}

void ListboxModel::setCheck(int row, int column, bool checked)
{
    quint64& checks = rows_[size_t(row)].checks;
    const quint64 bit = quint64(1) << column;
    const quint64 next = checked ? (checks | bit) : (checks & ~bit);
    if (next == checks)
        return;
    checks = next;
    noteChange(row, column);
}

void ListboxModel::noteChange(int row, int column)
{
    if (pending_.isEmpty()) {
        pending_ = {row, row, column, column};
    } else {
        pending_.top = std::min(pending_.top, row);
        pending_.bottom = std::max(pending_.bottom, row);
        pending_.left = std::min(pending_.left, column);
        pending_.right = std::max(pending_.right, column);
    }
    if (!flushQueued_) {
        flushQueued_ = true;
        QMetaObject::invokeMethod(this, &ListboxModel::flushChanges, Qt::QueuedConnection);
    }
}

void ListboxModel::flushChanges()
{
    flushQueued_ = false;
    if (told_ < int(rows_.size())) {
        // rowCount() gives the old count until the views have been told.
        beginInsertRows(QModelIndex(), told_, int(rows_.size()) - 1);
        told_ = int(rows_.size());
        endInsertRows();
    }
    if (pending_.isEmpty())
        return;
    const Pending p = pending_;
    pending_ = {};
    emit dataChanged(index(p.top, p.left), index(p.bottom, p.right), {Qt::DisplayRole, Qt::CheckStateRole});
}

QVariant ListboxModel::tag(int row, int column) const
{
    return rows_[size_t(row)].cells[size_t(column)].tag.toVariant();
}

void ListboxModel::setTag(int row, int column, const QVariant& tag)
{
    // Tags are not shown, so writing one tells no view anything.
    rows_[size_t(row)].cells[size_t(column)].tag.assign(tag);
}

void ListboxModel::sortByColumn(int column, bool descending)
{
    const size_t n = rows_.size();
    if (n < 2)
        return;
    flushChanges();
    std::vector<int> order(n);  // order[newRow] = oldRow
    std::iota(order.begin(), order.end(), 0);
    const size_t c = size_t(column);
    if (descending)
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return rows_[size_t(b)].cells[c].text.compare(rows_[size_t(a)].cells[c].text) < 0; });
    else
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return rows_[size_t(a)].cells[c].text.compare(rows_[size_t(b)].cells[c].text) < 0; });

    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    std::vector<int> newRowOf(n);
    for (size_t i = 0; i < n; ++i)
        newRowOf[size_t(order[i])] = int(i);
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& i : from)
        to.append(index(newRowOf[size_t(i.row())], i.column()));
    changePersistentIndexList(from, to);

    std::vector<Row> sorted;
    sorted.reserve(n);
    for (int old : order)
        sorted.push_back(std::move(rows_[size_t(old)]));
    rows_ = std::move(sorted);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

#include "moc_ListboxModel.cpp"
