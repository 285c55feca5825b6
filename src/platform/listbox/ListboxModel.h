#pragma once
#include <QAbstractTableModel>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <vector>

// The rows behind a Listbox. A row is small: its cells in one array, its ticks as bits.
// A cell keeps a short Latin-1 text (a date, most names) in place and a number, a Date
// or a FolderItem tag as its value, so that a row of the file table costs one allocation
// besides its FolderItem; texts become QStrings and tags QVariants only when asked for.
// Nothing here checks bounds: the Listbox does that before it calls in.
class ListboxModel : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int kMaxColumns = 64;  // ticks are bits of one word

    explicit ListboxModel(QObject* parent = nullptr);
    ~ListboxModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    // The counts without a view's parent index: the Listbox checks every cell access
    // against them. rows() counts rows not yet told to the views too (see holdRows).
    int rows() const { return int(rows_.size()); }
    int columns() const { return columns_; }

    void setColumns(int columns);
    void setHeadings(const QStringList& headings);
    void setCheckColumn(int column, bool isCheck);
    bool isCheckColumn(int column) const { return (checkColumns_ >> column) & 1u; }

    void appendRow(const QString& column0);
    // While held, appended rows are told to the views together, by flushChanges, instead
    // of one insertion each; the views see the table without them until then. Holds nest.
    void holdRows(bool hold);
    void removeRowAt(int row);
    // Removes the rows named (ascending, distinct, all present) as one change of the
    // layout: persistent indexes, and so the selection, follow the rows that stay.
    void removeRowsAt(const std::vector<int>& rows);
    void clear();

    QString text(int row, int column) const;
    bool textIs(int row, int column, const QString& text) const;  // case ignored, as sameText
    void setText(int row, int column, const QString& text);
    bool check(int row, int column) const { return (rows_[size_t(row)].checks >> column) & 1u; }
    void setCheck(int row, int column, bool checked);
    QVariant tag(int row, int column) const;
    void setTag(int row, int column, const QVariant& tag);

    // Cell changes are told to the views as one dataChanged for the rectangle they span,
    // when the event loop next runs or before the rows change, whichever comes first:
    // filling 100,000 rows then costs one signal instead of a million. Rows appended while
    // held are told first.
    void flushChanges();

    // Stable sort by the texts of one column, in code-unit order; descending keeps equal
    // rows in their order too. Persistent indexes (and so the selection) follow the rows.
    void sortByColumn(int column, bool descending);

private:
    struct Cell;  // a text and a tag
    struct Row {
        std::unique_ptr<Cell[]> cells;
        quint64 checks = 0;
    };
    Row makeRow(const QString& column0) const;
    void noteChange(int row, int column);

    struct Pending {
        int top = 0, bottom = -1, left = 0, right = -1;
        bool isEmpty() const { return bottom < top; }
    } pending_;
    bool flushQueued_ = false;
    int held_ = 0;
    int told_ = 0;  // rows the views know of

    std::vector<Row> rows_;
    QStringList headings_;
    int columns_ = 1;
    quint64 checkColumns_ = 0;
};
