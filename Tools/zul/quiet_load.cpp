#include "quiet_load.h"

#include "captured_stdout.h"
#include "input.h"
#include "session.h"
#include "text_output.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <memory>
#include <new>
#include <typeinfo>

namespace {

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
    } catch (std::bad_alloc const&) {
        throw; // says nothing about the file
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
    CapturedStdout const captured;
    zul.setLoadMode(mode);
    load(zul, bytes.first(sizeSeenByLoad(bytes.size())), outcome);
    zul.setLoadMode(saved);
    outcome.printed = captured.text();
    return outcome;
}
