#include "platform/Localized.h"

#include <QtGlobal>

QString localized(const char* id, const char* english)
{
    // qtTrId answers with the id itself when no translation holds it.
    const QString text = qtTrId(id);
    return text != QLatin1String(id) ? text : QString::fromUtf8(english);
}
