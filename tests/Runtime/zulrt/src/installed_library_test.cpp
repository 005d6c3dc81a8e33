#include "captured_output.h"
#include "child_process.h"
#include "environment.h"
#include "files.h"

#include "zulrt.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <dlfcn.h>
#include <filesystem>

namespace {

/// A copy of the shared library at @p below in a directory of its own.
class LibraryCopy {
public:
    explicit LibraryCopy(std::string const& below) : m_path(m_directory / below)
    {
        std::filesystem::create_directories(m_path.parent_path());
        std::filesystem::copy_file(ZUL_RUNTIME_LIBRARY, m_path);
    }
    std::string base() const { return m_directory.path(); }

    /// What a load of a design that is nowhere prints.
    std::string printedByLoad() const
    {
        CapturedOutput const output;
        EXPECT_EQ(inChildProcess([this] { return load() == nullptr ? 0 : 1; }), 0);
        return output.text();
    }

private:
    fpga_design* load() const
    {
        void* const library = dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL);
        auto* const function =
            reinterpret_cast<decltype(&ZulLoadZulFileWithType)>(dlsym(library, "ZulLoadZulFileWithType"));
        fpga_design* const handle = function("none.zul", 2624, 0);
        std::fflush(stdout);
        return handle;
    }

    TemporaryDirectory m_directory;
    std::filesystem::path m_path;
};

class InstalledLibrary : public testing::Test {
protected:
    EnvironmentVariable m_first{"KOVADIR5_64", nullptr};
    EnvironmentVariable m_second{"KOVADIR5", "/opt/k//"};
    EnvironmentVariable m_third{"QELINSTALLDIR", nullptr};
};

TEST_F(InstalledLibrary, SearchesAboveItselfFirst)
{
    LibraryCopy const library("lib64/sub/libzulrt.so.5");
    EXPECT_EQ(library.printedByLoad(), "Searching for zul file none.zul in " + library.base() +
                                           "\nSearching for zul file none.zul in /opt/k//\n")
        << "the variable's value is searched as it is";
}

TEST_F(InstalledLibrary, SearchesWhatTheEnvironmentNamesOtherwise)
{
    LibraryCopy const library("elsewhere/libzulrt.so.5");
    EXPECT_EQ(library.printedByLoad(), "Searching for zul file none.zul in /opt/k\n"
                                       "Searching for zul file none.zul in /opt/k//\n");
}

TEST_F(InstalledLibrary, SearchesNowhereWhenNothingNamesADirectory)
{
    EnvironmentVariable const none("KOVADIR5", nullptr);
    LibraryCopy const library("elsewhere/libzulrt.so.5");
    EXPECT_EQ(library.printedByLoad(), "");
}

} // namespace
