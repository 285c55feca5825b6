#include "platform/pictures/HeifPicture.h"

#include <libheif/heif.h>

#include <memory>
#include <vector>

namespace {

// Beyond this a picture is not decoded for the pane (a phone's 48-megapixel photo is far
// below it); it bounds what a file's claimed size can make us allocate.
constexpr qint64 kMostPixels = qint64(200) << 20;
constexpr int kLongestSide = 1 << 16;
constexpr int kMostThumbnails = 16;

template <typename T, void (*Free)(T*)>
struct Freed {
    void operator()(T* p) const { Free(p); }
};
using Context = std::unique_ptr<heif_context, Freed<heif_context, heif_context_free>>;
using ImageHandle = std::unique_ptr<heif_image_handle, Freed<const heif_image_handle, heif_image_handle_release>>;
using Image = std::unique_ptr<heif_image, Freed<const heif_image, heif_image_release>>;
using DecodingOptions = std::unique_ptr<heif_decoding_options, Freed<heif_decoding_options, heif_decoding_options_free>>;

QIODevice& deviceOf(void* userdata)
{
    return *static_cast<QIODevice*>(userdata);
}

// libheif reads the file through the device the preview opened.
const heif_reader deviceReader{
    1,
    [](void* d) -> int64_t { return deviceOf(d).pos(); },
    [](void* data, size_t size, void* d) -> int {
        return qint64(size) >= 0 && deviceOf(d).read(static_cast<char*>(data), qint64(size)) == qint64(size) ? 0 : -1;
    },
    [](int64_t position, void* d) -> int { return position >= 0 && deviceOf(d).seek(position) ? 0 : -1; },
    [](int64_t size, void* d) -> heif_reader_grow_status {
        return size <= deviceOf(d).size() ? heif_reader_grow_status_size_reached
                                          : heif_reader_grow_status_size_beyond_eof;
    },
};

// The size as coded, before any turn or crop that the file asks for.
QSize codedSize(const heif_image_handle* h)
{
    return QSize(heif_image_handle_get_ispe_width(h), heif_image_handle_get_ispe_height(h));
}

bool decodable(QSize size)
{
    return !size.isEmpty() && qint64(size.width()) * size.height() <= kMostPixels;
}

// The smallest thumbnail whose sides both reach `least`, or none.
ImageHandle thumbnailCovering(const heif_image_handle* primary, QSize least)
{
    heif_item_id ids[kMostThumbnails];
    const int n = heif_image_handle_get_list_of_thumbnail_IDs(primary, ids, kMostThumbnails);
    ImageHandle best;
    for (int i = 0; i < n; ++i) {
        heif_image_handle* h = nullptr;
        if (heif_image_handle_get_thumbnail(primary, ids[i], &h).code != heif_error_Ok)
            continue;
        ImageHandle thumb(h);
        const QSize size = codedSize(h);
        if (decodable(size) && size.width() >= least.width() && size.height() >= least.height()
            && (!best || size.width() < codedSize(best.get()).width()))
            best = std::move(thumb);
    }
    return best;
}

// Decoded to 8-bit RGB, unturned; a null image if that fails.
QImage decoded(const heif_image_handle* h)
{
    const DecodingOptions options(heif_decoding_options_alloc());
    options->ignore_transformations = 1;
    heif_image* raw = nullptr;
    if (heif_decode_image(h, &raw, heif_colorspace_RGB, heif_chroma_interleaved_RGB, options.get()).code != heif_error_Ok)
        return QImage();
    const Image image(raw);
    int stride = 0;
    const uint8_t* plane = heif_image_get_plane_readonly(raw, heif_channel_interleaved, &stride);
    const int w = heif_image_get_width(raw, heif_channel_interleaved);
    const int h2 = heif_image_get_height(raw, heif_channel_interleaved);
    if (!plane || w <= 0 || h2 <= 0 || heif_image_get_bits_per_pixel_range(raw, heif_channel_interleaved) != 8)
        return QImage();
    // The plane dies with the heif image: the picture is copied out of it.
    return QImage(plane, w, h2, stride, QImage::Format_RGB888).copy();
}

}  // namespace

HeifPicture openHeifPicture(QIODevice& file, QSize box)
{
    HeifPicture result;
    if (!file.seek(0))
        return result;
    const Context context(heif_context_alloc());
    heif_context_set_maximum_image_size_limit(context.get(), kLongestSide);
    if (heif_context_read_from_reader(context.get(), &deviceReader, &file, nullptr).code != heif_error_Ok)
        return result;
    heif_image_handle* h = nullptr;
    if (heif_context_get_primary_image_handle(context.get(), &h).code != heif_error_Ok)
        return result;
    const ImageHandle primary(h);
    const QSize full = codedSize(h);
    if (!decodable(full))
        return result;

    const QSize least = full.scaled(box.expandedTo(QSize(1, 1)), Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    if (const ImageHandle thumb = thumbnailCovering(h, least)) {
        result.image = decoded(thumb.get());
    } else {
        // Only the picture fitted into the box is kept, not the full decode.
        const QImage image = decoded(h);
        if (!image.isNull())
            result.image = image.width() > least.width()
                               ? image.scaled(least, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                               : image;
    }
    if (!result.image.isNull())
        result.fullSize = full;
    return result;
}
