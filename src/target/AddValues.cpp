#include "shell/Window1.h"

// Placeholder until the subsystem lands its handlers.
void Window1::bindTargetHandlers() {}
void Window1::openTargetControls() {}
