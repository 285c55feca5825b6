#include "platform/base/TextId.h"

#include <QtGlobal>

QString textById(const char* id, const char* text)
{
    // Without a translation qtTrId answers with the id itself.
    const QString translated = qtTrId(id);
    return translated != QLatin1String(id) ? translated : QString::fromUtf8(text);
}
