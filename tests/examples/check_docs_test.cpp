#include "files.h"
#include "outcome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

using testing::HasSubstr;

/// What the check of a document with these lines says.
Outcome check(std::string const& text)
{
    TemporaryDirectory const directory;
    std::ofstream(directory / "page.md") << text;
    return outcomeOf("cd " + std::string(directory.path()) + " && " CHECK_DOCS " page.md");
}

TEST(CheckDocs, RunsMarkedBlocksOnly)
{
    Outcome const checked = check("```sh runnable\necho one\n```\n"
                                  "```sh\nfalse\n```\n"
                                  "```text\n$ false\n```\n");
    EXPECT_EQ(checked.status, 0);
    EXPECT_EQ(checked.output, "1 runnable blocks in 1 documents\n");
}

TEST(CheckDocs, ShowsTheBlockThatFails)
{
    Outcome const checked = check("# Title\n\n```sh runnable\necho before; false\necho after\n```\n");
    EXPECT_EQ(checked.status, 1);
    EXPECT_THAT(checked.output, HasSubstr("page.md:3: the sh block ends with 1 instead of 0:\n    before\n"));
    EXPECT_THAT(checked.output, Not(HasSubstr("after")));
}

TEST(CheckDocs, TakesTheStatusThatABlockAnnounces)
{
    EXPECT_EQ(check("```sh runnable exits=5\nexit 5\n```\n").status, 0);
    EXPECT_EQ(check("```sh runnable exits=5\ntrue\n```\n").status, 1);
}

TEST(CheckDocs, BlocksShareAFolderWithTheSample)
{
    Outcome const checked = check("```sh runnable\nhead -c 4 sample.zul > head\n```\n"
                                  "- in a list\n  ```sh runnable\n  [ \"$(cat head)\" = MVOK ]\n  ```\n");
    EXPECT_EQ(checked.status, 0) << checked.output;
}

TEST(CheckDocs, CompilesAndLinksPrograms)
{
    Outcome const checked =
        check("```cpp runnable\n#include <cstdio>\nint main()\n{\n    std::puts(\"made\");\n}\n```\n"
              "```sh runnable\n[ \"$(./a.out)\" = made ]\n```\n");
    EXPECT_EQ(checked.status, 0) << checked.output;
}

TEST(CheckDocs, CompilesPiecesThatUseTheLibrary)
{
    EXPECT_EQ(check("```cpp runnable\n#include \"zullib.h\"\nZUL* design();\n```\n").status, 0);
    Outcome const checked = check("```cpp runnable\nint unused = ;\n```\n");
    EXPECT_EQ(checked.status, 1);
    EXPECT_THAT(checked.output, HasSubstr("page.md:1: the cpp block ends with 1 instead of 0:\n"));
}

TEST(CheckDocs, RefusesMarksThatItDoesNotKnow)
{
    for (char const* fence : {"```python runnable", "```sh runnable exit=1", "```sh runnable exits=1 more"}) {
        Outcome const checked = check(std::string(fence) + "\ntrue\n```\n");
        EXPECT_EQ(checked.status, 1) << fence;
        EXPECT_THAT(checked.output, HasSubstr("page.md:1: cannot run ")) << fence;
    }
}

TEST(CheckDocs, RefusesABlockWithoutEnd)
{
    Outcome const checked = check("text\n```sh\ntrue\n");
    EXPECT_EQ(checked.status, 1);
    EXPECT_THAT(checked.output, HasSubstr("page.md:2: the block has no end\n"));
}

} // namespace
