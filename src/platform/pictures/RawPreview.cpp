#include "platform/pictures/RawPreview.h"

#include <QFile>

#include <libraw/libraw.h>

#include <memory>

namespace {

template <typename T, void (*Free)(T*)>
struct Freed {
    void operator()(T* p) const { Free(p); }
};
using Raw = std::unique_ptr<libraw_data_t, Freed<libraw_data_t, libraw_close>>;
using Processed = std::unique_ptr<libraw_processed_image_t, Freed<libraw_processed_image_t, libraw_dcraw_clear_mem>>;

QByteArray pathOf(const QFileDevice& file)
{
#if defined(__linux__)
    if (file.handle() >= 0)
        return "/proc/self/fd/" + QByteArray::number(file.handle());
#endif
    return QFile::encodeName(file.fileName());
}

// The file opened by LibRaw, its directories read; null where it is no raw file LibRaw knows.
Raw opened(const QFileDevice& file)
{
    // No messages to stderr about the files it can't read: such a file just shows nothing.
    Raw raw(libraw_init(LIBRAW_OPIONS_NO_MEMERR_CALLBACK | LIBRAW_OPIONS_NO_DATAERR_CALLBACK));
    const QByteArray path = pathOf(file);
    if (!raw || path.isEmpty() || libraw_open_file(raw.get(), path.constData()) != LIBRAW_SUCCESS)
        return nullptr;
    return raw;
}

}  // namespace

bool hasRawPreview(const QFileDevice& file)
{
    const Raw raw = opened(file);
    return raw && raw->thumbnail.tlength > 0;
}

RawPreview rawPreview(const QFileDevice& file)
{
    RawPreview result;
    const Raw raw = opened(file);
    if (!raw || libraw_unpack_thumb(raw.get()) != LIBRAW_SUCCESS)
        return result;
    int error = LIBRAW_SUCCESS;
    const Processed thumb(libraw_dcraw_make_mem_thumb(raw.get(), &error));
    if (!thumb || error != LIBRAW_SUCCESS)
        return result;
    const auto* data = reinterpret_cast<const char*>(thumb->data);
    if (thumb->type == LIBRAW_IMAGE_JPEG) {
        result.jpeg = QByteArray(data, qsizetype(thumb->data_size));
    } else if (thumb->type == LIBRAW_IMAGE_BITMAP && thumb->colors == 3 && thumb->bits == 8
               && qint64(thumb->width) * thumb->height * 3 <= qint64(thumb->data_size)) {
        result.image = QImage(reinterpret_cast<const uchar*>(data), thumb->width, thumb->height,
                              qsizetype(thumb->width) * 3, QImage::Format_RGB888)
                           .copy();
    }
    return result;
}
