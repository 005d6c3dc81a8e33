// The header of the C interface, and nothing else.
#include "zulrt.h"
