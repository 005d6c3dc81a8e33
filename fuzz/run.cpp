#include "run.h"

#include "failing_allocations.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// How many runs came how far.
class Stages {
public:
    ~Stages()
    {
        for (Stage const& stage : m_stages) {
            if (stage.name != nullptr) {
                std::fprintf(stderr, "stage: %10lu %s\n", stage.count, stage.name);
            }
        }
    }
    void count(char const* name)
    {
        for (Stage& stage : m_stages) {
            if (stage.name == nullptr || stage.name == name) {
                stage.name = name;
                ++stage.count;
                return;
            }
        }
    }

private:
    struct Stage {
        char const* name = nullptr;
        unsigned long count = 0;
    };
    std::array<Stage, 16> m_stages;
};

/// Sends what the library prints about bad containers to nowhere, from the first call on.
void keepOutputQuiet()
{
    static bool const quiet = [] {
        int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        return nowhere >= 0 && dup2(nowhere, STDOUT_FILENO) >= 0;
    }();
    must(quiet, "standard output can be redirected");
}

AllocationPlan planOf(Input prefix)
{
    std::size_t const first = std::size_t{1} + prefix[1] + std::size_t{prefix[2]} * 256;
    std::size_t const skipped = prefix[0] / 4;
    switch (prefix[0] % 4) {
    case 2:
        return {AllocationPlan::Failing::One, first, skipped};
    case 3:
        return {AllocationPlan::Failing::AllFrom, first, skipped};
    default:
        return {};
    }
}

} // namespace

Run beginRun(std::uint8_t const* data, std::size_t size)
{
    keepOutputQuiet();
    Input const input(data, size);
    reached("runs");
    if (size < Run::prefix) {
        planAllocations({});
        return {};
    }
    planAllocations(planOf(input.first(Run::prefix)));
    if (allocationsMayFail()) {
        reached("runs whose allocations may fail");
    }
    return {input[3], input.subspan(Run::prefix)};
}

void reached(char const* stage)
{
    static Stages stages;
    stages.count(stage);
}

void must(bool holds, char const* what)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}
