// The six add values: what the user types reaches the display on Return, on leaving a
// field, through the check box that opens years and months, and through ClearBtn.
// dirtyValue says that some field changed since the display was last brought up to date.

#include "shell/Window1.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "platform/text/Text.h"

namespace {
const QString kZero = QStringLiteral("0");
}

// Runs for each field at opening and does the same each time: the user starts in the days
// field with its text selected.
void Window1::AddValue_Open(int)
{
    dirtyValue = false;
    AddValue(2)->setFocus();
    AddValue(2)->setSelection(0, int(Len(AddValue(2)->text())));
}

// Raised by typing and, at once, by every Text that the program sets to something new.
void Window1::AddValue_TextChange(int)
{
    dirtyValue = true;
}

// Every key reaches the field.
bool Window1::AddValue_KeyDown(int index, const QString& key)
{
    if (key == Chr(13) && dirtyValue) {
        dirtyValue = false;
        changeAimValue();
    }
    if (key == Chr(9) && index == 5)
        TextArea1->setFocus();
    return false;
}

// The normalising comes first: when it changes the text, TextChange makes the change dirty
// and it reaches the display below.
void Window1::AddValue_LostFocus(int index)
{
    QLineEdit* field = AddValue(index);
    field->setText(Str(Val(field->text())));
    if (dirtyValue) {
        dirtyValue = false;
        changeAimValue();
    }
}

// Switching off throws the years and months away; switching on keeps them at "0".
void Window1::AddValCheckBox_Action()
{
    const bool on = AddValCheckBox->isChecked();
    AddValue(0)->setEnabled(on);
    AddValue(1)->setEnabled(on);
    if (!on) {
        AddValue(0)->setText(kZero);
        AddValue(1)->setText(kZero);
    }
    if (dirtyValue) {
        dirtyValue = false;
        changeAimValue();
    }
}

// Recomputes whether or not anything changed; dirtyValue stays as the TextChange events
// left it.
void Window1::ClearBtn_Action()
{
    for (int i = 0; i < 6; ++i)
        AddValue(i)->setText(kZero);
    AddValue(2)->setFocus();
    AddValue(2)->setSelection(0, int(Len(AddValue(2)->text())));
    changeAimValue();
}
