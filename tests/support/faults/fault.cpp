#include "fault.h"

#include "injection.h"

#include <algorithm>
#include <atomic>

namespace {

struct State {
    Fault fault;
    bool isActive = false;
    std::size_t calls = 0;
    std::size_t bytes = 0;
    char const* failed = nullptr;
};

constinit thread_local State state;
constinit std::atomic<std::ptrdiff_t> blocks = 0;
constinit std::atomic<std::ptrdiff_t> bytes = 0;
constinit std::atomic<std::ptrdiff_t> mappings = 0;

/// Counts a call. @return whether the fault is about it
bool isMeant(FaultKind kind) noexcept
{
    if (!state.isActive || state.fault.kind != kind) {
        return false;
    }
    ++state.calls;
    return state.fault.first != Fault::none && state.calls >= state.fault.first &&
           state.calls - state.fault.first < state.fault.count;
}

void noteFailure(char const* function) noexcept
{
    if (state.failed == nullptr) {
        state.failed = function;
    }
}

} // namespace

InjectedFault::InjectedFault(Fault const& fault) noexcept
{
    state = {.fault = fault, .isActive = true};
}

InjectedFault::~InjectedFault()
{
    state.isActive = false;
}

std::size_t InjectedFault::calls() const noexcept
{
    return state.calls;
}

char const* InjectedFault::failed() const noexcept
{
    return state.failed;
}

std::size_t InjectedFault::bytes() const noexcept
{
    return state.bytes;
}

InUse inUse() noexcept
{
    return {blocks, bytes, mappings};
}

bool hasToFail(FaultKind kind, char const* function) noexcept
{
    bool const fails = isMeant(kind) && state.fault.error != Fault::half;
    if (fails) {
        noteFailure(function);
    }
    return fails;
}

int hasToFailTransfer(char const* function, std::size_t& length) noexcept
{
    if (!isMeant(FaultKind::SystemCall)) {
        return 0;
    }
    noteFailure(function);
    if (state.fault.error == Fault::half) {
        length = std::max<std::size_t>(length / 2, std::min<std::size_t>(length, 1));
    }
    return state.fault.error;
}

int errorOfFault() noexcept
{
    return state.fault.error;
}

void noteSize(std::size_t size) noexcept
{
    if (state.isActive) {
        state.bytes += size;
    }
}

void noteInUse(InUse const& difference) noexcept
{
    blocks += difference.blocks;
    bytes += difference.bytes;
    mappings += difference.mappings;
}
