#pragma once

#include <string>

/// Keeps what is printed off standard output: sends descriptor 1 of the whole process into memory for as long as it
/// lives. No other thread may write there in the meantime.
class CapturedStdout {
public:
    /// @throws Failure Internal when descriptor 1 cannot be redirected
    CapturedStdout();
    CapturedStdout(CapturedStdout const&) = delete;
    CapturedStdout& operator=(CapturedStdout const&) = delete;
    ~CapturedStdout() { restore(); }

    /// What was printed so far: any bytes.
    std::string text() const;

private:
    void restore() const noexcept;

    int m_captured;
    int m_saved = -1;
};
