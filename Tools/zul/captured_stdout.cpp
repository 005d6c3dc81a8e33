#include "captured_stdout.h"

#include "session.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using kova::templates::platform::Descriptor;

void flush()
{
    std::cout.flush();
    std::fflush(stdout);
}

[[noreturn]] void fail()
{
    throw Failure(ExitCode::System, std::string("cannot redirect standard output: ") + std::strerror(errno));
}

/// A second descriptor of standard output; none when that is closed: it is closed again in the end.
Descriptor savedStdout()
{
    int const saved = dup(STDOUT_FILENO);
    if (saved < 0 && errno != EBADF) {
        fail();
    }
    return Descriptor(saved);
}

} // namespace

CapturedStdout::CapturedStdout() : m_captured(memfd_create("printed", MFD_CLOEXEC)), m_saved(savedStdout())
{
    flush();
    if (!m_captured || dup2(m_captured.get(), STDOUT_FILENO) < 0) {
        fail();
    }
}

CapturedStdout::~CapturedStdout()
{
    std::fflush(stdout);
    if (!m_saved) {
        close(STDOUT_FILENO);
        return;
    }
    while (dup2(m_saved.get(), STDOUT_FILENO) < 0 && errno == EINTR) {
    }
}

std::string CapturedStdout::text() const
{
    flush();
    std::string text;
    std::array<char, 4096> part{};
    off_t offset = 0;
    for (ssize_t count = 0; (count = pread(m_captured.get(), part.data(), part.size(), offset)) > 0;
         offset += count) {
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    return text;
}
