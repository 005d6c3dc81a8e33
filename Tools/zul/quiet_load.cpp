#include "quiet_load.h"

#include "input.h"
#include "session.h"
#include "text_output.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <iostream>
#include <memory>
#include <new>
#include <sys/mman.h>
#include <typeinfo>
#include <unistd.h>

namespace {

/// Sends descriptor 1 into memory for as long as it lives.
class CapturedOutput {
public:
    CapturedOutput() : m_captured(memfd_create("printed", MFD_CLOEXEC))
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
    CapturedOutput(CapturedOutput const&) = delete;
    CapturedOutput& operator=(CapturedOutput const&) = delete;
    ~CapturedOutput() { restore(); }

    std::string text() const
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

private:
    static void flush()
    {
        std::cout.flush();
        std::fflush(stdout);
    }
    void restore() const noexcept
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

    int m_captured;
    int m_saved = -1;
};

std::string classOf(std::exception const& error)
{
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> const name(
        abi::__cxa_demangle(typeid(error).name(), nullptr, nullptr, &status), std::free);
    return status == 0 ? name.get() : typeid(error).name();
}

void note(LoadOutcome& outcome, int result, std::exception const& error)
{
    outcome.result = result;
    outcome.exceptionClass = classOf(error);
    outcome.message = error.what();
}

void load(ZUL& zul, std::span<std::byte const> bytes, LoadOutcome& outcome)
{
    try {
        outcome.result = bytes.empty() ? -EFBIG : zul.Load(bytes.data(), bytes.size());
    } catch (std::bad_alloc const& error) {
        note(outcome, -ENOMEM, error);
    } catch (ZUL_runtime_error const& error) {
        note(outcome, -EINVAL, error);
        outcome.details = error.asString();
        if (auto const* const fileError = dynamic_cast<ZUL_file_error const*>(&error)) {
            outcome.tagId = fileError->getTagId();
        }
    } catch (std::exception const& error) {
        note(outcome, -EFAULT, error);
    }
}

} // namespace

std::string LoadOutcome::text() const
{
    if (loads()) {
        return "yes";
    }
    std::string text = "no: ";
    if (!exceptionClass.empty()) {
        text += message + " (" + exceptionClass + (tagId ? ", tag id " + asHex(*tagId) : "") + ")";
    } else if (result == -EINVAL) {
        text += "the counts in the head do not match the tags";
    } else {
        text += std::strerror(-result);
    }
    return text + ", result " + std::to_string(result);
}

LoadOutcome loadQuietly(ZUL& zul, std::span<std::byte const> bytes, ZULLoadMode mode)
{
    LoadOutcome outcome;
    ZULLoadMode const saved = zul.getLoadMode();
    CapturedOutput const captured;
    zul.setLoadMode(mode);
    load(zul, bytes.first(sizeSeenByLoad(bytes.size())), outcome);
    zul.setLoadMode(saved);
    outcome.printed = captured.text();
    return outcome;
}
