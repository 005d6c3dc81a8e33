#include "environment.h"
#include "files.h"
#include "kova/templates/platform.h"
#include "throwing.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using kova::templates::platform::PropertiesFile;
using kova::templates::platform::PropertySource;
using kova::templates::platform::ResolvedProperty;
using kova::templates::platform::TweakProperties;
using kova::templates::platform::TweakPropertyEntry;

constexpr char const* variable = "ZUL_TEST_TWEAK";

TweakPropertyEntry const table[] = {
    {"Test::Full", variable, "full", "On"},    {"Test::Bare", "", "", "Off"},
    {"Test::Null", nullptr, nullptr, nullptr}, {"Test::Full", "", "", "second of its key"},
    {nullptr, nullptr, nullptr, nullptr},      {"Test::BehindTheEnd", "", "", "On"}};
TweakPropertyEntry const otherTable[] = {{"Other::Full", "", "", "On"}, {nullptr, nullptr, nullptr, nullptr}};

class TweakPropertiesTest : public testing::Test {
protected:
    void write(std::string const& text) { writeFile(m_path, Bytes().chars(text)); }
    ResolvedProperty resolve(std::vector<std::string> arguments = {}, std::string const& key = "Test::Full")
    {
        std::vector<char*> pointers;
        for (std::string& argument : arguments) {
            pointers.push_back(argument.data());
        }
        TweakProperties properties;
        return properties.resolve(table, m_path, key, static_cast<int>(pointers.size()), pointers.data());
    }
    void expect(ResolvedProperty const& resolved, std::string const& text, PropertySource source)
    {
        EXPECT_EQ(resolved.text, text);
        EXPECT_EQ(resolved.source, source);
    }
    bool boolean(std::string const& key = "Test::Full")
    {
        return TweakProperties().property<bool>(table, m_path, key, 0, nullptr);
    }

    TemporaryDirectory m_directory;
    std::string m_path = m_directory / "tweak.conf";
    EnvironmentVariable m_unset{variable, nullptr};
};

TEST_F(TweakPropertiesTest, EmptyKeyIsNotSoughtInTheFile)
{
    TweakPropertyEntry const nameless[] = {{"", "", "", "Off"}, {nullptr, nullptr, nullptr, nullptr}};
    write("= On\n");
    TweakProperties properties;
    expect(properties.resolve(nameless, m_path, "", 0, nullptr), "Off", PropertySource::Default);
}

TEST_F(TweakPropertiesTest, CommandLineFileEnvironmentDefaultInThisOrder)
{
    expect(resolve(), "On", PropertySource::Default);
    EnvironmentVariable const environment(variable, "from the environment");
    expect(resolve(), "from the environment", PropertySource::Environment);
    write("[Test]\nFull = from the file\n");
    expect(resolve(), "from the file", PropertySource::File);
    expect(resolve({"--full=from the command line"}), "from the command line", PropertySource::CommandLine);
}

TEST_F(TweakPropertiesTest, UnknownKeyThrowsEvenIfTheFileHasIt)
{
    write("[Test]\nUnknown = on\n");
    for (std::string const key : {"Test::Unknown", "test::full", "Test::BehindTheEnd", ""}) {
        EXPECT_TRUE(throws<std::runtime_error>([&] { boolean(key); },
                                               "TweakProperties: Unknown property requested: '" + key + "'"));
        EXPECT_THROW(resolve({}, key), std::runtime_error);
    }
}

TEST_F(TweakPropertiesTest, LastMatchingArgumentWins)
{
    expect(resolve({"full=1", "full=2", "other=3"}), "2", PropertySource::CommandLine);
    expect(resolve({"full=1"}), "1", PropertySource::CommandLine);
    expect(resolve({"full=1", "-full=2", "--full=3", "----full"}), "3", PropertySource::CommandLine);
}

TEST_F(TweakPropertiesTest, ArgumentsHaveAnyDashesAndCase)
{
    for (char const* const argument : {"full=x", "-full=x", "--full=x", "-----FULL=x", "Full=x"}) {
        expect(resolve({argument}), "x", PropertySource::CommandLine);
    }
}

TEST_F(TweakPropertiesTest, ArgumentsThatSetNothingAreSkipped)
{
    expect(resolve({"", "-", "---", "full", "--full", "=x", "-=x", "full =x", " full=x", "fullx=x", "ful=x",
                    "+full=x", "x=full=x"}),
           "On", PropertySource::Default);
}

TEST_F(TweakPropertiesTest, ValueOfAnArgumentIsTakenAsItIs)
{
    expect(resolve({"--full="}), "", PropertySource::CommandLine);
    expect(resolve({"--full= on"}), " on", PropertySource::CommandLine);
    expect(resolve({"--full=a=b"}), "a=b", PropertySource::CommandLine);
}

TEST_F(TweakPropertiesTest, PropertyWithoutOptionIsNotOnTheCommandLine)
{
    expect(resolve({"--=on", "=on", "Bare=on"}, "Test::Bare"), "Off", PropertySource::Default);
}

TEST_F(TweakPropertiesTest, ArgumentsMayBeMissing)
{
    std::string text = "--full=x";
    char* arguments[] = {text.data(), nullptr};
    TweakProperties properties;
    EXPECT_EQ(properties.resolve(table, "", "Test::Full", 0, arguments).source, PropertySource::Default);
    EXPECT_EQ(properties.resolve(table, "", "Test::Full", -1, arguments).source, PropertySource::Default);
    EXPECT_EQ(properties.resolve(table, "", "Test::Full", 2, nullptr).source, PropertySource::Default);
    EXPECT_EQ(properties.resolve(table, "", "Test::Full", 2, arguments).text, "x");
}

TEST_F(TweakPropertiesTest, EmptyTextOfTheFileIsPassedOver)
{
    write("[Test]\nFull =\n");
    expect(resolve(), "On", PropertySource::Default);
}

TEST_F(TweakPropertiesTest, FileIsAskedInAnyCase)
{
    write("[test]\nfULL = x\n");
    expect(resolve(), "x", PropertySource::File);
}

TEST_F(TweakPropertiesTest, WithoutFileNameNoFileIsRead)
{
    TweakProperties properties;
    EXPECT_EQ(properties.resolve(table, "", "Test::Full", 0, nullptr).source, PropertySource::Default);
    write("[Test]\nFull = x\n");
    EXPECT_EQ(properties.resolve(table, m_path, "Test::Full", 0, nullptr).text, "x")
        << "the first question did not use up the one reading";
}

TEST_F(TweakPropertiesTest, EnvironmentVariableCountsEvenIfEmpty)
{
    EnvironmentVariable const environment(variable, "");
    expect(resolve(), "", PropertySource::Environment);
    EXPECT_FALSE(boolean());
}

TEST_F(TweakPropertiesTest, PropertyWithoutVariableIsNotInTheEnvironment)
{
    expect(resolve({}, "Test::Bare"), "Off", PropertySource::Default);
}

TEST_F(TweakPropertiesTest, NoDefaultIsNoValidValue)
{
    EXPECT_TRUE(throws<std::runtime_error>(
        [&] { boolean("Test::Null"); }, "TweakProperties: No valid value found for property 'Test::Null'"));
    write("[Test]\nNull = on\n");
    EXPECT_TRUE(boolean("Test::Null"));
}

TEST_F(TweakPropertiesTest, FirstSourceEndsTheSearchWhateverItSays)
{
    EnvironmentVariable const environment(variable, "on");
    write("[Test]\nFull = nonsense\n");
    EXPECT_FALSE(boolean());
    write("[Test]\nFull = Yes\n");
    EXPECT_TRUE(boolean());
}

TEST_F(TweakPropertiesTest, DefaultIsConvertedToo)
{
    EXPECT_TRUE(boolean());
    EXPECT_FALSE(boolean("Test::Bare"));
}

TEST(TweakPropertiesResolveValue, FourWordsInAnyCaseAreTrue)
{
    for (char const* const text : {"yes", "true", "on", "1", "Yes", "TRUE", "oN"}) {
        bool value = false;
        EXPECT_TRUE(TweakProperties::resolveValue(text, &value)) << text;
        EXPECT_TRUE(value) << text;
    }
}

TEST(TweakPropertiesResolveValue, EveryOtherTextIsFalseAndValid)
{
    for (char const* const text : {"no", "false", "off", "0", "2", "", " on", "on ", "11", "y", "yess"}) {
        bool value = true;
        EXPECT_TRUE(TweakProperties::resolveValue(text, &value)) << text;
        EXPECT_FALSE(value) << text;
    }
}

TEST_F(TweakPropertiesTest, FileIsReadOnce)
{
    write("[Test]\nFull = first\n");
    TweakProperties properties;
    EXPECT_EQ(properties.resolve(table, m_path, "Test::Full", 0, nullptr).text, "first");
    write("[Test]\nFull = second\n");
    EXPECT_EQ(properties.resolve(table, m_path, "Test::Full", 0, nullptr).text, "first");
    EXPECT_EQ(properties.resolve(table, m_directory / "another", "Test::Full", 0, nullptr).text, "first");
    PropertiesFile& file = properties.internalPropertiesFile(m_path);
    EXPECT_EQ(file.property("Test::Full", nullptr), "first");
    EXPECT_EQ(&file, &properties.internalPropertiesFile(m_path));
}

TEST_F(TweakPropertiesTest, FileThatCannotBeReadIsNotTriedAgain)
{
    TweakProperties properties;
    EXPECT_EQ(properties.resolve(table, m_path, "Test::Full", 0, nullptr).source, PropertySource::Default);
    write("[Test]\nFull = x\n");
    EXPECT_EQ(properties.resolve(table, m_path, "Test::Full", 0, nullptr).source, PropertySource::Default);
}

TEST(TweakPropertiesMap, IsBuiltOnce)
{
    TweakProperties properties;
    EXPECT_TRUE(properties.property<bool>(otherTable, "", "Other::Full", 0, nullptr));
    EXPECT_THROW(properties.property<bool>(table, "", "Test::Full", 0, nullptr), std::runtime_error);
    EXPECT_TRUE(properties.property<bool>(table, "", "Other::Full", 0, nullptr));
}

TEST(TweakPropertiesMap, HasTheEntriesBeforeTheNullEntry)
{
    TweakProperties::EntryMap map;
    TweakProperties::propertyEntriesToPropertyEntryMap(table, map);
    EXPECT_EQ(map.size(), 3U);
    EXPECT_EQ(map.at("Test::Full"), &table[0]) << "the first of a key";
    EXPECT_EQ(map.at("Test::Null"), &table[2]);
    TweakProperties::propertyEntriesToPropertyEntryMap(otherTable, map);
    EXPECT_EQ(map.size(), 4U);
}

TEST_F(TweakPropertiesTest, ThreadsMayShareAnObject)
{
    write("[Test]\nFull = off\n");
    TweakProperties properties;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                EXPECT_FALSE(properties.property<bool>(table, m_path, "Test::Full", 0, nullptr));
                EXPECT_FALSE(properties.property<bool>(table, m_path, "Test::Bare", 0, nullptr));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
