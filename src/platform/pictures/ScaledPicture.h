#pragma once
#include <QImage>
#include <QSize>
#include <QString>

#include "platform/files/FolderItem.h"

// A file's picture read for showing small. fullSize is the size of the picture as stored;
// image holds it decoded at a reduced scale where the format can do that cheaply (JPEG
// halves, quarters and eighths while decoding), but never smaller than the picture fitted
// into `box`, so that it can be drawn that large without losing detail. No rotation is
// applied. A file that holds no readable picture gives a null image.
struct ScaledPicture {
    QSize fullSize;
    QImage image;
    bool isNull() const { return image.isNull() || fullSize.isEmpty(); }
};

// The file is opened as FolderItem opens files to read: by its bytes, never waiting.
ScaledPicture openScaledPicture(const FolderItem& f, QSize box);
ScaledPicture openScaledPicture(const QString& path, QSize box);
