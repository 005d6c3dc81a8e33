#include "input.h"

#include "ZUL_multi_head.h"
#include "session.h"
#include "text_output.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t headLength = 24;
constexpr std::size_t chunk = std::size_t{1} << 16U;

/// Closes what it opened; standard input stays open.
class Descriptor {
public:
    explicit Descriptor(std::string const& path)
        : m_isOwn(path != "-"), m_number(m_isOwn ? open(path.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO)
    {
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    ~Descriptor()
    {
        if (m_isOwn && m_number >= 0) {
            close(m_number);
        }
    }

    int number() const noexcept { return m_number; }

private:
    bool m_isOwn;
    int m_number;
};

[[noreturn]] void refuse(std::string const& name, std::string const& why)
{
    throw Failure(ExitCode::Unreadable, name + ": " + why);
}

[[noreturn]] void refuseAsTooLarge(std::string const& name)
{
    refuse(name, "too large: more than " + std::to_string(InputFile::largest) + " bytes");
}

/// The size that the file system states; 0 for what has none, like a pipe.
std::size_t statedSize(int descriptor, std::string const& name)
{
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        refuse(name, std::strerror(errno));
    }
    if (S_ISDIR(status.st_mode)) {
        refuse(name, "is a directory");
    }
    auto const size = static_cast<std::uint64_t>(status.st_size);
    if (size > InputFile::largest) {
        refuseAsTooLarge(name);
    }
    return size;
}

/// Everything that can be read, whatever the file system stated: that may change at any time.
std::vector<std::byte> readAll(int descriptor, std::string const& name)
{
    std::vector<std::byte> bytes(statedSize(descriptor, name) + 1); // one more, to see the end at once
    std::size_t filled = 0;
    for (;;) {
        ssize_t const count = read(descriptor, bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            refuse(name, std::strerror(errno));
        }
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(count);
        if (filled > InputFile::largest) {
            refuseAsTooLarge(name);
        }
        if (filled == bytes.size()) {
            bytes.resize(std::max(chunk, 2 * filled));
        }
    }
    bytes.resize(filled);
    return bytes;
}

} // namespace

InputFile::InputFile(std::string const& path) : m_name(path == "-" ? "standard input" : path)
{
    Descriptor const descriptor(path);
    if (descriptor.number() < 0) {
        refuse(m_name, std::strerror(errno));
    }
    m_bytes = readAll(descriptor.number(), m_name);
    if (m_bytes.empty()) {
        throw Failure(ExitCode::Damaged, m_name + ": is empty");
    }
}

ContainerFile::ContainerFile(Session& session, std::string const& path)
    : file(path), walk(walkContainer(file.bytes()))
{
    if (walk.end == WalkEnd::NoContainer) {
        throw Failure(ExitCode::Damaged, file.name() + ": " + whyNoContainer(walk));
    }
    warnOfPartialLoad(session, file);
}

void warnOfPartialLoad(Session& session, InputFile const& file)
{
    std::uint64_t const size = file.bytes().size();
    std::uint64_t const seen = sizeSeenByLoad(size);
    if (seen != size) {
        warn(session, file.name() + ": a load sees only the first " + std::to_string(seen) + " of its " +
                          std::to_string(size) + " bytes");
    }
}

std::string whyNoContainer(Walk const& walk)
{
    if (walk.file.size() < headLength) {
        return "not a design file: " + std::to_string(walk.file.size()) +
               " bytes, the head of a container alone has " + std::to_string(headLength);
    }
    std::uint32_t const id = ZUL_multi_head::tag_id;
    return "not a design file: begins with the bytes " + hexBytes(walk.file.first(4)) +
           ", a container with " + hexBytes(std::as_bytes(std::span(&id, 1)));
}
