#pragma once
class QCoreApplication;

// Installs the localised table of the desktop's language, if the program has one; without
// one, every text keeps its default.
void installTranslations(QCoreApplication& app);
