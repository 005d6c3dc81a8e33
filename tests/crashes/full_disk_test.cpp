#include "container_bytes.h"
#include "library_host.h"
#include "loaded_container.h"
#include "program_run.h"
#include "sized_disk.h"
#include "zullib.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <map>

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr char file[] = "/tmp/design.zul";
constexpr char secondFile[] = "/tmp/second.zul";

/// A design with @p length bytes that do not compress.
Bytes design(std::size_t length, char const* author = "somebody")
{
    Bytes const many = noise(length);
    return ContainerBytes()
        .tag(sample::author(author))
        .tag(sample::userInfo("__ZUL_ID__", "3F2A"))
        .tag(sample::library("camera", {reinterpret_cast<char const*>(many.data()), many.size()}))
        .config(sample::config(1, "bitstream"))
        .build();
}

Bytes const& small()
{
    static Bytes const bytes = design(9'000, "old");
    return bytes;
}
Bytes const& large()
{
    static Bytes const bytes = design(100'000, "new");
    return bytes;
}

TEST(FullDisk, SavingLeavesTheOldFile)
{
    LoadedContainer container(large());
    unsigned const needed = pagesOf(small().size()) + pagesOf(large().size());
    onEveryDisk(pagesOf(small().size()), needed + 2, [&](unsigned pages) {
        writeFile(file, small());
        EXPECT_EQ(container.zul.Save(file), pages < needed ? -ENOSPC : 0);
        EXPECT_EQ(readFile(file), pages < needed ? small() : large());
        EXPECT_EQ(inTmp(), Names{"design.zul"});
    });
}

TEST(FullDisk, SavingANewFileLeavesNone)
{
    LoadedContainer container(large());
    unsigned const needed = pagesOf(large().size());
    onEveryDisk(1, needed + 2, [&](unsigned pages) {
        EXPECT_EQ(container.zul.Save(file), pages < needed ? -ENOSPC : 0);
        EXPECT_EQ(readFile(file), pages < needed ? Bytes() : large());
        EXPECT_EQ(inTmp(), pages < needed ? Names() : Names{"design.zul"});
    });
}

TEST(FullDisk, SavingInPlaceLeavesTheOldFile)
{
    LoadedContainer container(large());
    unsigned const needed = pagesOf(large().size()); // no second file is made
    onEveryDisk(pagesOf(small().size()), needed + 2, [&](unsigned pages) {
        writeFile(file, small());
        fs::create_hard_link(file, secondFile);
        EXPECT_EQ(container.zul.Save(file), pages < needed ? -ENOSPC : 0);
        EXPECT_EQ(readFile(secondFile), pages < needed ? small() : large());
        EXPECT_EQ(inTmp(), (Names{"design.zul", "second.zul"}));
    });
}

TEST(FullDisk, SavingOverTheLoadedFileKeepsTheContainer)
{
    unsigned const needed = 2 * pagesOf(small().size());
    onEveryDisk(needed / 2, needed, [&](unsigned pages) {
        writeFile(file, small());
        ZUL zul;
        ASSERT_EQ(zul.Load(file), 0);
        zul.setAuthor("new");
        EXPECT_EQ(zul.Save(file), pages < needed ? -ENOSPC : 0);
        EXPECT_EQ(savedContainer(zul), design(9'000, "new"));
        EXPECT_EQ(readFile(file), pages < needed ? small() : design(9'000, "new"));
    });
}

/// What @p arguments do on disks up to the size on which they work: nothing but a message, with exit code 3. In the
/// end the file @p written is what it is where there is room.
void expectVerbToWriteAllOrNothing(Names const& arguments, char const* written)
{
    Names before;
    Bytes old;
    Bytes fresh;
    auto const prepare = [&] {
        writeFile(file, large());
        writeFile(secondFile, ContainerBytes().tag(sample::userInfo("maker", "second")).build());
        before = inTmp();
        old = readFile(written);
    };
    unsigned const least = pagesOf(large().size()) + 1;
    unsigned worked = 0;
    inPrivateTmp([&] {
        prepare();
        EXPECT_EQ(runZul(arguments).code, ExitCode::Clean);
        fresh = readFile(written);
        EXPECT_NE(fresh, old);
        unsigned const needed = least + pagesOf(fresh.size());
        for (unsigned pages = least; pages <= needed + 1; ++pages) {
            SCOPED_TRACE(testing::Message() << pages << " pages");
            onDiskWith("size=" + std::to_string(pages * pageSize), [&] {
                prepare();
                ProgramRun const run = runZul(arguments);
                if (pages >= needed) {
                    EXPECT_EQ(run.code, ExitCode::Clean) << run.err;
                    EXPECT_EQ(readFile(written), fresh);
                    ++worked;
                    return;
                }
                EXPECT_EQ(run.code, ExitCode::Unreadable);
                EXPECT_THAT(run.err, testing::HasSubstr("No space left on device"));
                EXPECT_THAT(run.err, testing::HasSubstr(written));
                EXPECT_EQ(inTmp(), before);
                EXPECT_EQ(readFile(written), old);
            });
        }
        EXPECT_EQ(worked, 2U);
    });
}

TEST(FullDisk, StrippingWritesAllOrNothing)
{
    expectVerbToWriteAllOrNothing({"strip", file, "--in-place"}, file);
    expectVerbToWriteAllOrNothing({"strip", file, "-o", "/tmp/out.zul"}, "/tmp/out.zul");
}

TEST(FullDisk, MergingWritesAllOrNothing)
{
    expectVerbToWriteAllOrNothing({"merge", file, secondFile, "--in-place"}, file);
    expectVerbToWriteAllOrNothing({"merge", file, secondFile, "-o", "/tmp/out.zul"}, "/tmp/out.zul");
}

/// Every file below @p directory, by its path.
std::map<std::string, Bytes> filesBelow(char const* directory)
{
    std::map<std::string, Bytes> files;
    for (auto const& entry : fs::recursive_directory_iterator(directory)) {
        if (entry.is_regular_file()) {
            files[entry.path().string()] = readFile(entry.path().string());
        }
    }
    return files;
}

TEST(FullDisk, ExtractingLeavesCompleteFilesOnly)
{
    inPrivateTmp([] {
        Names const arguments{"extract", file, "all", "-O", "/tmp/out"};
        writeFile(file, large());
        EXPECT_EQ(runZul(arguments).code, ExitCode::Clean);
        auto const whole = filesBelow("/tmp/out");
        unsigned needed = pagesOf(large().size());
        for (auto const& [name, contents] : whole) {
            needed += pagesOf(contents.size());
        }
        for (unsigned pages = pagesOf(large().size()); pages <= needed + 1; ++pages) {
            SCOPED_TRACE(testing::Message() << pages << " pages");
            onDiskWith("size=" + std::to_string(pages * pageSize), [&] {
                writeFile(file, large());
                ProgramRun const run = runZul(arguments);
                EXPECT_EQ(run.code, pages < needed ? ExitCode::Unreadable : ExitCode::Clean) << run.err;
                EXPECT_EQ(run.err.find("No space left on device") != std::string::npos, pages < needed);
                auto const files = filesBelow("/tmp/out");
                EXPECT_EQ(files.size() == whole.size(), pages >= needed);
                for (auto const& [name, contents] : files) {
                    auto const original = whole.find(name);
                    EXPECT_TRUE(original != whole.end() && original->second == contents) << name;
                }
            });
        }
    });
}

TEST(FullDisk, UnpackingLeavesNothing)
{
    Bytes const bytes = library_host::design("3F2A");
    unsigned const needed =
        pagesOf(library_host::stored().size()) + pagesOf(library_host::inflated().size()) + 1;
    onEveryDisk(1, needed + 2, [&](unsigned pages) {
        errno = 0;
        library_host::Handle const handle(ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), 516));
        if (pages < needed) {
            EXPECT_EQ(handle, nullptr);
            EXPECT_EQ(errno, ENOSPC);
            EXPECT_EQ(inTmp(), Names());
        } else {
            ASSERT_NE(handle, nullptr);
            EXPECT_TRUE(library_host::holdsTheLibraries("/tmp/zulcache_3F2A"));
        }
    });
}

TEST(FullDisk, WithoutRoomForAnotherNameNothingIsLeftEither)
{
    LoadedContainer container(large());
    Bytes const bytes = library_host::design("3F2A");
    inPrivateTmp([&] {
        for (unsigned files = 1; files <= 5;
             ++files) { // /tmp itself counts, and the directory of the libraries
            SCOPED_TRACE(testing::Message() << files << " files");
            onDiskWith("nr_inodes=" + std::to_string(files), [&] {
                EXPECT_EQ(container.zul.Save(file), files < 2 ? -ENOSPC : 0);
                fs::remove(file);
                errno = 0;
                library_host::Handle const handle(ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), 516));
                int const error = errno;
                EXPECT_EQ(handle != nullptr, files == 5);
                EXPECT_TRUE(handle != nullptr || error == ENOSPC) << error;
                EXPECT_EQ(inTmp(), files == 5 ? Names{"zulcache_3F2A"} : Names());
            });
        }
    });
}

TEST(FullDisk, IsToldByTheProgramForItsOutputToo)
{
    TemporaryDirectory const directory;
    std::string const design = directory / "design.zul";
    std::string const errors = directory / "errors";
    writeFile(design, small());
    for (char const* const verb : {"info", "ls", "dump", "check"}) {
        std::string const command =
            "'" ZUL_PROGRAM "' " + std::string(verb) + " '" + design + "' >/dev/full 2>'";
        int const status = std::system((command + errors + "'").c_str());
        EXPECT_EQ(WEXITSTATUS(status), static_cast<int>(ExitCode::Unreadable)) << verb;
        EXPECT_EQ(readFile(errors), Bytes().chars("zul: cannot write to standard output\n")) << verb;
    }
}

} // namespace
