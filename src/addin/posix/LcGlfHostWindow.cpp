#include "addin/LcGlfHostWindow.h"

void LcGlfHostWindow::BringToFront(int32_t) {}
