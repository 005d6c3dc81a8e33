#pragma once

#include <cstdio>
#include <string>
#include <sys/wait.h>

/// How a command ended.
struct Outcome {
    int status;         // -1 when a signal ended it
    std::string output; // of both streams
};

/// Runs @p command with the shell.
inline Outcome outcomeOf(std::string const& command)
{
    Outcome outcome{-1, {}};
    FILE* const pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
    char chunk[4096];
    for (std::size_t length = 0; (length = fread(chunk, 1, sizeof chunk, pipe)) > 0;) {
        outcome.output.append(chunk, length);
    }
    int const status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}
