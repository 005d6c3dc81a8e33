#include "allocations.h"
#include "applet_location.h"
#include "captured_output.h"
#include "environment.h"
#include "files.h"
#include "kova/templates/platform.h"
#include "rt_tweak_properties.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <new>
#include <unistd.h>

namespace {

using kova::templates::platform::PropertiesFile;
using kova::templates::platform::TweakProperties;

constexpr unsigned int board = 2624;

/// What a search answered.
struct Search {
    ~Search() { delete[] path; }
    bool isFound = false;
    char* path = nullptr;
};

auto const newSearch = [] { return std::make_unique<Search>(); };
auto const expectNothing = [](Search const& search) {
    EXPECT_FALSE(search.isFound);
    EXPECT_EQ(search.path, nullptr);
};

class FailingAllocationOfASearch : public testing::Test {
protected:
    FailingAllocationOfASearch()
    {
        std::filesystem::create_directories(m_base + "/Hardware Applets/kova_2624");
        writeFile(m_path, Bytes().chars("design"));
    }

    TemporaryDirectory m_directory;
    std::string m_base = m_directory.path();
    std::string m_path = m_base + "/Hardware Applets/kova_2624/d.zul";
    EnvironmentVariable m_variable{"KOVADIR5_64", m_base.c_str()};
    CapturedOutput m_output;
};

TEST_F(FailingAllocationOfASearch, ThrowsAndGivesNoPath)
{
    KovaDir::GetKovaDir();
    std::size_t const failures = withEveryAllocationFailing(
        newSearch,
        [](Search& search) {
            search.isFound = getAppletDir("d.zul", board, &search.path);
            EXPECT_TRUE(search.isFound);
        },
        expectNothing);
    EXPECT_GE(failures, 4U) << "two directories in each of two installations";
}

TEST_F(FailingAllocationOfASearch, OfAPathThrowsAndGivesNoPath)
{
    std::size_t const failures = withEveryAllocationFailing(
        newSearch,
        [this](Search& search) {
            search.isFound = getAppletDir(m_path.c_str(), board, &search.path);
            EXPECT_TRUE(search.isFound);
        },
        expectNothing);
    EXPECT_GE(failures, 1U);
}

TEST_F(FailingAllocationOfASearch, LeavesNoDescriptorOpen)
{
    int const before = dup(STDERR_FILENO);
    close(before);
    withEveryAllocationFailing(
        newSearch,
        [](Search& search) { search.path = findApplet("d.zul", board, std::getenv("KOVADIR5_64")); },
        expectNothing);
    int const after = dup(STDERR_FILENO);
    close(after);
    EXPECT_EQ(after, before);
}

TEST(FailingAllocation, OfTheFirstQuestionLeavesItOpen)
{
    static InstallationDirectory directory;
    withEveryAllocationFailing(
        [] { return &directory; }, [](InstallationDirectory& subject) { EXPECT_NE(subject.get(), nullptr); },
        [](InstallationDirectory& subject) {
            EXPECT_EQ(subject.source(), InstallationSource::Unknown) << "and the lock is free";
        });
    EXPECT_EQ(directory.source(), InstallationSource::OwnPath);
}

TEST(FailingAllocation, OfReadingPropertiesSetsNone)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "tweak.conf";
    writeFile(path, Bytes().chars("before = a text that needs memory of its own\n[Section]\nkey = value\n"));
    std::size_t const failures =
        withEveryAllocationFailing([] { return std::make_unique<PropertiesFile>(true, false); },
                                   [&](PropertiesFile& file) { EXPECT_TRUE(file.load(path)); },
                                   [&](PropertiesFile& file) {
                                       bool found = true;
                                       file.property("before", &found);
                                       EXPECT_FALSE(found);
                                       EXPECT_TRUE(file.load(path));
                                       EXPECT_EQ(file.property("section::key", nullptr), "value");
                                   });
    EXPECT_GT(failures, 4U);
}

TEST(FailingAllocation, OfResolvingAPropertyCanBeTriedAgain)
{
    std::size_t const failures = withEveryAllocationFailing(
        [] { return std::make_unique<TweakProperties>(); },
        [](TweakProperties& properties) {
            EXPECT_TRUE(
                properties.property<bool>(rt_tweak_properties, "/none", "HW::EnableSpiCache", 0, nullptr));
        },
        [](TweakProperties& properties) {
            for (auto const* entry = rt_tweak_properties; entry->key != nullptr; ++entry) {
                EXPECT_NO_THROW(properties.resolve(rt_tweak_properties, "", entry->key, 0, nullptr));
            }
        });
    EXPECT_GT(failures, 30U);
}

TEST(FailingAllocation, OfAskingTheRuntimesSwitchThrows)
{
    KovaDir::GetKovaDir();
    std::size_t const failures = withEveryAllocationFailing(
        newSearch,
        [](Search& search) {
            search.isFound = RtTweakProperties::property<bool>("HW::EnableSpiCache", 0, nullptr);
        },
        expectNothing);
    EXPECT_GT(failures, 30U);
}

} // namespace
