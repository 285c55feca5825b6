#include "platform/files/BinaryStream.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <limits>
#include <memory>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

// No file offset lies beyond this; a position past it reads nothing.
constexpr quint64 kMaxOffset = quint64(std::numeric_limits<qint64>::max());

#ifdef _WIN32

qint64 readFile(int fd, char* out, qint64 count, quint64 offset)
{
    if (_lseeki64(fd, qint64(offset), SEEK_SET) < 0)
        return -1;
    return _read(fd, out, unsigned(qMin<qint64>(count, 1 << 30)));
}

qint64 writeFile(int fd, const char* in, qint64 count, quint64 offset)
{
    if (_lseeki64(fd, qint64(offset), SEEK_SET) < 0)
        return -1;
    return _write(fd, in, unsigned(qMin<qint64>(count, 1 << 30)));
}

qint64 sizeOf(int fd) { return _filelengthi64(fd); }
void closeFile(int fd) { _close(fd); }

#else

qint64 readFile(int fd, char* out, qint64 count, quint64 offset)
{
    return ::pread(fd, out, size_t(count), off_t(offset));
}

qint64 writeFile(int fd, const char* in, qint64 count, quint64 offset)
{
    return ::pwrite(fd, in, size_t(count), off_t(offset));
}

qint64 sizeOf(int fd)
{
    struct stat st;
    return ::fstat(fd, &st) == 0 ? qint64(st.st_size) : -1;
}

void closeFile(int fd) { ::close(fd); }

#endif

// Streams come and go one per file as files are listed, and each carries a 4 KB window:
// the memory of the last one released is kept for the next, instead of going back to the
// heap. One block per thread, so no locking.
template <typename T>
struct ReusingAllocator {
    using value_type = T;
    ReusingAllocator() = default;
    template <typename U>
    ReusingAllocator(const ReusingAllocator<U>&) {}

    struct Spare {
        void* block = nullptr;
        ~Spare() { ::operator delete(block, sizeof(T)); }
    };
    static Spare& spare()
    {
        thread_local Spare s;
        return s;
    }

    T* allocate(std::size_t n)
    {
        Spare& s = spare();
        if (n == 1 && s.block) {
            void* p = s.block;
            s.block = nullptr;
            return static_cast<T*>(p);
        }
        return static_cast<T*>(::operator new(n * sizeof(T)));
    }
    void deallocate(T* p, std::size_t n)
    {
        Spare& s = spare();
        if (n == 1 && !s.block) {
            s.block = p;
            return;
        }
        ::operator delete(p, n * sizeof(T));
    }
    template <typename U>
    bool operator==(const ReusingAllocator<U>&) const { return true; }
};

}  // namespace

Handle<BinaryStream> BinaryStream::fromDescriptor(int fd, bool write)
{
    return Handle<BinaryStream>(
        std::allocate_shared<BinaryStream>(ReusingAllocator<BinaryStream>(), Token{}, fd, write));
}

Handle<BinaryStream> BinaryStream::overBytes(const QByteArray& bytes, quint64 base)
{
    return Handle<BinaryStream>(std::make_shared<BinaryStream>(Token{}, bytes, std::min(base, kMaxOffset)));
}

BinaryStream::BinaryStream(Token, int fd, bool writable) : fd_(fd), writable_(writable) {}
BinaryStream::BinaryStream(Token, const QByteArray& bytes, quint64 base) : inMemory_(true), memory_(bytes), base_(base) {}

BinaryStream::~BinaryStream() { Close(); }

quint64 BinaryStream::Position() const { return position_; }
void BinaryStream::setPosition(quint64 position) { position_ = position; }
bool BinaryStream::LittleEndian() const { return littleEndian_; }
void BinaryStream::setLittleEndian(bool littleEndian) { littleEndian_ = littleEndian; }

quint64 BinaryStream::Length() const
{
    const qint64 size = fileSize();
    return size > 0 ? quint64(size) : 0;
}

qint64 BinaryStream::fileSize() const
{
    if (inMemory_)
        return qint64(base_) + memory_.size();
    return fd_ < 0 ? -1 : sizeOf(fd_);
}

qint64 BinaryStream::readAt(char* out, qint64 count, quint64 offset) const
{
    if (!isOpen() || count <= 0 || offset > kMaxOffset)
        return 0;
    if (inMemory_) {
        if (offset < base_ || offset - base_ >= quint64(memory_.size()))
            return 0;
        offset -= base_;
        const qint64 n = qMin<qint64>(count, memory_.size() - qint64(offset));
        std::memcpy(out, memory_.constData() + offset, size_t(n));
        return n;
    }
    if (quint64(count) > kMaxOffset - offset)
        count = qint64(kMaxOffset - offset);
    qint64 n;
    do
        n = readFile(fd_, out, count, offset);
    while (n < 0 && errno == EINTR);
    return n > 0 ? n : 0;
}

const char* BinaryStream::take(qint64& count)
{
    const quint64 pos = position_;
    if (inMemory_) {  // no window: the bytes are at hand
        const quint64 size = quint64(memory_.size());
        const quint64 at = pos - base_;
        count = pos >= base_ && at < size ? qint64(qMin(quint64(count), size - at)) : 0;
        position_ = pos + quint64(count);
        return memory_.constData() + (count ? at : 0);
    }
    const bool cached = windowLength_ > 0 && pos >= windowStart_
                        && pos - windowStart_ <= quint64(windowLength_)
                        && count <= windowLength_ - qint64(pos - windowStart_);
    if (!cached) {
        // Aligned, unless the bytes asked for would straddle the window's end.
        quint64 start = pos & ~quint64(kWindow - 1);
        if (pos - start > quint64(kWindow - count))
            start = pos;
        windowLength_ = readAt(window_, kWindow, start);
        windowStart_ = start;
    }
    if (pos < windowStart_ || pos - windowStart_ >= quint64(windowLength_)) {
        count = 0;
        return window_;
    }
    const qint64 at = qint64(pos - windowStart_);
    count = qMin(count, windowLength_ - at);
    position_ = pos + quint64(count);
    return window_ + at;
}

QByteArray BinaryStream::Read(qint64 count)
{
    if (count <= 0 || !isOpen())
        return QByteArray();
    if (count <= kWindow) {
        const char* p = take(count);
        return count > 0 ? QByteArray(p, count) : QByteArray();
    }
    return readLarge(count);
}

QByteArrayView BinaryStream::ReadView(qint64 count)
{
    large_.clear();
    if (count <= 0 || !isOpen())
        return {};
    if (count <= kWindow || inMemory_) {
        const char* p = take(count);
        return QByteArrayView(p, count);
    }
    large_ = readLarge(count);
    return large_;
}

QByteArray BinaryStream::readLarge(qint64 count)
{
    // A large read: as much as the file holds from the position, straight from the file.
    const qint64 size = fileSize();
    if (size <= 0 || position_ >= quint64(size))
        return QByteArray();
    const qint64 want = qMin<qint64>(count, qint64(quint64(size) - position_));
    QByteArray out(want, Qt::Uninitialized);
    qint64 got = 0;
    while (got < want) {
        const qint64 n = readAt(out.data() + got, want - got, position_ + quint64(got));
        if (n <= 0)
            break;
        got += n;
    }
    out.truncate(got);
    position_ += quint64(got);
    return out;
}

quint16 BinaryStream::ReadUInt16()
{
    uchar bytes[2] = {0, 0};
    qint64 n = 2;
    if (isOpen()) {
        const char* p = take(n);
        std::memcpy(bytes, p, size_t(n));
    }
    return littleEndian_ ? qFromLittleEndian<quint16>(bytes) : qFromBigEndian<quint16>(bytes);
}

double BinaryStream::ReadDouble()
{
    uchar bytes[8] = {0, 0, 0, 0, 0, 0, 0, 0};
    qint64 n = 8;
    if (isOpen()) {
        const char* p = take(n);
        std::memcpy(bytes, p, size_t(n));
    }
    const quint64 bits = littleEndian_ ? qFromLittleEndian<quint64>(bytes) : qFromBigEndian<quint64>(bytes);
    return std::bit_cast<double>(bits);
}

bool BinaryStream::Write(const QByteArray& bytes)
{
    if (!isOpen() || !writable_)
        return false;
    const qint64 size = fileSize();
    const quint64 n = quint64(bytes.size());
    if (size < 0 || position_ > quint64(size) || n > quint64(size) - position_)
        return false;
    qint64 done = 0;
    while (quint64(done) < n) {
        const qint64 w = writeFile(fd_, bytes.constData() + done, qint64(n) - done, position_ + quint64(done));
        if (w < 0 && errno == EINTR)
            continue;
        if (w <= 0) {
            windowLength_ = 0;  // the file may hold part of the bytes now
            return false;
        }
        done += w;
    }
    // Keep the window what the file now holds.
    if (windowLength_ > 0) {
        const quint64 from = qMax(position_, windowStart_);
        const quint64 to = qMin(position_ + n, windowStart_ + quint64(windowLength_));
        if (from < to)
            std::memcpy(window_ + (from - windowStart_), bytes.constData() + (from - position_), size_t(to - from));
    }
    position_ += n;
    return true;
}

void BinaryStream::Close()
{
    if (fd_ >= 0)
        closeFile(fd_);
    fd_ = -1;
    inMemory_ = false;
    memory_.clear();
    windowLength_ = 0;
}
