#include "journal/RunChoice.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include "platform/base/TextId.h"

namespace {

RunChoiceAnswer& answer()
{
    static RunChoiceAnswer a;
    return a;
}

}  // namespace

void setRunChoiceAnswer(RunChoiceAnswer a) { answer() = std::move(a); }

RunChoice askRunChoice(const QString& text, const QString& informative)
{
    if (answer())
        return answer()(text, informative);
    QMessageBox box(QMessageBox::Warning, QString(), text, QMessageBox::NoButton, QApplication::activeWindow());
    box.setInformativeText(informative);
    QPushButton* undo = box.addButton(textById("Journal.undoDone", "Undo what was done"), QMessageBox::AcceptRole);
    QPushButton* finish = box.addButton(textById("Journal.finish", "Finish the run"), QMessageBox::ActionRole);
    QPushButton* leave = box.addButton(textById("Journal.leave", "Leave it"), QMessageBox::RejectRole);
    box.setDefaultButton(undo);
    box.setEscapeButton(leave);
    box.exec();
    return box.clickedButton() == undo ? RunChoice::UndoDone
           : box.clickedButton() == finish ? RunChoice::Finish
                                           : RunChoice::Leave;
}
