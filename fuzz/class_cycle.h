#pragma once

#include "run.h"

/// Load, look, copy, merge, save, load what that gave, save again: through the class library.
void cycleThroughClasses(Input first, Input second, bool newRegisters);
