#include "child_process.h"
#include "kova/templates/platform/invariant.h"
#include "library_designs.h"
#include "library_directories.h"
#include "listing.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <regex>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Names = std::vector<std::string>;

std::string text(std::unique_ptr<char[]> const& string)
{
    return string == nullptr ? "(none)" : string.get();
}

std::string cacheDirectory(char const* id, char const* base)
{
    return text(std::unique_ptr<char[]>(getAppletDLLsCacheDir(id, base)));
}

std::string directoryFor(char const* id, bool* isCache)
{
    return text(std::unique_ptr<char[]>(createAppletDLLsTempDir(id, isCache)));
}

bool isPrivateDirectory(std::string const& path)
{
    struct stat status {};
    return std::regex_match(path, std::regex("/tmp/zulrt-[A-Za-z0-9]{6}")) &&
           lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           (status.st_mode & 07777U) == 0700 && status.st_uid == geteuid() && entriesOf(path).empty();
}

void makeCache(std::string const& path)
{
    std::filesystem::create_directory(path);
    writeFile(path + '/' + markerFile, Bytes().chars("marker"));
}

TEST(CacheDirectoryName, IsBasePrefixAndId)
{
    EXPECT_EQ(cacheDirectory("3F2A", "/var/cache/"), "/var/cache/zulcache_3F2A");
    EXPECT_EQ(cacheDirectory("3F2A", nullptr), "/tmp/zulcache_3F2A");
    EXPECT_EQ(cacheDirectory("3F2A", ""), "zulcache_3F2A");
}

TEST(CacheDirectoryName, IsFormattedWhateverTheId)
{
    EXPECT_EQ(cacheDirectory("", nullptr), "/tmp/zulcache_");
    EXPECT_EQ(cacheDirectory(nullptr, nullptr), "/tmp/zulcache_");
    EXPECT_EQ(cacheDirectory("../a/b", nullptr), "/tmp/zulcache_../a/b");
    EXPECT_EQ(cacheDirectory("%s%n", nullptr), "/tmp/zulcache_%s%n");
    std::string const lengthy(4000, 'x');
    EXPECT_EQ(cacheDirectory(lengthy.c_str(), nullptr), "/tmp/zulcache_" + lengthy);
}

TEST(CacheDirectoryName, IsThereForIdsThatNameOneEntryOnly)
{
    EXPECT_EQ(text(nameOfCacheDirectory("3F2A")), "/tmp/zulcache_3F2A");
    EXPECT_EQ(text(nameOfCacheDirectory("..")), "/tmp/zulcache_..");
    EXPECT_EQ(text(nameOfCacheDirectory(sharedId)), "/tmp/zulcache___INVALID_ZUL_ID__");
    for (char const* const id : {"", "/", "a/", "/a", "../a"}) {
        EXPECT_EQ(nameOfCacheDirectory(id), nullptr) << id;
    }
    EXPECT_EQ(nameOfCacheDirectory(nullptr), nullptr);
}

TEST(SharedId, IsTheOneThatSavingMakes)
{
    EXPECT_TRUE(isSharedId("__INVALID_ZUL_ID__"));
    EXPECT_FALSE(isSharedId("__INVALID_ZUL_ID_"));
    EXPECT_FALSE(isSharedId("__INVALID_ZUL_ID__2"));
    EXPECT_FALSE(isSharedId(""));
    EXPECT_FALSE(isSharedId(nullptr));
}

TEST(TemporaryLibraryDirectory, IsTheCacheThatIsThere)
{
    inPrivateTmp([] {
        makeCache("/tmp/zulcache_3F2A");
        bool isCache = false;
        EXPECT_EQ(directoryFor("3F2A", &isCache), "/tmp/zulcache_3F2A");
        EXPECT_TRUE(isCache);
        EXPECT_EQ(directoryFor("3F2A", nullptr), "/tmp/zulcache_3F2A");
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
    });
}

TEST(TemporaryLibraryDirectory, IsPrivateAndNewOtherwise)
{
    inPrivateTmp([] {
        umask(0);
        bool isCache = true;
        std::string const first = directoryFor("3F2A", &isCache);
        EXPECT_TRUE(isPrivateDirectory(first)) << first;
        EXPECT_FALSE(isCache);
        std::string const second = directoryFor("3F2A", nullptr);
        EXPECT_TRUE(isPrivateDirectory(second)) << second;
        EXPECT_NE(second, first);
        EXPECT_EQ(inTmp().size(), 2U) << "no cache directory is made here";
    });
}

TEST(TemporaryLibraryDirectory, IsPrivateForIdsWithoutCache)
{
    inPrivateTmp([] {
        makeCache("/tmp/zulcache_");
        makeCache("/tmp/zulcache_a");
        makeCache("/tmp/zulcache_a/b");
        makeCache("/tmp/zulcache___INVALID_ZUL_ID__");
        std::string const lengthy(4000, 'x');
        for (char const* const id :
             {static_cast<char const*>(nullptr), "", "a/b", "a/", "/", sharedId, lengthy.c_str()}) {
            bool isCache = true;
            std::string const path = directoryFor(id, &isCache);
            EXPECT_TRUE(isPrivateDirectory(path)) << path;
            EXPECT_FALSE(isCache) << (id == nullptr ? "null" : id);
        }
    });
}

TEST(TemporaryLibraryDirectory, OfDotsStaysInTmp)
{
    inPrivateTmp([] {
        makeCache("/tmp/zulcache_..");
        bool isCache = false;
        EXPECT_EQ(directoryFor("..", &isCache), "/tmp/zulcache_..");
        EXPECT_TRUE(isCache);
        EXPECT_TRUE(isPrivateDirectory(directoryFor(".", &isCache)));
        EXPECT_FALSE(isCache);
    });
}

TEST(TemporaryLibraryDirectory, IsPrivateWhereTheCacheIsNotTrusted)
{
    inPrivateTmp([] {
        bool isCache = true;
        std::filesystem::create_directory("/tmp/zulcache_empty");
        EXPECT_TRUE(isPrivateDirectory(directoryFor("empty", &isCache)));
        EXPECT_FALSE(isCache);
        isCache = true;
        makeCache("/tmp/zulcache_open");
        chmod("/tmp/zulcache_open", 0777);
        EXPECT_TRUE(isPrivateDirectory(directoryFor("open", &isCache)));
        EXPECT_FALSE(isCache);
    });
}

TEST(TemporaryLibraryDirectory, ThatCannotBeMadeIsNull)
{
    inPrivateTmp([] {
        int reason = 0;
        auto const make = [] {
            bool isCache = true;
            errno = 0;
            std::string const path = directoryFor("3F2A", &isCache);
            return path == "(none)" && !isCache ? errno : 0;
        };
        int const error = onUnwritableTmp(make, reason);
        EXPECT_EQ(error, reason);
        EXPECT_EQ(inTmp(), Names());
    });
}

/// A directory in a directory.
class DeleteDir : public testing::Test {
protected:
    DeleteDir()
    {
        std::filesystem::create_directory(path);
        for (char const* const name : {"liba.dylib", "libb.dylib", ".hidden", "..."}) {
            writeFile(path + '/' + name, Bytes().chars("contents"));
        }
    }

    TemporaryDirectory outer;
    std::string const path = outer / "directory";
};

TEST_F(DeleteDir, RemovesFilesAndDirectory)
{
    std::size_t const before = openDescriptors();
    EXPECT_EQ(delete_dir(path.c_str()), 0);
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(DeleteDir, RemovesManyFiles)
{
    for (int i = 0; i < 3000; ++i) {
        writeFile(path + "/lib" + std::to_string(i), Bytes());
    }
    writeFile(path + '/' + std::string(255, 'x'), Bytes());
    EXPECT_EQ(delete_dir(path.c_str()), 0);
    EXPECT_FALSE(exists(path));
}

TEST_F(DeleteDir, LeavesSubdirectoriesWithWhatIsInThem)
{
    std::filesystem::create_directory(path + "/sub");
    std::filesystem::create_directory(path + "/empty");
    writeFile(path + "/sub/file", Bytes());
    EXPECT_EQ(delete_dir(path.c_str()), 0);
    EXPECT_EQ(entriesOf(path), (Names{"empty", "sub"}));
    EXPECT_TRUE(exists(path + "/sub/file"));
}

TEST_F(DeleteDir, RemovesLinksNotWhatTheyLeadTo)
{
    std::filesystem::create_directory(outer / "other");
    writeFile(outer / "other/file", Bytes());
    ASSERT_EQ(symlink((outer / "other").c_str(), (path + "/link to directory").c_str()), 0);
    ASSERT_EQ(symlink((outer / "other/file").c_str(), (path + "/link to file").c_str()), 0);
    EXPECT_EQ(delete_dir(path.c_str()), 0);
    EXPECT_FALSE(exists(path));
    EXPECT_TRUE(exists(outer / "other/file"));
}

TEST_F(DeleteDir, DoesNotFollowALinkInPlaceOfTheDirectory)
{
    std::string const link = outer / "link";
    ASSERT_EQ(symlink(path.c_str(), link.c_str()), 0);
    EXPECT_EQ(delete_dir(link.c_str()), ENOTDIR);
    EXPECT_EQ(entriesOf(path).size(), 4U);
    EXPECT_TRUE(exists(link));
}

TEST_F(DeleteDir, AnswersThePositiveErrorOfOpening)
{
    EXPECT_EQ(delete_dir((outer / "missing").c_str()), ENOENT);
    EXPECT_EQ(delete_dir((path + "/liba.dylib").c_str()), ENOTDIR);
    EXPECT_EQ(delete_dir(""), ENOENT);
    EXPECT_EQ(delete_dir((outer / std::string(300, 'x')).c_str()), ENAMETOOLONG);
    ASSERT_EQ(mkfifo((outer / "fifo").c_str(), 0600), 0);
    EXPECT_EQ(delete_dir((outer / "fifo").c_str()), ENOTDIR);
    EXPECT_EQ(entriesOf(path).size(), 4U);
}

TEST_F(DeleteDir, NeedsADescriptor)
{
    auto const remove = [directory = path.c_str()] {
        useUpDescriptors();
        return delete_dir(directory);
    };
    EXPECT_EQ(inChildProcess(remove), EMFILE);
    EXPECT_EQ(entriesOf(path).size(), 4U);
}

TEST_F(DeleteDir, IgnoresWhatItMayNotRemove)
{
    chmod(outer.path(), 0755);
    chmod(path.c_str(), 0555);
    EXPECT_EQ(asOrdinaryUser([this] { return delete_dir(path.c_str()); }), 0);
    EXPECT_EQ(entriesOf(path).size(), 4U);
    chmod(path.c_str(), 0700);
}

TEST_F(DeleteDir, NullIsABrokenInvariant)
{
    if (kova::templates::platform::invariantsAreChecked()) {
        EXPECT_EXIT(delete_dir(nullptr), testing::KilledBySignal(SIGABRT),
                    "^Runtime/zulrt/src/fpga_design:272: Assertion `dirpath != NULL' failed\\.\n");
    } else {
        EXPECT_EQ(delete_dir(nullptr), EFAULT);
    }
}

TEST(DeleteOldDirs, RemovesNothing)
{
    inPrivateTmp([] {
        makeCache("/tmp/zulcache_3F2A");
        makeCache("/tmp/zulrt-abcdef");
        EXPECT_EQ(delete_old_dirs(), 0);
        EXPECT_EQ(inTmp(), (Names{"zulcache_3F2A", "zulrt-abcdef"}));
    });
}

} // namespace
