#include "kova/templates/platform/map_file.h"

#include "child_process.h"
#include "failing_call.h"
#include "files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <ostream>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr unsigned long untouched = 0x5A5A5A5A;
constexpr off_t mebibyte = 1024 * 1024;

/// Files in a directory of their own; a test that leaves a descriptor open fails.
class MapFile : public testing::Test {
protected:
    ~MapFile() override { EXPECT_EQ(openDescriptors(), m_descriptors) << "a descriptor was left open"; }

    static std::ptrdiff_t openDescriptors()
    {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    }

    std::string file(std::string const& content)
    {
        std::string const path = m_directory / "file";
        int const fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        EXPECT_EQ(::write(fd, content.data(), content.size()), static_cast<ssize_t>(content.size()));
        ::close(fd);
        return path;
    }

    /// A file of @p size zero bytes that takes no room, but "last" in its last four bytes.
    std::string sparseFile(off_t size)
    {
        std::string path = file("");
        EXPECT_EQ(::truncate(path.c_str(), size), 0);
        int const fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
        EXPECT_EQ(::pwrite(fd, "last", 4, size - 4), 4);
        ::close(fd);
        return path;
    }

    struct Answer {
        bool succeeded;
        int error;
        unsigned long size;
        friend bool operator==(Answer const&, Answer const&) = default;
        friend std::ostream& operator<<(std::ostream& out, Answer const& answer)
        {
            return out << (answer.succeeded ? "success" : "failure") << ", errno " << answer.error
                       << ", size " << answer.size;
        }
    };

    static Answer refused(int error, unsigned long size = untouched) { return {false, error, size}; }
    static Answer accepted(unsigned long size) { return {true, 0, size}; }

    static Answer opening(char const* path)
    {
        unsigned long size = untouched;
        errno = 0;
        int const fd = open_size(path, &size);
        Answer const answer{fd >= 0, errno, size};
        if (fd < 0) {
            EXPECT_EQ(fd, -1);
        }
        ::close(fd);
        return answer;
    }

    static Answer mapping(char const* path)
    {
        unsigned long size = untouched;
        errno = 0;
        void* const start = CF::map_file(path, &size);
        Answer const answer{start != nullptr, errno, size};
        if (start != nullptr) {
            EXPECT_EQ(CF::unmap_file(start, size), 0);
        }
        return answer;
    }

    /// Both interfaces answer alike.
    static void expect(std::string const& path, Answer const& answer)
    {
        EXPECT_EQ(opening(path.c_str()), answer);
        EXPECT_EQ(mapping(path.c_str()), answer);
    }

    TemporaryDirectory m_directory;

private:
    std::ptrdiff_t m_descriptors = openDescriptors();
};

TEST_F(MapFile, MapsEveryByte)
{
    unsigned long size = 0;
    void* const start = CF::map_file(file("a design").c_str(), &size);
    ASSERT_NE(start, nullptr);
    EXPECT_EQ(std::string(static_cast<char const*>(start), size), "a design");
    EXPECT_EQ(CF::unmap_file(start, size), 0);
}

TEST_F(MapFile, AFileOfOneByteIsMapped)
{
    expect(file("a"), accepted(1));
}

TEST_F(MapFile, TheMappingCannotBeWritten)
{
    unsigned long size = 0;
    void* const start = CF::map_file(file("a design").c_str(), &size);
    ASSERT_NE(start, nullptr);
    EXPECT_DEATH(*static_cast<char volatile*>(start) = 'b', "");
    CF::unmap_file(start, size);
}

TEST_F(MapFile, TheMappingIsSharedWithTheFile)
{
    std::string const path = file("a design");
    unsigned long size = 0;
    void* const start = CF::map_file(path.c_str(), &size);
    ASSERT_NE(start, nullptr);
    int const fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(::pwrite(fd, "b", 1, 0), 1);
    ::close(fd);
    EXPECT_EQ(*static_cast<char const volatile*>(start), 'b');
    CF::unmap_file(start, size);
}

TEST_F(MapFile, TheDescriptorReadsFromTheStartAndDoesNotWrite)
{
    unsigned long size = 0;
    int const fd = open_size(file("a design").c_str(), &size);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(size, 8U);
    std::array<char, 16> buffer{};
    EXPECT_EQ(::read(fd, buffer.data(), buffer.size()), 8);
    EXPECT_STREQ(buffer.data(), "a design");
    EXPECT_EQ(::write(fd, "b", 1), -1);
    EXPECT_EQ(errno, EBADF);
    ::close(fd);
}

TEST_F(MapFile, TheDescriptorIsNotInheritedByOtherPrograms)
{
    unsigned long size = 0;
    int const fd = open_size(file("a design").c_str(), &size);
    EXPECT_NE(::fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
    ::close(fd);
}

TEST_F(MapFile, AnEmptyFileIsRefused)
{
    expect(file(""), refused(EINVAL, 0));
}

TEST_F(MapFile, AFileOf128MebibytesLessOneByteIsSeenWhole)
{
    expect(sparseFile(128 * mebibyte - 1), accepted(0x7FFFFFF));
}

TEST_F(MapFile, AFileOf128MebibytesIsRefused)
{
    expect(sparseFile(128 * mebibyte), refused(EFBIG, 0));
}

TEST_F(MapFile, AFileOf128MebibytesAndOneByteHasOne)
{
    expect(sparseFile(128 * mebibyte + 1), accepted(1));
}

TEST_F(MapFile, AFileOf200MebibytesHas72)
{
    expect(sparseFile(200 * mebibyte), accepted(72UL * mebibyte));
}

TEST_F(MapFile, TheLargestFileHas31Bits)
{
    expect(sparseFile(0x7FFFFFFF), accepted(0x7FFFFFF));
}

TEST_F(MapFile, ALargerFileIsRefused)
{
    expect(sparseFile(0x80000000), refused(EFBIG));
    expect(sparseFile(0x80000001), refused(EFBIG));
    expect(sparseFile(0x100000005), refused(EFBIG));
}

TEST_F(MapFile, AMissingFileIsRefused)
{
    expect(m_directory / "none", refused(ENOENT));
    expect("", refused(ENOENT));
}

TEST_F(MapFile, ADirectoryIsRefused)
{
    expect(m_directory.path(), refused(EISDIR));
}

TEST_F(MapFile, AFifoIsRefusedAndDoesNotHang)
{
    std::string const path = m_directory / "fifo";
    ASSERT_EQ(::mkfifo(path.c_str(), 0644), 0);
    expect(path, refused(EINVAL));
}

TEST_F(MapFile, ADeviceIsRefused)
{
    expect("/dev/zero", refused(EINVAL));
    expect("/dev/null", refused(EINVAL));
}

TEST_F(MapFile, ASocketIsRefused)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::string const path = m_directory / "socket";
    std::copy(path.begin(), path.end(), address.sun_path);
    int const fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr const*>(&address), sizeof(address)), 0);
    expect(path, refused(ENXIO));
    ::close(fd);
}

TEST_F(MapFile, ASymbolicLinkIsFollowed)
{
    std::string const link = m_directory / "link";
    ASSERT_EQ(::symlink(file("a design").c_str(), link.c_str()), 0);
    expect(link, accepted(8));
}

TEST_F(MapFile, AFileThatMayNotBeReadIsRefused)
{
    std::string const path = file("a design");
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    ASSERT_EQ(::chmod(m_directory.path(), 0755), 0);
    EXPECT_EQ(asOrdinaryUser([&] { return opening(path.c_str()).error; }), EACCES);
    EXPECT_EQ(asOrdinaryUser([&] { return mapping(path.c_str()).error; }), EACCES);
}

TEST_F(MapFile, NullArgumentsAreRefused)
{
    EXPECT_EQ(opening(nullptr), refused(EINVAL));
    EXPECT_EQ(mapping(nullptr), refused(EINVAL));
    std::string const path = file("a design");
    errno = 0;
    EXPECT_EQ(open_size(path.c_str(), nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    errno = 0;
    EXPECT_EQ(CF::map_file(path.c_str(), nullptr), nullptr);
    EXPECT_EQ(errno, EINVAL);
}

TEST_F(MapFile, NoDescriptorLeftIsReported)
{
    std::string const path = file("a design");
    EXPECT_EQ(inChildProcess([&] {
                  rlimit const none{0, 0};
                  return ::setrlimit(RLIMIT_NOFILE, &none) == 0 ? mapping(path.c_str()).error : 0;
              }),
              EMFILE);
}

TEST_F(MapFile, AFileThatCannotBeAskedAboutIsRefused)
{
    std::string const path = file("contents");
    EXPECT_EQ(withFailingCall(SYS_newfstatat, EIO,
                              [&path] { return opening(path.c_str()) == refused(EIO) ? 0 : 1; }),
              0);
}

TEST_F(MapFile, AFailedMappingClosesTheDescriptorAndKeepsItsErrno)
{
    std::string const path = sparseFile(128 * mebibyte - 1);
    EXPECT_EQ(inChildProcess([&] {
                  std::ptrdiff_t const before = openDescriptors();
                  rlimit unlimited{};
                  ::getrlimit(RLIMIT_AS, &unlimited);
                  rlimit const small{64UL * mebibyte, unlimited.rlim_max};
                  ::setrlimit(RLIMIT_AS, &small);
                  unsigned long size = 0;
                  void const* const start = CF::map_file(path.c_str(), &size);
                  int const error = errno;
                  ::setrlimit(RLIMIT_AS, &unlimited);
                  return start == nullptr && openDescriptors() == before ? error : 0;
              }),
              ENOMEM);
}

TEST(UnmapFile, HandsOutTheResultOfTheSystem)
{
    EXPECT_EQ(CF::unmap_file(nullptr, 0), -1);
    EXPECT_EQ(errno, EINVAL);
}

} // namespace
