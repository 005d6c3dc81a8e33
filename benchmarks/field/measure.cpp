#include "measure.h"

#include "child.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>

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

double median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

Costs medians(std::vector<Costs> const& samples)
{
    Costs result{};
    for (std::size_t cost = 0; cost < result.size(); ++cost) {
        std::vector<double> values;
        for (Costs const& sample : samples) {
            values.push_back(sample.at(cost));
        }
        result.at(cost) = median(values);
    }
    return result;
}

Costs operations(Task const& task, unsigned repetitions)
{
    oneByOne(task.format, task.warmUp, task.warmUpNames);
    std::vector<Costs> samples(repetitions);
    std::generate(samples.begin(), samples.end(),
                  [&] { return oneByOne(task.format, task.design, task.names); });
    return medians(samples);
}

Costs wholeJobs(Task const& task, unsigned repetitions)
{
    doWholeJob(task.format, task.warmUp, task.warmUpNames);
    forgetPeak();
    Costs costs{};
    double const before = peakBytes();
    std::vector<double> samples;
    for (unsigned i = 0; i < repetitions; ++i) {
        samples.push_back(secondsOf([&] { doWholeJob(task.format, task.design, task.names); }));
        if (i == 0) {
            costs[peakMemory] = peakBytes() - before;
        }
    }
    costs[wholeJob] = median(samples);
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

Costs measure(Task const& task, unsigned repetitions)
{
    Costs costs = inChild([&] { return operations(task, repetitions); });
    Costs const whole = inChild([&] { return wholeJobs(task, repetitions); });
    costs[wholeJob] = whole[wholeJob];
    costs[peakMemory] = whole[peakMemory];
    return costs;
}
