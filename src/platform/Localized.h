#pragma once
#include <QString>

// The text of id in the interface language's installed translation, or english where the
// translation has none (or none is installed). Reports go through it, as captions go
// through Globals; texts with %1... keep their markers in every language.
QString localized(const char* id, const char* english);
