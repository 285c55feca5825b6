#pragma once
// The copies of a file's shifted dates, wherever the file and its sidecars keep them, and
// what each comes to: the edits that move those that showed the cell's old time, a line
// naming each that stays.

#include <QByteArrayView>
#include <QString>

#include <vector>

#include "exif/Container.h"
#include "exif/CopyForms.h"
#include "platform/files/Patch.h"

class BinaryStream;
struct Companions;

// The copies in one XMP packet or one IPTC block that starts at base in its file; place
// begins each kept line ("“a.jpg”").
void moveXmpCopies(QByteArrayView packet, quint64 base, const std::vector<Shift>& shifts, const QString& place,
                   CopyFindings& out);
void moveIptcCopies(QByteArrayView block, quint64 base, const std::vector<Shift>& shifts, const QString& place,
                    CopyFindings& out);

// The copies step of findCompanions, for one file read through s whose layout is given:
// the duplicates in its TIFF blocks (but the dates' own places), its XMP packets and IPTC
// blocks, and its sidecars, for the dates among `dates`.
void moveDateCopies(BinaryStream& s, const FolderItem& item, const ContainerLayout& layout,
                    const std::vector<Patch>& dates, Companions& out);
