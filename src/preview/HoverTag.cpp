// The hover tag: a yellow field that follows the pointer over the table's first column
// and shows the whole file name of the row beneath it.

#include "shell/Window1.h"

#include <QLineEdit>

#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/pictures/PictureWorker.h"
#include "platform/text/Text.h"

namespace {

// Rows and the header are taken to be this high, whatever the table draws.
constexpr int kRowHeight = 15;

}  // namespace

void Window1::bindPreviewHandlers()
{
    previewWorker = new PictureWorker(this);
    connect(ListBox1, &Listbox::MouseMove, this,
            [this](int x, int y) { guard("show the file name under the pointer", [&] { ListBox1_MouseMove(x, y); }); });
    connect(ListBox1, &Listbox::MouseExit, this,
            [this] { guard("hide the file name", [&] { ListBox1_MouseExit(); }); });
}

void Window1::ListBox1_MouseMove(int x, int y)
{
    if (ListBox1->ListCount() < 1) {
        FileNameTag->setVisible(false);
        return;
    }
    const qint64 row = y / kRowHeight - 1 + qint64(ListBox1->ScrollPosition());
    const qint64 limit = qint64(double(ListBox1->width()) * 0.25);

    QFont font = FileNameTag->font();
    font.setPixelSize(12);
    FileNameTag->setFont(font);

    if (!(y > kRowHeight && row >= 0 && row < ListBox1->ListCount() && x < limit)) {
        FileNameTag->setVisible(false);
        return;
    }
    const QString name = ListBox1->Cell(int(row), 0);
    FileNameTag->setText(name);

    // Counted as if every character took one byte (9 pixels) or two (12 pixels); a
    // three-byte character comes to 15.
    const qint64 wide = LenB(name) - Len(name);
    const qint64 narrow = 2 * Len(name) - LenB(name);
    const qint64 width = wide * 12 + narrow * 9 + 20;
    FileNameTag->resize(int(qBound(qint64(0), width, qint64(QWIDGETSIZE_MAX))), FileNameTag->height());

    const QPoint table = ListBox1->mapTo(this, QPoint(0, 0));
    QWidget* parent = FileNameTag->parentWidget();
    const QPoint at = (parent && parent != this ? parent->mapFrom(this, table) : table) + QPoint(x + 5, y + 5);
    FileNameTag->move(at);
    FileNameTag->setVisible(true);
}

void Window1::ListBox1_MouseExit()
{
    FileNameTag->setVisible(false);
}
