// The dates of a movie, from its movie header, and where else the movie shows them.

#include "exif/Movie.h"

#include "exif/Boxes.h"
#include "platform/files/BinaryStream.h"
#include "platform/text/Date.h"
#include "platform/text/Text.h"

#include <algorithm>

namespace {

// The brands of still pictures and raws that share the box structure; theirs is another walk.
bool isStillBrand(quint32 brand)
{
    switch (brand) {
    case fourcc("heic"): case fourcc("heix"): case fourcc("hevc"): case fourcc("heim"):
    case fourcc("heis"): case fourcc("hevm"): case fourcc("hevs"): case fourcc("mif1"):
    case fourcc("msf1"): case fourcc("avif"): case fourcc("avis"): case fourcc("crx "):
        return true;
    default:
        return false;
    }
}

// The latest movie time that a date of the table can show: 9999-12-31 23:59:59 UTC.
constexpr quint64 kLastSeconds = 253402300799ull + kMovieEpoch;

// True when the box's own size field lies within end: a box that claims more than its
// parent holds was cut (the walker ends such a box at its parent's end).
bool whole(BinaryStream& s, const Box& b, quint64 end)
{
    const QByteArray head = readBounded(s, b.start, 16, end);
    quint64 size = bigEndian(head, 0, 4);
    if (size == 1)
        size = bigEndian(head, 8, 8);
    return size == 0 || (b.start < end && size <= end - b.start);
}

/* The times of a movie header ('mvhd'), a track header ('tkhd') or a media header ('mdhd'),
   all full boxes:
     version 0: offset 0, 1 byte: version   offset 4, 4 bytes: creation   offset 8, 4 bytes: modification
     version 1: offset 0, 1 byte: version   offset 4, 8 bytes: creation   offset 12, 8 bytes: modification
   need is the length of the whole header that each version asks for. */
bool readTimes(BinaryStream& s, const Box& b, quint64 need0, quint64 need1, MovieField& creation, MovieField& modification)
{
    const QByteArray body = readBounded(s, b.body, 20, b.end);
    if (body.isEmpty())
        return false;
    const int version = quint8(body[0]);
    if (version > 1 || b.bodyLength() < (version ? need1 : need0))
        return false;
    const int width = version ? 8 : 4;
    creation = {b.body + 4, width, bigEndian(body, 4, width)};
    modification = {b.body + 4 + quint64(width), width, bigEndian(body, 4 + width, width)};
    return true;
}

constexpr quint64 kMovieHeader0 = 100, kMovieHeader1 = 112;

// Finds moov whole at the top of the file, and mvhd whole inside it.
std::optional<MovieHeader> headerIn(BinaryStream& s, BoxBudget& budget, Box& moov)
{
    const quint64 size = s.Length();
    BoxLevel top(s, 0, size, budget);
    if (!top.find(fourcc("moov"), moov) || !whole(s, moov, size))
        return std::nullopt;
    Box mvhd;
    BoxLevel inMoov = top.inside(moov);
    MovieHeader h;
    if (!inMoov.find(fourcc("mvhd"), mvhd) || !whole(s, mvhd, moov.end)
        || !readTimes(s, mvhd, kMovieHeader0, kMovieHeader1, h.creation, h.modification))
        return std::nullopt;
    return h;
}

// The body of a 'meta' box: a full box in MP4 (4 bytes of version and flags first), a plain
// one in QuickTime, where its first child, 'hdlr', follows at once.
quint64 metaSkip(BinaryStream& s, const Box& meta)
{
    const QByteArray head = readBounded(s, meta.body, 8, meta.end);
    return bigEndian(head, 4, 4) == fourcc("hdlr") ? 0 : 4;
}

/* 'keys': a full box, then
     offset 4, 4 bytes: entry count
     offset 8: entries, each: 4 bytes size (of the entry), 4 bytes namespace, size - 8 bytes name
   The one-based index of the Apple creation date's key, or 0. */
quint32 creationDateKey(BinaryStream& s, const Box& keys)
{
    static constexpr QByteArrayView kKey("com.apple.quicktime.creationdate");
    constexpr quint64 kMostRead = 1 << 16;  // a keys box of real movies is a few hundred bytes
    const QByteArray body = readBounded(s, keys.body, kMostRead, keys.end);
    const quint64 count = bigEndian(body, 4, 4);
    qsizetype at = 8;
    for (quint32 index = 1; index <= count && at + 8 <= body.size(); ++index) {
        const quint64 length = bigEndian(body, at, 4);
        if (length < 8 || length > quint64(body.size() - at))
            return 0;
        if (QByteArrayView(body).sliced(at + 8, qsizetype(length) - 8) == kKey)
            return index;
        at += qsizetype(length);
    }
    return 0;
}

// The value of the first 'data' box inside box b: 4 bytes of type, 4 of locale, the value.
bool dataValue(BoxLevel level, Span& value)
{
    Box data;
    if (!level.find(fourcc("data"), data) || data.bodyLength() < 8)
        return false;
    value = {data.body + 8, data.bodyLength() - 8};
    return true;
}

// The copies inside one 'meta' box: the Apple creation date through keys and ilst, and an
// iTunes-style ©day.
void metaCopies(BinaryStream& s, const BoxLevel& parent, const Box& meta, MovieCopies& out)
{
    quint32 key = 0;
    Box b, ilst;
    bool hasList = false;
    BoxLevel level = parent.inside(meta, metaSkip(s, meta));
    while (level.next(b)) {
        if (b.type == fourcc("keys"))
            key = creationDateKey(s, b);
        else if (b.type == fourcc("ilst") && !hasList) {
            ilst = b;
            hasList = true;
        }
    }
    if (!hasList)
        return;
    BoxLevel inList = level.inside(ilst);
    Span value;
    for (Box item; inList.next(item);) {
        const bool apple = key && item.type == key;
        if ((apple || item.type == fourcc("\xA9" "day")) && dataValue(inList.inside(item), value))
            out.texts.push_back({apple, value});
    }
}

/* 'udta' > '©day' in QuickTime's own form: 2 bytes text length, 2 bytes language, the text;
   in the iTunes form it holds a 'data' box instead. */
void dayText(BinaryStream& s, const BoxLevel& udta, const Box& day, MovieCopies& out)
{
    const QByteArray head = readBounded(s, day.body, 8, day.end);
    Span value;
    if (bigEndian(head, 4, 4) == fourcc("data")) {
        if (dataValue(udta.inside(day), value))
            out.texts.push_back({false, value});
        return;
    }
    const quint64 length = bigEndian(head, 0, 2);
    if (day.bodyLength() >= 4 && length <= day.bodyLength() - 4)
        out.texts.push_back({false, {day.body + 4, length}});
}

void trackCopies(BinaryStream& s, const BoxLevel& moov, const Box& trak, MovieCopies& out)
{
    constexpr quint64 kTrackHeader0 = 84, kTrackHeader1 = 96, kMediaHeader0 = 24, kMediaHeader1 = 36;
    MovieField c, m;
    BoxLevel inTrak = moov.inside(trak);
    for (Box b; inTrak.next(b);) {
        if (b.type == fourcc("tkhd") && readTimes(s, b, kTrackHeader0, kTrackHeader1, c, m)) {
            out.times.push_back({MovieCopies::TrackCreation, c});
            out.times.push_back({MovieCopies::TrackModification, m});
        } else if (b.type == fourcc("mdia")) {
            BoxLevel inMdia = inTrak.inside(b);
            Box mdhd;
            if (inMdia.find(fourcc("mdhd"), mdhd) && readTimes(s, mdhd, kMediaHeader0, kMediaHeader1, c, m)) {
                out.times.push_back({MovieCopies::MediaCreation, c});
                out.times.push_back({MovieCopies::MediaModification, m});
            }
        }
    }
}

}  // namespace

bool isMovie(BinaryStream& s)
{
    // A short file gives a short read: no need to ask for its length.
    const QByteArray head = readBounded(s, 0, 12, ~quint64(0));
    if (head.size() < 8)
        return false;
    switch (bigEndian(head, 4, 4)) {
    case fourcc("ftyp"): return head.size() == 12 && !isStillBrand(quint32(bigEndian(head, 8, 4)));
    case fourcc("moov"): case fourcc("mdat"): case fourcc("wide"): case fourcc("free"): case fourcc("skip"):
        return true;
    default:
        return false;
    }
}

std::optional<MovieHeader> readMovieHeader(BinaryStream& s)
{
    BoxBudget budget;
    Box moov;
    return headerIn(s, budget, moov);
}

QString movieTimeText(quint64 seconds)
{
    if (seconds == 0 || seconds > kLastSeconds)
        return {};
    const QString text = Date::fromUnixTime(qint64(seconds) - kMovieEpoch).SQLDateTime();
    return text.size() == 19 ? ReplaceAll(text, QStringLiteral("-"), QStringLiteral(":")) : QString();
}

std::optional<quint64> movieSeconds(const Date& local, int width)
{
    const qint64 since1970 = local.toUnixTime();
    if (since1970 <= -kMovieEpoch || since1970 > qint64(kLastSeconds) - kMovieEpoch)
        return std::nullopt;
    const quint64 seconds = quint64(since1970 + kMovieEpoch);
    if (width == 4 && seconds > 0xFFFFFFFFull)
        return std::nullopt;
    return seconds;
}

QByteArray movieBytes(quint64 seconds, int width)
{
    QByteArray bytes(width, '\0');
    for (int i = width - 1; i >= 0; --i, seconds >>= 8)
        bytes[i] = char(seconds & 0xFF);
    return bytes;
}

MovieCopies findMovieCopies(BinaryStream& s)
{
    static const QByteArray kXmpUuid = QByteArray::fromHex("BE7ACFCB97A942E89C71999491E3AFAC");
    MovieCopies out;
    BoxBudget budget;
    Box moov;
    out.header = headerIn(s, budget, moov);
    if (!out.header)
        return out;
    BoxLevel top(s, 0, s.Length(), budget);
    for (Box b; top.next(b);)
        if (b.type == fourcc("uuid") && b.uuid == kXmpUuid)
            out.xmp.push_back({b.body, b.bodyLength()});
    BoxLevel inMoov = top.inside(moov);
    for (Box b; inMoov.next(b);) {
        if (b.type == fourcc("trak")) {
            trackCopies(s, inMoov, b, out);
        } else if (b.type == fourcc("meta")) {
            metaCopies(s, inMoov, b, out);
        } else if (b.type == fourcc("udta")) {
            BoxLevel inUdta = inMoov.inside(b);
            for (Box u; inUdta.next(u);) {
                if (u.type == fourcc("\xA9" "day"))
                    dayText(s, inUdta, u, out);
                else if (u.type == fourcc("meta"))
                    metaCopies(s, inUdta, u, out);
                else if (u.type == fourcc("XMP_"))
                    out.xmp.push_back({u.body, u.bodyLength()});
            }
        }
    }
    return out;
}

void movieLayout(BinaryStream& s, ContainerLayout& layout)
{
    layout.kind = ContainerLayout::Movie;
    layout.xmp = findMovieCopies(s).xmp;
}
