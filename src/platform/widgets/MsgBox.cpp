#include "platform/widgets/MsgBox.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <utility>
#include <vector>

namespace {

MsgBoxAnswer& answer()
{
    static MsgBoxAnswer a;
    return a;
}

struct ButtonCode {
    QMessageBox::StandardButton button;
    int result;
};

// The buttons of each set, in the order in which the default-button bits count them.
std::vector<ButtonCode> buttonSet(int set)
{
    switch (set) {
    case 1: return {{QMessageBox::Ok, 1}, {QMessageBox::Cancel, 2}};
    case 2: return {{QMessageBox::Abort, 3}, {QMessageBox::Retry, 4}, {QMessageBox::Ignore, 5}};
    case 3: return {{QMessageBox::Yes, 6}, {QMessageBox::No, 7}, {QMessageBox::Cancel, 2}};
    case 4: return {{QMessageBox::Yes, 6}, {QMessageBox::No, 7}};
    case 5: return {{QMessageBox::Retry, 4}, {QMessageBox::Cancel, 2}};
    default: return {{QMessageBox::Ok, 1}};
    }
}

QMessageBox::Icon iconOf(int code)
{
    switch (code & 0x70) {
    case 16: return QMessageBox::Critical;
    case 32: return QMessageBox::Question;
    case 48: return QMessageBox::Warning;
    case 64: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

}  // namespace

void setMsgBoxAnswer(MsgBoxAnswer a) { answer() = std::move(a); }

int MsgBox(const QString& text, int buttons, const QString& title, const QString& informative)
{
    if (answer())
        return answer()(text, buttons, title, informative);

    const std::vector<ButtonCode> set = buttonSet(buttons & 0x0F);
    QMessageBox box(iconOf(buttons), title, text, QMessageBox::NoButton, QApplication::activeWindow());
    box.setInformativeText(informative);
    for (const ButtonCode& b : set)
        box.addButton(b.button);
    const size_t preferred = (buttons & 0x300) >> 8;
    box.setDefaultButton(set[preferred < set.size() ? preferred : 0].button);
    // Escape and the window's close box give the set's way out: Cancel, else No.
    const ButtonCode* wayOut = nullptr;
    for (const ButtonCode& b : set)
        if (b.button == QMessageBox::Cancel || (!wayOut && b.button == QMessageBox::No))
            wayOut = &b;
    if (wayOut)
        box.setEscapeButton(wayOut->button);
    box.exec();

    const auto pressed = box.standardButton(box.clickedButton());
    for (const ButtonCode& b : set)
        if (b.button == pressed)
            return b.result;
    return wayOut ? wayOut->result : set.front().result;
}
