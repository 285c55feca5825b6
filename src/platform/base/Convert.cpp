#include "platform/base/Convert.h"

#include <cmath>
#include <limits>

namespace {
// 2^63 and 2^64 are exact Doubles; every Double below them (and at or above -2^63)
// converts to the integer type without undefined behaviour.
constexpr double kTwoTo63 = 9223372036854775808.0;
constexpr double kTwoTo64 = 18446744073709551616.0;
}  // namespace

qint64 toInteger(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= kTwoTo63)
        return std::numeric_limits<qint64>::max();
    if (value <= -kTwoTo63)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(value);  // truncates toward zero
}

quint64 toPosition(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= kTwoTo64)
        return std::numeric_limits<quint64>::max();
    if (value >= 0)
        return static_cast<quint64>(value);
    // Negative: truncate as a signed number, then wrap.
    return static_cast<quint64>(toInteger(value));
}
