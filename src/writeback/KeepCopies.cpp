// The Edit menu's "Keep copies in XMP and IPTC in step": ticked, a run moves every copy of a
// date that showed the same time with it; unticked, only the dates of the table move. It is
// ticked at every start, as the program keeps no settings.

#include <QAction>
#include <QMenu>

#include "platform/base/TextId.h"
#include "shell/MenuBar1.h"
#include "shell/Window1.h"

namespace {
const QString kKeepCopies = QStringLiteral("EditKeepCopies");
}

void Window1::bindKeepCopies()
{
    MenuBar1* bar = MenuBar1::instance();
    QMenu* menu = bar->EditMenu();
    if (!menu || bar->lookup(kKeepCopies))
        return;
    auto* a = new QAction(textById("Menu.keepCopies", "Keep copies in XMP and IPTC in step"), menu);
    a->setObjectName(kKeepCopies);
    a->setCheckable(true);
    a->setChecked(true);
    menu->addAction(a);
}

bool Window1::keepCopiesInStep() const
{
    const QAction* a = MenuBar1::instance()->lookup(kKeepCopies);
    return !a || a->isChecked();
}
