#include "designs.h"
#include "environment.h"
#include "files.h"
#include "library_designs.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using designs::withLibraries;

constexpr int noLibraries = 0;
constexpr int overwrite = 1;
constexpr int noBoard = 0;

TEST(DesignLibraries, AreUnpackedIntoTheDirectoryThatIsTold)
{
    inPrivateTmp([] {
        writeFile("/tmp/design.zul", withLibraries("3F2A"));
        fpga_design design;
        ASSERT_EQ(design.LoadDesignWithType("/tmp/design.zul", nullptr, noBoard, overwrite), 0);
        EXPECT_STREQ(design.GetModuleDllDir(), "/tmp/zulcache_3F2A");
        EXPECT_STREQ(design.getOperatorDir(), "/tmp/zulcache_3F2A");
        EXPECT_EQ(readFile("/tmp/zulcache_3F2A/libcamera.dylib"), Bytes().chars("operators"));
    });
}

TEST(DesignLibraries, WithoutAnyTheDirectoryIsMadeAndStaysEmpty)
{
    inPrivateTmp([] {
        writeFile("/tmp/design.zul", headBytes(0));
        {
            fpga_design design;
            ASSERT_EQ(design.LoadDesignWithType("/tmp/design.zul", nullptr, noBoard, overwrite), 0);
            ASSERT_NE(design.GetModuleDllDir(), nullptr);
            EXPECT_TRUE(std::filesystem::is_empty(design.GetModuleDllDir()));
        }
        EXPECT_EQ(inTmp(), std::vector<std::string>{"design.zul"}) << "the directory goes with the design";
    });
}

TEST(DesignLibraries, OfADesignThatIsNotLoadedAreRefused)
{
    fpga_design design;
    EXPECT_EQ(design.unpackLibs(1), -22);
    EXPECT_EQ(design.GetModuleDllDir(), nullptr);
}

TEST(DesignLibraries, StayWhenTheSwitchSaysSo)
{
    inPrivateTmp([] {
        writeFile("/tmp/design.zul", headBytes(0));
        EnvironmentVariable const keep("KOVA_REMOVE_TEMP_ZUL_DIR", "Off");
        {
            fpga_design design;
            ASSERT_EQ(design.LoadDesignWithType("/tmp/design.zul", nullptr, noBoard, overwrite), 0);
        }
        EXPECT_EQ(inTmp().size(), 2U);
    });
}

TEST(DesignLibraries, OfTheCacheStayWhateverTheSwitchSays)
{
    inPrivateTmp([] {
        writeFile("/tmp/design.zul", withLibraries("3F2A"));
        {
            fpga_design design;
            ASSERT_EQ(design.LoadDesignWithType("/tmp/design.zul", nullptr, noBoard, overwrite), 0);
        }
        EXPECT_EQ(inTmp(), (std::vector<std::string>{"design.zul", "zulcache_3F2A"}));
    });
}

TEST(DesignLibraries, OfTheFormerDesignAreReplaced)
{
    inPrivateTmp([] {
        writeFile("/tmp/design.zul", headBytes(0));
        fpga_design design;
        ASSERT_EQ(design.LoadDesignWithType("/tmp/design.zul", nullptr, noBoard, overwrite), 0);
        std::string const first = design.GetModuleDllDir();
        ASSERT_EQ(design.LoadDesignWithType("/tmp/design.zul", nullptr, noBoard, overwrite), 0);
        EXPECT_STRNE(design.GetModuleDllDir(), first.c_str());
        EXPECT_FALSE(exists(first));
        ASSERT_EQ(design.LoadDesignWithType("/tmp/design.zul", nullptr, noBoard, noLibraries), 0);
        EXPECT_EQ(design.GetModuleDllDir(), nullptr);
        EXPECT_EQ(inTmp(), std::vector<std::string>{"design.zul"});
    });
}

TEST(DesignLibraries, ThatAreForAnotherSystemOnlyAre2WithoutPath)
{
    inPrivateTmp([] {
        Bytes const bytes = ContainerBytes().tag(sample::library("camera", "operators", 517)).build();
        writeFile("/tmp/design.zul", bytes);
        {
            fpga_design design;
            char* path = nullptr;
            EXPECT_EQ(design.LoadDesignWithType("/tmp/design.zul", &path, noBoard, overwrite), -2);
            EXPECT_EQ(path, nullptr);
        }
        EXPECT_EQ(inTmp(), std::vector<std::string>{"design.zul"});
    });
}

TEST(DesignLibraries, WithoutPlaceForThemAre14WithoutPath)
{
    inPrivateTmp([] {
        writeFile("/tmp/design.zul", withLibraries("3F2A"));
        int reason = 0;
        EXPECT_EQ(onUnwritableTmp(
                      [] {
                          fpga_design design;
                          char* path = nullptr;
                          int const result =
                              design.LoadDesignWithType("/tmp/design.zul", &path, noBoard, overwrite);
                          return path == nullptr ? result : 1;
                      },
                      reason),
                  -14);
    });
}

// The exported functions.

TEST(LoadFunctionsWithLibraries, UnpackThemForAnyNumberButZero)
{
    inPrivateTmp([] {
        Bytes const bytes = withLibraries("3F2A");
        writeFile("/tmp/design.zul", bytes);
        fpga_design* const design = ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), noLibraries);
        EXPECT_EQ(ZulGetModuleDllDir(design), nullptr);
        ZulUnloadZulFile(design);
        EXPECT_EQ(inTmp().size(), 1U);
        for (int const opsys : {overwrite, 2, 3, 516, -1}) {
            std::filesystem::remove_all("/tmp/zulcache_3F2A");
            for (int again = 0; again < 2; ++again) { // first unpacked, then found
                for (fpga_design* const loaded : {ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), opsys),
                                                  ZulLoadZulFile("/tmp/design.zul", opsys)}) {
                    ASSERT_NE(loaded, nullptr) << opsys;
                    EXPECT_STREQ(ZulGetModuleDllDir(loaded), "/tmp/zulcache_3F2A");
                    EXPECT_STREQ(ZulGetOperatorDir(loaded), "/tmp/zulcache_3F2A");
                    ZulUnloadZulFile(loaded);
                }
            }
        }
        EXPECT_EQ(inTmp(), (std::vector<std::string>{"design.zul", "zulcache_3F2A"}));
    });
}

TEST(LoadFunctionsWithLibraries, FailWithWhatUnpackingSays)
{
    inPrivateTmp([] {
        Bytes const foreign = ContainerBytes().tag(sample::library("camera", "operators", 517)).build();
        writeFile("/tmp/foreign.zul", foreign);
        errno = 0;
        EXPECT_EQ(ZulLoadDesignFromBuffer(foreign.data(), foreign.size(), overwrite), nullptr);
        EXPECT_EQ(errno, ENOENT);
        errno = 0;
        char* path = nullptr;
        EXPECT_EQ(ZulLoadZulFileWithTypeEx("/tmp/foreign.zul", &path, 0, overwrite), nullptr);
        EXPECT_EQ(errno, ENOENT);
        EXPECT_EQ(path, nullptr);
        Bytes const corrupt =
            ContainerBytes().tag(compressedLibraryTag("camera", Bytes().fill(0xFF, 100))).build();
        errno = 0;
        EXPECT_EQ(ZulLoadDesignFromBuffer(corrupt.data(), corrupt.size(), overwrite), nullptr);
        EXPECT_EQ(errno, EIO);
        EXPECT_EQ(inTmp(), std::vector<std::string>{"foreign.zul"}) << "no directory is left";
    });
}

TEST(LoadFunctionsWithLibraries, SayThatThereIsNoPlaceForThem)
{
    inPrivateTmp([] {
        Bytes const bytes = withLibraries("3F2A");
        writeFile("/tmp/design.zul", bytes);
        int reason = 0;
        int const fileError = onUnwritableTmp(
            [] {
                errno = 0;
                return ZulLoadZulFile("/tmp/design.zul", overwrite) == nullptr ? errno : 0;
            },
            reason);
        EXPECT_EQ(fileError, EFAULT);
        int const bufferError = onUnwritableTmp(
            [&bytes] {
                errno = 0;
                return ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), overwrite) == nullptr ? errno : 0;
            },
            reason);
        EXPECT_EQ(bufferError, reason);
    });
}

} // namespace
