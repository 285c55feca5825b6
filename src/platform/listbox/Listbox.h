#pragma once
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QVariant>

#include <functional>
#include <vector>

class ListboxModel;

// The product's list box: a table view over its own light model (it holds 100,000 rows).
// Rows and columns count from 0. Every cell has a text, a check box (shown only in a
// column of type 2) and a tag. A check box is drawn at x 3 to 19 of its cell and is
// toggled only by a press there. An index outside the table throws OutOfBoundsException.
class Listbox : public QTableView {
    Q_OBJECT
public:
    // The platform's row height: each row is this high, and so is the header together
    // with the frame above it, so rows are counted from the top edge in steps of it.
    static constexpr int kRowHeight = 15;
    // Where a cell's check box sits, from the cell's left edge; a press there toggles it.
    static constexpr int kBoxLeft = 3;
    static constexpr int kBoxRight = 19;

    explicit Listbox(QWidget* parent = nullptr);
    ~Listbox() override;

    ListboxModel* model() const;

    // Set-up.
    void setColumnCount(int columns);
    int ColumnCount() const;
    // "" keeps what the other columns leave, "15%" a share of the width, "0" hides.
    void setColumnWidths(const QString& widths);
    void setHasHeader(bool hasHeader);
    bool HasHeader() const;
    // Tab-separated cells: the headings when the table has a header, else row 0.
    void setInitialValue(const QString& value);
    void setRowSelectionType(int type);  // 0 one row at a time, 1 several
    void setColumnType(int column, int type);  // 2: check-box column
    int ColumnType(int column) const;

    // Rows and cells.
    void AddRow(const QString& column0);
    // Rows added while a RowBatch lives are shown together when it ends, or earlier where
    // the selection, a sort or a removal needs them: adding many rows then costs the views
    // one insertion. Everything else sees each row as soon as it is added.
    class RowBatch {
    public:
        explicit RowBatch(Listbox& listbox);
        ~RowBatch();
        RowBatch(const RowBatch&) = delete;
        RowBatch& operator=(const RowBatch&) = delete;

    private:
        Listbox& listbox_;
    };
    int ListCount() const;
    QString Cell(int row, int column) const;
    // Whether the cell's text is text, case ignored as sameText ignores it; cheaper than
    // comparing Cell's copy, which a test of every cell of 100,000 rows feels.
    bool CellIsText(int row, int column, const QString& text) const;
    void setCell(int row, int column, const QString& text);
    bool CellCheck(int row, int column) const;
    void setCellCheck(int row, int column, bool checked);
    QVariant CellTag(int row, int column) const;
    void setCellTag(int row, int column, const QVariant& tag);
    // The tag as an Integer: a tag never written reads as 0.
    qint64 CellTagAt(int row, int column) const;
    void DeleteAllRows();
    void RemoveRow(int row);
    // Removes all the rows named at once, in one change of the table however many they
    // are; rows that stay keep their order, ticks, tags and selection.
    void RemoveRows(std::vector<int> rows);

    // Selection. Setting ListIndex selects the row (-1 none) and raises Change.
    int ListIndex() const;
    void setListIndex(int row);
    bool Selected(int row) const;
    void setSelected(int row, bool selected);
    int SelCount() const;
    int ScrollPosition() const;  // first visible row
    void setScrollPosition(int row);

    // Sorting: by the texts of the sort column, stable. -1 descending, 1 ascending.
    void setColumnSortDirection(int column, int direction);
    int ColumnSortDirection(int column) const;
    int SortedColumn() const;
    void PressHeader(int column);  // as a click on the heading
    void Sort();

signals:
    // Raised before the press is handled: row and column of the cell, x and y within it.
    // After it the press selects the row and toggles the box if x is 3 to 19.
    void CellClick(int row, int column, int x, int y);
    // Every change of the selected row, also when the selected row goes away.
    void Change();
    // Pointer moves over the table; x and y from the table's own top-left, header included.
    void MouseMove(int x, int y);
    void MouseExit();

protected:
    void mousePressEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void leaveEvent(QEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void changeEvent(QEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;

private:
    void checkRow(int row) const;
    void checkColumn(int column) const;
    void checkCell(int row, int column) const;
    void applyColumnWidths();
    void applyRowHeight();
    void showSortIndicator();
    void changeRows(const std::function<void()>& change);
    void installLook();           // the cells' and the heading's drawing
    void connectHeadingClicks();  // a click on a heading sorts

    ListboxModel* model_;
    QStringList widthEntries_;
    std::vector<int> columnTypes_;
    std::vector<int> sortDirections_;
    bool hasHeader_ = true;
    int rowSelectionType_ = 0;
    int sortColumn_ = -1;
    bool changingRows_ = false;
    bool changePending_ = false;
};
