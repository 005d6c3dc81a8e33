#pragma once

#include "run.h"

/// Load, query, merge, query, strip, load what that gave, query: through the C interface.
void cycleThroughInterface(Input first, Input second);
