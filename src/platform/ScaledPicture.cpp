#include "platform/ScaledPicture.h"

#include <QImageReader>

namespace {

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

}  // namespace

ScaledPicture openScaledPicture(const QString& path, QSize box)
{
    ScaledPicture result;
    QImageReader reader(path);
    reader.setAutoTransform(false);
    reader.setDecideFormatFromContent(true);

    const QSize stored = reader.size();
    bool scaled = false;
    if (stored.isValid() && decodesScaled(reader.format())) {
        // The decoder picks the DCT scale from the ratio of the stored size to the asked
        // one; a whole-number division by d makes it pick exactly d.
        const int d = reductionFor(stored, box);
        scaled = d > 1;
        if (scaled)
            reader.setScaledSize(QSize(stored.width() / d, stored.height() / d));
    }
    result.image = reader.read();
    if (result.image.isNull())
        return result;
    result.fullSize = scaled ? stored : result.image.size();
    return result;
}
