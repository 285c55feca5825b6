#pragma once
#include <QString>

#include <functional>

// A modal message box with the product's button codes. The code is the sum of a button
// set (0 OK, 1 OK and Cancel, 2 Abort, Retry and Ignore, 3 Yes, No and Cancel, 4 Yes and
// No, 5 Retry and Cancel), an icon (16 stop, 32 question, 48 caution, 64 note) and a
// default button (0 the first, 256 the second, 512 the third). The result names the
// button pressed: 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No. The
// informative text, if any, stands under the text in the box's smaller type.
int MsgBox(const QString& text, int buttons = 0, const QString& title = QString(),
           const QString& informative = QString());

// Tests answer the box in place of a person: while an answer is set, MsgBox shows nothing
// and returns what the answer gives. An empty answer restores the dialog.
using MsgBoxAnswer =
    std::function<int(const QString& text, int buttons, const QString& title, const QString& informative)>;
void setMsgBoxAnswer(MsgBoxAnswer answer);
