#pragma once
#include <QString>

// The text with this id in the desktop's language, or text itself where the language's
// table has none.
QString textById(const char* id, const char* text);
