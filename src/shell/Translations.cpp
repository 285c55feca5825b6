#include "shell/Translations.h"

// Placeholder until the localised tables land.
void installTranslations(QCoreApplication&) {}
