// The preview pane: the selected file's picture, fitted into the canvas's square.

#include "shell/Window1.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QtMath>

#include "platform/widgets/Canvas.h"
#include "platform/base/Convert.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/pictures/PictureWorker.h"

namespace {

// A blank picture of the first screen's depth.
QImage blankPicture(int width, int height)
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const bool shallow = screen && screen->depth() > 0 && screen->depth() <= 16;
    QImage picture(qMax(0, width), qMax(0, height), shallow ? QImage::Format_RGB16 : QImage::Format_RGB32);
    picture.fill(Qt::white);
    return picture;
}

// A picture much larger than it will be drawn is first averaged down to about that size:
// drawing alone samples it and would alias fine detail.
QImage reducedFor(const QImage& image, QSizeF drawn)
{
    const QSize near(qCeil(drawn.width()), qCeil(drawn.height()));
    if (image.width() < 2 * near.width() && image.height() < 2 * near.height())
        return image;
    return image.scaled(near, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

int truncated(double value)
{
    return int(qBound(qint64(INT_MIN), toInteger(value), qint64(INT_MAX)));
}

}  // namespace

// The picture is decoded off the event loop and drawn when it comes. Whatever empties or
// fills the pane in the meantime (another selection, the table cleared) makes it stale,
// and a stale picture is dropped: the pane never shows a row that is no longer selected.
void Window1::drawCanvas(int row)
{
    const QVariant tag = ListBox1->CellTag(row, 0);
    if (tag.metaType() != QMetaType::fromType<FolderItem>())
        return;
    const FolderItem f = tag.value<FolderItem>();
    if (f.isNil())
        return;

    // The orientation that the file records is read with the row but not applied: the
    // pane shows the picture as it is stored.
    (void)ListBox1->CellTagAt(row, 6);

    const quint64 asked = Canvas1->backdropVersion();
    // Large pictures come decoded at a reduced scale that still covers the square, in the
    // screen's own pixels where it has more than one to a point.
    previewWorker->request(f, Canvas1->size() * Canvas1->devicePixelRatioF(), [this, asked](const ScaledPicture& picture) {
        if (Canvas1->backdropVersion() == asked && !picture.isNull())
            guard("show the preview", [&] { drawPicture(picture); });
    });
}

// The picture placed as the product has it; the arithmetic works on the size the
// picture has in the file, whatever scale it was decoded at.
void Window1::drawPicture(const ScaledPicture& picture)
{
    const int canvasWidth = Canvas1->width();
    const int canvasHeight = Canvas1->height();
    const int w = picture.fullSize.width();
    const int h = picture.fullSize.height();
    int boxWidth = canvasWidth, boxHeight = canvasHeight, offsetX = 0, offsetY = 0;
    optimizePictureSize(w, h, boxWidth, boxHeight, offsetX, offsetY);
    // Only the fitted width sets the scale, for tall pictures too.
    const double scale = double(boxWidth) / double(w);

    // Drawn in points on a picture of the screen's pixels, so that it stays sharp on a
    // scaled screen.
    const qreal ratio = Canvas1->devicePixelRatioF();
    QImage backdrop = blankPicture(qCeil(canvasWidth * ratio), qCeil(canvasHeight * ratio));
    backdrop.setDevicePixelRatio(ratio);
    // The picture at its stored size times the scale, with its centre at the square's
    // centre.
    const QSizeF drawn(w * scale, h * scale);
    const QPointF centre(canvasWidth / 2.0, canvasHeight / 2.0);
    if (!backdrop.isNull() && !drawn.isEmpty()) {
        QPainter painter(&backdrop);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(centre - QPointF(drawn.width() / 2, drawn.height() / 2), drawn),
                          reducedFor(picture.image, drawn * ratio));
    }
    Canvas1->setBackdrop(backdrop);
}

void Window1::optimizePictureSize(int w, int h, int& boxWidth, int& boxHeight, int& offsetX, int& offsetY)
{
    if (w <= 0 || h <= 0)
        return;  // no picture has such a size; nothing to fit
    if (h > w) {
        const int keptWidth = boxWidth;
        boxWidth = truncated(double(qint64(boxHeight) * w) / h);
        offsetX = truncated((double(keptWidth) - boxWidth) / 2.0);
        offsetY = 0;
    } else {
        const int keptHeight = boxHeight;
        boxHeight = truncated(double(qint64(boxWidth) * h) / w);
        offsetX = 0;
        offsetY = truncated((double(keptHeight) - boxHeight) / 2.0);
    }
}
