#include "mapped_file.h"

#include "failing_call.h"
#include "files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <sys/syscall.h>
#include <utility>

namespace {

class MappedFileTest : public testing::Test {
protected:
    MappedFileTest() { writeFile(path, Bytes().chars("contents")); }
    static std::string textOf(MappedFile const& file)
    {
        return {static_cast<char const*>(file.data()), file.size()};
    }

    TemporaryDirectory directory;
    std::string const path = directory / "file";
};

TEST_F(MappedFileTest, ShowsTheFileUntilItIsDetached)
{
    MappedFile file(path.c_str());
    ASSERT_TRUE(file);
    void const* const bytes = file.data();
    writeFile(path, Bytes().chars("CONTENTS"));
    EXPECT_EQ(textOf(file), "CONTENTS");
    EXPECT_EQ(file.detach(), 0);
    writeFile(path, Bytes().chars("contents"));
    EXPECT_EQ(textOf(file), "CONTENTS");
    EXPECT_EQ(file.data(), bytes) << "pointers into it stay valid";
}

TEST_F(MappedFileTest, ThatCannotBeDetachedIsAsBefore)
{
    for (long const call : {SYS_mmap, SYS_mremap}) {
        MappedFile file(path.c_str());
        ASSERT_TRUE(file);
        EXPECT_EQ(withFailingCall(call, ENOMEM,
                                  [&] {
                                      int const result = file.detach();
                                      return textOf(file) == "contents" ? result : 1;
                                  }),
                  -ENOMEM);
    }
}

TEST_F(MappedFileTest, CannotBeMadeOfWhatIsNotThere)
{
    EXPECT_FALSE(MappedFile((directory / "none").c_str()));
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(MappedFileTest, MovesWithItsContents)
{
    MappedFile file(path.c_str());
    MappedFile moved(std::move(file));
    EXPECT_EQ(textOf(moved), "contents");
    MappedFile assigned;
    assigned = std::move(moved);
    EXPECT_EQ(textOf(assigned), "contents");
}

} // namespace
