#pragma once
#include <QByteArray>
#include <QFileDevice>
#include <QImage>

// The picture that a raw file carries for showing (the camera's JPEG preview, or in a
// few formats an uncompressed RGB one), as LibRaw finds it from the file's own pointers:
// only the file's directories and the preview's bytes are read, never the raw data.
// Both members are empty where the file is no raw file that LibRaw knows, or keeps no
// preview; a plain TIFF is no raw file.
struct RawPreview {
    QByteArray jpeg;
    QImage image;
    bool isNull() const { return jpeg.isEmpty() && image.isNull(); }
};

// `file` is an open file; LibRaw reads the very file it is (not the path again, which
// may have been replaced since).
RawPreview rawPreview(const QFileDevice& file);

// Whether the file is a raw file that keeps such a picture, from its directories alone
// (the preview is not read).
bool hasRawPreview(const QFileDevice& file);
