#pragma once

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace kova::templates::platform {

/// Owns an open file descriptor, or none (below 0). Closing it leaves errno as it is.
class Descriptor {
public:
    explicit Descriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    ~Descriptor()
    {
        if (m_descriptor >= 0) {
            int const error = errno;
            ::close(m_descriptor);
            errno = error;
        }
    }

    explicit operator bool() const noexcept { return m_descriptor >= 0; }
    int get() const noexcept { return m_descriptor; }
    /// Hands the descriptor over to the caller.
    int release() noexcept { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor;
};

} // namespace kova::templates::platform
