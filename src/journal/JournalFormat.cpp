// The journal's bytes. A file is a header and records:
//
//   header   0  4  "VLKJ"
//            4  2  version (little-endian), 1
//            6  2  zero
//   record   0  1  kind: 1 plan, 2 done, 3 undone, 4 left interrupted
//            1  4  payload length n
//            5  n  payload
//          5+n  4  CRC-32 of the kind, the length and the payload
//
// The plan's payload: i64 start (ms since the epoch), u32 dates, text offset, u32 files,
// and for each file: bytes path, u64 device, inode, size, time modification, u8 flags
// (1 birth, 2 modification after, 4 creation after), the times the flags name, u32
// patches, and for each: u64 position, bytes before, bytes after, i32 column, text what.
// Bytes and text are a u32 length and the bytes (text in UTF-8); a time is i64 seconds
// and i64 nanoseconds. Every number is little-endian. The other records hold i64 ms.

#include "journal/Journal.h"

#include <QtEndian>

#include <QIODevice>

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/base/TextId.h"

namespace {

constexpr char kMagic[4] = {'V', 'L', 'K', 'J'};
constexpr quint16 kVersion = 1;
constexpr qsizetype kHeaderSize = 8;
constexpr qsizetype kRecordFrame = 9;  // kind, length, CRC
enum Kind : quint8 { PlanRecord = 1, DoneRecord = 2, UndoneRecord = 3, LeftRecord = 4 };
constexpr quint8 kBirth = 1, kModificationAfter = 2, kCreationAfter = 4;

// CRC-32 (the polynomial of zlib and PNG), eight bytes a step: the plan of a large run
// is tens of megabytes.
using CrcTables = std::array<std::array<quint32, 256>, 8>;
const CrcTables& crcTables()
{
    static const CrcTables tables = [] {
        CrcTables t{};
        for (quint32 i = 0; i < 256; ++i) {
            quint32 c = i;
            for (int k = 0; k < 8; ++k)
                c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[0][i] = c;
        }
        for (quint32 i = 0; i < 256; ++i)
            for (int k = 1; k < 8; ++k)
                t[k][i] = (t[k - 1][i] >> 8) ^ t[0][t[k - 1][i] & 0xFF];
        return t;
    }();
    return tables;
}

quint32 crc32(const char* data, qsizetype n)
{
    const CrcTables& t = crcTables();
    quint32 c = 0xFFFFFFFFu;
    const auto* p = reinterpret_cast<const uchar*>(data);
    for (; n >= 8; n -= 8, p += 8) {
        const quint32 lo = c ^ qFromLittleEndian<quint32>(p), hi = qFromLittleEndian<quint32>(p + 4);
        c = t[7][lo & 0xFF] ^ t[6][(lo >> 8) & 0xFF] ^ t[5][(lo >> 16) & 0xFF] ^ t[4][lo >> 24]
            ^ t[3][hi & 0xFF] ^ t[2][(hi >> 8) & 0xFF] ^ t[1][(hi >> 16) & 0xFF] ^ t[0][hi >> 24];
    }
    for (; n > 0; --n, ++p)
        c = t[0][(c ^ *p) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

class Writer {
public:
    QByteArray out;
    template <class T>
    void number(T v)
    {
        const T le = qToLittleEndian(v);
        out.append(reinterpret_cast<const char*>(&le), sizeof le);
    }
    void bytes(const QByteArray& b)
    {
        number(quint32(b.size()));
        out.append(b);
    }
    void time(const FileTime& t)
    {
        number(qint64(t.seconds));
        number(qint64(t.nanoseconds));
    }
};

// Reads within the bytes it was given; the first read past their end fails every later one.
class Reader {
public:
    Reader(const char* data, qsizetype size) : data_(data), left_(size) {}
    bool ok = true;
    qsizetype left() const { return left_; }
    template <class T>
    T number()
    {
        T v{};
        if (!take(sizeof v))
            return T{};
        memcpy(&v, data_ - sizeof v, sizeof v);
        return qFromLittleEndian(v);
    }
    QByteArray bytes()
    {
        const quint32 n = number<quint32>();
        return take(n) ? QByteArray(data_ - n, n) : QByteArray();
    }
    FileTime time()
    {
        const qint64 s = number<qint64>();
        return {s, number<qint64>()};
    }

private:
    bool take(quint64 n)
    {
        ok = ok && n <= quint64(left_);
        if (ok) {
            data_ += n;
            left_ -= qsizetype(n);
        }
        return ok;
    }
    const char* data_;
    qsizetype left_;
};

void decodeFile(Reader& r, JournalFile& f)
{
    f.path = r.bytes();
    f.device = r.number<quint64>();
    f.inode = r.number<quint64>();
    f.size = r.number<quint64>();
    f.modification = r.time();
    const quint8 flags = r.number<quint8>();
    if (flags & kBirth)
        f.birth = r.time();
    if (flags & kModificationAfter)
        f.modificationAfter = r.time();
    if (flags & kCreationAfter)
        f.creationAfter = r.time();
    const quint32 patches = r.number<quint32>();
    // Each patch takes 24 bytes at least: no count reserves more than the bytes can hold.
    f.patches.reserve(std::min<quint64>(patches, quint64(r.left()) / 24));
    for (quint32 i = 0; i < patches && r.ok; ++i) {
        Patch p;
        p.position = r.number<quint64>();
        p.before = r.bytes();
        p.after = r.bytes();
        p.column = r.number<qint32>();
        p.what = QString::fromUtf8(r.bytes());
        r.ok = r.ok && p.before.size() == p.after.size();
        f.patches.push_back(std::move(p));
    }
}

bool decodePlan(Reader r, JournalRun& run)
{
    run.started = r.number<qint64>();
    run.dates = int(r.number<quint32>());
    run.offset = QString::fromUtf8(r.bytes());
    const quint32 files = r.number<quint32>();
    run.fileCount = files;
    run.files.reserve(std::min<quint64>(files, quint64(r.left()) / 70));
    for (quint32 i = 0; i < files && r.ok; ++i) {
        run.files.emplace_back();
        decodeFile(r, run.files.back());
    }
    return r.ok && r.left() == 0;
}

}  // namespace

static QByteArray journalRecord(quint8 kind, const QByteArray& payload)
{
    Writer w;
    w.out.reserve(payload.size() + kRecordFrame);
    w.number(kind);
    w.bytes(payload);
    w.number(crc32(w.out.constData(), w.out.size()));
    return w.out;
}

QByteArray journalStateRecord(JournalRun::State state, bool left, qint64 when)
{
    Writer w;
    w.number(when);
    return journalRecord(left ? LeftRecord : state == JournalRun::Undone ? UndoneRecord : DoneRecord, w.out);
}

QByteArray encodePlan(const JournalRun& run)
{
    Writer w;
    qsizetype estimate = 64;
    for (const JournalFile& f : run.files) {
        estimate += 120 + f.path.size();
        for (const Patch& p : f.patches)
            estimate += 32 + 2 * p.before.size() + p.what.size() * 3;
    }
    w.out.reserve(estimate);
    w.out.append(kMagic, 4);
    w.number(kVersion);
    w.number(quint16(0));
    // The plan's record, its length filled in once it is known.
    w.number(quint8(PlanRecord));
    w.number(quint32(0));
    w.number(run.started);
    w.number(quint32(run.dates));
    w.bytes(run.offset.toUtf8());
    w.number(quint32(run.files.size()));
    for (const JournalFile& f : run.files) {
        w.bytes(f.path);
        w.number(f.device);
        w.number(f.inode);
        w.number(f.size);
        w.time(f.modification);
        w.number(quint8((f.birth ? kBirth : 0) | (f.modificationAfter ? kModificationAfter : 0)
                        | (f.creationAfter ? kCreationAfter : 0)));
        for (const auto& t : {f.birth, f.modificationAfter, f.creationAfter})
            if (t)
                w.time(*t);
        w.number(quint32(f.patches.size()));
        for (const Patch& p : f.patches) {
            w.number(p.position);
            w.bytes(p.before);
            w.bytes(p.after);
            w.number(qint32(p.column));
            w.bytes(p.what.toUtf8());
        }
    }
    const quint32 length = qToLittleEndian(quint32(w.out.size() - kHeaderSize - 5));
    memcpy(w.out.data() + kHeaderSize + 1, &length, 4);
    w.number(crc32(w.out.constData() + kHeaderSize, w.out.size() - kHeaderSize));
    return w.out;
}

namespace {

std::nullopt_t fail(QString* why, const char* id, const char* text)
{
    if (why)
        *why = textById(id, text);
    return std::nullopt;
}

bool headerHolds(const QByteArray& bytes, QString* why)
{
    if (bytes.size() < kHeaderSize || !bytes.startsWith(QByteArrayView(kMagic, 4)))
        return fail(why, "Journal.notJournal", "it is not a journal of this program"), false;
    Reader header(bytes.constData() + 4, 4);
    if (header.number<quint16>() > kVersion)
        return fail(why, "Journal.newer", "it was written by a newer version of this program"), false;
    if (header.number<quint16>() != 0)
        return fail(why, "Journal.corrupt", "its contents are damaged"), false;
    return true;
}

// The records after the plan, each checked by its CRC; one cut or damaged while it was
// appended ends them, and the run stands as it was before it.
void readRecords(const char* data, qsizetype size, JournalRun& run)
{
    for (qsizetype at = 0; at < size;) {
        Reader frame(data + at, size - at);
        const quint8 kind = frame.number<quint8>();
        const quint32 n = frame.number<quint32>();
        if (!frame.ok || quint64(n) + 4 > quint64(frame.left()))
            return;
        Reader tail(data + at + 5 + n, 4);
        if (tail.number<quint32>() != crc32(data + at, 5 + qsizetype(n)))
            return;
        if (kind == DoneRecord)
            run.state = JournalRun::Done;
        else if (kind == UndoneRecord)
            run.state = JournalRun::Undone;
        else if (kind == LeftRecord)
            run.left = true;
        at += kRecordFrame + qsizetype(n);
    }
}

}  // namespace

std::optional<JournalRun> decodeJournal(const QByteArray& bytes, QString* why)
{
    if (!headerHolds(bytes, why))
        return std::nullopt;
    Reader frame(bytes.constData() + kHeaderSize, bytes.size() - kHeaderSize);
    const quint8 kind = frame.number<quint8>();
    const quint32 n = frame.number<quint32>();
    if (!frame.ok || quint64(n) + 4 > quint64(frame.left()))
        return fail(why, "Journal.cut", "it is cut short");
    const char* record = bytes.constData() + kHeaderSize;
    Reader crc(record + 5 + n, 4);
    JournalRun run;
    if (kind != PlanRecord || crc.number<quint32>() != crc32(record, 5 + qsizetype(n))
        || !decodePlan(Reader(record + 5, n), run))
        return fail(why, "Journal.corrupt", "its contents are damaged");
    const qsizetype planEnd = kHeaderSize + kRecordFrame + qsizetype(n);
    readRecords(bytes.constData() + planEnd, bytes.size() - planEnd, run);
    return run;
}

std::optional<JournalRun> readJournalSummary(QIODevice& in, QString* why)
{
    const QByteArray head = in.read(kHeaderSize + 5);
    if (!headerHolds(head, why))
        return std::nullopt;
    Reader frame(head.constData() + kHeaderSize, head.size() - kHeaderSize);
    const quint8 kind = frame.number<quint8>();
    const qint64 planEnd = kHeaderSize + kRecordFrame + qint64(frame.number<quint32>());
    if (!frame.ok || in.size() < planEnd)
        return fail(why, "Journal.cut", "it is cut short");
    // The plan's first fields: the run's time, its counts and its offset.
    const QByteArray start = in.read(std::min<qint64>(planEnd - kRecordFrame - kHeaderSize, 65536));
    Reader r(start.constData(), start.size());
    JournalRun run;
    run.started = r.number<qint64>();
    run.dates = int(r.number<quint32>());
    run.offset = QString::fromUtf8(r.bytes());
    run.fileCount = r.number<quint32>();
    if (kind != PlanRecord || !r.ok || !in.seek(planEnd))
        return fail(why, "Journal.corrupt", "its contents are damaged");
    const QByteArray records = in.read(1 << 20);
    readRecords(records.constData(), records.size(), run);
    return run;
}
