#include "allocations.h"
#include "applet_location.h"
#include "captured_output.h"
#include "design_answers.h"
#include "designs.h"
#include "files.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Names = std::vector<std::string>;

constexpr int noLibraries = 0;
constexpr int overwrite = 1;

struct Unload {
    void operator()(fpga_design* design) const { ZulUnloadZulFile(design); }
};
using Handle = std::unique_ptr<fpga_design, Unload>;

/// Runs @p action with its first, second, ... allocation failing, until there are no more of them, and @p check with what
/// it returned, and with errno, after each run with a failure. @p prepare makes what it works on, anew for each run.
/// @return how many runs had a failure
template <class Prepare, class Action, class Check>
std::size_t withoutMemoryForEach(Prepare prepare, Action action, Check check)
{
    for (std::size_t failing = 1;; ++failing) {
        SCOPED_TRACE(testing::Message() << "allocation " << failing);
        auto const subject = prepare();
        std::optional<WatchedAllocations> watched(failing);
        errno = 0;
        auto result = action(*subject);
        int const error = errno;
        bool const hasFailed = watched->hasFailed();
        watched.reset();
        if (!hasFailed) {
            return failing - 1;
        }
        check(*subject, std::move(result), error);
    }
}

auto const nothing = [] { return std::make_unique<int>(); };

/// A design that no query has been asked of.
auto const richDesign = [] { return std::make_unique<designs::Loaded>(designs::rich()); };

class FailingAllocationOfADesign : public testing::Test {
protected:
    /// Makes what is made once in a process.
    FailingAllocationOfADesign()
    {
        KovaDir::GetKovaDir();
        answers::textOf(richDesign()->get());
    }
};

/// A load either fails with ENOMEM or, where memory only makes it faster, gives the whole design.
void expectNoneOrAll(Handle const& design, int error)
{
    if (design == nullptr) {
        EXPECT_EQ(error, ENOMEM);
    } else {
        EXPECT_EQ(ZulGetNrOfModules(design.get()), 3);
        EXPECT_EQ(ZulGetCamChannelPerProcess(design.get(), 1, -1), 5);
        EXPECT_EQ(ZulGetNrOfParam(design.get(), 1), 3);
    }
}

TEST_F(FailingAllocationOfADesign, LoadedFromABufferGivesNone)
{
    Bytes const bytes = designs::rich();
    CapturedOutput const output;
    std::size_t const failures = withoutMemoryForEach(
        nothing,
        [&](int&) { return Handle(ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), noLibraries)); },
        [](int const&, Handle const& loaded, int error) { expectNoneOrAll(loaded, error); });
    EXPECT_GT(failures, 100U);
    EXPECT_EQ(output.text(), "") << "it is no mistake in the file";
}

TEST_F(FailingAllocationOfADesign, LoadedFromAFileGivesNoneAndNoPath)
{
    TemporaryDirectory const directory;
    std::string const file = directory / "design.zul";
    writeFile(file, designs::rich());
    struct Load {
        ~Load()
        {
            if (path != &untouched) {
                delete[] path;
            }
        }
        char untouched = 'x';
        char* path = &untouched;
    };
    std::size_t const failures = withoutMemoryForEach(
        [] { return std::make_unique<Load>(); },
        [&](Load& load) {
            return Handle(ZulLoadZulFileWithTypeEx(file.c_str(), &load.path, 0, noLibraries));
        },
        [&file](Load& load, Handle const& loaded, int error) {
            EXPECT_EQ(load.path != nullptr, loaded != nullptr);
            EXPECT_EQ(load.path == nullptr ? file : load.path, file);
            expectNoneOrAll(loaded, error);
        });
    EXPECT_GT(failures, 100U);
}

TEST_F(FailingAllocationOfADesign, TellsTheObjectsCallerMinus12)
{
    Bytes const bytes = designs::rich();
    std::size_t const failures = withoutMemoryForEach(
        [] { return std::make_unique<fpga_design>(); },
        [&](fpga_design& design) { return design.LoadDesignFromBuffer(bytes.data(), bytes.size()); },
        [&](fpga_design& design, int result, int) {
            EXPECT_TRUE(result == -ENOMEM || (result == 0 && design.GetNrOfModules() == 3)) << result;
            EXPECT_EQ(design.LoadDesignFromBuffer(bytes.data(), bytes.size()), 0) << "it can be tried again";
            EXPECT_EQ(design.GetNrOfModules(), 3U);
            EXPECT_EQ(design.GetNrOfParams(1), 3);
        });
    EXPECT_GT(failures, 100U);
}

/// The same with the library directory of the design 3F2A, beside which nothing but @p others may be in /tmp.
void expectNothingOrTheCache(Handle loaded, int error, Names others)
{
    if (loaded == nullptr) {
        EXPECT_EQ(error, ENOMEM);
    } else {
        loaded.reset();
        others.push_back("zulcache_3F2A");
    }
    EXPECT_EQ(inTmp(), others);
    std::filesystem::remove_all("/tmp/zulcache_3F2A");
}

TEST_F(FailingAllocationOfADesign, LoadedWithLibrariesLeavesNothingBehind)
{
    inPrivateTmp([] {
        writeFile("/tmp/design.zul", designs::withLibraries("3F2A"));
        std::size_t const failures = withoutMemoryForEach(
            nothing, [](int&) { return Handle(ZulLoadZulFile("/tmp/design.zul", overwrite)); },
            [](int const&, Handle loaded, int error) {
                expectNothingOrTheCache(std::move(loaded), error, {"design.zul"});
            });
        EXPECT_GT(failures, 20U);
    });
}

TEST_F(FailingAllocationOfADesign, UnpackedFromABufferLeavesNothingBehind)
{
    inPrivateTmp([] {
        Bytes const bytes = designs::withLibraries("3F2A");
        std::size_t const failures = withoutMemoryForEach(
            nothing,
            [&](int&) { return Handle(ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), overwrite)); },
            [](int const&, Handle loaded, int error) {
                expectNothingOrTheCache(std::move(loaded), error, {});
            });
        EXPECT_GT(failures, 20U);
    });
}

TEST_F(FailingAllocationOfADesign, AnswersTheMissOrWhatThereIs)
{
    std::size_t const failures = withoutMemoryForEach(
        richDesign,
        [](designs::Loaded& design) {
            fpga_design const* const d = design.get();
            std::uint32_t const reg = ZulGetRegisterByName(d, "Frames");
            EXPECT_TRUE(reg == 2 || reg == 0) << reg;
            void const* const info = ZulGetUserInfoByName(d, "BuildNumber");
            EXPECT_TRUE(info == nullptr || info == ZulGetUserInfoByNumber(d, 1));
            int const type = ZulGetUserInfoTypByName(d, "BuildNumber");
            EXPECT_TRUE(type == 200 || type == 0) << type;
            answers::askEverything(d, [](char const*, unsigned, unsigned, auto) {});
            return 0;
        },
        [](designs::Loaded& design, int, int) {
            EXPECT_EQ(ZulGetRegisterByName(design.get(), "Frames"), 2U) << "the next question is answered";
            EXPECT_NE(ZulGetUserInfoByName(design.get(), "BuildNumber"), nullptr);
            EXPECT_NE(ZulGetUserInfoByName(design.get(), "##_RZ3_DESIGN_SETTINGS"), nullptr);
            EXPECT_STREQ(ZulGetParamFullName(design.get(), 0, 1), "acq_cam_height");
        });
    EXPECT_LT(failures, 10U) << "queries hardly need memory";
}

TEST_F(FailingAllocationOfADesign, NeedsNoMemoryForQuestionsThatWereAskedBefore)
{
    designs::Loaded design(designs::rich());
    answers::textOf(design.get());
    WatchedAllocations const watched;
    answers::askEverything(design.get(), [](char const*, unsigned, unsigned, auto) {});
    EXPECT_EQ(watched.bytes(), 0U);
}

std::string stripped(fpga_design const* design)
{
    unsigned long length = 0;
    ZulStripConfigs(design, nullptr, &length);
    std::string text(length, '\0');
    return ZulStripConfigs(design, text.data(), &length) == 0 ? text : "cannot be saved";
}

template <class Merge>
std::size_t withoutMemoryForEachStepOf(Merge const& merge)
{
    struct Subject {
        designs::Loaded design{designs::rich()};
        std::string const answers = answers::textOf(design.get());
        std::string const saved = stripped(design.get());
    };
    return withoutMemoryForEach([] { return std::make_unique<Subject>(); },
                                [&merge](Subject& subject) { return merge(subject.design.get()); },
                                [&merge](Subject& subject, int result, int error) {
                                    if (result == 0) { // where memory only makes it faster
                                        EXPECT_EQ(ZulGetNrOfModules(subject.design.get()), 4);
                                        return;
                                    }
                                    EXPECT_EQ(result, -1);
                                    EXPECT_EQ(error, ENOMEM);
                                    EXPECT_EQ(answers::textOf(subject.design.get()), subject.answers);
                                    EXPECT_EQ(stripped(subject.design.get()), subject.saved);
                                    EXPECT_EQ(merge(subject.design.get()), 0) << "it can be tried again";
                                    EXPECT_EQ(ZulGetNrOfModules(subject.design.get()), 4);
                                });
}

TEST_F(FailingAllocationOfADesign, MergedFromABufferLeavesItAsItWas)
{
    Bytes const other = designs::addition();
    EXPECT_GT(withoutMemoryForEachStepOf([&other](fpga_design* design) {
                  return MergeFpgaDesignWithMem(design, other.data(), other.size());
              }),
              100U);
}

TEST_F(FailingAllocationOfADesign, MergedFromAFileLeavesItAsItWas)
{
    TemporaryDirectory const directory;
    std::string const file = directory / "other.zul";
    writeFile(file, designs::addition());
    CapturedOutput const output;
    EXPECT_GT(withoutMemoryForEachStepOf(
                  [&file](fpga_design* design) { return MergeFpgaDesign(design, file.c_str()); }),
              100U);
    EXPECT_NE(output.text().find("Bad Alloc"), std::string::npos) << "the load of a file says it";
}

TEST_F(FailingAllocationOfADesign, StrippedLeavesTheLengthAlone)
{
    struct Subject {
        designs::Loaded design{designs::rich()};
        std::string const answers = answers::textOf(design.get());
        Bytes buffer = Bytes().zeros(100'000);
        unsigned long length = buffer.size();

        std::vector<std::byte> stripped() const { return {buffer.data(), buffer.data() + length}; }
    };
    Subject untroubled;
    ASSERT_EQ(ZulStripConfigs(untroubled.design.get(), untroubled.buffer.data(), &untroubled.length), 0);
    std::vector<std::byte> const expected = untroubled.stripped();
    std::size_t const failures = withoutMemoryForEach(
        [] { return std::make_unique<Subject>(); },
        [](Subject& subject) {
            return ZulStripConfigs(subject.design.get(), subject.buffer.data(), &subject.length);
        },
        [&expected](Subject& subject, int result, int error) {
            if (result == 0) { // what only makes questions faster can be made again when it is needed
                EXPECT_EQ(subject.stripped(), expected);
                return;
            }
            EXPECT_EQ(result, -1);
            EXPECT_EQ(error, ENOMEM);
            EXPECT_EQ(subject.length, subject.buffer.size());
            EXPECT_EQ(answers::textOf(subject.design.get()), subject.answers);
        });
    EXPECT_GT(failures, 50U);
}

TEST_F(FailingAllocationOfADesign, MadeAsTrampolineGivesNone)
{
    std::size_t const failures = withoutMemoryForEach(
        nothing, [](int&) { return Handle(ZulFirmwareTrampoline(3, 7)); },
        [](int const&, Handle const& design, int) { EXPECT_EQ(design, nullptr); });
    EXPECT_GT(failures, 5U);
}

} // namespace
