#pragma once
// The IPTC-IIM dates that follow the table's columns: 2:55 DateCreated with 2:60
// TimeCreated (column 4), 2:62 DigitalCreationDate with 2:63 DigitalCreationTime (column 5).
//
//   each dataset: 0x1C, record (1 byte), dataset number (1 byte), length (2 bytes,
//   big-endian; with its top bit set, the low bits count the bytes of a longer length
//   that follows), then the data

#include <QByteArrayView>

#include <vector>

struct IptcDate {
    int column = 0;
    qsizetype dateAt = -1, dateLength = 0;  // -1: the date is missing
    qsizetype timeAt = -1, timeLength = 0;  // -1: the time is missing
    const char* name = nullptr;             // "IPTC 2:55/2:60"
};

// The date pairs of the datasets in block, each pair at most once (the first of its
// datasets), in column order; an empty dataset counts as missing. Stops at the first byte
// that begins no dataset, or at a dataset that claims more than the block holds.
std::vector<IptcDate> findIptcDates(QByteArrayView block);
