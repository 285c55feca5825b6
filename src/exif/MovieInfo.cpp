// A movie's row: the movie header's creation time is the shooting date (column 4), its
// modification time the image modification date (column 3), both in local time; column 5
// keeps the marker.

#include "exif/Movie.h"
#include "platform/listbox/Listbox.h"
#include "shell/Window1.h"

bool Window1::getMovieInfo()
{
    if (!isMovie(*bs))
        return false;
    const std::optional<MovieHeader> header = readMovieHeader(*bs);
    if (!header)
        return true;
    for (const auto& [field, column] : {std::pair{header->creation, 4}, std::pair{header->modification, 3}}) {
        const QString text = movieTimeText(field.seconds);
        if (text.isEmpty())
            continue;  // no date: the marker stays
        ListBox1->setCell(curRow, column, text);
        ListBox1->setCellTag(curRow, column, QVariant::fromValue(MovieTime{double(field.position), field.width, field.seconds}));
    }
    return true;
}
