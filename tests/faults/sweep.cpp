#include "sweep.h"

#include "captured_output.h"
#include "file_tree.h"
#include "listing.h"
#include "points.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string_view>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr char root[] = "/tmp";
constexpr int threw = 255;
constexpr unsigned mostReports = 5;

/// What a child process tells while it is at work, so that it is known if it ends.
struct Progress {
    std::size_t call = 0;
    bool isActing = false;
    std::size_t tried = 0;
    std::array<std::size_t, 256> outcomes{};
};

/// Memory that child processes share.
class SharedProgress {
public:
    SharedProgress()
        : m_progress(new (mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS,
                               -1, 0)) Progress)
    {
    }
    SharedProgress(SharedProgress const&) = delete;
    SharedProgress& operator=(SharedProgress const&) = delete;
    ~SharedProgress() { munmap(m_progress, sizeof(Progress)); }

    Progress* operator->() const noexcept { return m_progress; }

private:
    Progress* m_progress;
};

/// Whether removing something is what failed: then it stays.
bool isRemoval(std::string_view function)
{
    return function == "unlink" || function == "unlinkat" || function == "rmdir";
}

/// GoogleTest keeps the memory for as many traces as there once were: from now on that of all that are made here.
void traceDeeply()
{
    SCOPED_TRACE(1);
    SCOPED_TRACE(2);
    SCOPED_TRACE(3);
    SCOPED_TRACE(4);
}

/// The same of the files in a directory.
bool opensDirectory(std::string_view function)
{
    return function == "open" || function == "getdents64";
}

class Sweep {
public:
    Sweep(Scenario const& scenario, FaultKind kind) : m_scenario(scenario), m_kind(kind) {}

    SweepResult run()
    {
        traceDeeply();
        withoutFailures(); // makes what is made once in a process
        m_calls = withoutFailures();
        for (Fault const& way : waysToFail(m_kind)) {
            tryAll(way);
        }
        SweepResult result{.calls = m_calls, .tried = m_progress->tried, .outcomes = {}};
        for (std::size_t i = 0; i < m_progress->outcomes.size(); ++i) {
            if (m_progress->outcomes.at(i) != 0) {
                result.outcomes[static_cast<int>(i)] = m_progress->outcomes.at(i);
            }
        }
        return result;
    }

private:
    /// @return the number of calls
    std::size_t withoutFailures()
    {
        clear(root);
        m_scenario.prepare();
        m_before = treeBelow(root);
        int result = 0;
        std::size_t calls = 0;
        {
            CapturedOutput const quiet;
            InjectedFault const none({.kind = m_kind});
            result = m_scenario.act();
            calls = none.calls();
        }
        EXPECT_EQ(result, 0) << "without failures";
        m_scenario.verify(result);
        m_scenario.release();
        m_after = treeBelow(root);
        return calls;
    }

    /// Every call fails in that way in turn. A child process tries one after the other; where it ends, another goes on.
    void tryAll(Fault const& way)
    {
        unsigned ends = 0;
        m_progress->call = 0;
        while (m_progress->call < m_calls && ends < mostReports) {
            pid_t const child = fork();
            if (child == 0) {
                tryCallsAfter(m_progress->call, way);
                std::fflush(stdout);
                _exit(testing::Test::HasFailure() ? 1 : 0);
            }
            int status = 0;
            waitpid(child, &status, 0);
            if (m_progress->isActing) {
                ends += noteEnd(status, way) ? 0U : 1U;
            } else {
                EXPECT_EQ(status, 0) << "see above";
                return;
            }
        }
    }

    void tryCallsAfter(std::size_t last, Fault way)
    {
        for (std::size_t const call : pointsToTry(m_calls, m_scenario.isThorough)) {
            if (call > last && !testing::Test::HasFailure()) {
                m_progress->call = way.first = call;
                tryOne(way);
            }
        }
        m_progress->call = m_calls;
    }

    std::string describe(Fault const& fault, char const* function) const
    {
        return std::string(m_kind == FaultKind::Allocation ? "allocation " : "call ") +
               std::to_string(fault.first) + " (" + (function == nullptr ? "?" : function) + ") of " +
               std::to_string(m_calls) + " fails with " +
               (fault.error == Fault::half ? "half" : errorName(fault.error)) +
               (fault.count == Fault::lasting ? ", and all that follow"
                                              : ", " + std::to_string(fault.count) + " times");
    }

    /// @return whether a process may end like this
    bool noteEnd(int status, Fault fault)
    {
        fault.first = m_progress->call;
        m_progress->isActing = false;
        SCOPED_TRACE(describe(fault, nullptr));
        bool const isExit = WIFEXITED(status);
        EXPECT_TRUE(isExit) << "ended by signal " << WTERMSIG(status);
        if (isExit) {
            note(WEXITSTATUS(status));
            expectResult(WEXITSTATUS(status), fault);
            expectFiles(WEXITSTATUS(status), fault, "");
        }
        return isExit;
    }

    void note(int result)
    {
        ++m_progress->tried;
        ++m_progress->outcomes.at(static_cast<std::size_t>(result) % m_progress->outcomes.size());
    }

    void tryOne(Fault const& fault)
    {
        clear(root);
        std::size_t const descriptors = openDescriptors();
        InUse const used = inUse();
        m_scenario.prepare();
        char const* function = nullptr;
        int const result = actWith(fault, function);
        if (function == nullptr) {
            m_scenario.release();
            return;
        }
        note(result);
        expectOutcome(result, fault, function);
        InUse const now = inUse(); // of nothing but the scenario: what is expected takes memory too
        SCOPED_TRACE(describe(fault, function));
        if (!m_scenario.endsProcess) {
            EXPECT_EQ(now.blocks, used.blocks);
            EXPECT_EQ(now.bytes, used.bytes);
        }
        EXPECT_EQ(now.mappings, used.mappings);
        EXPECT_EQ(openDescriptors(), descriptors);
    }

    void expectOutcome(int result, Fault const& fault, char const* function)
    {
        SCOPED_TRACE(describe(fault, function));
        expectResult(result, fault);
        m_scenario.verify(result);
        if (result == 0 || !m_scenario.canBeRepeated) {
            m_scenario.release();
            expectFiles(result, fault, function);
            return;
        }
        expectFiles(result, fault, function);
        EXPECT_EQ(actQuietly(), 0) << "when it is tried again";
        m_scenario.release();
    }

    int actQuietly() const
    {
        CapturedOutput const quiet;
        return m_scenario.act();
    }

    /// @param function takes the one that failed; null when none did
    int actWith(Fault const& fault, char const*& function)
    {
        CapturedOutput const quiet;
        int result = threw;
        InjectedFault const injected(fault);
        m_progress->isActing = true;
        try {
            result = m_scenario.act();
        } catch (...) { // is told as a result that is not documented
        }
        m_progress->isActing = false;
        function = injected.failed();
        return result;
    }

    void expectResult(int result, Fault const& fault) const
    {
        bool const isKnown =
            result == 0 || (m_kind == FaultKind::Allocation
                                ? m_scenario.withoutMemory.contains(result)
                                : result == fault.error || m_scenario.otherResults.contains(result));
        EXPECT_TRUE(isKnown) << m_scenario.nameOf(result);
    }

    void expectFiles(int result, Fault const& fault, std::string_view function) const
    {
        FileTree const now = treeBelow(root);
        if (result == 0 && m_scenario.writes) {
            EXPECT_EQ(unexpected(now, m_after, m_after, {}), "") << "though it is done";
            return;
        }
        bool const isRemoved =
            isRemoval(function) || (m_scenario.removesDirectory && opensDirectory(function));
        bool const stays = fault.count != 1 || isRemoved; // what is to be removed
        EXPECT_EQ(unexpected(now, m_before, m_after,
                             {.leaves = stays,
                              .spoils = stays && m_scenario.writesDirectly,
                              .removes = m_scenario.writesDirectly}),
                  "");
    }

    Scenario const& m_scenario;
    FaultKind m_kind;
    std::size_t m_calls = 0;
    FileTree m_before;
    FileTree m_after;
    SharedProgress m_progress;
};

} // namespace

SweepResult sweep(Scenario const& scenario, FaultKind kind)
{
    return Sweep(scenario, kind).run();
}

std::string row(Scenario const& scenario, FaultKind kind, SweepResult const& result)
{
    std::string text = scenario.name;
    text.resize(std::max<std::size_t>(text.size(), 40), ' ');
    text += kind == FaultKind::Allocation ? " memory " : " files  ";
    for (std::size_t const number : {result.calls, result.tried}) {
        std::string const digits = std::to_string(number);
        text += std::string(8 - std::min<std::size_t>(8, digits.size()), ' ') + digits;
    }
    char const* separator = "   ";
    for (auto const& [outcome, count] : result.outcomes) {
        text += separator + scenario.nameOf(outcome) + ": " + std::to_string(count);
        separator = ", ";
    }
    return text;
}
