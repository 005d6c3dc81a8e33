#include "findings.h"
#include "program_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>

namespace {

using Json = nlohmann::ordered_json;

TEST(Explain, SaysAllAboutAnId)
{
    ProgramRun const answer = runZul({"explain", "z0503"});
    EXPECT_EQ(answer.code, ExitCode::Clean);
    EXPECT_EQ(answer.out, "Z0503 warning: DMA channel outside the settings\n"
                          "  The settings block of a design has room for DMA count registers and DMA tag "
                          "registers of channels\n"
                          "  0 to 3. One of another channel is ignored.\n"
                          "  Use a channel of 0 to 3.\n");
}

TEST(Explain, IdsInTheGivenOrder)
{
    std::string const out = runZul({"explain", "Z0503", "Z0101"}).out;
    EXPECT_LT(out.find("Z0503"), out.find("Z0101"));
}

TEST(Explain, UnknownIdIsNotFound)
{
    ProgramRun const answer = runZul({"explain", "Z0199"});
    EXPECT_EQ(answer.code, ExitCode::NotFound);
    EXPECT_EQ(answer.out, "");
    EXPECT_EQ(answer.err, "zul: there is no finding 'Z0199'; zul explain --all shows all of them\n");
}

TEST(Explain, WantsToKnowWhat)
{
    EXPECT_EQ(runZul({"explain"}).code, ExitCode::Usage);
    EXPECT_EQ(runZul({"explain", "--all", "Z0101"}).code, ExitCode::Usage);
    EXPECT_EQ(runZul({"explain", "--all", "--json", "--markdown"}).code, ExitCode::Usage);
}

TEST(Explain, Json)
{
    nlohmann::json const json = nlohmann::json::parse(runZul({"explain", "--json", "Z0101"}).out);
    EXPECT_EQ(json["schema"], "zul-explain");
    EXPECT_EQ(json["findings"].size(), 1U);
    EXPECT_EQ(json["findings"][0]["id"], "Z0101");
    EXPECT_EQ(json["findings"][0]["level"], "error");
    EXPECT_EQ(json["findings"][0]["title"], "not a container");
    EXPECT_EQ(nlohmann::json::parse(runZul({"explain", "--all", "--json"}).out)["findings"].size(),
              ruleTexts().size());
}

TEST(Explain, DocumentIsUpToDate)
{
    std::ifstream file(ZUL_SOURCE_DIRECTORY "/docs/findings.md");
    std::stringstream written;
    written << file.rdbuf();
    EXPECT_EQ(runZul({"explain", "--all", "--markdown"}).out, written.str())
        << "zul explain --all --markdown > docs/findings.md";
}

TEST(Findings, TextsAreComplete)
{
    for (RuleText const& text : ruleTexts()) {
        SCOPED_TRACE(idOf(text.rule));
        EXPECT_EQ(&textOf(text.rule), &text);
        EXPECT_EQ(findRule(idOf(text.rule)), &text);
        EXPECT_FALSE(text.title.empty());
        EXPECT_EQ(text.explanation.back(), '.');
        EXPECT_TRUE(text.hint.ends_with('.') || text.hint.ends_with('?'));
        EXPECT_EQ(text.explanation.find("  "), std::string_view::npos);
    }
    EXPECT_EQ(findRule("Z0000"), nullptr);
    EXPECT_EQ(findRule(""), nullptr);
}

TEST(Findings, InFileOrderThenById)
{
    Findings findings;
    findings.add(Rule::LinkToNothing, {4, 50, "target"}, "", "");
    findings.add(Rule::BadValue, {4, 50, "target"}, "", "");
    findings.add(Rule::UnknownTag, {1, 24, "tag id"}, "", "");
    std::vector<Finding> const taken = findings.take();

    EXPECT_EQ(taken.at(0).rule, Rule::UnknownTag);
    EXPECT_EQ(taken.at(1).rule, Rule::BadValue);
    EXPECT_EQ(taken.at(2).rule, Rule::LinkToNothing);
}

TEST(Findings, LongTextIsCutBetweenCharacters)
{
    EXPECT_EQ(inQuotes("name"), "'name'");
    EXPECT_EQ(inQuotes(std::string(100, 'x')), "'" + std::string(100, 'x') + "'");
    EXPECT_EQ(inQuotes(std::string(101, 'x')), "'" + std::string(100, 'x') + "...'");
    EXPECT_EQ(inQuotes(std::string(99, 'x') + "\xC3\xA4y"), "'" + std::string(99, 'x') + "...'");
}

} // namespace
