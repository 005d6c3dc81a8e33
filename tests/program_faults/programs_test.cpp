// Whole programs, with failures from their very first call on.

#include "designs.h"
#include "file_tree.h"
#include "files.h"
#include "loaded_container.h"
#include "points.h"
#include "scenario.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Program {
    std::string name;
    Bytes (*design)();                  ///< a.zul; b.zul can be merged with it
    std::vector<std::string> arguments; ///< the program's path first
    std::set<int> failures;             ///< exit codes for "it could not be done"
};

void PrintTo(Program const& program, std::ostream* out)
{
    *out << program.name;
}

std::string textOf(std::string const& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Beside the directory that a program works in.
constexpr char calls[] = "../calls";
constexpr char errors[] = "../errors";

/// In a child process: becomes the program.
[[noreturn]] void become(Program const& program, Fault const& fault)
{
    std::string const text = (fault.kind == FaultKind::Allocation ? "m " : "f ") +
                             std::to_string(fault.first) + ' ' + std::to_string(fault.count) + ' ' +
                             std::to_string(fault.error);
    setenv("ZUL_FAULT", text.c_str(), 1);
    setenv("ZUL_FAULT_CALLS", calls, 1);
    setenv("LD_PRELOAD", FAULT_LIBRARY, 1);
    int const out = open("/dev/null", O_WRONLY);
    int const err = open(errors, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    closefrom(STDERR_FILENO + 1);
    std::vector<char*> arguments;
    for (std::string const& argument : program.arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
}

/// The sample design under an id of its own, so that its libraries are unpacked to a directory of its own.
std::string idOfThisProcess()
{
    return "fault-test-" + std::to_string(getpid());
}

Bytes sampleDesign()
{
    LoadedContainer design(readFile(ZUL_SAMPLE_DESIGN));
    design.zul.setId(idOfThisProcess().c_str());
    return savedContainer(design.zul);
}

/// Runs a program in a new directory, which is the working directory of this process meanwhile.
class ProgramRuns {
public:
    explicit ProgramRuns(Program const& program) : m_program(program)
    {
        fs::create_directory(m_directory / "work");
        fs::current_path(m_directory / "work");
    }
    ProgramRuns(ProgramRuns const&) = delete;
    ProgramRuns& operator=(ProgramRuns const&) = delete;
    ~ProgramRuns()
    {
        fs::current_path("/");
        fs::remove_all(m_cache);
    }

    void sweep(FaultKind kind)
    {
        m_outcomes.clear();
        EXPECT_EQ(run({.kind = kind}), 0) << textOf(errors);
        std::size_t const count = std::stoul(textOf(calls));
        m_after = tree();
        std::size_t tried = 0;
        for (Fault way : waysToFail(kind)) {
            if (isTriedWithPrograms(way)) {
                for (std::size_t const call : pointsToTry(count)) {
                    way.first = call;
                    tryOne(way);
                    ++tried;
                }
            }
        }
        if (everyPointIsTried()) {
            print(kind, count, tried);
        }
    }

private:
    /// Programs take long to start: not every errno is tried with them. Those that fail for ever could leave directories
    /// in /tmp.
    static bool isTriedWithPrograms(Fault const& way)
    {
        return way.kind == FaultKind::Allocation ||
               (way.count == 1 && (everyPointIsTried() || way.error == EIO || way.error == EINTR));
    }

    FileTree tree() const
    {
        FileTree tree = treeBelow(".");
        if (exists(m_cache)) {
            for (auto const& [path, what] : treeBelow(m_cache)) {
                tree.emplace(m_cache + '/' + path, what);
            }
        }
        return tree;
    }

    void prepare()
    {
        fs::remove_all(m_cache);
        clear(".");
        writeFile("a.zul", m_design);
        writeFile("b.zul", m_addition);
        chmod("a.zul", 0600);
        m_before = tree();
    }

    /// @return the exit code, or the negated number of the signal
    int run(Fault const& fault)
    {
        prepare();
        pid_t const child = fork();
        if (child == 0) {
            become(m_program, fault);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    void tryOne(Fault const& fault)
    {
        int const code = run(fault);
        ++m_outcomes[code];
        SCOPED_TRACE("call " + std::to_string(fault.first) + ", " + std::to_string(fault.count) + " times " +
                     errorName(fault.error));
        EXPECT_TRUE(code == 0 || m_program.failures.contains(code)) << code << ": " << textOf(errors);
        EXPECT_TRUE(code == 0 || !textOf(errors).empty());
        FileTree const now = tree();
        bool const stays = fault.kind == FaultKind::SystemCall; // what is to be removed
        EXPECT_EQ(unexpected(now, m_before, m_after, {.leaves = stays, .spoils = false, .removes = false}),
                  "");
    }

    void print(FaultKind kind, std::size_t count, std::size_t tried) const
    {
        std::printf("%-40s %s %8zu%8zu", m_program.name.c_str(),
                    kind == FaultKind::Allocation ? "memory" : "files ", count, tried);
        char const* separator = "   ";
        for (auto const& [code, times] : m_outcomes) {
            std::printf("%s%s: %zu", separator, exitName(code).c_str(), times);
            separator = ", ";
        }
        std::puts("");
        std::fflush(stdout);
    }

    Program const& m_program;
    TemporaryDirectory const m_directory;
    std::string const m_cache = "/tmp/zulcache_" + idOfThisProcess();
    Bytes const m_design = m_program.design();
    Bytes const m_addition = designs::addition();
    FileTree m_before;
    FileTree m_after;
    std::map<int, std::size_t> m_outcomes;
};

class EveryFailureOfAProgram : public testing::TestWithParam<Program> {};

TEST_P(EveryFailureOfAProgram, OfMemoryEndsItCleanly)
{
    ProgramRuns(GetParam()).sweep(FaultKind::Allocation);
}

TEST_P(EveryFailureOfAProgram, OfFilesEndsItCleanly)
{
    ProgramRuns(GetParam()).sweep(FaultKind::SystemCall);
}

std::vector<Program> programs()
{
    std::string const zul = ZUL_PROGRAM;
    std::set<int> const codes{3, 71}; // a file cannot be read or written; memory or descriptors ran out
    return {{"zul strip, process", designs::rich, {zul, "strip", "a.zul", "--in-place"}, codes},
            {"zul merge, process", designs::rich, {zul, "merge", "a.zul", "b.zul", "-o", "out.zul"}, codes},
            {"zul extract, process", designs::rich, {zul, "extract", "a.zul", "all", "-O", "out"}, codes},
            {"load_design, process", sampleDesign, {LOAD_DESIGN, "./a.zul", "0xa41"}, {1}}};
}

std::string nameOf(testing::TestParamInfo<Program> const& info)
{
    return identifier(info.param.name);
}

INSTANTIATE_TEST_SUITE_P(Of, EveryFailureOfAProgram, testing::ValuesIn(programs()), nameOf);

} // namespace
