#include "program_run.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace {

std::string documented()
{
    std::ifstream file(ZUL_SOURCE_DIRECTORY "/docs/format.md");
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Format, DocumentIsWhatTheProgramPrints)
{
    ProgramRun const run = runZul({"format", "--markdown"});
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(run.out, documented());
}

TEST(Format, EveryKindHasItsFields)
{
    auto const json = runZul({"format", "--json"}).json();
    EXPECT_EQ(json.at("schema"), "zul-format");
    EXPECT_EQ(json.at("kinds").size(), 28U); // registers have two layouts
    for (auto const& kind : json.at("kinds")) {
        EXPECT_EQ(kind.at("fields").at(0).at("name"), "tag id") << kind;
        EXPECT_EQ(kind.at("fields").at(1).at("name"), "length") << kind;
        EXPECT_GT(kind.at("fields").size(), 2U) << kind;
    }
}

TEST(Format, VariablePartsAreNamedBehindTheFixedPart)
{
    std::string const out = runZul({"format"}).out;
    EXPECT_NE(out.find("  192     variable  text "), std::string::npos);
    EXPECT_NE(out.find("  192+    variable  bytes"), std::string::npos);
}

} // namespace
