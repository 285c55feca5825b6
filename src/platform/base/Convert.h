#pragma once
#include <QtGlobal>

// Double to Integer: truncation toward zero, saturating at the 64-bit limits; NaN gives 0.
qint64 toInteger(double value);
// Double to a stream position: truncation toward zero and two's-complement wrap, so a
// negative position is huge and simply reads nothing. NaN gives 0; values beyond the
// 64-bit range saturate (at 2^64 - 1 above, at -2^63, that is 2^63, below).
quint64 toPosition(double value);
