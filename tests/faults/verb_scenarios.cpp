#include "scenario.h"

#include "designs.h"
#include "files.h"
#include "library_designs.h"
#include "points.h"
#include "session.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <memory>
#include <ostream>
#include <streambuf>
#include <sys/stat.h>
#include <utility>

namespace {

namespace fs = std::filesystem;

/// Takes what is written without memory of its own, and remembers the beginning.
class Sink : public std::streambuf {
public:
    std::string_view text() const { return {m_text.data(), m_length}; }
    void clear() { m_length = 0; }

protected:
    int_type overflow(int_type character) override
    {
        if (m_length < m_text.size() && character != traits_type::eof()) {
            m_text[m_length++] = traits_type::to_char_type(character);
        }
        return traits_type::not_eof(character);
    }

private:
    std::array<char, 256> m_text{};
    std::size_t m_length = 0;
};

/// One run of the program, as often as is asked for.
class Run {
public:
    explicit Run(std::vector<char const*> arguments) : m_arguments(std::move(arguments)) {}

    /// @return the exit code; 0 for findings too, which are an answer
    int operator()()
    {
        m_err.clear();
        std::ostream out(&m_out);
        std::ostream err(&m_err);
        Session session{out, err};
        ExitCode const code = runProgram(session, static_cast<int>(m_arguments.size()), m_arguments.data());
        return code == ExitCode::Finding ? 0 : static_cast<int>(code);
    }
    std::string_view messages() const { return m_err.text(); }

private:
    std::vector<char const*> m_arguments;
    Sink m_out;
    Sink m_err;
};

constexpr int unreadable = static_cast<int>(ExitCode::Unreadable);
constexpr int notFound = static_cast<int>(ExitCode::NotFound);
constexpr int noMemory = static_cast<int>(ExitCode::System);

void writeDesigns()
{
    static Bytes const own = designs::rich();
    static Bytes const other = designs::addition();
    writeFile("/tmp/a.zul", own);
    chmod("/tmp/a.zul", 0600); // is kept
    fs::create_symlink("a.zul", "/tmp/link.zul");
    writeFile("/tmp/b.zul", other);
}

Scenario verb(std::string name, std::vector<char const*> arguments)
{
    auto const run = std::make_shared<Run>(std::move(arguments));
    return {.name = "zul " + name,
            .prepare = writeDesigns,
            .act = [run] { return (*run)(); },
            .verify =
                [run](int result) {
                    EXPECT_EQ(run->messages().substr(0, 5), result == 0 ? "" : "zul: ") << run->messages();
                },
            .nameOf = exitName,
            .withoutMemory = {noMemory},
            .otherResults = {unreadable, noMemory},
            .writes = true,
            .endsProcess = true}; // values of JSON are left when memory runs out while they are made
}

/// With a cache directory that a load would use.
Scenario doctor(std::vector<char const*> arguments)
{
    std::string const name = arguments.size() == 1 ? "doctor" : "doctor --json";
    Scenario scenario = verb(name, std::move(arguments));
    scenario.prepare = [] {
        fs::create_directory("/tmp/installation");
        writeFile("/tmp/installation/tweak.conf", Bytes().chars("HAL::Logging=1\n"));
        fs::create_directory("/tmp/zulcache_3F2A");
        chmod("/tmp/zulcache_3F2A", 0755);
    };
    scenario.verify = [](int) {}; // what cannot be looked at is told, and the rest shown
    scenario.isThorough = true;   // a few allocations are in calls of the C++ library that must not fail
    return scenario;
}

/// JSON with lists in it, which are easily made in a way that cannot be undone.
Scenario settings()
{
    Scenario scenario = verb("api, settings", {"api", "/tmp/a.zul", "ZulGetUserInfoByName"});
    scenario.isThorough = true;
    return scenario;
}

/// Everything else that is shown as JSON.
void addReports(std::vector<Scenario>& scenarios)
{
    for (char const* const name : {"info", "tree", "regs", "api"}) {
        scenarios.push_back(verb(std::string(name) + " --json", {name, "/tmp/a.zul", "--json"}));
    }
    scenarios.push_back(verb("hex --json", {"hex", "/tmp/a.zul", "4", "--json"}));
    scenarios.push_back(verb("format --json", {"format", "--json"}));
    scenarios.push_back(verb("explain --all --json", {"explain", "--all", "--json"}));
    scenarios.push_back(doctor({"doctor", "--json"}));
}

} // namespace

std::vector<Scenario> verbScenarios()
{
    std::vector<Scenario> scenarios{
        verb("strip -o", {"strip", "/tmp/a.zul", "-o", "/tmp/out.zul"}),
        verb("strip --in-place --json", {"strip", "/tmp/link.zul", "--in-place", "--json"}),
        verb("merge -o", {"merge", "/tmp/a.zul", "/tmp/b.zul", "-o", "/tmp/out.zul"}),
        verb("merge --in-place --json", {"merge", "/tmp/a.zul", "/tmp/b.zul", "--in-place", "--json"}),
        verb("extract", {"extract", "/tmp/a.zul", "all", "-O", "/tmp/out"}),
        verb("extract --json", {"extract", "/tmp/a.zul", "all", "-O", "/tmp/out", "--json"}),
        verb("info", {"info", "/tmp/a.zul"}),
        verb("ls --json", {"ls", "/tmp/b.zul", "--json"}),
        verb("tree", {"tree", "/tmp/a.zul"}),
        verb("regs", {"regs", "/tmp/a.zul"}),
        verb("dump", {"dump", "--payload", "/tmp/b.zul"}),
        verb("hex", {"hex", "/tmp/a.zul", "4"}),
        verb("format", {"format"}),
        verb("explain", {"explain", "Z0101"}),
        verb("api", {"api", "/tmp/a.zul"}),
        verb("check", {"check", "/tmp/a.zul"}),
        verb("check --json", {"check", "/tmp/a.zul", "--json"}),
        settings(),
        doctor({"doctor"}),
        verb("where", {"where", "/tmp/a.zul", "--board", "2624"}),
    };
    for (std::size_t const i : {0U, 2U, 3U, 4U, 5U}) {
        scenarios[i].canBeRepeated = false; // what was written before the failure is refused
    }
    scenarios.back().otherResults.insert(notFound); // whyever
    if (everyPointIsTried()) {
        addReports(scenarios);
    }
    return scenarios;
}
