// What moves with a movie's dates: the track and media times that showed the movie header's
// old time, and the texts that showed the same instant (the Apple creation date, ©day),
// each moved by the same number of seconds in place, keeping its width, zone and length.

#include "exif/Companions.h"

#include "exif/Boxes.h"
#include "exif/Movie.h"
#include "platform/files/BinaryStream.h"
#include "platform/text/Date.h"
#include "platform/base/TextId.h"

#include <QRegularExpression>

namespace {

// Days from 1970-01-01 to a civil date of the proleptic Gregorian calendar.
qint64 daysFromCivil(qint64 y, qint64 m, qint64 d)
{
    y -= m <= 2;
    const qint64 era = (y >= 0 ? y : y - 399) / 400;
    const qint64 yoe = y - era * 400;
    const qint64 doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
}

/* A date text with its zone: "YYYY-MM-DDTHH:MM:SS", a fraction or not, then "Z", "+HHMM" or
   "+HH:MM" (a blank may stand for the T). The text moved by delta seconds, digits only, or
   nothing where it does not show the instant `was` (movie seconds) or would change length. */
std::optional<QByteArray> movedText(const QByteArray& text, quint64 was, qint64 delta)
{
    static const QRegularExpression form(
        QStringLiteral("^(\\d{4})-(\\d\\d)-(\\d\\d)[T ](\\d\\d):(\\d\\d):(\\d\\d)(\\.\\d+)?(Z|([+-])(\\d\\d):?(\\d\\d))$"));
    const QRegularExpressionMatch m = form.match(QString::fromLatin1(text));
    if (!m.hasMatch())
        return std::nullopt;
    const auto n = [&](int i) { return qint64(m.capturedView(i).toInt()); };
    const qint64 zone = m.captured(8) == QLatin1String("Z") ? 0 : (m.captured(9) == QLatin1String("-") ? -1 : 1) * (n(10) * 3600 + n(11) * 60);
    const qint64 instant = daysFromCivil(n(1), n(2), n(3)) * 86400 + n(4) * 3600 + n(5) * 60 + n(6) - zone;
    if (instant + kMovieEpoch != qint64(was))
        return std::nullopt;
    const Date moved(n(1), n(2), n(3), n(4), n(5), n(6) + delta);
    if (moved.Year() < 0 || moved.Year() > 9999)
        return std::nullopt;
    QByteArray out = text;
    const qint64 fields[] = {moved.Year(), moved.Month(), moved.Day(), moved.Hour(), moved.Minute(), moved.Second()};
    for (int i = 0; i < 6; ++i) {
        const QByteArray digits = QByteArray::number(fields[i]).rightJustified(i ? 2 : 4, '0');
        out.replace(m.capturedStart(i + 1), digits.size(), digits);
    }
    return out;
}

QString timeName(MovieCopies::Kind kind)
{
    switch (kind) {
    case MovieCopies::TrackCreation: return textById("Movie.trackCreation", "track header creation time");
    case MovieCopies::TrackModification: return textById("Movie.trackModification", "track header modification time");
    case MovieCopies::MediaCreation: return textById("Movie.mediaCreation", "media header creation time");
    case MovieCopies::MediaModification: return textById("Movie.mediaModification", "media header modification time");
    }
    return {};
}

bool followsCreation(MovieCopies::Kind kind) { return kind == MovieCopies::TrackCreation || kind == MovieCopies::MediaCreation; }

}  // namespace

void movieCompanions(BinaryStream& file, const FolderItem& item, const std::vector<Patch>& dates, Companions& out)
{
    if (!isMovie(file))
        return;
    const MovieCopies copies = findMovieCopies(file);
    if (!copies.header)
        return;
    const QString where = QStringLiteral("“%1”, ").arg(item.path());
    for (const Patch& date : dates) {
        const MovieField& header = copies.header->creation;
        const bool creation = date.position == header.position;
        if (!date.isDate() || (!creation && date.position != copies.header->modification.position))
            continue;
        const quint64 was = bigEndian(date.before, 0, int(date.before.size()));
        const quint64 now = bigEndian(date.after, 0, int(date.after.size()));
        const qint64 delta = qint64(now - was);
        for (const MovieCopies::Time& t : copies.times) {
            if (followsCreation(t.kind) != creation || t.field.seconds != was)
                continue;
            if (t.field.width == 4 && now > 0xFFFFFFFFull)
                out.kept << where + timeName(t.kind) + ": "
                                + textById("Movie.tooNarrow", "its 4 bytes cannot hold the new time");
            else
                out.patches.push_back({t.field.position, movieBytes(was, t.field.width), movieBytes(now, t.field.width),
                                       date.column, timeName(t.kind)});
        }
        if (!creation)
            continue;
        for (const MovieCopies::Text& t : copies.texts) {
            constexpr quint64 kLongest = 40;  // a date with fraction and zone; anything longer is no date
            const QString name = t.apple ? QStringLiteral("com.apple.quicktime.creationdate") : QStringLiteral("©day");
            const QByteArray text = readBounded(file, t.span.position, std::min(t.span.length, kLongest), t.span.end());
            if (text.size() != qsizetype(t.span.length))
                continue;
            if (const std::optional<QByteArray> moved = movedText(text, was, delta))
                out.patches.push_back({t.span.position, text, *moved, date.column, name});
            else
                out.kept << where + name + ": "
                                + textById("Movie.otherInstant", "“%1” does not show the movie's creation time with its zone")
                                      .arg(QString::fromUtf8(text));
        }
    }
}
