// The file table: a row of ListBox1 is a file, and everything known about it stands in the
// row's cells, boxes and tags. addFileToTable is the one way in which a row comes to exist.
//
//   column  text                          tag
//   0       file name                     the FolderItem, with its status at listing
//   1       creation date (SQLDateTime)   -
//   2       modification date             the modification Date when the row was added
//   3..5    Exif date, or kNoExif         the Double position of the date in the file
//   6       -                             the orientation code (quarter turns)

#include "shell/Window1.h"

#include "platform/widgets/Canvas.h"
#include "platform/listbox/Listbox.h"
#include "platform/pictures/PictureProbe.h"
#include "exif/Boxes.h"
#include "exif/Movie.h"

#include <QCheckBox>

// The table answers no event of its own: its clicks belong to the check boxes, its
// selection to the aim value, its pointer moves to the hover tag.
void Window1::bindTableHandlers() {}

void Window1::openTableControls()
{
    ListBox1_Open();
    ListHeader_Open();
}

// Column 6 keeps the default type in both tables: it holds only tags.
void Window1::ListBox1_Open()
{
    for (int column = 0; column <= 5; ++column)
        ListBox1->setColumnType(column, 2);
}

// All six select-all boxes start ticked, so a first drop arrives with everything readable
// ticked.
void Window1::ListHeader_Open()
{
    for (int column = 0; column <= 5; ++column) {
        ListHeader->setColumnType(column, 2);
        ListHeader->setCellCheck(0, column, true);
    }
}

// A file that can't be opened, or a folder, is listed all the same, with its file dates
// and the marker in columns 3 to 5. An item without a status gets no row: it is noted for
// the intake's report. Nothing here catches: a failure ends the call and leaves the row as
// far as it got, with bs and curRow on it.
void Window1::addFileToTable(const FolderItem& f)
{
    if (f.isNil())
        return;
    // Both dates come from one status call, made before there is a row, of the file as
    // it is opened for reading.
    QString why;
    FolderItem::Opened opened = f.openForListing(&why);
    const std::optional<ItemStatus>& status = opened.status;
    if (!status) {
        unlistedItems << why;
        return;
    }
    if (OnlyPicture && OnlyPicture->isChecked() && !givesPicture(f))
        return;

    ListBox1->AddRow(f.Name());
    curRow = ListBox1->ListCount() - 1;
    if (ListHeader->CellCheck(0, 0))
        ListBox1->setCellCheck(curRow, 0, true);
    // The row's FolderItem keeps the status too: what the execute run checks the file against.
    FolderItem listed = f;
    listed.noteListing(*status);
    ListBox1->setCellTag(curRow, 0, QVariant::fromValue(listed));
    const Date modified = status->modificationDate();
    ListBox1->setCell(curRow, 1, status->creationDate().SQLDateTime());
    ListBox1->setCell(curRow, 2, modified.SQLDateTime());
    // Kept for the row's whole life, so that the execute run can put back a modification
    // date that its own writing disturbed.
    ListBox1->setCellTag(curRow, 2, QVariant::fromValue(modified));
    for (int column = 3; column <= 5; ++column)
        ListBox1->setCell(curRow, column, kNoExif);

    // Replacing bs releases the stream of the file before; a nil stream stays in bs.
    bs = std::move(opened.stream);
    if (!bs.isNil())
        getExifInfo();
    optimizeRowCheck(curRow);
}

// A new row's date boxes follow the column boxes, except where the file gave no date.
void Window1::optimizeRowCheck(int row)
{
    for (int column = 1; column <= 5; ++column) {
        const bool v = ListBox1->CellIsText(row, column, kNoExif) ? false : ListHeader->CellCheck(0, column);
        ListBox1->setCellCheck(row, column, v);
    }
}

// The select-all boxes, curRow, bs and the sort column stay as they are.
void Window1::clearTables()
{
    ListBox1->DeleteAllRows();
    Canvas1->setBackdrop(QImage());
}

void Window1::showDateHeld(int row, int column, const QByteArray& holds)
{
    const QVariant tag = ListBox1->CellTag(row, column);
    if (tag.metaType() != QMetaType::fromType<MovieTime>()) {
        ListBox1->setCell(row, column, QString::fromLatin1(holds));
        return;
    }
    MovieTime m = tag.value<MovieTime>();
    m.seconds = bigEndian(holds, 0, int(holds.size()));
    ListBox1->setCellTag(row, column, QVariant::fromValue(m));
    ListBox1->setCell(row, column, movieTimeText(m.seconds));
}
