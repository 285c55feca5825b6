#pragma once
// XMP sidecars beside a file: NAME.xmp and NAME.EXT.xmp (photo managers use either), also
// with the extension in capitals. One that is a link, a folder, no plain file, cannot be
// opened for reading and writing, or is larger than any packet, is left alone: it comes
// with a why and no bytes.

#include <QByteArray>
#include <QString>

#include <vector>

#include "platform/files/FolderItem.h"

struct Sidecar {
    FolderItem file;   // with its status noted as a listing, for the check before writing
    QByteArray bytes;  // the whole file
    QString why;       // not empty: left alone, and why
};

std::vector<Sidecar> findSidecars(const FolderItem& item);
