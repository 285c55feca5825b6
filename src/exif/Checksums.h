#pragma once
// The last step of findCompanions, as checksums cover what every step before changed.

#include <vector>

#include "platform/files/Patch.h"

class BinaryStream;
struct Companions;

// For every PNG chunk that holds bytes of `dates` or of the patches found so far: its bytes
// as they are must give the CRC stored after them; then, with those patches made in memory,
// a patch of that CRC. A chunk whose stored CRC does not match keeps it, and `kept` says so.
struct ContainerLayout;
void refreshChecksums(BinaryStream& file, const FolderItem& item, const ContainerLayout& layout,
                      const std::vector<Patch>& dates, Companions& out);
