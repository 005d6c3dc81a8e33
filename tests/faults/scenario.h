#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

/// The name of an errno, "done" for 0.
std::string errorName(int error);
/// "exit 3"
std::string exitName(int code);

/// Something that is done again and again, each time with another call failing, in a /tmp that is empty at first.
struct Scenario {
    std::string name;
    /// Makes the files and whatever else is needed.
    std::function<void()> prepare;
    /// Does it, with failures. @return 0, or what it failed with
    std::function<int()> act;
    /// Expects what has to hold now, and takes nothing that release() does not give back.
    std::function<void(int result)> verify = [](int) {};
    /// Gives everything back.
    std::function<void()> release = [] {};
    std::string (*nameOf)(int) = errorName;
    /// What it may fail with when memory runs out.
    std::set<int> withoutMemory = {12};
    /// What it may fail with when a call fails, besides that call's own errno.
    std::set<int> otherResults = {};
    /// Whether success means that the files are those of a run without failures.
    bool writes = false;
    /// Whether files are written under their names at once, and removed when that fails.
    bool writesDirectly = false;
    /// Whether a directory is opened to be removed with what is in it.
    bool removesDirectory = false;
    /// Whether a process ends with it, so that memory may be left when it fails.
    bool endsProcess = false;
    /// Whether it has to work at once when it is tried again after a failure.
    bool canBeRepeated = true;
    /// Whether every call fails in the ordinary tests too.
    bool isThorough = false;
};

/// For names of tests: letters and digits for what others there are.
std::string identifier(std::string const& name);

std::vector<Scenario> designScenarios();
std::vector<Scenario> savingScenarios();
std::vector<Scenario> verbScenarios();
