#include "interface_cycle.h"

#include "answers.h"
#include "failing_allocations.h"
#include "zulrt.h"

#include <cerrno>
#include <memory>
#include <vector>

namespace {

struct Unload {
    void operator()(fpga_design* design) const { ZulUnloadZulFile(design); }
};
using Design = std::unique_ptr<fpga_design, Unload>;

bool ranOutOfMemory()
{
    return anAllocationFailed() && errno == ENOMEM;
}

Design load(Input bytes)
{
    FailingAllocations const failing;
    errno = 0;
    Design design(ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), 0));
    must(design != nullptr || errno == EINVAL || errno == EFAULT || ranOutOfMemory(),
         "a design that does not load says why");
    return design;
}

/// Queries that would need memory answer their miss value without it, and the right one the next time.
std::uint64_t ask(fpga_design const* design)
{
    if (allocationsMayFail()) {
        FailingAllocations const failing;
        answersOf(design);
    }
    return answersOf(design);
}

/// @return 0 when it was merged
int merge(fpga_design* design, Input second)
{
    // The second container's bytes go before the design does.
    std::vector<std::uint8_t> const copy(second.begin(), second.end());
    FailingAllocations const failing;
    errno = 0;
    int const result = MergeFpgaDesignWithMem(design, copy.data(), copy.size());
    must(result == 0 || errno == EINVAL || ranOutOfMemory(), "a refused merge says why");
    return result;
}

/// The stripped copy; nothing when something in it cannot be saved or memory ran out.
std::vector<std::uint8_t> strip(fpga_design const* design)
{
    FailingAllocations const failing;
    unsigned long length = 0;
    errno = 0;
    must(ZulStripConfigs(design, nullptr, &length) == -1, "without a buffer, the length is asked for");
    must(length != 0 || errno == EINVAL || ranOutOfMemory(), "a design that cannot be stripped says why");
    try {
        std::vector<std::uint8_t> stripped(length, 0xA5);
        unsigned long tooShort = length - 1;
        if (length == 0 || ZulStripConfigs(design, stripped.data(), &length) != 0) {
            must(length == 0 || ranOutOfMemory(), "as many bytes as were asked for suffice");
            return {};
        }
        must(ZulStripConfigs(design, stripped.data(), &tooShort) == -1, "too few bytes are refused");
        must(tooShort == length || ranOutOfMemory(), "what is needed is said");
        return stripped;
    } catch (std::bad_alloc const&) {
        return {};
    }
}

} // namespace

void cycleThroughInterface(Input first, Input second)
{
    Design const design = load(first);
    if (design == nullptr) {
        return;
    }
    reached("designs loaded");
    std::uint64_t const asked = ask(design.get());
    if (merge(design.get(), second) == 0) {
        reached("designs merged");
        ask(design.get());
    } else {
        must(asked == answersOf(design.get()), "a refused merge changes nothing");
    }
    std::vector<std::uint8_t> const stripped = strip(design.get());
    if (stripped.empty()) {
        return;
    }
    reached("designs stripped");
    if (Design const again = load(stripped)) {
        reached("stripped designs loaded");
        must(ZulGetMaxConfigIndex(again.get()) == -1, "a stripped design has no configuration");
        ask(again.get());
    }
}
