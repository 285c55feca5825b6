#pragma once
#include <QByteArray>
#include <QImage>
#include <QStringList>

// `image` encoded as HEIC (or AVIF, with "-A" in args) by libheif's encoder; empty if that failed.
QByteArray heifEncoded(const QImage& image, const QStringList& args);

// A DNG as little as LibRaw takes: IFD0 is the camera's preview, `jpeg` (JPEG-compressed,
// one strip), and its SubIFD a raw CFA picture of 64 by 64 16-bit samples.
QByteArray dngWithPreview(const QByteArray& jpeg, QSize jpegSize);
