#pragma once
// QuickTime and ISO base media movies (MOV, MP4, M4V, 3GP, 3G2): their dates are fields of
// seconds since 1904-01-01 00:00 UTC in the movie header 'mvhd', and copies of them in each
// track's 'tkhd' and 'mdhd'. The walk jumps from box to box by their sizes and reads only
// headers: never the media data, wherever 'moov' stands.

#include <QByteArray>
#include <QMetaType>
#include <QString>
#include <QtGlobal>

#include <optional>
#include <vector>

#include "exif/Container.h"

class BinaryStream;
class Date;
class FolderItem;
struct Companions;
struct Patch;

// The tag of a cell that shows a movie date: where its field lies, how wide it is (4 or 8
// bytes, big-endian) and the seconds it held when the file was listed.
struct MovieTime {
    double position = 0;
    int width = 0;
    quint64 seconds = 0;
};
Q_DECLARE_METATYPE(MovieTime)

// Seconds from 1904-01-01 00:00 UTC, where movie time starts, to 1970-01-01 00:00 UTC.
constexpr qint64 kMovieEpoch = 2082844800;

// One time field of a movie.
struct MovieField {
    quint64 position = 0;
    int width = 0;
    quint64 seconds = 0;  // 0: no date
};

// The two times of the movie header.
struct MovieHeader {
    MovieField creation, modification;
};

// True for a file whose first box is that of a movie: 'ftyp' with a brand that is not one of
// HEIF, AVIF or CR3, or 'moov', 'mdat', 'wide', 'free', 'skip'.
bool isMovie(BinaryStream& s);
// The movie header of a movie, or nothing where 'moov' is missing or cut, or 'mvhd' is
// missing, cut, too short for its version or of an unknown version.
std::optional<MovieHeader> readMovieHeader(BinaryStream& s);

// A movie time shown in local time as "YYYY:MM:DD HH:MM:SS"; empty for 0 (no date) and for
// a time beyond the year 9999.
QString movieTimeText(quint64 seconds);
// The seconds since 1904 of a local date, when the field of that width can hold them: not
// before 1904-01-01 00:00:01 UTC (0 is no date) and, for 4 bytes, not after 2040-02-06.
std::optional<quint64> movieSeconds(const Date& local, int width);
// The field as it stands in the file: big-endian, width bytes.
QByteArray movieBytes(quint64 seconds, int width);

// What else in a movie shows its dates: each track's and each medium's times, the Apple
// creation date text in moov > meta > keys/ilst, the ©day texts of udta, and the XMP packet
// of the XMP uuid box.
struct MovieCopies {
    enum Kind { TrackCreation, TrackModification, MediaCreation, MediaModification };
    struct Time {
        Kind kind;
        MovieField field;
    };
    struct Text {
        bool apple;  // the Apple creation date; else a ©day text
        Span span;   // the text's bytes
    };
    std::optional<MovieHeader> header;
    std::vector<Time> times;
    std::vector<Text> texts;
    std::vector<Span> xmp;
};
MovieCopies findMovieCopies(BinaryStream& s);

// The container walk's answer for a movie: its kind and its XMP packets.
void movieLayout(BinaryStream& s, ContainerLayout& layout);

// The step of findCompanions for movies: the track and media times that showed the movie
// header's old time, and the Apple creation date and ©day texts that showed the same
// instant, moved with it (src/exif/MovieCompanions.cpp).
void movieCompanions(BinaryStream& file, const FolderItem& item, const std::vector<Patch>& dates, Companions& out);
