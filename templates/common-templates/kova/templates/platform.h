#pragma once

#include "kova/templates/platform/critical_section.h"
#include "kova/templates/platform/invariant.h"
#include "kova/templates/platform/map_file.h"
#include "kova/templates/platform/memory_blocks.h"
#include "kova/templates/platform/properties_file.h"
#include "kova/templates/platform/recursive_mutex.h"
#include "kova/templates/platform/simple_thread.h"
#include "kova/templates/platform/spin_lock.h"
#include "kova/templates/platform/tweak_properties.h"
