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

void flush()
{
    std::cout.flush();
    std::fflush(stdout);
}

} // namespace

CapturedStdout::CapturedStdout() : m_captured(memfd_create("printed", MFD_CLOEXEC))
{
    flush();
    m_saved = dup(STDOUT_FILENO); // -1 when standard output is closed: it is closed again then
    if (m_captured < 0 || dup2(m_captured, STDOUT_FILENO) < 0) {
        int const error = errno;
        restore();
        throw Failure(ExitCode::Internal,
                      std::string("cannot redirect standard output: ") + std::strerror(error));
    }
}

std::string CapturedStdout::text() const
{
    flush();
    std::string text;
    std::array<char, 4096> part{};
    off_t offset = 0;
    for (ssize_t count = 0; (count = pread(m_captured, part.data(), part.size(), offset)) > 0;
         offset += count) {
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    return text;
}

void CapturedStdout::restore() const noexcept
{
    std::fflush(stdout);
    if (m_saved >= 0) {
        dup2(m_saved, STDOUT_FILENO);
        close(m_saved);
    } else {
        close(STDOUT_FILENO);
    }
    if (m_captured >= 0) {
        close(m_captured);
    }
}
