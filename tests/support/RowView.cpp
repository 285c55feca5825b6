#include "support/RowView.h"

#include "platform/Listbox.h"
#include "shell/Window1.h"

namespace {
QString tagText(const QVariant& tag)
{
    if (!tag.isValid())
        return QStringLiteral("-");
    if (tag.typeId() != QMetaType::Double)
        return QStringLiteral("<not a Double: %1>").arg(tag.typeName());
    return QString::number(tag.toDouble(), 'g', 17);
}
}  // namespace

QStringList exifView(const Window1& w, int row)
{
    QStringList out;
    for (int column = 3; column <= 5; ++column)
        out << w.ListBox1->Cell(row, column) + '@' + tagText(w.ListBox1->CellTag(row, column));
    const QVariant orientation = w.ListBox1->CellTag(row, 6);
    if (orientation.isValid() && orientation.typeId() != QMetaType::LongLong)
        out << QStringLiteral("turns <not an Integer: %1>").arg(orientation.typeName());
    else
        out << turns(orientation.isValid() ? int(orientation.toLongLong()) : -1);
    return out;
}

QString dateAt(const QByteArray& file, const QByteArray& text)
{
    return textAt(QString::fromLatin1(text), double(file.indexOf(text)));
}

QString textAt(const QString& text, double position) { return text + '@' + QString::number(position, 'g', 17); }
QString noDate() { return kNoExif + QStringLiteral("@-"); }
QString turns(int code) { return code < 0 ? QStringLiteral("turns -") : QStringLiteral("turns %1").arg(code); }

QStringList view(const QString& c3, const QString& c4, const QString& c5, int turnsCode)
{
    return {c3, c4, c5, turns(turnsCode)};
}
