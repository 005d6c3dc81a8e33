#include "container_bytes.h"
#include "program_run.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::array verbs{"info", "ls", "tree", "regs", "dump", "hex", "check", "where", "doctor", "merge"};

bool contains(std::string const& text, std::string const& part)
{
    return text.find(part) != std::string::npos;
}

std::string textOf(std::string const& path)
{
    Bytes const bytes = readFile(path);
    return {reinterpret_cast<char const*>(bytes.data()), bytes.size()};
}

struct ProcessRun {
    int code;
    std::string out;
    std::string err;
};

/// Runs the built program by a shell, which may redirect what it is told to.
ProcessRun shell(std::string const& arguments)
{
    TemporaryDirectory const directory;
    std::string const command = std::string(ZUL_PROGRAM) + " " + arguments + " 2> " + (directory / "err");
    int const status = std::system(("( " + command + " ) > " + (directory / "out")).c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, textOf(directory / "out"),
            textOf(directory / "err")};
}

TEST(Program, HelpOfEveryVerbHasAnExample)
{
    for (char const* const verb : verbs) {
        ProgramRun const run = runZul({verb, "--help"});
        EXPECT_EQ(run.code, ExitCode::Clean) << verb;
        EXPECT_EQ(run.err, "");
        EXPECT_TRUE(contains(run.out, std::string("Example: zul ") + verb)) << run.out;
        EXPECT_TRUE(contains(run.out, "--json")) << run.out;
    }
}

TEST(Program, HelpListsTheVerbsAndTheExitCodes)
{
    ProgramRun const run = runZul({"--help"});
    EXPECT_EQ(run.code, ExitCode::Clean);
    for (char const* const verb : verbs) {
        EXPECT_TRUE(contains(run.out, verb));
    }
    EXPECT_TRUE(contains(run.out, "3 file cannot be read"));
}

TEST(Program, WrongCommandLinesAreAMistakeOfTheUser)
{
    std::vector<std::vector<std::string>> const wrong{
        {}, {"nonsense"}, {"ls"}, {"ls", "--nonsense", "x"}, {"ls", "a", "b"}, {"info"}};
    for (auto const& arguments : wrong) {
        ProgramRun const run = runZul(arguments);
        EXPECT_EQ(run.code, ExitCode::Usage);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err, "");
    }
}

TEST(Program, FailureWithJsonIsJson)
{
    for (char const* const verb : {"ls", "tree", "regs", "dump", "hex"}) {
        ProgramRun const run = runZul({verb, "--json", "/none"});
        EXPECT_EQ(run.code, ExitCode::Unreadable) << verb;
        EXPECT_EQ(run.json()["error"], nlohmann::ordered_json::parse(R"({"code": 3,
            "message": "/none: No such file or directory"})"));
        EXPECT_EQ(run.err, "zul: /none: No such file or directory\n");
    }
}

TEST(Program, NamesOfFilesCannotReachATerminal)
{
    EXPECT_EQ(runZul({"ls", "/none\x1B[2J"}).err, "zul: /none\\x1b[2J: No such file or directory\n");
}

TEST(Program, ColoursOnlyWhereAskedFor)
{
    DesignFile const file(sample::everyKind());
    for (char const* const verb : {"info", "ls", "tree", "regs", "hex"}) {
        EXPECT_FALSE(contains(runZul({verb, file.path()}).out, "\033")) << verb;
        EXPECT_TRUE(contains(runZul({verb, file.path()}, true).out, "\033[1m")) << verb;
        EXPECT_FALSE(contains(runZul({verb, "--json", file.path()}, true).out, "\033")) << verb;
    }
}

TEST(Executable, ExitCodesAndStreams)
{
    DesignFile const good(sample::everyKind());
    DesignFile const bad(Bytes(sample::everyKind()).cut(120));
    ProcessRun const clean = shell("ls " + good.path());
    EXPECT_EQ(clean.code, 0);
    EXPECT_EQ(clean.err, "");
    EXPECT_EQ(clean.out, runZul({"ls", good.path()}).out);
    EXPECT_EQ(shell("").code, 2);
    EXPECT_EQ(shell("ls /none").code, 3);
    EXPECT_EQ(shell("ls " + bad.path()).code, 4);
    EXPECT_EQ(shell("hex " + good.path() + " 99").code, 5);
}

TEST(Executable, PrintsOfTheLibraryStayOffStandardOutput)
{
    DesignFile const bad(ContainerBytes().tag(sample::event("e", "none")).build());
    ProcessRun const run = shell("info --json " + bad.path());
    EXPECT_EQ(run.code, 4);
    EXPECT_TRUE(nlohmann::ordered_json::accept(run.out)) << run.out;
}

TEST(Executable, MinusIsStandardInput)
{
    DesignFile const file(sample::everyKind());
    EXPECT_EQ(shell("ls - < " + file.path()).out, shell("ls " + file.path()).out);
    EXPECT_EQ(shell("hex - 1 < " + file.path()).out, shell("hex " + file.path() + " 1").out);
    ProcessRun const empty = shell("ls - < /dev/null");
    EXPECT_EQ(empty.code, 4);
    EXPECT_EQ(empty.err, "zul: standard input: is empty\n");
    ProcessRun const closed = shell("ls - <&-");
    EXPECT_EQ(closed.code, 3);
    EXPECT_EQ(closed.err, "zul: standard input: Bad file descriptor\n");
}

TEST(Executable, PipesAreReadToTheirEnd)
{
    DesignFile const file(sample::everyKind().append(Bytes().fill(7, 300'000)));
    TemporaryDirectory const directory;
    std::string const out = directory / "out";
    std::string const command =
        "cat " + file.path() + " | " + ZUL_PROGRAM + " dump - > " + out + " 2>/dev/null";
    EXPECT_NE(std::system(command.c_str()), -1);
    EXPECT_TRUE(contains(textOf(out), "\"size\":" + std::to_string(readFile(file.path()).size())));
}

TEST(Executable, OutputThatCannotBeWrittenIsAFailure)
{
    DesignFile const file(sample::everyKind());
    ProcessRun const run = shell("ls " + file.path() + " > /dev/full");
    EXPECT_EQ(run.code, 3);
    EXPECT_EQ(run.err, "zul: cannot write to standard output\n");
}

/// What the program writes to a terminal, with the environment changed by @p setting.
std::string onTerminal(std::string const& path, char const* setting)
{
    int const master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK); // nothing to read is no reason to wait
    EXPECT_EQ(grantpt(master) + unlockpt(master), 0);
    std::string const terminal = ptsname(master);
    int const slave = open(terminal.c_str(), O_RDWR | O_NOCTTY); // keeps what was written until it is read
    std::string const command =
        "env " + std::string(setting) + " " + ZUL_PROGRAM + " hex " + path + " head > " + terminal;
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::string text(4096, '\0');
    ssize_t const count = read(master, text.data(), text.size());
    close(slave);
    close(master);
    return text.substr(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
}

TEST(Executable, ColoursOnATerminalUnlessNoColorIsSet)
{
    DesignFile const file(sample::everyKind());
    EXPECT_TRUE(contains(onTerminal(file.path(), "-u NO_COLOR"), "\033[1mhead"));
    EXPECT_FALSE(contains(onTerminal(file.path(), "NO_COLOR=1"), "\033["));
}

} // namespace
