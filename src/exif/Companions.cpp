#include "exif/Companions.h"

#include "exif/Checksums.h"
#include "exif/Movie.h"
#include "platform/BinaryStream.h"

// Each kind of copy is one step; checksums come last, as they cover what the steps before
// changed.
void findCompanions(BinaryStream& file, const FolderItem& item, const std::vector<Patch>& dates, Companions& out)
{
    movieCompanions(file, item, dates, out);
    refreshChecksums(file, item, dates, out);
}
