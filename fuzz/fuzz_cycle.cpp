// A container is loaded, asked everything, merged with a second one, asked again, saved, and what that gave is loaded and
// asked: through the C interface or through the class library. Wherever memory runs out, the documented result says so,
// and what there was before is still there.
//
// The first two bytes are the length of the first container, the rest behind it is the second. The variant's lowest bit
// chooses the class library, the next one the register policy there.

#include "class_cycle.h"
#include "interface_cycle.h"
#include "run.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Run const run = beginRun(data, size);
    if (run.bytes.size() < 2) {
        return 0;
    }
    Input const both = run.bytes.subspan(2);
    Input const first = both.first(std::min(both.size(), std::size_t{run.bytes[0]} + run.bytes[1] * 256U));
    Input const second = both.subspan(first.size());
    if ((run.variant & 1U) == 0) {
        cycleThroughInterface(first, second);
    } else {
        cycleThroughClasses(first, second, (run.variant & 2U) != 0);
    }
    return 0;
}
