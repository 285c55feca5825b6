#include "platform/listbox/Listbox.h"

#include "platform/base/Exceptions.h"
#include "platform/listbox/ListboxModel.h"
#include "platform/base/TextId.h"

#include <QHeaderView>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

Listbox::Listbox(QWidget* parent) : QTableView(parent), model_(new ListboxModel(this))
{
    setModel(model_);
    installLook();
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setDragEnabled(false);
    setDragDropMode(QAbstractItemView::NoDragDrop);
    setAcceptDrops(false);
    viewport()->setAcceptDrops(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setWordWrap(false);
    setTextElideMode(Qt::ElideRight);
    setShowGrid(true);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);  // Tab leaves the table for the next control
    setAttribute(Qt::WA_MacShowFocusRect, false);

    QHeaderView* rows = verticalHeader();
    rows->hide();
    rows->setMinimumSectionSize(1);
    rows->setSectionResizeMode(QHeaderView::Fixed);

    QHeaderView* heads = horizontalHeader();
    heads->setMinimumSectionSize(0);
    heads->setSectionResizeMode(QHeaderView::Fixed);
    heads->setStretchLastSection(false);
    heads->setSectionsMovable(false);
    heads->setSectionsClickable(true);
    heads->setHighlightSections(false);
    heads->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connectHeadingClicks();

    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    heads->setMouseTracking(true);
    heads->viewport()->setMouseTracking(true);
    heads->viewport()->installEventFilter(this);

    columnTypes_.assign(1, 0);
    sortDirections_.assign(1, 1);
    applyRowHeight();
    applyColumnWidths();
}

Listbox::~Listbox() = default;

ListboxModel* Listbox::model() const
{
    return model_;
}

// ---- bounds -------------------------------------------------------------------------------

namespace {

// Out of line, so that the checks before every cell access stay small. Rows and columns
// are counted from 1 for the reader.
[[noreturn]] Q_DECL_COLD_FUNCTION Q_NEVER_INLINE void throwNoRow(int row)
{
    if (row < 0)
        throw OutOfBoundsException(textById("Report.noRowChosen", "No row of the list was chosen."));
    throw OutOfBoundsException(textById("Report.rowGone", "Row %1 is no longer in the list.").arg(qint64(row) + 1));
}

[[noreturn]] Q_DECL_COLD_FUNCTION Q_NEVER_INLINE void throwNoColumn(int column)
{
    throw OutOfBoundsException(textById("Report.noColumn", "The list has no column %1.").arg(qint64(column) + 1));
}

}  // namespace

void Listbox::checkRow(int row) const
{
    if (row < 0 || row >= model_->rows())
        throwNoRow(row);
}

void Listbox::checkColumn(int column) const
{
    if (column < 0 || column >= model_->columns())
        throwNoColumn(column);
}

void Listbox::checkCell(int row, int column) const
{
    checkRow(row);
    checkColumn(column);
}

// ---- set-up -------------------------------------------------------------------------------

void Listbox::setColumnCount(int columns)
{
    if (columns < 1 || columns > ListboxModel::kMaxColumns)
        throw OutOfBoundsException(textById("Report.columnCount", "A list has 1 to 64 columns, not %1.").arg(columns));
    model_->setColumns(columns);
    columnTypes_.resize(size_t(columns), 0);
    sortDirections_.resize(size_t(columns), 1);
    if (sortColumn_ >= columns)
        sortColumn_ = -1;
    showSortIndicator();
    applyColumnWidths();
}

int Listbox::ColumnCount() const
{
    return model_->columnCount();
}

void Listbox::setColumnWidths(const QString& widths)
{
    widthEntries_ = widths.split(u',');
    applyColumnWidths();
}

void Listbox::setHasHeader(bool hasHeader)
{
    hasHeader_ = hasHeader;
    horizontalHeader()->setVisible(hasHeader);
}

bool Listbox::HasHeader() const
{
    return hasHeader_;
}

void Listbox::setInitialValue(const QString& value)
{
    static const QRegularExpression lineEnd(QStringLiteral("\r\n|\r|\n"));
    QStringList lines = value.split(lineEnd);
    if (lines.size() > 1 && lines.last().isEmpty())
        lines.removeLast();
    if (hasHeader_) {
        model_->setHeadings(lines.takeFirst().split(u'\t'));
    }
    const int columns = ColumnCount();
    for (const QString& line : std::as_const(lines)) {
        const QStringList cells = line.split(u'\t');
        model_->appendRow(cells.at(0));
        const int row = ListCount() - 1;
        for (int c = 1; c < std::min(columns, int(cells.size())); ++c)
            model_->setText(row, c, cells.at(c));
    }
}

void Listbox::setRowSelectionType(int type)
{
    rowSelectionType_ = type;
    setSelectionMode(type == 0 ? QAbstractItemView::SingleSelection : QAbstractItemView::ExtendedSelection);
}

void Listbox::setColumnType(int column, int type)
{
    checkColumn(column);
    columnTypes_[size_t(column)] = type;
    model_->setCheckColumn(column, type == 2);
}

int Listbox::ColumnType(int column) const
{
    checkColumn(column);
    return columnTypes_[size_t(column)];
}

// ---- rows and cells -----------------------------------------------------------------------

void Listbox::AddRow(const QString& column0)
{
    model_->appendRow(column0);
}

Listbox::RowBatch::RowBatch(Listbox& listbox) : listbox_(listbox) { listbox_.model_->holdRows(true); }
Listbox::RowBatch::~RowBatch() { listbox_.model_->holdRows(false); }

int Listbox::ListCount() const
{
    return model_->rows();
}

QString Listbox::Cell(int row, int column) const
{
    checkCell(row, column);
    return model_->text(row, column);
}

bool Listbox::CellIsText(int row, int column, const QString& text) const
{
    checkCell(row, column);
    return model_->textIs(row, column, text);
}

void Listbox::setCell(int row, int column, const QString& text)
{
    checkCell(row, column);
    model_->setText(row, column, text);
}

bool Listbox::CellCheck(int row, int column) const
{
    checkCell(row, column);
    return model_->check(row, column);
}

void Listbox::setCellCheck(int row, int column, bool checked)
{
    checkCell(row, column);
    model_->setCheck(row, column, checked);
}

QVariant Listbox::CellTag(int row, int column) const
{
    checkCell(row, column);
    return model_->tag(row, column);
}

void Listbox::setCellTag(int row, int column, const QVariant& tag)
{
    checkCell(row, column);
    model_->setTag(row, column, tag);
}

qint64 Listbox::CellTagAt(int row, int column) const
{
    const QVariant tag = CellTag(row, column);
    const int type = tag.typeId();
    if (type == QMetaType::Double || type == QMetaType::Float) {
        // Truncate toward zero and saturate, as every Double to Integer does here.
        const double d = tag.toDouble();
        if (std::isnan(d))
            return 0;
        if (d >= 9223372036854775807.0)
            return std::numeric_limits<qint64>::max();
        if (d <= -9223372036854775808.0)
            return std::numeric_limits<qint64>::min();
        return qint64(d);
    }
    bool ok = false;
    const qint64 n = tag.toLongLong(&ok);
    return ok ? n : 0;
}

// Rows go away: the selection that goes with them is reported once they are gone, so a
// Change handler never sees a table halfway through.
void Listbox::changeRows(const std::function<void()>& change)
{
    const bool nested = changingRows_;
    changingRows_ = true;
    struct Restore {
        bool& flag;
        bool value;
        ~Restore() { flag = value; }
    } restore{changingRows_, nested};
    change();
    changingRows_ = nested;
    if (!nested && changePending_) {
        changePending_ = false;
        emit Change();
    }
}

void Listbox::DeleteAllRows()
{
    // A reset takes the selection without saying so.
    if (SelCount() > 0)
        changePending_ = true;
    changeRows([&] { model_->clear(); });
}

void Listbox::RemoveRow(int row)
{
    checkRow(row);
    changeRows([&] { model_->removeRowAt(row); });
}

void Listbox::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end)
{
    // Qt would select a neighbour of a removed current row; here the selection goes.
    const QModelIndex current = currentIndex();
    if (current.isValid() && current.row() >= start && current.row() <= end)
        selectionModel()->clearCurrentIndex();
    QTableView::rowsAboutToBeRemoved(parent, start, end);
}

#include "moc_Listbox.cpp"
