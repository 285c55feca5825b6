#pragma once

class FolderItem;

// Whether a file gives a picture, judged from its header: a format that the image plugins
// recognise, declaring a size that is not empty, with the header complete up to where the
// picture data begins; a HEIC, HEIF or AVIF file by its brand; a raw file of its own
// layout (CR3, RAF, ORF, RW2) by its signature; a raw file built on TIFF as a TIFF file
// or, where the TIFF plugin can't take it, by the camera preview that LibRaw finds in its
// directories. ISO media and QuickTime files of other brands are films, never pictures.
// The picture itself is not decoded, which makes the test cost a header's read instead of
// a whole photo's decode. The price: a file whose header is sound but whose image data is
// broken (cut short, garbled after the header) counts as a picture here, although
// decoding it gives none or only a part. A folder, a pipe, a missing or unreadable file
// gives no picture. A nil item throws NilObjectException.
bool givesPicture(const FolderItem& f);
