#pragma once

#include "zulrt.h"

#include <cstdint>

/// Everything that @p design answers through the C interface, folded into one number.
std::uint64_t answersOf(fpga_design const* design);
