#include "platform/pictures/ScaledPicture.h"

#include <QBuffer>
#include <QFileDevice>
#include <QImageReader>

#include "platform/pictures/HeifPicture.h"
#include "platform/pictures/PictureKind.h"
#include "platform/pictures/RawPreview.h"

namespace {

// A JPEG up to this size is read into memory in one go before decoding: the decoder's own
// small reads cost more than the copy.
constexpr qint64 kWholeFileLimit = qint64(256) << 20;

// The largest of 8, 4 and 2 that keeps both sides at least as long as the picture fitted
// into the box, or 1.
int reductionFor(QSize full, QSize box)
{
    const QSize least = full.scaled(box.expandedTo(QSize(1, 1)), Qt::KeepAspectRatio);
    for (int d : {8, 4, 2})
        if (full.width() / d >= qMax(1, least.width()) && full.height() / d >= qMax(1, least.height()))
            return d;
    return 1;
}

bool decodesScaled(const QByteArray& format)
{
    return format == "jpeg" || format == "jpg";
}

QImage read(QIODevice* device, QSize scaledSize)
{
    QImageReader reader(device);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(false);
    if (scaledSize.isValid())
        reader.setScaledSize(scaledSize);
    return reader.read();
}

// What the image plugins make of the file, from its start.
ScaledPicture readScaled(QIODevice& file, QSize box)
{
    ScaledPicture result;
    QSize stored;
    int d = 1;
    {
        QImageReader probe(&file);
        probe.setDecideFormatFromContent(true);
        stored = probe.size();
        if (stored.isValid() && decodesScaled(probe.format()))
            d = reductionFor(stored, box);
    }
    if (!file.seek(0))
        return result;
    if (d == 1) {
        result.image = read(&file, QSize());
        result.fullSize = result.image.size();
        return result;
    }

    // The decoder picks the DCT scale from the ratio of the stored size to the asked one;
    // a whole-number division by d makes it pick exactly d.
    const QSize scaled(stored.width() / d, stored.height() / d);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QIODevice* source = &file;
    if (file.size() <= kWholeFileLimit) {
        bytes = file.readAll();
        buffer.open(QIODevice::ReadOnly);
        source = &buffer;
    }
    result.image = read(source, scaled);
    if (!result.image.isNull())
        result.fullSize = stored;
    return result;
}

// A raw file's preview, decoded as any picture is: the camera's JPEG at a reduced scale.
ScaledPicture fromRawPreview(const RawPreview& preview, QSize box)
{
    if (!preview.jpeg.isEmpty()) {
        QBuffer buffer;
        buffer.setData(preview.jpeg);
        return buffer.open(QIODevice::ReadOnly) ? readScaled(buffer, box) : ScaledPicture();
    }
    return ScaledPicture{preview.image.size(), preview.image};
}

}  // namespace

ScaledPicture openScaledPicture(const FolderItem& f, QSize box)
{
    const std::unique_ptr<QIODevice> opened = f.isNil() ? nullptr : f.openDevice();
    if (!opened)
        return ScaledPicture();
    QIODevice& file = *opened;
    const QByteArray head = file.peek(pictureHeadBytes);
    switch (pictureKind(head)) {
    case PictureKind::Heif: {
        const HeifPicture heif = openHeifPicture(file, box);
        return ScaledPicture{heif.fullSize, heif.image};
    }
    case PictureKind::Movie:
        return ScaledPicture();
    case PictureKind::Raw:
    case PictureKind::Tiff:
        // A raw file built on TIFF shows its camera preview; a plain TIFF, which LibRaw
        // does not take, is read by the image plugin.
        if (auto* device = qobject_cast<QFileDevice*>(&file)) {
            const ScaledPicture preview = fromRawPreview(rawPreview(*device), box);
            if (!preview.isNull() || pictureKind(head) == PictureKind::Raw)
                return preview;
        }
        break;
    case PictureKind::Other:
        break;
    }
    return readScaled(file, box);
}

ScaledPicture openScaledPicture(const QString& path, QSize box)
{
    return openScaledPicture(FolderItem(path), box);
}
