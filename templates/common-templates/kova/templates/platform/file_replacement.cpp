#include "kova/templates/platform/file_replacement.h"

#include "kova/templates/platform/descriptor.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kova::templates::platform {

namespace {

namespace fs = std::filesystem;

constexpr mode_t newFileMode = 0644;
constexpr mode_t privateMode = 0600; // nobody else may read a file that is to get the old one's mode
constexpr mode_t permissionBits = 07777;

void syncDirectory(fs::path const& directory)
{
    Descriptor const opened(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened) {
        ::fsync(opened.get()); // not every file system can; the rename stands all the same
    }
}

/// A new file beside the target; gone unless it was given the target's name.
class TemporaryFile {
public:
    TemporaryFile(fs::path directory, mode_t mode)
        : m_directory(std::move(directory)), m_file(openNew(m_directory, mode, m_path))
    {
    }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;
    ~TemporaryFile()
    {
        if (m_file && !m_renamed) {
            ::unlink(m_path.c_str());
        }
    }

    explicit operator bool() const noexcept { return static_cast<bool>(m_file); }
    int fd() const noexcept { return m_file.get(); }

    /// From the moment of the renaming on, nothing can fail any more. @return 0 or a negated errno
    int renameTo(fs::path const& target) noexcept
    {
        if (::rename(m_path.c_str(), target.c_str()) != 0) {
            return -errno;
        }
        m_renamed = true;
        syncDirectory(m_directory);
        return 0;
    }

private:
    /// Opens a file that was not there before, whoever else writes into @p directory, and tells its @p path.
    static int openNew(fs::path const& directory, mode_t mode, fs::path& path)
    {
        static std::atomic<unsigned> counter = 0;
        int fd = -1;
        do {
            path = directory / (".zul-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
            fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        } while (fd < 0 && errno == EEXIST);
        return fd;
    }

    fs::path m_directory;
    fs::path m_path;
    Descriptor m_file;
    bool m_renamed = false;
};

/// Where the symbolic links at the end of @p path lead, whether or not there is a file; nothing, with errno, where that
/// cannot be told: a link that was taken for a file would be replaced itself.
std::optional<fs::path> followLinks(fs::path path)
{
    constexpr int mostLinks = 40; // as many as the kernel follows
    for (int i = 0; i < mostLinks; ++i) {
        std::error_code error;
        fs::file_status const status = fs::symlink_status(path, error);
        if (fs::status_known(status) && !fs::is_symlink(status)) {
            return path;
        }
        fs::path const next = fs::status_known(status) ? fs::read_symlink(path, error) : fs::path();
        if (error) {
            errno = error.value();
            return std::nullopt;
        }
        path = path.parent_path() / next;
    }
    return path;
}

fs::path directoryOf(fs::path const& path)
{
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

/// Takes owner and mode of the old file over, as far as this user may.
int takeAttributes(int fd, struct stat const& old)
{
    if (::fchown(fd, old.st_uid, old.st_gid) != 0 && errno != EPERM) {
        return -errno;
    }
    return ::fchmod(fd, old.st_mode & permissionBits) != 0 ? -errno : 0;
}

/// Makes the file at least @p length bytes long, with all its blocks. @return 0 or a negated errno
int allocate(int fd, std::uint64_t length)
{
    int error = EINTR;
    while (error == EINTR) {
        error = ::posix_fallocate(fd, 0, static_cast<off_t>(length));
    }
    return -error;
}

/// @return 0, a negated errno, or 1 when contents.fill declined
int fillMapped(int fd, FileContents const& contents)
{
    if (int const allocated = allocate(fd, contents.length); allocated != 0) {
        return allocated;
    }
    void* const bytes = ::mmap(nullptr, contents.length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (bytes == MAP_FAILED) {
        return -errno;
    }
    struct Unmapped {
        void* start;
        std::size_t length;
        ~Unmapped() { ::munmap(start, length); }
    } const unmapped{bytes, contents.length};
    return contents.fill(static_cast<std::byte*>(bytes)) ? 0 : 1;
}

int writeThroughTemporary(TemporaryFile& temporary, fs::path const& target, struct stat const* old,
                          FileContents const& contents)
{
    if (int const filled = fillMapped(temporary.fd(), contents); filled != 0) {
        return filled < 0 ? filled : 0;
    }
    if (int const taken = old == nullptr ? 0 : takeAttributes(temporary.fd(), *old); taken != 0) {
        return taken;
    }
    if (::fsync(temporary.fd()) != 0) {
        return -errno;
    }
    return temporary.renameTo(target);
}

/// @param written takes how many bytes were written, all of them or not
int writeAll(int fd, std::vector<std::byte> const& image, std::size_t& written)
{
    written = 0;
    while (written < image.size()) {
        ssize_t const count = ::write(fd, image.data() + written, image.size() - written);
        if (count > 0) {
            written += static_cast<std::size_t>(count);
        } else if (count == 0) {
            return -EIO; // no progress and no reason: trying again could last for ever
        } else if (errno != EINTR) {
            return -errno;
        }
    }
    return 0;
}

/// Blocks for a file that grows are reserved first: then only a broken disk can stop the writing half way.
int reserve(int fd, struct stat const& old, std::uint64_t length)
{
    int const allocated = allocate(fd, length);
    if (allocated != 0 && ::ftruncate(fd, old.st_size) != 0) {
        return -errno;
    }
    return allocated;
}

int writeInPlace(int fd, struct stat const& old, FileContents const& contents)
{
    std::vector<std::byte> image(contents.length);
    if (!contents.fill(image.data())) {
        return 0;
    }
    if (int const stopped = contents.beforeOverwriting ? contents.beforeOverwriting() : 0; stopped != 0) {
        return stopped;
    }
    bool const regular = S_ISREG(old.st_mode);
    if (int const reserved = regular ? reserve(fd, old, contents.length) : 0; reserved != 0) {
        return reserved;
    }
    std::size_t written = 0;
    if (int const result = writeAll(fd, image, written); result != 0) {
        bool const isUntouched = regular && written == 0; // but for its length
        return isUntouched && ::ftruncate(fd, old.st_size) != 0 ? -errno : result;
    }
    if (regular && (::ftruncate(fd, static_cast<off_t>(contents.length)) != 0 || ::fsync(fd) != 0)) {
        return -errno;
    }
    return 0;
}

/// Whether another file beside this one may take its place: not in a directory that cannot be written, of somebody
/// else's file in a sticky directory, or where a file is mounted on its own.
bool isNoPlaceForAnother(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY;
}

/// @return 0 or a negated errno; nothing where the file's directory does not let it be replaced
std::optional<int> replaceByAnother(fs::path const& target, struct stat const& old,
                                    FileContents const& contents)
{
    TemporaryFile temporary(directoryOf(target), privateMode);
    int const result = temporary ? writeThroughTemporary(temporary, target, &old, contents) : -errno;
    return isNoPlaceForAnother(-result) ? std::nullopt : std::optional(result);
}

int replaceExisting(char const* path, int fd, FileContents const& contents)
{
    struct stat old {};
    if (::fstat(fd, &old) != 0) {
        return -errno;
    }
    if (S_ISREG(old.st_mode) && old.st_nlink == 1) {
        auto const target = followLinks(path);
        if (!target) {
            return -errno;
        }
        if (auto const replaced = replaceByAnother(*target, old, contents)) {
            return *replaced;
        }
    }
    return writeInPlace(fd, old, contents);
}

int createNew(char const* path, FileContents const& contents)
{
    auto const target = followLinks(path);
    if (!target) {
        return -errno;
    }
    if (!target->has_filename()) {
        return -EISDIR;
    }
    TemporaryFile temporary(directoryOf(*target), newFileMode);
    return temporary ? writeThroughTemporary(temporary, *target, nullptr, contents) : -errno;
}

} // namespace

int replaceFile(char const* path, FileContents const& contents)
{
    if (path == nullptr) {
        return -EINVAL;
    }
    Descriptor const existing(::open(path, O_RDWR | O_CLOEXEC | O_NOCTTY));
    if (existing) {
        return replaceExisting(path, existing.get(), contents);
    }
    return errno == ENOENT && *path != '\0' ? createNew(path, contents) : -errno;
}

} // namespace kova::templates::platform
