#include "child_process.h"
#include "failing_call.h"
#include "files.h"
#include "kova/templates/platform.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <locale>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <vector>

namespace {

using kova::templates::platform::PropertiesFile;

class PropertiesFileTest : public testing::Test {
protected:
    /// Loads a file with @p text.
    bool load(std::string const& text)
    {
        writeFile(m_path, Bytes().chars(text));
        return m_file.load(m_path);
    }
    std::string property(std::string const& key) const { return m_file.property(key, nullptr); }
    bool has(std::string const& key) const
    {
        bool found = false;
        m_file.property(key, &found);
        return found;
    }
    /// What loading @p path gives, as errno says it, after a load that set something.
    int failureOf(std::string const& path)
    {
        EXPECT_TRUE(load("before = 1"));
        errno = 0;
        EXPECT_FALSE(m_file.load(path));
        int const error = errno;
        EXPECT_FALSE(has("before"));
        return error;
    }

    TemporaryDirectory m_directory;
    std::string m_path = m_directory / "tweak.conf";
    PropertiesFile m_file{true, false};
};

TEST_F(PropertiesFileTest, KeyIsSectionColonsAndName)
{
    EXPECT_TRUE(load("[FG]\nEnableLogging=on\n[HW]\nEnableLogging=off\n"));
    EXPECT_EQ(property("FG::EnableLogging"), "on");
    EXPECT_EQ(property("HW::EnableLogging"), "off");
    EXPECT_FALSE(has("EnableLogging"));
    EXPECT_FALSE(has("FG:EnableLogging"));
    EXPECT_FALSE(has("FG::EnableLoggin"));
    EXPECT_FALSE(has("FG::"));
    EXPECT_FALSE(has(""));
}

TEST_F(PropertiesFileTest, KeyBeforeAnySectionHasNoPrefix)
{
    load("Logging = 1\nFG::EnableLogging = 2\n[HW]\nLogging = 3\n");
    EXPECT_EQ(property("Logging"), "1");
    EXPECT_EQ(property("FG::EnableLogging"), "2");
    EXPECT_EQ(property("HW::Logging"), "3");
}

TEST_F(PropertiesFileTest, SectionOfNoNameIsOne)
{
    load("[]\na = 1\n[ ]\nb = 2\n");
    EXPECT_EQ(property("::a"), "1");
    EXPECT_EQ(property("::b"), "2");
    EXPECT_FALSE(has("a"));
}

TEST_F(PropertiesFileTest, SectionGoesOnWhereItBeginsAgain)
{
    load("[A]\nx=1\n[B]\nx=2\n[A]\ny=3\nx=4\n");
    EXPECT_EQ(property("A::x"), "4");
    EXPECT_EQ(property("A::y"), "3");
    EXPECT_EQ(property("B::x"), "2");
}

TEST_F(PropertiesFileTest, WhiteSpaceAroundThePartsIsNotPartOfThem)
{
    load(" \t[ \tMy Section\v ]\f \r\n \tmy key\t = \t my value \r\n");
    EXPECT_EQ(property("My Section::my key"), "my value");
}

TEST_F(PropertiesFileTest, CommentBeginsAnywhere)
{
    load("# a=1\n[S] # the section\n  # b=2\nc=3 # [T]\nd=4#\ne#=5\n#[T]\nf=6\n");
    EXPECT_EQ(property("S::c"), "3");
    EXPECT_EQ(property("S::d"), "4");
    EXPECT_EQ(property("S::f"), "6");
    EXPECT_FALSE(has("S::a"));
    EXPECT_FALSE(has("S::b"));
    EXPECT_FALSE(has("S::e"));
}

TEST_F(PropertiesFileTest, ValueBeginsBehindTheFirstEqualsSign)
{
    load("a=b=c\n==d\n");
    EXPECT_EQ(property("a"), "b=c");
    EXPECT_EQ(property(""), "=d");
}

TEST_F(PropertiesFileTest, LineWithoutEqualsSignIsSkipped)
{
    EXPECT_TRUE(load("[S]\nwords\n\n   \na=1\n[open\nclosed]\nb=2\n"));
    EXPECT_EQ(property("S::a"), "1");
    EXPECT_EQ(property("S::b"), "2");
    EXPECT_FALSE(has("S::words"));
}

TEST_F(PropertiesFileTest, LineInBracketsIsASectionWhateverItHolds)
{
    load("[a]=b]\nx=1\n[c]=d\n");
    EXPECT_EQ(property("a]=b::x"), "1");
    EXPECT_EQ(property("a]=b::[c]"), "d");
}

TEST_F(PropertiesFileTest, EmptyValueIsFound)
{
    load("a=\n");
    EXPECT_TRUE(has("a"));
    EXPECT_EQ(property("a"), "");
    bool found = true;
    EXPECT_EQ(m_file.property("b", &found), "");
    EXPECT_FALSE(found);
}

TEST_F(PropertiesFileTest, LastLineOfAKeyHolds)
{
    load("[A]\nx=1\nX=2\n[A::B]\nC=3\n[A]\nB::C=4\n");
    EXPECT_EQ(property("A::x"), "2");
    EXPECT_EQ(property("A::B::C"), "4");
    load("[A]\nB::C=4\n[A::B]\nC=3\n");
    EXPECT_EQ(property("A::B::C"), "3");
    load("[A]\nx=2\n[A]\nx=\n");
    EXPECT_EQ(property("A::x"), "");
}

TEST_F(PropertiesFileTest, NamesMayHoldColons)
{
    load("[:]\n:=1\n[::]\n::=2\n");
    EXPECT_EQ(property("::::"), "1");
    EXPECT_EQ(property("::::::"), "2");
}

TEST_F(PropertiesFileTest, CaseCountsOnlyWhereAskedFor)
{
    load("[zulRT]\nremoveTempDir = Off\n");
    EXPECT_EQ(property("ZULRT::RemoveTempDir"), "Off");
    PropertiesFile exact(true, true);
    EXPECT_TRUE(exact.load(m_path));
    bool found = true;
    EXPECT_EQ(exact.property("ZULRT::RemoveTempDir", &found), "");
    EXPECT_FALSE(found);
    EXPECT_EQ(exact.property("zulRT::removeTempDir", &found), "Off");
    EXPECT_TRUE(found);
}

TEST_F(PropertiesFileTest, BracketsAreNothingSpecialWithoutSections)
{
    load("[S]\na=1\n[b=2]\n");
    PropertiesFile plain(false, true);
    EXPECT_TRUE(plain.load(m_path));
    EXPECT_EQ(plain.property("a", nullptr), "1");
    EXPECT_EQ(plain.property("[b", nullptr), "2]");
    EXPECT_EQ(plain.property("S::a", nullptr), "");
}

TEST_F(PropertiesFileTest, LastLineNeedsNoLineFeed)
{
    load("a=1");
    EXPECT_EQ(property("a"), "1");
    EXPECT_TRUE(load(""));
    EXPECT_TRUE(load("\n\n"));
}

TEST_F(PropertiesFileTest, AnotherLoadTakesThePlaceOfTheFirst)
{
    load("a=1\nb=2\n");
    load("a=3\n");
    EXPECT_EQ(property("a"), "3");
    EXPECT_FALSE(has("b"));
}

TEST_F(PropertiesFileTest, FlagsOfTheLoadChangeNothing)
{
    load("[S]\na=1\n");
    for (int flags = 0; flags < 4; ++flags) {
        EXPECT_TRUE(m_file.load(m_path, (flags & 1) != 0, (flags & 2) != 0));
        EXPECT_EQ(property("s::A"), "1");
    }
}

TEST_F(PropertiesFileTest, WhatCannotBeReadSetsNothing)
{
    EXPECT_EQ(failureOf(m_directory / "none"), ENOENT);
    EXPECT_EQ(failureOf(""), ENOENT);
    EXPECT_EQ(failureOf(m_directory.path()), EISDIR);
    EXPECT_EQ(failureOf("/dev/null"), EINVAL);
    EXPECT_EQ(failureOf(m_path + "/below"), ENOTDIR);
    EXPECT_EQ(failureOf("/proc/self/mem"), EIO)
        << "a regular file that can be opened, but not read from its start";
}

TEST_F(PropertiesFileTest, FifoIsRefusedWithoutWaiting)
{
    std::string const pipe = m_directory / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(failureOf(pipe), EINVAL);
}

TEST_F(PropertiesFileTest, FileThatCannotBeAskedAboutIsRefused)
{
    load("a=1\n");
    EXPECT_EQ(withFailingCall(SYS_newfstatat, EIO, [this] { return m_file.load(m_path) ? 0 : errno; }), EIO);
}

TEST_F(PropertiesFileTest, FileWithoutRightToReadIsRefused)
{
    load("a=1\n");
    ASSERT_EQ(chmod(m_directory.path(), 0755), 0);
    ASSERT_EQ(chmod(m_path.c_str(), 0200), 0);
    int const error = asOrdinaryUser([&] { return m_file.load(m_path) ? 0 : errno; });
    EXPECT_EQ(error, EACCES);
}

TEST_F(PropertiesFileTest, LinesAndFilesMayBeLong)
{
    std::string const value(300'000, 'v');
    std::string const name(100'000, 'n');
    load("[S]\n" + name + "=" + value + "\nb=2\n# " + value + "\nc=3\n");
    EXPECT_EQ(property("S::" + name), value);
    EXPECT_EQ(property("S::b"), "2");
    EXPECT_EQ(property("S::c"), "3");
}

/// Each key with its section in front of it would take 16 GiB.
TEST_F(PropertiesFileTest, LongSectionDoesNotMakeItsKeysLarge)
{
    std::string const section(1'000'000, 's');
    std::string text = "[" + section + "]\n";
    for (int i = 0; i < 16'000; ++i) {
        text += "k" + std::to_string(i) + "=" + std::to_string(i) + "\n";
    }
    load(text);
    EXPECT_EQ(property(section + "::k15999"), "15999");
    EXPECT_EQ(property(section + "::k0"), "0");
}

TEST_F(PropertiesFileTest, BytesAreTakenAsTheyAre)
{
    using namespace std::string_literals;
    load("\xEF\xBB\xBF[S]\n\xC3\xA4=\xFF\n"s);
    EXPECT_EQ(property("\xC3\xA4"), "\xFF") << "the first line does not begin with a bracket";
    load("a=x\0y\n"s);
    EXPECT_EQ(property("a"), "x\0y"s);
}

/// Letters that this locale makes others of, and digits that are white space to it.
struct OddCharacters : std::ctype<char> {
    OddCharacters() : ctype(table()) {}
    static mask const* table()
    {
        static std::vector<mask> masks(classic_table(), classic_table() + table_size);
        masks['7'] = space;
        return masks.data();
    }
    char do_toupper(char c) const override { return c == 'i' ? '?' : c; }
    char const* do_toupper(char* from, char const* to) const override
    {
        for (; from != to; ++from) {
            *from = do_toupper(*from);
        }
        return to;
    }
};

TEST_F(PropertiesFileTest, GlobalLocaleCountsForNothing)
{
    std::locale const before = std::locale::global(std::locale(std::locale::classic(), new OddCharacters));
    load("[gige]\nlimit = 77\n");
    std::string const value = property("GIGE::Limit");
    std::locale::global(before);
    EXPECT_EQ(value, "77");
}

TEST_F(PropertiesFileTest, ThreadsMayLoadAndLookUp)
{
    load("[S]\na=1\n");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 200; ++round) {
                if (i == 0) {
                    EXPECT_TRUE(m_file.load(m_path));
                }
                EXPECT_EQ(property("S::a"), "1");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
