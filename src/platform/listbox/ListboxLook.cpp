// How the table looks: its cells with their check boxes, its heading, the widths of its
// columns and the height of its rows.

#include "platform/listbox/Listbox.h"

#include <QApplication>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionHeader>
#include <QStyledItemDelegate>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kTextIndent = Listbox::kBoxRight + 3;

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

        const int side = std::min(Listbox::kBoxRight - Listbox::kBoxLeft + 1, opt.rect.height());
        QStyleOptionViewItem box = opt;
        box.rect = QRect(opt.rect.left() + Listbox::kBoxLeft, opt.rect.top() + (opt.rect.height() - side) / 2, side, side);
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

void Listbox::installLook()
{
    setHorizontalHeader(new Heading(this));
    setItemDelegate(new CellDelegate(this));
}

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

