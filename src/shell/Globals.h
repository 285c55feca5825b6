#pragma once
#include <QString>

// Every caption, heading and help text of the program. Each accessor looks its text up by
// the key "Globals." + its name in the installed translation, and gives the default text
// when no translation holds that key. Nothing is cached: a caption is looked up once, when
// its control is made.
namespace Globals {
QString kEditUndo();
QString kEditRedo();
QString kAppAbout();
QString kWinTitle();
QString kEditQuit();
QString kEditPaste();
QString kEditMenu();
QString kEditCut();
QString kEditCopy();
QString kEditClear();
QString kAppName();
QString kAboutText();
QString kHowToClose();
QString kUsageText();
QString kBaseGroupCap();
QString kBaseKind1();
QString kBaseKind2();
QString kBaseKind3();
QString kBaseKind4();
QString kBaseKind5();
QString kExecuteBtnCap();
QString kAddGroupCap();
QString kClearBtnCap();
QString kAddValueCheck();
QString kTxY();
QString kTxM();
QString kTxD();
QString kTxHour();
QString kTxMin();
QString kTxSec();
QString kAimGroupCap();
QString kListHeaderInitValue();
QString kListInitValue();
QString kOnlyPictCheck();
}  // namespace Globals
