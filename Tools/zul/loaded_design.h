#pragma once

#include "zulrt.h"

#include <memory>

struct UnloadDesign {
    void operator()(fpga_design* design) const { ZulUnloadZulFile(design); }
};

/// A handle of the C interface, unloaded in the end.
using LoadedDesign = std::unique_ptr<fpga_design, UnloadDesign>;
