// For a program that is started with these functions preloaded: what fails comes from the environment.

#include "fault.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

/// Reads ZUL_FAULT: "m" (memory) or "f" (files), the first call to fail, how many, and the errno. How many calls there were goes
/// to the file ZUL_FAULT_CALLS in the end.
class FaultFromEnvironment {
public:
    FaultFromEnvironment()
    {
        char kind = 0;
        Fault fault;
        char const* const text = std::getenv("ZUL_FAULT");
        if (text != nullptr &&
            std::sscanf(text, "%c %zu %zu %d", &kind, &fault.first, &fault.count, &fault.error) == 4) {
            fault.kind = kind == 'm' ? FaultKind::Allocation : FaultKind::SystemCall;
            m_fault.emplace(fault);
        }
    }
    FaultFromEnvironment(FaultFromEnvironment const&) = delete;
    FaultFromEnvironment& operator=(FaultFromEnvironment const&) = delete;
    ~FaultFromEnvironment()
    {
        std::size_t const calls = m_fault ? m_fault->calls() : 0;
        m_fault.reset();
        char const* const path = std::getenv("ZUL_FAULT_CALLS");
        if (std::FILE* const file = path == nullptr ? nullptr : std::fopen(path, "w")) {
            std::fprintf(file, "%zu\n", calls);
            std::fclose(file);
        }
    }

private:
    std::optional<InjectedFault> m_fault;
};

FaultFromEnvironment const fault;

} // namespace
