#include "platform/PictureProbe.h"

#include "platform/BinaryStream.h"
#include "platform/FolderItem.h"

#include <QImageReader>
#include <QIODevice>

#include <cstring>

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

}  // namespace

bool givesPicture(const FolderItem& f)
{
    const Handle<BinaryStream> stream = f.OpenAsBinaryFile(false);
    if (stream.isNil())
        return false;
    StreamDevice device(*stream);
    // The format comes from the content, whatever the name says.
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead())
        return false;
    // The few formats whose plugin can't tell a size without decoding are decoded.
    if (!reader.supportsOption(QImageIOHandler::Size))
        return !reader.read().isNull();
    return !reader.size().isEmpty();
}
