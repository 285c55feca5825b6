#include "platform/pictures/PictureProbe.h"

#include "platform/files/BinaryStream.h"
#include "platform/files/FolderItem.h"
#include "platform/pictures/PictureKind.h"
#include "platform/pictures/RawPreview.h"

#include <QImageReader>
#include <QIODevice>

#include <cstring>
#include <memory>

namespace {

// A read-only stream as a device that an image reader can peek at and seek on. The file
// is opened as every read of a listed file is (regular files only, never waiting), and
// the reader's own buffering is left off: the stream keeps a window of the file already.
class StreamDevice : public QIODevice {
public:
    explicit StreamDevice(BinaryStream& stream) : stream_(stream), length_(qint64(stream.Length()))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return false; }
    qint64 size() const override { return length_; }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        stream_.setPosition(quint64(pos()));
        const QByteArrayView bytes = stream_.ReadView(maxSize);
        if (!bytes.isEmpty())
            std::memcpy(data, bytes.data(), size_t(bytes.size()));
        return bytes.size();
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    BinaryStream& stream_;
    const qint64 length_;
};

enum class Jpeg { NotJpeg, Picture, NoPicture };

// JPEG, the usual case, is told here as its plugin tells it (the start marker, then a frame
// header with its size and the tables up to the start of the scan), without the plugin's
// decoder, which reads and keeps every segment before the frame (a camera's Exif block
// with its thumbnail) byte by byte. The segments are walked by their lengths:
//   FF D8                        start of image
//   FF xx  length(2)  data       a segment; length counts itself, not the marker
//   FF C0..CF but C4, C8, CC     a frame header: length(2) precision(1) height(2) width(2)
//   FF DA                        start of scan: the header is complete
// Fill bytes FF may stand before a marker; D0..D7 and 01 stand alone.
Jpeg jpegHeader(BinaryStream& s)
{
    s.setLittleEndian(false);
    s.setPosition(0);
    if (s.ReadUInt16() != 0xFFD8)
        return Jpeg::NotJpeg;
    bool sized = false;
    for (int segments = 0; segments < 4096; ++segments) {
        const QByteArrayView mark = s.ReadView(2);
        if (mark.size() < 2 || quint8(mark[0]) != 0xFF)
            return Jpeg::NoPicture;
        const quint8 marker = quint8(mark[1]);
        if (marker == 0xFF) {  // a fill byte
            s.setPosition(s.Position() - 1);
            continue;
        }
        if (marker == 0xDA)
            return sized ? Jpeg::Picture : Jpeg::NoPicture;
        if (marker == 0xD9 || marker == 0xD8)
            return Jpeg::NoPicture;
        if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7))
            continue;
        const quint64 at = s.Position();
        const quint16 length = s.ReadUInt16();
        if (length < 2)
            return Jpeg::NoPicture;
        if (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC) {
            const QByteArrayView frame = s.ReadView(5);
            if (frame.size() < 5)
                return Jpeg::NoPicture;
            const int height = quint8(frame[1]) << 8 | quint8(frame[2]);
            const int width = quint8(frame[3]) << 8 | quint8(frame[4]);
            sized = width > 0 && height > 0;
            if (!sized)
                return Jpeg::NoPicture;
        }
        s.setPosition(at + length);
    }
    return Jpeg::NoPicture;
}

// A HEIF or AVIF file counts by its ftyp box, complete, and a box after it (the one that
// describes the pictures); its pictures are not looked into.
bool heifHeader(BinaryStream& s, QByteArrayView head)
{
    const quint64 ftyp = quint64(quint8(head[0])) << 24 | quint8(head[1]) << 16 | quint8(head[2]) << 8 | quint8(head[3]);
    const quint64 length = s.Length();
    return ftyp >= 16 && length >= ftyp && length - ftyp >= 8;
}

// The format comes from the content, whatever the name says.
bool pluginReads(QIODevice& device)
{
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead())
        return false;
    // The few formats whose plugin can't tell a size without decoding are decoded.
    if (!reader.supportsOption(QImageIOHandler::Size))
        return !reader.read().isNull();
    return !reader.size().isEmpty();
}

bool jpegPluginPresent()
{
    static const bool present = QImageReader::supportedImageFormats().contains("jpeg");
    return present;
}

}  // namespace

bool givesPicture(const FolderItem& f)
{
    const Handle<BinaryStream> stream = f.OpenAsBinaryFile(false);
    if (stream.isNil())
        return false;
    // Still pictures that the image plugins don't know, and films, which they don't either
    // but which are never pictures here.
    stream->setPosition(0);
    const QByteArray head = stream->ReadView(pictureHeadBytes).toByteArray();
    switch (pictureKind(head)) {
    case PictureKind::Heif:
        return heifHeader(*stream, head);
    case PictureKind::Raw:
        return true;
    case PictureKind::Movie:
        return false;
    case PictureKind::Tiff:
    case PictureKind::Other:
        break;
    }
    if (jpegPluginPresent()) {
        const Jpeg jpeg = jpegHeader(*stream);
        if (jpeg != Jpeg::NotJpeg)
            return jpeg == Jpeg::Picture;
    }
    StreamDevice device(*stream);
    if (pluginReads(device))
        return true;
    // A raw file built on TIFF whose first directory the TIFF plugin can't take is still
    // a picture where it keeps a camera preview, as the preview pane shows it.
    if (pictureKind(head) != PictureKind::Tiff)
        return false;
    const std::unique_ptr<QIODevice> file = f.openDevice();
    const auto* opened = qobject_cast<const QFileDevice*>(file.get());
    return opened && hasRawPreview(*opened);
}
