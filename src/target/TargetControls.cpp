// Binding and opening the controls of the target date: the base choice, the add values,
// their companions, and the table's selection, which the display follows.

#include "shell/Window1.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QToolButton>

#include "platform/widgets/FieldEvents.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"

void Window1::bindTargetHandlers()
{
    for (const auto& [index, button] : BaseKind) {
        const int i = index;
        // The program never sets a BaseKind itself, so every choice is the user's.
        connect(button, &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                guard("switch the reference date", [&] { BaseKind_Action(i); });
        });
    }
    for (const auto& [index, field] : AddValue) {
        const int i = index;
        connect(field, &QLineEdit::textChanged, this,
                [this, i] { guard("take the addition value as typed", [&] { AddValue_TextChange(i); }); });
        auto* events = new FieldEvents(field);
        events->KeyDown = [this, i](const QString& key) {
            bool keep = false;
            guard("take the key pressed in the addition value", [&] { keep = AddValue_KeyDown(i, key); });
            return keep;
        };
        events->LostFocus = [this, i] { guard("bring the addition value up to date", [&] { AddValue_LostFocus(i); }); };
    }
    connect(AddValCheckBox, &QCheckBox::toggled, this,
            [this] { guard("switch year and month input", [&] { AddValCheckBox_Action(); }); });
    connect(ClearBtn, &QToolButton::clicked, this,
            [this] { guard("clear the addition values", [&] { ClearBtn_Action(); }); });
    connect(ListBox1, &Listbox::Change, this,
            [this] { guard("show the scheduled value of the selected file", [&] { ListBox1_Change(); }); });
}

// The radio buttons open in the order in which they were made.
void Window1::openTargetControls()
{
    for (const int i : {1, 2, 4, 5, 3})
        guard("set up the reference dates", [&] { BaseKind_Open(i); });
    for (int i = 0; i < 6; ++i)
        guard("set up the addition values", [&] { AddValue_Open(i); });
}
