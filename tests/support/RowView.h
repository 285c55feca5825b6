#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>

class Window1;

// What a row of ListBox1 says about a file's Exif data, as text that reads well in a failed
// comparison: for columns 3 to 5 "text@position" (the cell and its tag, "-" for no tag),
// then "turns N" for the orientation tag of column 6.
QStringList exifView(const Window1& w, int row);

// The parts of an expected view.
QString dateAt(const QByteArray& file, const QByteArray& text);  // the text where it stands
QString textAt(const QString& text, double position);
QString noDate();                      // the marker, no tag
QString turns(int code);               // -1: no tag
QStringList view(const QString& c3, const QString& c4, const QString& c5, int turnsCode = -1);
