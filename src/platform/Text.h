#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QtGlobal>

// The product's text functions. Positions are one-based; conversions never fail.
// A QString is text; a QByteArray is a string of bytes as read from a file (one byte per
// character), for which the B functions count bytes.

// The longest number at the start of the text as a Double: optional blanks, sign, digits,
// a fraction and an exponent; "&h" introduces hexadecimal digits ("&o" octal, "&b"
// binary). A text that does not begin with a number gives 0.
double Val(const QString& text);
// Plain decimal digits, with a minus sign when negative.
QString Str(qint64 value);
// A Double as the shortest text that reads back as the same number (15 significant
// digits at most); whole numbers below 1e15 in plain digits.
QString Str(double value);
// Upper-case hexadecimal without leading zeros; a negative value as its 64-bit two's
// complement.
QString Hex(qint64 value);

QString Chr(uint code);
uint Asc(const QString& text);                 // code of the first character, 0 for ""
qint64 Len(const QString& text);               // characters (UTF-16 code points)
qint64 LenB(const QString& text);              // bytes of the UTF-8 form
QString Mid(const QString& text, qint64 start, qint64 length = -1);
QString Right(const QString& text, qint64 count);
QString ReplaceAll(const QString& text, const QString& find, const QString& replacement);
qint64 CountFields(const QString& text, const QString& separator);
// One-based field; an index out of range gives "".
QString NthField(const QString& text, const QString& separator, qint64 index);
// Fields at every whole separator; an empty text gives one empty field.
QStringList Split(const QString& text, const QString& separator);

// Byte strings.
qint64 LenB(const QByteArray& bytes);
QByteArray LeftB(const QByteArray& bytes, qint64 count);          // count <= 0 gives ""
QByteArray MidB(const QByteArray& bytes, qint64 start, qint64 length = -1);  // start 0 reads as 1
uint AscB(const QByteArray& bytes);                                // first byte, 0 for ""
qint64 InStrB(const QByteArray& haystack, const QByteArray& needle);  // one-based; 0 for none

// Equality that ignores case, as the product compares strings.
bool sameText(const QString& a, const QString& b);
