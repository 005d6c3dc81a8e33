#include "measure.h"

#include "child.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <malloc.h>
#include <vector>

namespace {

/// A side effect that no compiler removes: what the answers add up to.
std::uint64_t volatile answers = 0;

/// Time that this process has computed: what else the machine does is not in it.
double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <class Action>
double secondsOf(Action action)
{
    double const start = processorSeconds();
    action();
    return processorSeconds() - start;
}

void lookUp(OpenDesign& design, std::span<std::string const> names)
{
    answers = design.lookUp(names).addresses;
}

void walk(OpenDesign& design)
{
    answers = design.walk().values;
}

/// So short for most formats that the clock would be measured.
constexpr unsigned timesHandedOut = 20;
void handOut(OpenDesign& design)
{
    for (unsigned i = 0; i < timesHandedOut; ++i) {
        answers = design.bitstreams().size();
    }
}

/// Every operation on its own.
Costs oneByOne(Format const& format, std::span<std::byte const> bytes, std::span<std::string const> names)
{
    Costs costs{};
    std::unique_ptr<OpenDesign> design;
    costs[opening] = secondsOf([&] { design = format.open(bytes); });
    costs[lookingUp] = secondsOf([&] { lookUp(*design, names); });
    costs[walking] = secondsOf([&] { walk(*design); });
    costs[handingOut] = secondsOf([&] { handOut(*design); }) / timesHandedOut;
    costs[saving] = std::numeric_limits<double>::quiet_NaN();
    if (format.canSave()) {
        Stored saved;
        costs[saving] = secondsOf([&] { saved = design->save(); });
    }
    costs[closing] = secondsOf([&] { design.reset(); });
    return costs;
}

/// What a host does with a design, as one.
void doWholeJob(Format const& format, std::span<std::byte const> bytes, std::span<std::string const> names)
{
    auto const design = format.open(bytes);
    lookUp(*design, names);
    walk(*design);
}

/// The most that has been resident, pages of the program included.
double peakBytes()
{
    double kibibytes = 0;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const status(std::fopen("/proc/self/status", "r"),
                                                                 std::fclose);
    char line[256];
    while (status != nullptr && std::fgets(line, sizeof line, status.get()) != nullptr) {
        if (std::strncmp(line, "VmHWM:", 6) == 0) {
            kibibytes = std::strtod(line + 6, nullptr);
        }
    }
    return kibibytes * 1024;
}

/// From now on peakBytes() counts from what is resident now.
void forgetPeak()
{
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(std::fopen("/proc/self/clear_refs", "w"),
                                                               std::fclose);
    if (file != nullptr) {
        std::fputs("5", file.get());
    }
}

/// The whole job in a process that has done it before and keeps the memory: what the work alone takes.
double secondsAgain(Task const& task)
{
    constexpr std::size_t mostSamples = 5;
    constexpr double enough = 0.2;
    constexpr int mostOfHeap =
        32 * 1024 * 1024; // what the C library itself comes to in a process that lives on
    mallopt(M_MMAP_THRESHOLD, mostOfHeap);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    doWholeJob(task.format, task.design, task.names);
    std::vector<double> samples;
    for (double spent = 0; samples.size() < mostSamples && spent < enough; spent += samples.back()) {
        samples.push_back(secondsOf([&] { doWholeJob(task.format, task.design, task.names); }));
    }
    std::sort(samples.begin(), samples.end());
    return samples.at(samples.size() / 2);
}

Costs operations(Task const& task)
{
    oneByOne(task.format, task.warmUp, task.warmUpNames);
    return oneByOne(task.format, task.design, task.names);
}

Costs wholeJobAndPeak(Task const& task)
{
    doWholeJob(task.format, task.warmUp, task.warmUpNames);
    forgetPeak();
    Costs costs{};
    double const before = peakBytes();
    costs[wholeJob] = secondsOf([&] { doWholeJob(task.format, task.design, task.names); });
    costs[peakMemory] = peakBytes() - before;
    costs[wholeJobAgain] = secondsAgain(task);
    return costs;
}

/// The costs that @p action returns in a process of its own.
Costs inChild(std::function<Costs()> const& action)
{
    auto const blocks = blocksFromChild([&action](Send const& send) {
        Costs const costs = action();
        send(std::as_bytes(std::span(costs)));
    });
    Costs costs{};
    std::memcpy(costs.data(), blocks.at(0).data(), sizeof costs);
    return costs;
}

} // namespace

Costs measure(Task const& task)
{
    Costs costs = inChild([&] { return operations(task); });
    Costs const whole = inChild([&] { return wholeJobAndPeak(task); });
    costs[wholeJob] = whole[wholeJob];
    costs[wholeJobAgain] = whole[wholeJobAgain];
    costs[peakMemory] = whole[peakMemory];
    return costs;
}
