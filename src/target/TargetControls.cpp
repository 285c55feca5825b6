// Binding and opening the controls of the target date: the base choice, the add values,
// their companions, and the table's selection, which the display follows.

#include "shell/Window1.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QToolButton>

#include "platform/FieldEvents.h"
#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"

void Window1::bindTargetHandlers()
{
    for (const auto& [index, button] : BaseKind) {
        const int i = index;
        // The program never sets a BaseKind itself, so every choice is the user's.
        connect(button, &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                guard("BaseKind_Action", [&] { BaseKind_Action(i); });
        });
    }
    for (const auto& [index, field] : AddValue) {
        const int i = index;
        connect(field, &QLineEdit::textChanged, this,
                [this, i] { guard("AddValue_TextChange", [&] { AddValue_TextChange(i); }); });
        auto* events = new FieldEvents(field);
        events->KeyDown = [this, i](const QString& key) {
            bool keep = false;
            guard("AddValue_KeyDown", [&] { keep = AddValue_KeyDown(i, key); });
            return keep;
        };
        events->LostFocus = [this, i] { guard("AddValue_LostFocus", [&] { AddValue_LostFocus(i); }); };
    }
    connect(AddValCheckBox, &QCheckBox::toggled, this,
            [this] { guard("AddValCheckBox_Action", [&] { AddValCheckBox_Action(); }); });
    connect(ClearBtn, &QToolButton::clicked, this,
            [this] { guard("ClearBtn_Action", [&] { ClearBtn_Action(); }); });
    connect(ListBox1, &Listbox::Change, this,
            [this] { guard("ListBox1_Change", [&] { ListBox1_Change(); }); });
}

// The radio buttons open in the order in which they were made.
void Window1::openTargetControls()
{
    for (const int i : {1, 2, 4, 5, 3})
        guard("BaseKind_Open", [&] { BaseKind_Open(i); });
    for (int i = 0; i < 6; ++i)
        guard("AddValue_Open", [&] { AddValue_Open(i); });
}
