// Loading any bytes, in every mode, ends with 0, -22, an error of the container's own family, or std::bad_alloc when
// memory ran out; whatever was filed can be looked at and destroyed. The variant is the load mode.

#include "failing_allocations.h"
#include "look_around.h"
#include "run.h"
#include "zullib.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

namespace {

/// Errors of the head leave a load in every mode: the walk has not begun.
bool hasGoodHead(Input input)
{
    std::uint32_t length = 0;
    std::uint32_t version = 0;
    if (input.size() < 24) {
        return false;
    }
    std::memcpy(&length, input.data() + 4, sizeof length);
    std::memcpy(&version, input.data() + 16, sizeof version);
    return length == 24 && version == 1;
}

/// @return whether the load came to its end and answered 0
bool loads(std::unique_ptr<ZUL>& zul, Run const& run)
{
    try {
        FailingAllocations const failing;
        zul = std::make_unique<ZUL>();
        zul->setLoadMode(static_cast<ZULLoadMode>(run.variant % 3));
        int const result = zul->Load(run.bytes.data(), run.bytes.size());
        must(result == 0 || result == -22, "a load answers 0 or -22");
        return result == 0;
    } catch (std::bad_alloc const&) {
        must(anAllocationFailed(), "memory does not run out before it does");
    } catch (ZUL_runtime_error const&) {
        must(zul->getLoadMode() != ZUL_LOAD_TOLERANT || !hasGoodHead(run.bytes),
             "a tolerant walk does not throw");
    }
    return false;
}

/// Lookups may make their tables in it, and go without when they cannot.
void lookWithoutMemory(ZUL const& zul)
{
    try {
        FailingAllocations const failing;
        lookAround(zul);
    } catch (std::bad_alloc const&) {
        must(anAllocationFailed(), "memory does not run out before it does");
    }
}

void checkOrder(ZUL const& zul)
{
    unsigned last = 0;
    for (unsigned i = 0; i < zul.getTagCount(ZUL_camparam::tag_id); ++i) {
        auto const* const camera = static_cast<ZUL_camparam*>(zul.getTagAt(ZUL_camparam::tag_id, i));
        must(camera->getChannel() >= last, "cameras are in order");
        last = camera->getChannel();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Run const run = beginRun(data, size);
    std::unique_ptr<ZUL> zul;
    bool const loaded = loads(zul, run);
    if (anAllocationFailed()) {
        reached("loads that ran out of memory");
    }
    if (zul == nullptr) {
        return 0;
    }
    if (loaded) {
        reached("loads that answered 0");
        if (allocationsMayFail()) {
            lookWithoutMemory(*zul);
        }
        if (zul->getLoadMode() == ZUL_LOAD_STRICT) {
            checkOrder(*zul);
        }
    }
    lookAround(*zul);
    return 0;
}
