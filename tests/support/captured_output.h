#pragma once

#include <string>

/// Catches what is written to standard output (descriptor 1), by whomever, while this object lives.
class CapturedOutput {
public:
    CapturedOutput();
    CapturedOutput(CapturedOutput const&) = delete;
    CapturedOutput& operator=(CapturedOutput const&) = delete;
    ~CapturedOutput();

    /// Everything since the beginning.
    std::string text() const;

private:
    int m_original;
    int m_file;
};
