#pragma once

#include <cstdlib>
#include <optional>
#include <string>

/// Sets an environment variable, or unsets it for a null value, for as long as it lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(char const* name, char const* value) : m_name(name)
    {
        if (char const* const before = std::getenv(name)) {
            m_before = before;
        }
        set(value);
    }
    EnvironmentVariable(EnvironmentVariable const&) = delete;
    EnvironmentVariable& operator=(EnvironmentVariable const&) = delete;
    ~EnvironmentVariable() { set(m_before ? m_before->c_str() : nullptr); }

private:
    void set(char const* value) const
    {
        if (value == nullptr) {
            unsetenv(m_name);
        } else {
            setenv(m_name, value, 1);
        }
    }

    char const* m_name;
    std::optional<std::string> m_before;
};
