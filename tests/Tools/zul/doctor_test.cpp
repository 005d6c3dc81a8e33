#include "applet_location.h"
#include "environment.h"
#include "private_tmp.h"
#include "program_run.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Json = nlohmann::ordered_json;

Json propertyOf(Json const& report, std::string const& key)
{
    for (Json const& property : report["properties"]) {
        if (property["key"] == key) {
            return property;
        }
    }
    return {};
}

/// A copy of the program in a directory of its own.
class ProgramCopy {
public:
    explicit ProgramCopy(std::string const& below) : m_program(m_directory / below)
    {
        std::filesystem::create_directories(m_program.parent_path());
        std::filesystem::copy_file(ZUL_PROGRAM, m_program);
    }
    std::string base() const { return m_directory.path(); }
    /// Writes base()/tweak.conf.
    void tweak(std::string const& text) const { writeFile(base() + "/tweak.conf", Bytes().chars(text)); }

    /// What "doctor --json" writes, with @p setting for env; code receives its exit code.
    Json report(std::string const& setting = "")
    {
        std::string const command =
            "env -u KOVADIR5_64 -u KOVADIR5 " + setting + " " + m_program.string() + " doctor --json 2>&1";
        FILE* const pipe = popen(command.c_str(), "r");
        std::string text;
        for (int c; (c = std::fgetc(pipe)) != EOF;) {
            text += static_cast<char>(c);
        }
        int const status = pclose(pipe);
        code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return Json::parse(text);
    }

    int code = -1;

private:
    TemporaryDirectory m_directory;
    std::filesystem::path m_program;
};

TEST(Doctor, InstallationIsFoundAboveTheProgram)
{
    ProgramCopy copy("bin/zul");
    EXPECT_EQ(copy.report("KOVADIR5=/other")["installation"],
              (Json{{"directory", copy.base()}, {"from", "own path"}}));
}

TEST(Doctor, ProgramCalledByItsNameAloneFindsItsInstallation)
{
    ProgramCopy copy("bin/zul");
    std::string const shell = "PATH=" + copy.base() + "/bin:$PATH sh -c 'zul doctor --json' #";
    EXPECT_EQ(copy.report(shell)["installation"]["directory"], copy.base());
}

TEST(Doctor, InstallationComesFromTheEnvironmentOtherwise)
{
    ProgramCopy copy("zul");
    EXPECT_EQ(copy.report("KOVADIR5=/b// KOVADIR5_64=/a/")["installation"],
              (Json{{"directory", "/a"}, {"from", "KOVADIR5_64"}}));
    EXPECT_EQ(copy.report("KOVADIR5=/b//")["installation"],
              (Json{{"directory", "/b"}, {"from", "KOVADIR5"}}));
}

TEST(Doctor, WithoutInstallationNoFileIsRead)
{
    ProgramCopy copy("zul");
    Json const report = copy.report();
    EXPECT_EQ(copy.code, 1);
    EXPECT_EQ(report["schema"], "zul-doctor");
    EXPECT_EQ(report["version"], 1);
    EXPECT_EQ(report["installation"], (Json{{"directory", nullptr}, {"from", nullptr}}));
    EXPECT_EQ(report["tweakFile"], (Json{{"path", nullptr}, {"read", false}, {"error", nullptr}}));
}

TEST(Doctor, TweakFileIsRead)
{
    ProgramCopy copy("bin/zul");
    std::string const path = copy.base() + "/tweak.conf";
    EXPECT_EQ(copy.report()["tweakFile"],
              (Json{{"path", path}, {"read", false}, {"error", "No such file or directory"}}));
    copy.tweak("[CXP]\nCommandAckTimeout = 300\n");
    Json const report = copy.report("KOVA_CXP_COMMAND_ACK_TIMEOUT=400");
    EXPECT_EQ(report["tweakFile"], (Json{{"path", path}, {"read", true}, {"error", nullptr}}));
    EXPECT_EQ(propertyOf(report, "CXP::CommandAckTimeout"),
              (Json{{"key", "CXP::CommandAckTimeout"},
                    {"value", "300"},
                    {"from", "tweak.conf"},
                    {"environmentVariable", "KOVA_CXP_COMMAND_ACK_TIMEOUT"},
                    {"option", ""}}));
}

TEST(Doctor, TweakFileThatCannotBeReadIsAFinding)
{
    ProgramCopy copy("bin/zul");
    std::filesystem::create_directory(copy.base() + "/tweak.conf");
    Json const report = copy.report();
    EXPECT_EQ(copy.code, 1);
    EXPECT_EQ(report["tweakFile"]["error"], "Is a directory");
}

TEST(Doctor, EveryPropertyHasItsValueAndSource)
{
    EnvironmentVariable const set("KOVA_REMOVE_TEMP_ZUL_DIR", "no \xC3\xA4");
    EnvironmentVariable const unset("KOVA_ENABLE_PCAP", nullptr);
    Json const report = runZul({"doctor", "--json"}).json();
    EXPECT_EQ(report["properties"].size(), 32U);
    EXPECT_EQ(propertyOf(report, "ZULRT::RemoveTempDir")["value"], "no \xC3\xA4");
    EXPECT_EQ(propertyOf(report, "ZULRT::RemoveTempDir")["from"], "environment");
    EXPECT_EQ(propertyOf(report, "Global::EnablePCAP"), (Json{{"key", "Global::EnablePCAP"},
                                                              {"value", "Off"},
                                                              {"from", "default"},
                                                              {"environmentVariable", "KOVA_ENABLE_PCAP"},
                                                              {"option", "pcap"}}));
}

/// Makes "/tmp/zulcache_NAME" with a marker library.
std::string makeCache(std::string const& name)
{
    std::string path = "/tmp/zulcache_" + name;
    mkdir(path.c_str(), 0700);
    writeFile(path + "/libqel.dylib", Bytes().chars("library"));
    return path;
}

TEST(Doctor, CachesHaveAReason)
{
    inPrivateTmp([] {
        makeCache("b");
        chmod(makeCache("a").c_str(), 0777);
        mkdir("/tmp/zulcache_empty", 0700);
        EXPECT_EQ(symlink("/tmp/zulcache_b", "/tmp/zulcache_link"), 0);
        mkdir("/tmp/zulcach", 0700);
        ProgramRun const run = runZul({"doctor", "--json"});
        EXPECT_EQ(run.code, ExitCode::Finding);
        Json const caches = run.json()["caches"];
        ASSERT_EQ(caches.size(), 4U);
        EXPECT_EQ(caches[0]["path"], "/tmp/zulcache_a");
        EXPECT_EQ(caches[0]["trusted"], false);
        EXPECT_NE(caches[0]["why"], caches[2]["why"]);
        EXPECT_EQ(caches[1]["path"], "/tmp/zulcache_b");
        EXPECT_EQ(caches[1]["trusted"], true);
        EXPECT_EQ(caches[2]["path"], "/tmp/zulcache_empty");
        EXPECT_EQ(caches[2]["trusted"], false);
        EXPECT_EQ(caches[3]["path"], "/tmp/zulcache_link");
        EXPECT_EQ(caches[3]["trusted"], false);
    });
}

TEST(Doctor, TrustedCachesAreNoFinding)
{
    ASSERT_NE(KovaDir::GetKovaDir(), nullptr);
    inPrivateTmp([] {
        EXPECT_EQ(runZul({"doctor"}).code, ExitCode::Clean);
        EXPECT_EQ(runZul({"doctor", "--json"}).json()["caches"], Json::array());
        makeCache("x");
        EXPECT_EQ(runZul({"doctor"}).code, ExitCode::Clean);
    });
}

TEST(Doctor, PeopleReadTheSame)
{
    std::string const own = KovaDir::GetKovaDir();
    inPrivateTmp([&own] {
        EnvironmentVariable const set("KOVA_HW_LOGGING", "7");
        makeCache("x\x1B[2J");
        ProgramRun const run = runZul({"doctor"});
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.out.substr(0, run.out.find("\n\n")),
                  "installation directory  " + own + ", from own path\ntweak.conf              " + own +
                      "/tweak.conf, not read: No such file or directory");
        EXPECT_NE(
            run.out.find("\nHW::Logging                            7         environment  KOVA_HW_LOGGING\n"),
            std::string::npos)
            << run.out;
        EXPECT_NE(run.out.find("\n/tmp/zulcache_x\\x1b[2J  yes   "), std::string::npos) << run.out;
        EXPECT_EQ(run.out.find('\x1B'), std::string::npos);
    });
}

TEST(Doctor, NoCachesAreTold)
{
    inPrivateTmp([] {
        std::string const out = runZul({"doctor"}).out;
        EXPECT_TRUE(out.ends_with("\nno cache directories in /tmp\n")) << out;
    });
}

} // namespace
