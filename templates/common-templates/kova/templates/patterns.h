#pragma once

#include "kova/templates/patterns/generic_lock.h"
#include "kova/templates/patterns/guard.h"
#include "kova/templates/patterns/heap_array_guard.h"
