#include "shell/Globals.h"

#include <QtGlobal>

namespace {

// The translation's text for key, or the default where the translation has none (qtTrId
// then answers with the key itself). A null default reads as the empty text.
QString lookup(const char* key, const char* defaultText)
{
    const QString text = qtTrId(key);
    if (text != QLatin1String(key))
        return text;
    return QString::fromUtf8(defaultText);
}

}  // namespace

namespace Globals {

QString kEditUndo() { return lookup("Globals.kEditUndo", "Undo"); }
QString kEditRedo() { return lookup("Globals.kEditRedo", "Redo"); }
QString kAppAbout() { return lookup("Globals.kAppAbout", "About This App"); }
QString kWinTitle() { return lookup("Globals.kWinTitle", "Velkaro"); }
QString kEditQuit() { return lookup("Globals.kEditQuit", "Quit"); }
QString kEditPaste() { return lookup("Globals.kEditPaste", "Paste"); }
QString kEditMenu() { return lookup("Globals.kEditMenu", "Edit"); }
QString kEditCut() { return lookup("Globals.kEditCut", "Cut"); }
QString kEditCopy() { return lookup("Globals.kEditCopy", "Copy"); }
QString kEditClear() { return lookup("Globals.kEditClear", "Clear"); }
QString kAppName() { return lookup("Globals.kAppName", "Velkaro"); }

QString kAboutText()
{
    return lookup("Globals.kAboutText",
                  "[Usage] Change the \"date and time\" of Exif detailed data recorded in photo image files etc.\n"
                  "[Operating environment] macOS 10.10 or later");
}

QString kHowToClose() { return lookup("Globals.kHowToClose", "(\"Click Anywhere\" to close this window.)"); }

// The user's manual: its wording and line breaks stay as they are.
QString kUsageText()
{
    return lookup("Globals.kUsageText",
    "[Purpose] To correct the date and time of a photo in which the wrong time was recorded due to a mistake in setting the digital camera.\n"
    "\n"
    "【How to use】\n"
    "1. Change Exif date and time Drag and drop the desired file. You can drop it anywhere in the window. It supports multiple files. Although it does not support the folder structure, the date and time of the folder itself can be changed. If you check the check box at the bottom, you can register only still image files in the list from the dropped objects.\n"
    "2. Next, select what kind of underlying date and time you want. The applicable value for each file is the standard value.\n"
    "3. The added value is constant for all. If you want a different value, handle it individually.\n"
    "4. Displays the scheduled change value for the file in the row selected in the table below. This part cannot be changed, so adjust with the add value. Also, the image of the selected file is displayed in the upper left.\n"
    "5. Operate each check box in the table below to select the type of writing. The top and left edges are for full selection.\n"
    "6. Click the execute button on the upper right to write directly to the file.\n"
    "7. Since the same value will be written to one file, if you want to use a different value, use the check in the table and execute it several times.\n"
    "8. It is also possible to start by dragging and dropping multiple files to this application (Finder icon or Doc icon).\n"
    "\n"
    "[Precautions]\n"
    "1. Drag & drop is newly registered each time and additional registration is not possible. In other words, you cannot list multiple files that are not in the same folder at the same time.\n"
    "2. It doesn't support multiple windows, so close it to finish. Start it again and use it.\n"
    "3. To correct a gap of more than one month, enter the number of days and hours with zero year and month. For example, enter 60 days for 2 months or 365 days for 1 year, and make fine adjustments while watching the target value. Then you can correctly change the date and time of many files with the same deviation. If there are multiple files on the same day, it is safe to enter the year and month, so I left this input area. In order to avoid trouble, I made it impossible to enter the year and month by default.");
}

QString kBaseGroupCap() { return lookup("Globals.kBaseGroupCap", "Reference Group"); }
QString kBaseKind1() { return lookup("Globals.kBaseKind1", "File creation date"); }
QString kBaseKind2() { return lookup("Globals.kBaseKind2", "File modification date"); }
QString kBaseKind3() { return lookup("Globals.kBaseKind3", "Exif image modification date"); }
QString kBaseKind4() { return lookup("Globals.kBaseKind4", "Exif shooting date"); }
QString kBaseKind5() { return lookup("Globals.kBaseKind5", "Exif digitization date"); }
QString kExecuteBtnCap() { return lookup("Globals.kExecuteBtnCap", "Change\nDate\nExecute"); }
QString kAddGroupCap() { return lookup("Globals.kAddGroupCap", "Addition Value"); }
QString kClearBtnCap() { return lookup("Globals.kClearBtnCap", "Clear"); }
QString kAddValueCheck() { return lookup("Globals.kAddValueCheck", "Enable year and month input"); }

// The separators between the six fields of a date; nothing stands behind day and second.
QString kTxY() { return lookup("Globals.kTxY", "/"); }
QString kTxM() { return lookup("Globals.kTxM", "/"); }
QString kTxD() { return lookup("Globals.kTxD", nullptr); }
QString kTxHour() { return lookup("Globals.kTxHour", ":"); }
QString kTxMin() { return lookup("Globals.kTxMin", ":"); }
QString kTxSec() { return lookup("Globals.kTxSec", nullptr); }

QString kAimGroupCap()
{
    return lookup("Globals.kAimGroupCap", "Scheduled value (Aim value for the selected row in the table below)");
}

// Six tab-separated cells: ListHeader's one row, and ListBox1's headings.
QString kListHeaderInitValue()
{
    return lookup("Globals.kListHeaderInitValue",
                  "All data\tAll this column\tAll this column\tAll this column\tAll this column\tAll this column");
}

QString kListInitValue()
{
    return lookup("Globals.kListInitValue",
                  "File name\tFile creat. date\tFile mod. date\tExif Img mod. date\tExif Shoot. date\tExif Digitiz. date");
}

QString kOnlyPictCheck()
{
    return lookup("Globals.kOnlyPictCheck", "When dragging and dropping, list only still image files in the table");
}

}  // namespace Globals
