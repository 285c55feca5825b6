#include "platform/Listbox.h"

#include "platform/Exceptions.h"
#include "platform/ListboxModel.h"
#include "platform/TextId.h"

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStyleOptionHeader>
#include <QStyledItemDelegate>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Where a cell's check box sits, from the cell's left edge; a press there toggles it.
constexpr int kBoxLeft = 3;
constexpr int kBoxRight = 19;
constexpr int kTextIndent = kBoxRight + 3;

// Draws a cell: the box of a check-box column at x 3 to 19, its text after it, and never
// a focus frame. It takes no part in editing, so Qt's own check handling stays out.
class CellDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QStyleOptionViewItem opt = option;
        initStyleOption(&opt, index);
        opt.state &= ~QStyle::State_HasFocus;
        const QWidget* widget = opt.widget;
        QStyle* style = widget ? widget->style() : QApplication::style();
        if (!(opt.features & QStyleOptionViewItem::HasCheckIndicator)) {
            style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);
            return;
        }
        opt.features &= ~QStyleOptionViewItem::HasCheckIndicator;

        QStyleOptionViewItem panel = opt;
        panel.text.clear();
        style->drawControl(QStyle::CE_ItemViewItem, &panel, painter, widget);

        const int side = std::min(kBoxRight - kBoxLeft + 1, opt.rect.height());
        QStyleOptionViewItem box = opt;
        box.rect = QRect(opt.rect.left() + kBoxLeft, opt.rect.top() + (opt.rect.height() - side) / 2, side, side);
        box.state &= ~(QStyle::State_On | QStyle::State_Off | QStyle::State_NoChange);
        box.state |= opt.checkState == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
        style->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, widget);

        QStyleOptionViewItem text = opt;
        text.rect.setLeft(opt.rect.left() + kTextIndent);
        text.backgroundBrush = Qt::NoBrush;
        text.state &= ~QStyle::State_Selected;  // the panel is drawn already
        if (opt.state & QStyle::State_Selected)
            text.palette.setBrush(QPalette::Text, opt.palette.brush(QPalette::HighlightedText));
        style->drawControl(QStyle::CE_ItemViewItem, &text, painter, widget);
    }

    bool editorEvent(QEvent*, QAbstractItemModel*, const QStyleOptionViewItem&, const QModelIndex&) override
    {
        return false;
    }
};

// The heading of rows kRowHeight high. The table's face is taller than the section:
// centred between the style's margins it would lose its descenders under the section's
// bottom line, so its label takes the section's whole height and stands on that line.
class Heading : public QHeaderView {
public:
    explicit Heading(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override
    {
        if (!rect.isValid())
            return;
        QStyleOptionHeaderV2 opt;
        initStyleOption(&opt);
        initStyleOptionForIndex(&opt, logicalIndex);
        opt.rect = rect;
        QStyle* s = style();
        s->drawControl(QStyle::CE_HeaderSection, &opt, painter, this);
        QStyleOptionHeaderV2 label = opt;
        label.rect = s->subElementRect(QStyle::SE_HeaderLabel, &opt, this);
        label.rect.setTop(rect.top());
        label.rect.setBottom(rect.bottom() - 1);
        label.textAlignment = (opt.textAlignment & Qt::AlignHorizontal_Mask) | Qt::AlignBottom;
        s->drawControl(QStyle::CE_HeaderLabel, &label, painter, this);
        if (opt.sortIndicator != QStyleOptionHeader::None) {
            QStyleOptionHeaderV2 arrow = opt;
            arrow.rect = s->subElementRect(QStyle::SE_HeaderArrow, &opt, this);
            s->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &arrow, painter, this);
        }
    }
};

// Column widths are laid out over the width that stays when a vertical scroll bar is
// shown, whether it is or not: two tables of equal width then have their columns exactly
// above each other, whatever their row counts.
std::vector<int> columnWidths(const QStringList& entries, int columns, int total, std::vector<bool>& hidden)
{
    std::vector<int> widths(size_t(columns), 0);
    hidden.assign(size_t(columns), false);
    std::vector<int> rest;
    int used = 0;
    for (int c = 0; c < columns; ++c) {
        const QString e = c < entries.size() ? entries.at(c).trimmed() : QString();
        bool ok = false;
        int w = 0;
        if (e.endsWith(u'%')) {
            const double share = e.chopped(1).toDouble(&ok);
            if (ok && std::isfinite(share))
                w = int(std::floor(std::clamp(share, 0.0, 100.0) * total / 100.0));
        } else if (!e.isEmpty() && e != u"*") {
            w = std::clamp(e.toInt(&ok), 0, 1 << 20);
            hidden[size_t(c)] = ok && w == 0;
        }
        if (!ok) {
            rest.push_back(c);
            continue;
        }
        widths[size_t(c)] = w;
        used += w;
    }
    if (!rest.empty()) {
        const int left = std::max(0, total - used);
        const int each = left / int(rest.size());
        for (size_t i = 0; i < rest.size(); ++i)
            widths[size_t(rest[i])] = each + (i == 0 ? left - each * int(rest.size()) : 0);
    }
    return widths;
}

}  // namespace

Listbox::Listbox(QWidget* parent) : QTableView(parent), model_(new ListboxModel(this))
{
    setHorizontalHeader(new Heading(this));
    setModel(model_);
    setItemDelegate(new CellDelegate(this));
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
    connect(heads, &QHeaderView::sectionClicked, this, [this](int column) {
        if (column >= 0 && column < ColumnCount())
            PressHeader(column);
    });

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
template <class F>
void Listbox::changeRows(F&& change)
{
    const bool nested = changingRows_;
    changingRows_ = true;
    struct Restore {
        bool& flag;
        bool value;
        ~Restore() { flag = value; }
    } restore{changingRows_, nested};
    std::forward<F>(change)();
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

// ---- selection ----------------------------------------------------------------------------

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

// ---- sorting ------------------------------------------------------------------------------

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

// ---- look ---------------------------------------------------------------------------------

void Listbox::applyColumnWidths()
{
    const int extent = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, verticalScrollBar());
    const int total = std::max(0, width() - 2 * frameWidth() - extent);
    std::vector<bool> hidden;
    const std::vector<int> widths = columnWidths(widthEntries_, ColumnCount(), total, hidden);
    for (int c = 0; c < ColumnCount(); ++c) {
        setColumnHidden(c, hidden[size_t(c)]);
        if (!hidden[size_t(c)])
            setColumnWidth(c, widths[size_t(c)]);
    }
}

void Listbox::applyRowHeight()
{
    // Rows come every kRowHeight pixels from the table's top edge: the header takes what
    // the frame above it leaves of the first kRowHeight. A check box shrinks to its row.
    verticalHeader()->setDefaultSectionSize(kRowHeight);
    horizontalHeader()->setFixedHeight(std::max(1, kRowHeight - frameWidth()));
}

void Listbox::resizeEvent(QResizeEvent* e)
{
    QTableView::resizeEvent(e);
    applyColumnWidths();
}

void Listbox::changeEvent(QEvent* e)
{
    QTableView::changeEvent(e);
    if (e->type() == QEvent::FontChange || e->type() == QEvent::StyleChange) {
        applyRowHeight();
        applyColumnWidths();
    }
}

// ---- mouse --------------------------------------------------------------------------------

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

#include "moc_Listbox.cpp"
