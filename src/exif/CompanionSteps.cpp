#include "exif/Companions.h"

#include "exif/Checksums.h"
#include "exif/Container.h"
#include "exif/DateCopies.h"
#include "exif/Movie.h"
#include "platform/files/BinaryStream.h"

// Each kind of copy is one step, on one walk of the file's structure; checksums come last,
// as they cover what the steps before changed.
void findCompanions(BinaryStream& file, const FolderItem& item, const std::vector<Patch>& dates, Companions& out)
{
    ContainerLayout layout = locateContainer(file);
    if (layout.kind == ContainerLayout::Movie)
        movieLayout(file, layout);
    if (out.dateCopies)
        moveDateCopies(file, item, layout, dates, out);
    movieCompanions(file, item, dates, out);
    refreshChecksums(file, item, layout, dates, out);
}
