#pragma once
#include <QIODevice>
#include <QImage>
#include <QSize>

// The primary picture of a HEIC, HEIF or AVIF file, for showing in `box`: its thumbnail
// where it has one that still covers the picture fitted into the box, else the picture
// decoded and scaled down to that size. As with every picture shown, the file's turns,
// mirrors and crops are not applied: fullSize is the size of the picture as coded. A file
// that libheif can't read, or whose picture is larger than the preview decodes, gives a
// null picture. The file is read through `file`, which must be seekable.
struct HeifPicture {
    QSize fullSize;
    QImage image;
};
HeifPicture openHeifPicture(QIODevice& file, QSize box);
