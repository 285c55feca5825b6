#pragma once
#include <QByteArrayView>

// What a file holds, told from its first bytes (pictureHeadBytes of them, or fewer where
// the file is shorter), never from its name. It decides which decoder the preview asks
// and what the still-image filter counts.
enum class PictureKind {
    Other,  // for the image plugins to tell (JPEG, PNG, WebP, GIF...) or no picture
    Tiff,   // a TIFF header: a plain TIFF, or a raw file built on TIFF (DNG, CR2, NEF, ARW, PEF)
    Raw,    // a raw file of its own layout: CR3, RAF, ORF, RW2
    Heif,   // HEIC, HEIF, AVIF
    Movie,  // an ISO media or QuickTime file of another brand: a video, not a still picture
};

constexpr int pictureHeadBytes = 64;

PictureKind pictureKind(QByteArrayView head);
