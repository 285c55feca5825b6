// Window1's life: the one window, made at first use, and the steps of its opening.

#include "shell/Window1.h"

#include <QPointer>
#include <QResizeEvent>

#include "platform/listbox/Listbox.h"
#include "platform/widgets/LockLayout.h"
#include "platform/widgets/OneShotTimer.h"
#include "platform/widgets/Shapes.h"
#include "shell/Globals.h"

namespace {

QPointer<Window1> theWindow;

// The content area, below the menu bar: the design's 870 by 520, never smaller than
// 680 by 380.
class ContentArea : public QWidget {
public:
    explicit ContentArea(QWidget* parent) : QWidget(parent)
    {
        setMinimumSize(680, 380);
        setMaximumSize(32000, 32000);
    }
    QSize sizeHint() const override { return {870, 520}; }
};

}  // namespace

Window1* Window1::instance()
{
    if (!theWindow) {
        new Window1;  // registers itself as the one window
        theWindow->show();
    }
    return theWindow;
}

bool Window1::exists()
{
    return !theWindow.isNull();
}

Window1::Window1(QWidget* parent) : QMainWindow(parent)
{
    if (!theWindow)
        theWindow = this;

    setWindowTitle(Globals::kWinTitle());
    // An ordinary document window with a close button and neither maximize nor minimize.
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowCloseButtonHint);
    setCentralWidget(new ContentArea(this));

    CreateControls();

    bindTableHandlers();
    bindCheckBoxHandlers();
    bindIntakeHandlers();
    bindTargetHandlers();
    bindWritebackHandlers();
    bindPreviewHandlers();
    bindMenu();
    bindJournalHandlers();
    bindKeepCopies();

    openTableControls();
    openTargetControls();

    Event_Open();

    // The content area at its design size, whatever the menu bar takes above it.
    resize(sizeHint());
}

Window1::~Window1() = default;

void Window1::Event_Open()
{
    // Drops of any file are taken by the window in its whole area: no control keeps one
    // for itself.
    setAcceptDrops(true);
    for (QWidget* child : findChildren<QWidget*>())
        child->setAcceptDrops(false);

    // Newest modification date first.
    ListBox1->setColumnSortDirection(2, -1);
    ListBox1->PressHeader(2);

    Winback->setVisible(false);
    // Sorts and selects what the launch's documents put into the table.
    Timer4->setMode(1);
}

void Window1::resizeEvent(QResizeEvent* e)
{
    QMainWindow::resizeEvent(e);
    lockLayout->apply(centralWidget()->size());
}
