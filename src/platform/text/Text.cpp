#include "platform/text/Text.h"

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <system_error>

namespace {

bool isDigit(QChar c, int base)
{
    const char16_t u = c.unicode();
    switch (base) {
    case 2: return u == u'0' || u == u'1';
    case 8: return u >= u'0' && u <= u'7';
    case 10: return u >= u'0' && u <= u'9';
    default:
        return (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F');
    }
}

int digitValue(QChar c)
{
    const char16_t u = c.unicode();
    if (u <= u'9')
        return u - u'0';
    return (u | 0x20) - u'a' + 10;
}

// "&h", "&o", "&b" numbers: the digits make a 64-bit pattern read as a signed Integer,
// so that Val("&h" + Hex(n)) is n (as near as a Double comes). Digits beyond 64 bits
// push the oldest out.
double radixValue(const QString& text, qsizetype i, int base)
{
    const int shift = base == 16 ? 4 : (base == 8 ? 3 : 1);
    quint64 bits = 0;
    for (; i < text.size() && isDigit(text[i], base); ++i)
        bits = (bits << shift) | quint64(digitValue(text[i]));
    return double(qint64(bits));
}

// A decimal number: [sign] digits [. digits] [e [sign] digits], at least one digit in
// the mantissa. The exponent counts only with a digit after it, so "1e" is 1.
double decimalValue(const QString& text, qsizetype i)
{
    const qsizetype n = text.size();
    bool negative = false;
    if (i < n && (text[i] == u'+' || text[i] == u'-')) {
        negative = text[i] == u'-';
        ++i;
    }

    // Digits as ASCII for the conversion, and the decimal magnitude of the first
    // significant digit, which tells an overflow from an underflow.
    std::string digits;
    qint64 magnitude = 0;
    bool significant = false;
    bool any = false;
    for (; i < n && isDigit(text[i], 10); ++i) {
        any = true;
        significant = significant || text[i] != u'0';
        if (significant) {
            digits += char(text[i].unicode());
            ++magnitude;
        }
    }
    if (i < n && text[i] == u'.') {
        qsizetype j = i + 1;
        if (j < n && isDigit(text[j], 10)) {
            digits += '.';
            for (; j < n && isDigit(text[j], 10); ++j) {
                any = true;
                if (!significant && text[j] == u'0')
                    --magnitude;
                significant = significant || text[j] != u'0';
                digits += char(text[j].unicode());
            }
            i = j;
        } else if (any) {
            i = j;  // "5." is 5
        }
    }
    if (!any || !significant)
        return 0.0;

    qint64 exponent = 0;
    if (i < n && (text[i] == u'e' || text[i] == u'E')) {
        qsizetype j = i + 1;
        bool expNegative = false;
        if (j < n && (text[j] == u'+' || text[j] == u'-')) {
            expNegative = text[j] == u'-';
            ++j;
        }
        // Far beyond any Double either way; stopping there keeps the sum below in range.
        constexpr qint64 kExponentLimit = 100000000;
        for (; j < n && isDigit(text[j], 10); ++j)
            if (exponent < kExponentLimit)
                exponent = exponent * 10 + digitValue(text[j]);
        if (expNegative)
            exponent = -exponent;
    }
    digits += 'e';
    digits += std::to_string(exponent);

    double value = 0.0;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    Q_UNUSED(end);
    if (ec == std::errc::result_out_of_range)
        value = magnitude + exponent > 0 ? HUGE_VAL : 0.0;
    else if (ec != std::errc())
        value = 0.0;
    return negative ? -value : value;
}

// UTF-16 index after moving `count` characters forward from `from`; a surrogate pair is
// one character.
qsizetype advance(const QString& text, qsizetype from, qint64 count)
{
    const qsizetype n = text.size();
    qsizetype i = from;
    for (; count > 0 && i < n; --count)
        i += (text[i].isHighSurrogate() && i + 1 < n && text[i + 1].isLowSurrogate()) ? 2 : 1;
    return i;
}

// The separator must not be empty. Returns the UTF-16 range of the one-based field.
bool findField(const QString& text, const QString& separator, qint64 index, qsizetype& from,
               qsizetype& to)
{
    if (index < 1)
        return false;
    from = 0;
    for (qint64 field = 1;; ++field) {
        const qsizetype hit = text.indexOf(separator, from, Qt::CaseSensitive);
        to = hit < 0 ? text.size() : hit;
        if (field == index)
            return true;
        if (hit < 0)
            return false;
        from = hit + separator.size();
    }
}

}  // namespace

double Val(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size() && (text[i] == u' ' || text[i] == u'\t'))
        ++i;
    if (i + 1 < text.size() && text[i] == u'&') {
        const char16_t prefix = text[i + 1].unicode() | 0x20;
        if (prefix == u'h')
            return radixValue(text, i + 2, 16);
        if (prefix == u'o')
            return radixValue(text, i + 2, 8);
        if (prefix == u'b')
            return radixValue(text, i + 2, 2);
        return 0.0;
    }
    return decimalValue(text, i);
}

QString Str(qint64 value)
{
    return QString::number(value);
}

QString Str(double value)
{
    if (std::isnan(value))
        return QStringLiteral("NAN");
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
    if (std::fabs(value) < 1e15 && value == std::trunc(value))
        return QString::number(qint64(value));  // -0 prints as 0

    // The fewest significant digits that read back as the same Double, 15 at most.
    char buffer[64];
    std::to_chars_result written{};
    for (int precision = 1; precision <= 15; ++precision) {
        written = std::to_chars(buffer, buffer + sizeof buffer, value,
                                std::chars_format::general, precision);
        double back = 0.0;
        std::from_chars(buffer, written.ptr, back);
        if (back == value)
            break;
    }
    return QString::fromLatin1(buffer, written.ptr - buffer);
}

QString Hex(qint64 value)
{
    return QString::number(quint64(value), 16).toUpper();
}

QString Chr(uint code)
{
    if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return QString();
    const char32_t c = code;
    return QString::fromUcs4(&c, 1);
}

qint64 Len(const QString& text)
{
    qint64 count = 0;
    for (qsizetype i = 0; i < text.size(); i = advance(text, i, 1))
        ++count;
    return count;
}

qint64 LenB(const QString& text)
{
    return text.toUtf8().size();
}

QString Right(const QString& text, qint64 count)
{
    if (count <= 0)
        return QString();
    qsizetype from = text.size();
    for (; count > 0 && from > 0; --count) {
        --from;
        if (from > 0 && text[from].isLowSurrogate() && text[from - 1].isHighSurrogate())
            --from;
    }
    return text.mid(from);
}

QString ReplaceAll(const QString& text, const QString& find, const QString& replacement)
{
    if (find.isEmpty())
        return text;
    QString result = text;
    return result.replace(find, replacement, Qt::CaseSensitive);
}

qint64 CountFields(const QString& text, const QString& separator)
{
    if (separator.isEmpty())
        return 1;
    qint64 count = 1;
    for (qsizetype from = 0;; ++count) {
        const qsizetype hit = text.indexOf(separator, from, Qt::CaseSensitive);
        if (hit < 0)
            return count;
        from = hit + separator.size();
    }
}

QString NthField(const QString& text, const QString& separator, qint64 index)
{
    if (separator.isEmpty())
        return index == 1 ? text : QString();
    qsizetype from = 0;
    qsizetype to = 0;
    if (!findField(text, separator, index, from, to))
        return QString();
    return text.mid(from, to - from);
}

QStringList Split(const QString& text, const QString& separator)
{
    if (separator.isEmpty())
        return QStringList{text};
    return text.split(separator, Qt::KeepEmptyParts, Qt::CaseSensitive);
}

qint64 LenB(const QByteArray& bytes)
{
    return bytes.size();
}

QByteArray MidB(const QByteArray& bytes, qint64 start, qint64 length)
{
    if (start < 1)
        start = 1;
    if (start > bytes.size() || length == 0)
        return QByteArray();
    const qsizetype from = qsizetype(start - 1);
    const qsizetype available = bytes.size() - from;
    if (length < 0 || length >= available)
        return bytes.mid(from);
    return bytes.mid(from, qsizetype(length));
}

uint AscB(const QByteArray& bytes)
{
    return bytes.isEmpty() ? 0 : uint(uchar(bytes[0]));
}

qint64 InStrB(QByteArrayView haystack, QByteArrayView needle)
{
    if (needle.isEmpty())
        return 0;
    // A plain byte search: the reader runs it over the first bytes of every file.
    const std::string_view h(haystack.data(), size_t(haystack.size()));
    const size_t at = h.find(std::string_view(needle.data(), size_t(needle.size())));
    return at == std::string_view::npos ? 0 : qint64(at) + 1;
}

bool sameText(const QString& a, const QString& b)
{
    // Case folding maps each UTF-16 unit to one unit: texts of different lengths never
    // match, and the intake compares every date cell with the marker.
    if (a.size() != b.size())
        return false;
    return QString::compare(a, b, Qt::CaseInsensitive) == 0;
}
