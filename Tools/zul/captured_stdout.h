#pragma once

#include "kova/templates/platform/descriptor.h"

#include <string>

/// Keeps what is printed off standard output: sends descriptor 1 of the whole process into memory for as long as it
/// lives. No other thread may write there in the meantime.
class CapturedStdout {
public:
    /// @throws Failure System when descriptor 1 cannot be redirected; it is as it was then
    CapturedStdout();
    CapturedStdout(CapturedStdout const&) = delete;
    CapturedStdout& operator=(CapturedStdout const&) = delete;
    ~CapturedStdout();

    /// What was printed so far: any bytes.
    std::string text() const;

private:
    kova::templates::platform::Descriptor m_captured;
    kova::templates::platform::Descriptor m_saved;
};
