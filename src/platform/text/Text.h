#pragma once
#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <QtGlobal>

// The product's text functions. Positions are one-based; conversions never fail.
// A QString is text; a QByteArray is a string of bytes as read from a file (one byte per
// character), for which the B functions count bytes.

// The longest number at the start of the text as a Double: optional blanks, sign, digits,
// a fraction and an exponent; "&h" introduces hexadecimal digits ("&o" octal, "&b"
// binary). A text that does not begin with a number gives 0. Blanks are spaces and tabs.
// The "&" forms are a 64-bit pattern read as a signed Integer ("&hFFFFFFFFFFFFFFFF" is -1);
// a decimal too large for a Double gives an infinity, one too small gives 0.
double Val(const QString& text);
// Plain decimal digits, with a minus sign when negative.
QString Str(qint64 value);
// A Double as the shortest text that reads back as the same number (15 significant
// digits at most); whole numbers below 1e15 in plain digits, others as 1.5e-07 or
// 1e+15. -0 gives "0"; the infinities and NaN give "INF", "-INF" and "NAN", which Val
// reads as 0.
QString Str(double value);
// Upper-case hexadecimal without leading zeros; a negative value as its 64-bit two's
// complement.
QString Hex(qint64 value);

// Characters are Unicode code points: a surrogate pair counts as one.
QString Chr(uint code);                        // "" for a surrogate or beyond U+10FFFF
qint64 Len(const QString& text);               // characters
qint64 LenB(const QString& text);              // bytes of the UTF-8 form
QString Right(const QString& text, qint64 count);
// Searches and separators match exactly, case included. An empty find replaces nothing;
// an empty separator leaves the text one whole field.
QString ReplaceAll(const QString& text, const QString& find, const QString& replacement);
qint64 CountFields(const QString& text, const QString& separator);
// One-based field; an index out of range gives "".
QString NthField(const QString& text, const QString& separator, qint64 index);
// Fields at every whole separator; an empty text gives one empty field.
QStringList Split(const QString& text, const QString& separator);

// Byte strings.
qint64 LenB(const QByteArray& bytes);
// A start of 0 or below reads as 1; a negative length takes the rest.
QByteArray MidB(const QByteArray& bytes, qint64 start, qint64 length = -1);
uint AscB(const QByteArray& bytes);                                // first byte, 0 for ""
// One-based position of the first whole occurrence; 0 for none and for an empty needle.
qint64 InStrB(QByteArrayView haystack, QByteArrayView needle);

// Equality that ignores case, as the product compares strings.
bool sameText(const QString& a, const QString& b);
