#pragma once
// The tags that the Exif walk acts on, and the cells of a row that they fill.

constexpr int kTagOrientation = 274;
constexpr int kTagExifPointer = 34665;

// The column of ListBox1 that shows a date tag, or 0 for any other tag.
inline int dateColumn(int tag)
{
    switch (tag) {
    case 306: return 3;    // image modification date
    case 36867: return 4;  // shooting date
    case 36868: return 5;  // digitization date
    default: return 0;
    }
}

// The column whose cell or tag an entry sets (6 for the orientation code), or 0.
inline int rowColumn(int tag) { return tag == kTagOrientation ? 6 : dateColumn(tag); }
