#include "applet_location.h"
#include "captured_output.h"
#include "environment.h"
#include "program_run.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>

namespace {

/// Two installations that the environment names; the program's own is that of the build, which has no applets.
class Where : public testing::Test {
protected:
    std::string put(TemporaryDirectory const& base, std::string const& below)
    {
        std::string path = base / ("Hardware Applets/" + below);
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        writeFile(path, Bytes().chars("design"));
        return path;
    }
    static std::string own() { return KovaDir::GetKovaDir(); }
    static nlohmann::ordered_json step(char const* from, nlohmann::ordered_json const& base,
                                       nlohmann::ordered_json const& path, char const* result, int error)
    {
        return {{"from", from}, {"base", base}, {"path", path}, {"result", result}, {"errno", error}};
    }

    TemporaryDirectory m_first;
    TemporaryDirectory m_third;
    EnvironmentVariable m_firstVariable{"KOVADIR5_64", m_first.path()};
    EnvironmentVariable m_second{"KOVADIR5", nullptr};
    EnvironmentVariable m_thirdVariable{"QELINSTALLDIR", m_third.path()};
};

TEST_F(Where, TableHasEveryStepUpToTheFind)
{
    std::string const path = put(m_first, "kova_2624/d.zul");
    ProgramRun const run = runZul({"where", "d.zul", "--board", "2624"});
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(run.err, "");
    std::string const missing = "No such file or directory";
    EXPECT_EQ(run.out, "from                    result                     path\n"
                       "installation directory  " +
                           missing + "  " + own() +
                           "/Hardware Applets/kova-2624/d.zul\n"
                           "installation directory  " +
                           missing + "  " + own() +
                           "/Hardware Applets/kova_2624/d.zul\n"
                           "KOVADIR5_64             " +
                           missing + "  " + (m_first / "Hardware Applets/kova-2624/d.zul") +
                           "\nKOVADIR5_64             found                      " + path + "\n");
}

TEST_F(Where, JsonHasEveryStep)
{
    std::string const path = put(m_third, "kova-1872/d.zul");
    ProgramRun const run = runZul({"where", "--json", "d.zul", "--board", "0x750"});
    EXPECT_EQ(run.code, ExitCode::Clean);
    auto const json = run.json();
    EXPECT_EQ(json["schema"], "zul-where");
    EXPECT_EQ(json["version"], 1);
    EXPECT_EQ(json["name"], "d.zul");
    EXPECT_EQ(json["board"], 1872);
    EXPECT_EQ(json["found"], path);
    std::string const below = "/Hardware Applets/kova-1872/d.zul";
    char const* const missing = "No such file or directory";
    EXPECT_EQ(
        json["search"],
        nlohmann::ordered_json({step("installation directory", own(), own() + below, missing, ENOENT),
                                step("KOVADIR5_64", m_first.path(), m_first.path() + below, missing, ENOENT),
                                step("KOVADIR5", nullptr, nullptr, "not set", 0),
                                step("QELINSTALLDIR", m_third.path(), path, "found", 0)}));
}

TEST_F(Where, NothingFoundIsNotFound)
{
    ProgramRun const run = runZul({"where", "d.zul", "--board", "2624"});
    EXPECT_EQ(run.code, ExitCode::NotFound);
    EXPECT_EQ(run.err, "zul: d.zul is not there for board 2624\n");
    ProgramRun const asJson = runZul({"where", "d.zul", "--board", "2624", "--json"});
    EXPECT_EQ(asJson.code, ExitCode::NotFound);
    EXPECT_EQ(asJson.json()["found"], nullptr);
    EXPECT_EQ(asJson.json()["search"].size(), 7U);
}

TEST_F(Where, NameWithASlashIsTheOnlyStep)
{
    std::string const path = put(m_first, "kova-2624/d.zul");
    ProgramRun const found = runZul({"where", path, "--board", "65535", "--json"});
    EXPECT_EQ(found.code, ExitCode::Clean);
    EXPECT_EQ(found.json()["search"],
              nlohmann::ordered_json::array({step("name", nullptr, path, "found", 0)}));
    ProgramRun const missing = runZul({"where", "/none/d.zul", "--board", "2624"});
    EXPECT_EQ(missing.code, ExitCode::NotFound);
    EXPECT_EQ(missing.out, "from  result                     path\n"
                           "name  No such file or directory  /none/d.zul\n");
}

TEST_F(Where, BoardWithoutDirectoryIsTold)
{
    ProgramRun const run = runZul({"where", "d.zul", "--board", "65535"});
    EXPECT_EQ(run.code, ExitCode::NotFound);
    EXPECT_EQ(run.out, "from                    result                       path\n"
                       "installation directory  no directory for this board  -\n"
                       "KOVADIR5_64             no directory for this board  -\n"
                       "KOVADIR5                not set                      -\n"
                       "QELINSTALLDIR           no directory for this board  -\n");
}

TEST_F(Where, WhyAFileDoesNotOpenIsTold)
{
    EnvironmentVariable const variable("QELINSTALLDIR", "/dev/null");
    auto const json = runZul({"where", "d.zul", "--board", "0xbbea0", "--json"}).json();
    EXPECT_EQ(json["search"].back(),
              step("QELINSTALLDIR", "/dev/null", "/dev/null/Hardware Applets/3s1600e/d.zul",
                   "Not a directory", ENOTDIR));
}

TEST_F(Where, SearchesAsALoadDoesButPrintsNothingOfIt)
{
    std::string const path = put(m_third, "kova_2624/d.zul");
    CapturedOutput const output;
    ProgramRun const run = runZul({"where", "d.zul", "--board", "2624", "--json"});
    EXPECT_EQ(output.text(), "");
    char* found = nullptr;
    EXPECT_TRUE(getAppletDir("d.zul", 2624, &found));
    EXPECT_EQ(run.json()["found"], found);
    delete[] found;
}

TEST_F(Where, BoardIsDecimalOrHexadecimal)
{
    auto const board = [](char const* text) {
        return runZul({"where", "d.zul", "--json", "--board", text}).json()["board"];
    };
    EXPECT_EQ(board("0xA40"), 2624);
    EXPECT_EQ(board("0Xa40"), 2624);
    EXPECT_EQ(board("02624"), 2624) << "not octal";
    EXPECT_EQ(board("4294967295"), 0xFFFFFFFF);
    EXPECT_EQ(board("0xffffffff"), 0xFFFFFFFF);
}

TEST_F(Where, OtherBoardsAreAMistakeOfTheUser)
{
    for (std::string const text :
         {"", "0x", "a40", "12 ", " 12", "1.5", "-1", "0x-1", "4294967296", "0x100000000"}) {
        ProgramRun const run = runZul({"where", "d.zul", "--board=" + text});
        EXPECT_EQ(run.code, ExitCode::Usage) << text;
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err, "");
    }
    EXPECT_EQ(runZul({"where", "d.zul", "--board=12x"}).err,
              "zul: --board: 12x is no board type: 0 to 4294967295, or 0x0 to 0xffffffff\n");
    EXPECT_EQ(runZul({"where", "d.zul"}).code, ExitCode::Usage);
    EXPECT_EQ(runZul({"where", "--board", "1"}).code, ExitCode::Usage);
}

TEST_F(Where, NamesCannotReachATerminal)
{
    EnvironmentVariable const variable("KOVADIR5", "/\x1B]0;x");
    ProgramRun const run = runZul({"where", "\x1B[2J", "--board", "2624"});
    EXPECT_EQ((run.out + run.err).find('\x1B'), std::string::npos);
    EXPECT_TRUE(runZul({"where", "\xFF", "--board", "2624", "--json"}).json().contains("found"));
}

} // namespace
