// The base of the computation: BaseKind(i) chooses column i of ListBox1.

#include "shell/Window1.h"

#include <QRadioButton>

void Window1::BaseKind_Open(int index)
{
    if (BaseKind(index)->isChecked())
        baseChoice = index;
}

void Window1::BaseKind_Action(int index)
{
    baseChoice = index;
    changeAimValue();
}
