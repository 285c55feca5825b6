// The execute run: the scheduled dates go into the ticked cells' files. The table is the
// only source of what to do and where; the files are not parsed again.

#include <QLineEdit>
#include <QPushButton>

#include <stdexcept>

#include "platform/BusyPointer.h"
#include "platform/Convert.h"
#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/MsgBox.h"
#include "platform/Text.h"
#include "shell/Window1.h"

namespace {

// The confirmation before anything is written; OK (1) goes on.
const QString kExecuteQuestion =
    QStringLiteral("変更予定値を直接ファイルに書込みます。") + QStringLiteral("\n") + QStringLiteral("よろしいですか。");
constexpr int kOkCancelQuestion = 33;

// A run that cannot go on stops where it stands, with the rows and cells before it written.
// Its text is the reason under "Velkaro could not change the dates in the files.": where
// the run stopped, why (a sentence), and what has been done.
class RunStopped : public std::runtime_error {
public:
    RunStopped(const QString& file, const QString& why)
        : std::runtime_error(
              QStringLiteral("It stopped at %1. %2 The files above it in the list have been "
                             "changed as ticked; this file and those below it have not.")
                  .arg(file, why)
                  .toStdString())
    {
    }
};

QString nameForReport(const FolderItem& f, int row)
{
    return f.isNil() ? QStringLiteral("row %1").arg(qint64(row) + 1) : QStringLiteral("“%1”").arg(f.path());
}

// An Exif date text, "YYYY:MM:DD HH:MM:SS": exactly the 19 bytes that replace the old date
// in the file. Any other text would spill over the field or leave part of the old one.
bool isExifDateText(const QString& s)
{
    static const QString form = QStringLiteral("dddd:dd:dd dd:dd:dd");
    if (s.size() != form.size())
        return false;
    for (qsizetype i = 0; i < s.size(); ++i) {
        const bool digit = s[i] >= QLatin1Char('0') && s[i] <= QLatin1Char('9');
        if (form[i] == QLatin1Char('d') ? !digit : s[i] != form[i])
            return false;
    }
    return true;
}

// Writes the date text over the 19 bytes at the noted position through a stream of its
// own. A position the file cannot reach writes nothing; that goes unnoticed, as any
// result of a write does.
void writeExifDate(const FolderItem& f, const QVariant& position, const QString& text)
{
    if (!isExifDateText(text))
        throw std::runtime_error(
            QStringLiteral("The scheduled date %1 cannot be written as an Exif date.").arg(text).toStdString());
    Handle<BinaryStream> out = f.OpenAsBinaryFile(true);
    if (out.isNil())
        throw NilObjectException(out.whyNil());
    out->setPosition(toPosition(position.toDouble()));
    out->Write(text.toLatin1());
    out->Close();
}

// The modification date noted when the row was added.
Date notedModificationDate(const QVariant& tag)
{
    if (tag.metaType() != QMetaType::fromType<Date>())
        throw NilObjectException(
            QStringLiteral("The modification date that the file had when it was listed is missing, so it could "
                           "not be put back."));
    return tag.value<Date>();
}

// One row: its date is computed once, then its ticked cells are carried out in column
// order, Exif dates first.
void executeRow(Window1& w, int row, bool& restore)
{
    Listbox* table = w.ListBox1;
    const FolderItem f = table->CellTag(row, 0).value<FolderItem>();
    // One date serves all of the row's ticks, so that writing the base column does not
    // move the columns after it.
    const std::optional<Date> aim = w.culcAimValue(row);
    if (!aim)
        return;
    const QString fileDate = aim->SQLDateTime();
    const QString exifDate = ReplaceAll(fileDate, QStringLiteral("-"), QStringLiteral(":"));

    for (int column = 3; column <= 5; ++column) {
        if (!table->CellCheck(row, column))
            continue;
        writeExifDate(f, table->CellTag(row, column), exifDate);
        table->setCell(row, column, exifDate);
        restore = true;
    }
    if (table->CellCheck(row, 1)) {
        f.setCreationDate(*aim);
        table->setCell(row, 1, fileDate);
    }
    if (table->CellCheck(row, 2)) {
        f.setModificationDate(*aim);
        table->setCell(row, 2, fileDate);
        restore = false;
    }
    if (restore)
        f.setModificationDate(notedModificationDate(table->CellTag(row, 2)));
}

}  // namespace

void Window1::bindWritebackHandlers()
{
    connect(ExecuteBtn, &QPushButton::clicked, this,
            [this] { guard("change the dates in the files", [this] { ExecuteBtn_Action(); }); });
}

void Window1::ExecuteBtn_Action()
{
    const int count = ListBox1->ListCount();
    if (count < 1 || AimValue(0)->text().isEmpty())
        return;
    if (MsgBox(kExecuteQuestion, kOkCancelQuestion, QString()) != 1)
        return;

    // Writing into a file moves its modification date; the flag asks for the noted one to
    // be put back. It carries over from row to row until a row sets its own date.
    bool restore = false;
    for (int row = 0; row < count; ++row) {
        stillBusy();
        try {
            executeRow(*this, row, restore);
        } catch (const std::exception& e) {
            throw RunStopped(nameForReport(ListBox1->CellTag(row, 0).value<FolderItem>(), row),
                             QString::fromUtf8(e.what()));
        }
    }
}
