#include "unfinished_file.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

UnfinishedFile::UnfinishedFile(char const* path) noexcept
    : m_path(path), m_descriptor(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644))
{
}

UnfinishedFile::~UnfinishedFile()
{
    if (m_descriptor >= 0) {
        close(m_descriptor);
        unlink(m_path);
    }
}

int UnfinishedFile::write(std::span<std::byte const> bytes) const noexcept
{
    while (!bytes.empty()) {
        ssize_t const count = ::write(m_descriptor, bytes.data(), bytes.size());
        if (count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (count == 0) {
            return -EIO; // no progress and no reason: trying again could last for ever
        } else if (errno != EINTR) {
            return -errno;
        }
    }
    return 0;
}

int UnfinishedFile::finish() noexcept
{
    // Network file systems report a full disk only here. After EINTR the descriptor is gone, and the bytes are not.
    if (close(std::exchange(m_descriptor, -1)) == 0 || errno == EINTR) {
        return 0;
    }
    int const error = errno;
    unlink(m_path);
    return -error;
}
