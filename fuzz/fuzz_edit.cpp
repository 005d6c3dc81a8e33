// Any sequence of edits leaves a container whose lookups answer what a plain search through a shadow list answers, also
// when memory runs out on the way. Operations are of four bytes: a code and three numbers.

#include "edited_container.h"
#include "failing_allocations.h"
#include "run.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    constexpr std::size_t width = 4;
    constexpr std::size_t enough = 24; // the plain search is slow on purpose
    Run const run = beginRun(data, size);
    EditedContainer edited;
    std::size_t const count = std::min(run.bytes.size() / width, enough);
    for (std::size_t i = 0; i < count; ++i) {
        Input const bytes = run.bytes.subspan(i * width, width);
        edited.apply({bytes[0], bytes[1], bytes[2], bytes[3]});
    }
    edited.compareAll();
    if (anAllocationFailed()) {
        reached("sequences that ran out of memory");
    }
    return 0;
}
