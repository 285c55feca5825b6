// How files enter the table: dropped on the window (replacing the list, sorted once at the
// end) or handed over as documents (appended; see App). Items that cannot be listed are
// named in one report once the others are in. OnlyPicture prunes what gives no picture.

#include "shell/Window1.h"

#include <QCheckBox>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QMimeData>

#include "platform/widgets/BusyPointer.h"
#include "platform/app/DragItem.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/OneShotTimer.h"
#include "platform/pictures/PictureProbe.h"
#include "platform/files/ReadAhead.h"
#include "platform/widgets/Shapes.h"
#include "platform/base/TextId.h"

#include <utility>

namespace {

// A report names this many items at most, then says how many more there are.
constexpr qsizetype kNamedAtMost = 20;

}  // namespace

void Window1::bindIntakeHandlers()
{
    connect(OnlyPicture, &QCheckBox::toggled, this,
            [this] { guard("switch the still-image filter", [this] { OnlyPicture_Action(); }); });
    connect(Timer4, &OneShotTimer::Action, this,
            [this] { guard("sort the opened files", [this] { Timer4_Action(); }); });
    connect(Timer5, &OneShotTimer::Action, this,
            [this] { guard("keep only still images in the list", [this] { Timer5_Action(); }); });
}

// Every drag is let in, whatever it holds; the drop decides.
void Window1::dragEnterEvent(QDragEnterEvent* e)
{
    e->acceptProposedAction();
    guard("show the drop frame", [this] { Event_DragEnter(); });
}

void Window1::dragLeaveEvent(QDragLeaveEvent* e)
{
    e->accept();
    guard("hide the drop frame", [this] { Event_DragExit(); });
}

void Window1::dropEvent(QDropEvent* e)
{
    e->acceptProposedAction();
    DragItem obj(e->mimeData());
    const int action = int(e->dropAction());
    guard("add the dropped files", [&] { Event_DropObject(obj, action); });
}

void Window1::Event_DragEnter()
{
    Winback->setVisible(true);
}

void Window1::Event_DragExit()
{
    Winback->setVisible(false);
}

void Window1::Event_DropObject(DragItem& obj, int /*action*/)
{
    Winback->setVisible(false);
    if (!obj.FolderItemAvailable())
        return;  // text and the like: the list stays as it was

    // A drop replaces the list, even if nothing of it gets in.
    clearTables();
    unlistedItems.clear();
    std::vector<FolderItem> items;
    do {
        items.push_back(obj.folderItem());
    } while (obj.NextItem());
    {
        // On a cold disk the files' first blocks are read many at once, ahead of the walk,
        // which then reads them one after the other as ever. The table shows the new rows
        // together.
        const ReadAhead ahead(items);
        const Listbox::RowBatch batch(*ListBox1);
        for (const FolderItem& f : items) {
            stillBusy();
            addFileToTable(f);
        }
    }

    // Sorted once, as a whole: addFileToTable counts on its row being the last.
    if (ListBox1->ListCount() > 0) {
        ListBox1->Sort();
        ListBox1->setListIndex(0);
    }
    reportUnlisted();
}

// Hidden until the pruning walk is over, so that no second walk can be asked for.
void Window1::OnlyPicture_Action()
{
    OnlyPicture->setVisible(false);
    Timer5->setMode(1);
}

// Once, after the launch's documents: they are sorted together and the first selected,
// and those that could not be listed are named.
void Window1::Timer4_Action()
{
    if (ListBox1->ListCount() > 0) {
        ListBox1->Sort();
        ListBox1->setListIndex(0);
    }
    reportUnlisted();
}

// One report for the items of an intake that could not be listed.
void Window1::reportUnlisted()
{
    if (unlistedItems.isEmpty())
        return;
    QStringList lines = std::exchange(unlistedItems, {});
    const qsizetype more = lines.size() - kNamedAtMost;
    if (more > 0) {
        lines.resize(kNamedAtMost);
        lines << textById("Intake.andMore", "…and %1 more.").arg(more);
    }
    reportFailure(textById("Intake.couldNotList", "list every item"), lines.join(u'\n'));
}

// With OnlyPicture ticked, removes the rows whose file gives no picture, judged from the
// file's header (see givesPicture). Unticking removes nothing and brings nothing back.
// The rows found go in one change of the table, also when a row without its file ends
// the walk halfway: what was found until then goes, the rest stays. The walk runs
// backwards, so that it ends at the same row as a removal one by one would.
void Window1::Timer5_Action()
{
    if (OnlyPicture->isChecked()) {
        std::vector<int> gone;
        try {
            for (int row = ListBox1->ListCount() - 1; row >= 0; --row) {
                stillBusy();
                if (!givesPicture(ListBox1->CellTag(row, 0).value<FolderItem>()))
                    gone.push_back(row);
            }
        } catch (...) {
            ListBox1->RemoveRows(gone);
            throw;
        }
        ListBox1->RemoveRows(gone);
    }
    OnlyPicture->setVisible(true);
}
