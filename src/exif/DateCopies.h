#pragma once
// The copies of a file's shifted dates, wherever the file and its sidecars keep them, and
// what each comes to: the edits that move those that showed the cell's old time, a line
// naming each that stays.

#include <QByteArrayView>
#include <QString>

#include <vector>

#include "exif/Container.h"
#include "exif/CopyForms.h"
#include "platform/FolderItem.h"

// The copies in one XMP packet or one IPTC block that starts at base in its file; place
// begins each kept line ("“a.jpg”").
void moveXmpCopies(QByteArrayView packet, quint64 base, const std::vector<Shift>& shifts, const QString& place,
                   CopyFindings& out);
void moveIptcCopies(QByteArrayView block, quint64 base, const std::vector<Shift>& shifts, const QString& place,
                    CopyFindings& out);

struct SidecarCopies {
    FolderItem file;
    CopyFindings found;
};
struct FileCopies {
    CopyFindings inFile;
    std::vector<SidecarCopies> sidecars;
};

// Everything for one file read through s: the duplicates in its TIFF blocks (but the
// cells' own dates at datePositions), its XMP packets and IPTC blocks, and its sidecars.
FileCopies findDateCopies(BinaryStream& s, const FolderItem& item, const ContainerLayout& layout,
                          const std::vector<Shift>& shifts, const std::vector<quint64>& datePositions);
