#include "applet_location.h"

#include "captured_output.h"
#include "child_process.h"
#include "environment.h"
#include "files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

constexpr unsigned int withBoth = 2624;       // kova-2624 and kova_2624
constexpr unsigned int withCurrent = 1873;    // kova-1872
constexpr unsigned int withFpga = 0xBBEA1;    // 3s1600e; the lower half is no board
constexpr unsigned int unknownBoard = 0xFFFF; // in no table

/// A tree of applet directories, the only one that the environment names.
class Installation {
public:
    explicit Installation(char const* variable = "KOVADIR5_64") : m_variable(variable, m_directory.path()) {}
    std::string base() const { return m_directory.path(); }
    std::string path(std::string const& below) const { return m_directory / ("Hardware Applets/" + below); }
    /// Puts a design there. @return its path
    std::string put(std::string const& below) const
    {
        std::filesystem::create_directories(std::filesystem::path(path(below)).parent_path());
        writeFile(path(below), Bytes().chars("design"));
        return path(below);
    }

private:
    TemporaryDirectory m_directory;
    EnvironmentVariable m_variable;
};

class AppletLocation : public testing::Test {
protected:
    static std::string textOf(char* found)
    {
        std::unique_ptr<char[]> const owner(found);
        return found == nullptr ? "(null)" : found;
    }
    std::string find(char const* name, unsigned int board, std::string const& base)
    {
        CapturedOutput const output;
        std::string found = textOf(findApplet(name, board, base.c_str()));
        m_printed = output.text();
        return found;
    }
    std::string get(char const* name, unsigned int board)
    {
        CapturedOutput const output;
        char other = 0;
        char* path = &other;
        bool const isFound = getAppletDir(name, board, &path);
        int const error = errno;
        EXPECT_EQ(isFound, path != nullptr);
        std::string found = textOf(path);
        m_printed = output.text();
        errno = error;
        return found;
    }
    static std::string line(std::string const& name, std::string const& base)
    {
        return "Searching for zul file " + name + " in " + base + "\n";
    }
    static std::string own() { return KovaDir::GetKovaDir(); }

    std::string m_printed;
    EnvironmentVariable m_first{"KOVADIR5_64", nullptr};
    EnvironmentVariable m_second{"KOVADIR5", nullptr};
    EnvironmentVariable m_third{"QELINSTALLDIR", nullptr};
};

TEST_F(AppletLocation, CurrentDirectoryGoesBeforeTheOlderOne)
{
    Installation const tree;
    EXPECT_EQ(find("d.zul", withBoth, tree.base()), "(null)");
    std::string const older = tree.put("kova_2624/d.zul");
    EXPECT_EQ(find("d.zul", withBoth, tree.base()), older);
    std::string const current = tree.put("kova-2624/d.zul");
    EXPECT_EQ(find("d.zul", withBoth, tree.base()), current);
}

TEST_F(AppletLocation, BoardsShareADirectory)
{
    Installation const tree;
    std::string const shared = tree.put("kova-1872/d.zul");
    for (unsigned int const board : {1872U, 1873U, 29968U}) {
        EXPECT_EQ(find("d.zul", board, tree.base()), shared);
    }
    EXPECT_EQ(find("d.zul", 1874, tree.base()), "(null)");
}

TEST_F(AppletLocation, UpperHalfOfTheBoardCountsForTheFpgaAlone)
{
    Installation const tree;
    std::string const current = tree.put("kova-2624/d.zul");
    EXPECT_EQ(find("d.zul", 0x10A40, tree.base()), current);
    EXPECT_EQ(find("d.zul", 0xFFFF0A40, tree.base()), current);
    EXPECT_EQ(find("d.zul", withFpga, tree.base()), "(null)");
    std::string const fpga = tree.put("3s1600e/d.zul");
    EXPECT_EQ(find("d.zul", withFpga, tree.base()), fpga);
    EXPECT_EQ(find("d.zul", withFpga & 0xFFFF, tree.base()), "(null)");
}

TEST_F(AppletLocation, PathsOfABoardInTheOrderOfTheSearch)
{
    using Paths = std::vector<std::string>;
    std::string const base = "/opt/k/Hardware Applets/";
    EXPECT_EQ(appletPaths("d", withBoth, "/opt/k"), (Paths{base + "kova-2624/d", base + "kova_2624/d"}));
    EXPECT_EQ(appletPaths("d", withCurrent, "/opt/k"), Paths{base + "kova-1872/d"});
    EXPECT_EQ(appletPaths("d", 163, "/opt/k"), (Paths{base + "kova_163/d", base + "kova_163/d"}));
    EXPECT_EQ(appletPaths("d", withFpga, "/opt/k"), Paths{base + "3s1600e/d"});
    EXPECT_EQ(appletPaths("d", unknownBoard, "/opt/k"), Paths{});
}

TEST_F(AppletLocation, SearchPrintsALineInEveryCase)
{
    Installation const tree;
    find("d.zul", unknownBoard, tree.base());
    EXPECT_EQ(m_printed, line("d.zul", tree.base()));
    tree.put("kova-2624/d.zul");
    find("d.zul", withBoth, tree.base());
    EXPECT_EQ(m_printed, line("d.zul", tree.base()));
    find("", withBoth, "");
    EXPECT_EQ(m_printed, "Searching for zul file  in \n");
}

TEST_F(AppletLocation, PathsMayBeEmptyAndLong)
{
    EXPECT_EQ(appletPaths("", withCurrent, ""), std::vector<std::string>{"/Hardware Applets/kova-1872/"});
    std::string const base(3000, 'b');
    std::string const name(3000, 'n');
    EXPECT_EQ(appletPaths(name.c_str(), withCurrent, base.c_str()),
              std::vector<std::string>{base + "/Hardware Applets/kova-1872/" + name});
    EXPECT_EQ(find(name.c_str(), withCurrent, base), "(null)");
    EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST_F(AppletLocation, NameWithASlashIsAPath)
{
    Installation const tree;
    std::string const path = tree.put("kova-2624/d.zul");
    EXPECT_EQ(get(path.c_str(), unknownBoard), path);
    EXPECT_EQ(m_printed, "");
}

TEST_F(AppletLocation, NameWithASlashIsNotLookedForElsewhere)
{
    Installation const tree;
    tree.put("kova-2624/d.zul");
    EXPECT_EQ(get("/none/d.zul", withBoth), "(null)");
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(get("./d.zul", withBoth), "(null)");
    EXPECT_EQ(get("kova-2624/d.zul", withBoth), "(null)");
    EXPECT_EQ(m_printed, "");
}

TEST_F(AppletLocation, BareNameIsNotLookedForHere)
{
    Installation const tree;
    writeFile(tree.base() + "/d.zul", Bytes().chars("design"));
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(tree.base());
    EXPECT_EQ(get("d.zul", withBoth), "(null)");
    std::filesystem::current_path(before);
}

TEST_F(AppletLocation, InstallationThenEnvironmentInThisOrder)
{
    Installation const first("KOVADIR5_64");
    Installation const second("KOVADIR5");
    Installation const third("QELINSTALLDIR");
    EXPECT_EQ(get("d.zul", withBoth), "(null)");
    EXPECT_EQ(m_printed, line("d.zul", own()) + line("d.zul", first.base()) + line("d.zul", second.base()) +
                             line("d.zul", third.base()));
    std::string const inThird = third.put("kova-2624/d.zul");
    EXPECT_EQ(get("d.zul", withBoth), inThird);
    std::string const inSecond = second.put("kova_2624/d.zul");
    EXPECT_EQ(get("d.zul", withBoth), inSecond);
    std::string const inFirst = first.put("kova-2624/d.zul");
    EXPECT_EQ(get("d.zul", withBoth), inFirst);
    EXPECT_EQ(m_printed, line("d.zul", own()) + line("d.zul", first.base()))
        << "the first find ends the search";
}

TEST_F(AppletLocation, VariablesThatAreNotSetAreNotSearched)
{
    Installation const third("QELINSTALLDIR");
    get("d.zul", withBoth);
    EXPECT_EQ(m_printed, line("d.zul", own()) + line("d.zul", third.base()));
}

TEST_F(AppletLocation, VariableThatGaveTheInstallationIsSearchedAgain)
{
    EnvironmentVariable const first("KOVADIR5_64", own().c_str());
    get("d.zul", withBoth);
    EXPECT_EQ(m_printed, line("d.zul", own()) + line("d.zul", own()));
}

TEST_F(AppletLocation, EmptyVariableIsSearched)
{
    EnvironmentVariable const first("KOVADIR5", "");
    get("d.zul", withBoth);
    EXPECT_EQ(m_printed, line("d.zul", own()) + line("d.zul", ""));
}

TEST_F(AppletLocation, BasesHaveTheNamesOfTheirOrigins)
{
    EnvironmentVariable const second("KOVADIR5", "/second");
    auto const bases = appletBases();
    EXPECT_STREQ(bases[0].origin, "installation directory");
    EXPECT_STREQ(bases[0].path, KovaDir::GetKovaDir());
    EXPECT_STREQ(bases[1].origin, "KOVADIR5_64");
    EXPECT_EQ(bases[1].path, nullptr);
    EXPECT_STREQ(bases[2].origin, "KOVADIR5");
    EXPECT_STREQ(bases[2].path, "/second");
    EXPECT_STREQ(bases[3].origin, "QELINSTALLDIR");
    EXPECT_EQ(bases[3].path, nullptr);
}

TEST_F(AppletLocation, NullIsRefused)
{
    errno = 0;
    EXPECT_EQ(get(nullptr, withBoth), "(null)");
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(m_printed, "");
    errno = 0;
    EXPECT_FALSE(getAppletDir("d.zul", withBoth, nullptr));
    EXPECT_EQ(errno, EINVAL);
    errno = 0;
    EXPECT_EQ(findApplet(nullptr, withBoth, "/opt/k"), nullptr);
    EXPECT_EQ(errno, EINVAL);
    errno = 0;
    EXPECT_EQ(findApplet("d.zul", withBoth, nullptr), nullptr);
    EXPECT_EQ(errno, EINVAL);
}

TEST_F(AppletLocation, WhatOpensIsFoundWhateverItIs)
{
    Installation const tree;
    std::filesystem::create_directories(tree.path("kova-2624/directory"));
    EXPECT_EQ(get("directory", withBoth), tree.path("kova-2624/directory"));
    ASSERT_EQ(mkfifo(tree.path("kova-2624/pipe").c_str(), 0600), 0);
    EXPECT_EQ(get("pipe", withBoth), tree.path("kova-2624/pipe")) << "nothing waits for a writer";
    EXPECT_EQ(get(tree.path("kova-2624/pipe").c_str(), 0), tree.path("kova-2624/pipe"));
}

TEST_F(AppletLocation, FileThatDoesNotOpenIsPassedOver)
{
    Installation const tree;
    tree.put("kova-2624/d.zul");
    std::string const older = tree.put("kova_2624/d.zul");
    ASSERT_EQ(chmod(tree.base().c_str(), 0755), 0);
    ASSERT_EQ(chmod(tree.path("kova-2624/d.zul").c_str(), 0200), 0);
    EXPECT_EQ(asOrdinaryUser([&] { return find("d.zul", withBoth, tree.base()) == older ? 1 : 0; }), 1);
    EXPECT_EQ(asOrdinaryUser([&] {
                  bool const opens = opensForReading(tree.path("kova-2624/d.zul").c_str());
                  return opens ? 0 : errno;
              }),
              EACCES);
}

int freeDescriptor()
{
    int const descriptor = open("/dev/null", O_RDONLY);
    close(descriptor);
    return descriptor;
}

TEST_F(AppletLocation, NoDescriptorStaysOpen)
{
    Installation const tree;
    std::string const path = tree.put("kova-2624/d.zul");
    int const before = freeDescriptor();
    get("d.zul", withBoth);
    get("none", withBoth);
    get(path.c_str(), withBoth);
    EXPECT_EQ(freeDescriptor(), before);
}

TEST_F(AppletLocation, WithoutDescriptorsNothingIsFound)
{
    Installation const tree;
    std::string const path = tree.put("kova-2624/d.zul");
    EXPECT_EQ(inChildProcess([&] {
                  rlimit const none{0, 0};
                  setrlimit(RLIMIT_NOFILE, &none);
                  char* found = nullptr;
                  return getAppletDir(path.c_str(), withBoth, &found) || found != nullptr ? 0 : errno;
              }),
              EMFILE);
}

} // namespace
