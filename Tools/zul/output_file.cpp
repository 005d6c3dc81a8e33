#include "output_file.h"

#include "kova/templates/platform/descriptor.h"
#include "session.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(std::string const& path, char const* what, int error = errno)
{
    if (error == ENOMEM) {
        throw std::bad_alloc();
    }
    throw Failure(ExitCode::Unreadable, path + ": " + what + ": " + std::strerror(error));
}

[[noreturn]] void refuse(std::string const& path)
{
    throw Failure(ExitCode::Refused, path + " exists; --force overwrites it");
}

/// Where @p path leads to: links are followed, and so the link stays when its target is replaced.
fs::path targetOf(std::string const& path)
{
    std::error_code error;
    fs::path const target = fs::canonical(path, error);
    if (error && error != std::errc::no_such_file_or_directory) {
        fail(path, "cannot follow it", error.value());
    }
    return error ? fs::path(path) : target;
}

/// A file beside another one; removed again unless it took that one's name.
class TemporaryFile {
public:
    explicit TemporaryFile(fs::path const& target, std::string const& shownPath)
        : m_shownPath(shownPath),
          m_name((target.parent_path() / ("." + target.filename().string() + ".XXXXXX")).string()),
          m_file(mkostemp(m_name.data(), O_CLOEXEC))
    {
        if (!m_file) {
            fail(m_shownPath, "cannot create a file beside it");
        }
    }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;
    ~TemporaryFile()
    {
        if (!m_renamed) {
            unlink(m_name.c_str());
        }
    }

    void write(ByteSource const& source) const
    {
        run(source, [this](std::span<std::byte const> bytes) { return append(bytes); });
        if (fsync(m_file.get()) != 0) {
            fail(m_shownPath, "cannot write");
        }
    }

    void compare(ByteSource const& source) const
    {
        off_t offset = 0;
        std::byte beyond{};
        run(source, [this, &offset](std::span<std::byte const> bytes) {
            expect(bytes, offset);
            offset += static_cast<off_t>(bytes.size());
            return 0;
        });
        if (pread(m_file.get(), &beyond, 1, offset) != 0) {
            differs();
        }
    }

    void rename(fs::path const& target, Overwrite overwrite)
    {
        struct stat old {};
        bool const exists = stat(target.c_str(), &old) == 0;
        if (!exists && errno != ENOENT) {
            fail(m_shownPath, "cannot tell its mode");
        }
        mode_t const mask = umask(0);
        umask(mask);
        if (fchmod(m_file.get(), exists ? old.st_mode & 07777 : 0666 & ~mask) != 0) {
            fail(m_shownPath, "cannot set the mode");
        }
        unsigned int const flags = overwrite == Overwrite::Allowed ? 0 : RENAME_NOREPLACE;
        if (renameat2(AT_FDCWD, m_name.c_str(), AT_FDCWD, target.c_str(), flags) != 0) {
            if (errno == EEXIST) {
                refuse(m_shownPath);
            }
            fail(m_shownPath, "cannot take its name");
        }
        m_renamed = true;
    }

private:
    void run(ByteSource const& source, ByteSink const& sink) const
    {
        if (int const result = source(sink); result != 0) {
            throw Failure(ExitCode::Damaged,
                          m_shownPath + ": cannot make its contents: " + std::strerror(-result));
        }
    }

    int append(std::span<std::byte const> bytes) const
    {
        while (!bytes.empty()) {
            ssize_t const count = ::write(m_file.get(), bytes.data(), bytes.size());
            if (count > 0) {
                bytes = bytes.subspan(static_cast<std::size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                fail(m_shownPath, "cannot write");
            }
        }
        return 0;
    }

    void expect(std::span<std::byte const> bytes, off_t offset) const
    {
        std::array<std::byte, 65536> piece{};
        while (!bytes.empty()) {
            ssize_t const count =
                pread(m_file.get(), piece.data(), std::min(piece.size(), bytes.size()), offset);
            if (count <= 0 || std::memcmp(piece.data(), bytes.data(), static_cast<std::size_t>(count)) != 0) {
                differs();
            }
            bytes = bytes.subspan(static_cast<std::size_t>(count));
            offset += count;
        }
    }

    [[noreturn]] void differs() const
    {
        throw Failure(ExitCode::Unreadable, m_shownPath + ": reads back differently than it was written");
    }

    std::string const& m_shownPath;
    std::string m_name;
    kova::templates::platform::Descriptor m_file;
    bool m_renamed = false;
};

} // namespace

void checkOutput(std::string const& path, Overwrite overwrite)
{
    struct stat there {};
    if (overwrite == Overwrite::Refused && lstat(path.c_str(), &there) == 0) {
        refuse(path);
    }
}

void writeOutput(std::string const& path, std::span<std::byte const> bytes, Overwrite overwrite)
{
    writeOutput(
        path, [bytes](ByteSink const& sink) { return sink(bytes); }, overwrite);
}

void writeOutput(std::string const& path, ByteSource const& source, Overwrite overwrite)
{
    checkOutput(path, overwrite);
    fs::path const target = targetOf(path);
    TemporaryFile file(target, path);
    file.write(source);
    file.compare(source);
    file.rename(target, overwrite);
    kova::templates::platform::Descriptor const directory(open(
        target.has_parent_path() ? target.parent_path().c_str() : ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory) {
        fsync(directory.get()); // not every file system can; the rename stands all the same
    }
}
