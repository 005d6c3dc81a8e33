#include "container_bytes.h"
#include "files.h"
#include "killed_process.h"
#include "libraries.h"
#include "listing.h"
#include "loaded_container.h"
#include "private_tmp.h"
#include "program_run.h"
#include "rounds.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <random>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// A container with @p length bytes that do not compress. Files that replace each other differ in length: otherwise a
/// single write into the file would look like a replacement.
Bytes design(std::size_t length)
{
    Bytes const many = noise(length);
    return ContainerBytes()
        .tag(sample::author())
        .tag(sample::userInfo("__ZUL_ID__", "3F2A"))
        .tag(sample::versionNumber(0, 2, 7))
        .tag(sample::library("qel", "the marker"))
        .config(sample::config(1, {reinterpret_cast<char const*>(many.data()), many.size()}))
        .config(sample::config(2, "tail"))
        .build();
}

Bytes const& shorter()
{
    static Bytes const bytes = design(9'000);
    return bytes;
}
Bytes const& longer()
{
    static Bytes const bytes = design(100'000);
    return bytes;
}

void edit(ZUL& zul)
{
    zul.setAuthor("another author");
    zul.AddTag(new ZUL_comment(&zul)); // everything behind it moves
}

/// What @p bytes are after the editing.
Bytes edited(Bytes const& bytes)
{
    LoadedContainer container(bytes);
    edit(container.zul);
    return savedContainer(container.zul);
}

/// The file's contents; nothing when there is none.
std::optional<Bytes> contentsOf(std::string const& path)
{
    return exists(path) ? std::optional(readFile(path)) : std::nullopt;
}

class KilledSaving : public testing::Test {
protected:
    /// The file that is saved, in a directory where nothing else is.
    std::string const path() const { return m_directory / "design.zul"; }

    /// Makes the directory anew with the file @p old, or without a file.
    void prepare(std::optional<Bytes> const& old) const
    {
        for (std::string const& name : entriesOf(m_directory.path())) {
            fs::remove_all(m_directory / name);
        }
        if (old) {
            writeFile(path(), *old);
        }
    }

    /// Beside the file there is nothing, or one unfinished file that is recognised as such.
    void expectAtMostOneUnfinished() const
    {
        Names others = entriesOf(m_directory.path());
        std::erase(others, "design.zul");
        EXPECT_LE(others.size(), 1U);
        for (std::string const& other : others) {
            EXPECT_EQ(other.front(), '.') << other;
        }
    }

    /// Kills @p save, in a child process, at each of its stops in turn: the file is @p old or @p fresh. Calls @p later
    /// after each of them.
    void killEverywhere(
        std::optional<Bytes> const& old, Bytes const& fresh, std::function<int()> const& save,
        std::function<void()> const& later = [] {}, std::size_t step = stopStep) const
    {
        std::size_t kept = 0;
        std::size_t replaced = 0;
        for (std::size_t stop = 1;; stop += step) {
            SCOPED_TRACE(testing::Message() << "killed at stop " << stop);
            prepare(old);
            ChildEnd const end = killedAtStop(stop, save);
            auto const found = contentsOf(path());
            EXPECT_TRUE(found == fresh || found == old);
            if (!end.wasKilled) {
                EXPECT_EQ(end.result, 0);
                EXPECT_EQ(found, fresh);
                EXPECT_EQ(entriesOf(m_directory.path()), Names{"design.zul"});
                break;
            }
            (found == fresh ? replaced : kept) += 1;
            expectAtMostOneUnfinished();
            later();
        }
        EXPECT_GT(kept, 0U);
        EXPECT_TRUE(replaced > 0 || step > 1);
        RecordProperty("stops", static_cast<int>(kept + replaced));
    }

private:
    TemporaryDirectory m_directory;
};

TEST_F(KilledSaving, LeavesTheOldFileOrTheNewOne)
{
    std::pair<Bytes, Bytes> const growing(shorter(), longer());
    std::pair<Bytes, Bytes> const shrinking(longer(), shorter());
    for (auto const& [old, fresh] : {growing, shrinking}) {
        LoadedContainer container(fresh);
        auto const save = [&] { return container.zul.Save(path().c_str()); };
        killEverywhere(old, fresh, save, [&, expected = &fresh] {
            EXPECT_EQ(save(), 0) << "whatever the killed process left";
            EXPECT_EQ(readFile(path()), *expected);
        });
    }
}

TEST_F(KilledSaving, LeavesNoFileOrTheNewOne)
{
    LoadedContainer container(longer());
    auto const save = [&] { return container.zul.Save(path().c_str()); };
    killEverywhere(std::nullopt, longer(), save, [&] { EXPECT_EQ(save(), 0); });
}

TEST_F(KilledSaving, OverTheLoadedFileLeavesEveryByte)
{
    auto const save = [this] {
        ZUL zul;
        bool const isLoaded = zul.Load(path().c_str()) == 0;
        edit(zul);
        return isLoaded ? zul.Save(path().c_str()) : 1;
    };
    killEverywhere(shorter(), edited(shorter()), save);
}

TEST_F(KilledSaving, OfOneProcessDoesNotDisturbWhoLoadedTheFileToo)
{
    Bytes const fresh = edited(shorter());
    for (std::size_t stop = 1, killed = 1; killed != 0; stop += stopStep) {
        SCOPED_TRACE(testing::Message() << "killed at stop " << stop);
        prepare(shorter());
        ZUL zul;
        ASSERT_EQ(zul.Load(path().c_str()), 0);
        edit(zul);
        killed = killedAtStop(stop, [&] { return zul.Save(path().c_str()); }).wasKilled ? 1 : 0;
        EXPECT_EQ(savedContainer(zul), fresh) << "its payloads are where they were";
        EXPECT_EQ(zul.Save(path().c_str()), 0);
        EXPECT_EQ(readFile(path()), fresh);
        EXPECT_EQ(savedContainer(zul), fresh);
    }
}

TEST_F(KilledSaving, AtAnyMomentLeavesOneOfTheFiles)
{
    LoadedContainer one(longer());
    LoadedContainer other(shorter());
    auto const saveForEver = [&] {
        for (int result = 0; result == 0;) {
            result = one.zul.Save(path().c_str()) + other.zul.Save(path().c_str());
        }
        return 1;
    };
    std::minstd_rand random(1);
    for (int round = rounds(100); round > 0; --round) {
        prepare(shorter());
        EXPECT_TRUE(killedAfter(std::chrono::microseconds(random() % 10'000), saveForEver).wasKilled);
        Bytes const found = readFile(path());
        EXPECT_TRUE(found == longer() || found == shorter());
        expectAtMostOneUnfinished();
    }
}

/// The verbs that write, in a process that began with everything loaded.
class KilledProgram : public KilledSaving {
protected:
    /// What the file is after the verb @p arguments, which write to it.
    Bytes outcomeOf(Names const& arguments) const
    {
        prepare(shorter());
        EXPECT_EQ(runZul(arguments).code, ExitCode::Clean);
        return readFile(path());
    }

    void killVerb(std::optional<Bytes> const& old, Names const& arguments) const
    {
        Bytes const fresh = outcomeOf(arguments);
        EXPECT_NE(fresh, shorter());
        killEverywhere(old, fresh, [&] { return static_cast<int>(runZul(arguments).code); });
    }

    std::string other(Bytes const& contents) const
    {
        writeFile(m_others / "other.zul", contents);
        return m_others / "other.zul";
    }

private:
    TemporaryDirectory m_others;
};

TEST_F(KilledProgram, StrippingInPlace)
{
    killVerb(shorter(), {"strip", path(), "--in-place"});
}

TEST_F(KilledProgram, StrippingToANewFileOrOverAnother)
{
    std::string const from = other(longer());
    killVerb(std::nullopt, {"strip", from, "-o", path(), "--force"});
    killVerb(shorter(), {"strip", from, "-o", path(), "--force"});
}

TEST_F(KilledProgram, MergingInPlace)
{
    Bytes const second = ContainerBytes().tag(sample::userInfo("maker", "second")).build();
    killVerb(shorter(), {"merge", path(), other(second), "--in-place"});
}

TEST_F(KilledProgram, MergingToANewFile)
{
    Bytes const second = ContainerBytes().tag(sample::userInfo("maker", "second")).build();
    killVerb(std::nullopt, {"merge", other(second), other(second), "-o", path(), "--force"});
}

TEST_F(KilledProgram, StartedFromTheShell)
{
    // The leak checker of a sanitizer cannot be traced, and ends the program where it begins.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    Names const arguments{"strip", path(), "--in-place"};
    Bytes const fresh = outcomeOf(arguments);
    auto const run = [this] {
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        return execl(ZUL_PROGRAM, "zul", "strip", path().c_str(), "--in-place", nullptr);
    };
    killEverywhere(
        shorter(), fresh, run, [] {}, isSanitized ? 101 : 1);
    unsetenv("ASAN_OPTIONS");
}

TEST_F(KilledProgram, ExtractingLeavesCompleteFilesOnly)
{
    inPrivateTmp([] {
        writeFile("/tmp/design.zul", shorter());
        auto const extract = [] {
            return static_cast<int>(runZul({"extract", "/tmp/design.zul", "all", "-O", "/tmp/out"}).code);
        };
        EXPECT_EQ(extract(), 0);
        fs::rename("/tmp/out", "/tmp/whole");
        for (std::size_t stop = 1, killed = 1; killed != 0; stop += stopStep) {
            SCOPED_TRACE(testing::Message() << "killed at stop " << stop);
            fs::remove_all("/tmp/out");
            fs::create_directory("/tmp/out");
            killed = killedAtStop(stop, extract).wasKilled ? 1 : 0;
            std::size_t count = 0;
            for (auto const& entry : fs::recursive_directory_iterator("/tmp/out")) {
                if (entry.is_regular_file() && entry.path().filename().string().front() != '.') {
                    std::string const original = "/tmp/whole" / fs::relative(entry.path(), "/tmp/out");
                    EXPECT_EQ(readFile(entry.path()), readFile(original)) << original;
                    ++count;
                }
            }
            EXPECT_TRUE(killed != 0 || count > 4U);
        }
    });
}

} // namespace
