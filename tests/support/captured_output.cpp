#include "captured_output.h"

#include <cstdio>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

CapturedOutput::CapturedOutput()
{
    std::fflush(stdout);
    m_original = dup(STDOUT_FILENO);
    m_file = memfd_create("captured output", MFD_CLOEXEC);
    if (m_original < 0 || m_file < 0 || dup2(m_file, STDOUT_FILENO) < 0) {
        throw std::runtime_error("standard output cannot be captured");
    }
}

CapturedOutput::~CapturedOutput()
{
    std::fflush(stdout);
    dup2(m_original, STDOUT_FILENO);
    close(m_original);
    close(m_file);
}

std::string CapturedOutput::text() const
{
    std::fflush(stdout);
    std::string text(static_cast<std::size_t>(lseek(m_file, 0, SEEK_END)), '\0');
    if (pread(m_file, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("captured output cannot be read");
    }
    return text;
}
