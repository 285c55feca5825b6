#include "shell/Window1.h"

// Placeholder until the subsystem lands its handlers.
void Window1::bindTableHandlers() {}
void Window1::openTableControls() {}
void Window1::addFileToTable(const FolderItem&) {}
void Window1::clearTables() {}
