#include "captured_output.h"
#include "checking.h"
#include "program_run.h"
#include "sanitized.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>

namespace {

using Json = nlohmann::ordered_json;

class Check : public testing::Test {
protected:
    /// The path of a new file.
    std::string file(Bytes const& bytes, std::string const& name = "design.zul")
    {
        std::string path = m_directory / name;
        writeFile(path, bytes);
        return path;
    }
    ExitCode codeOf(Bytes const& bytes) { return runZul({"check", file(bytes)}).code; }
    Json jsonOf(Bytes const& bytes)
    {
        return Json::parse(runZul({"check", "--json", file(bytes)}).out)["files"][0];
    }

    TemporaryDirectory m_directory;
};

// Loads, with a warning.
Bytes withWarning()
{
    return identified().tag(sample::dmaCountRegister(9)).build();
}

// Refused: two authors.
Bytes refused()
{
    return identified().tag(sample::author()).tag(sample::author()).build();
}

TEST_F(Check, ExitCodes)
{
    EXPECT_EQ(codeOf(identified().build()), ExitCode::Clean);
    EXPECT_EQ(codeOf(identified().build(8)), ExitCode::Clean); // a note
    EXPECT_EQ(codeOf(withWarning()), ExitCode::Finding);
    EXPECT_EQ(codeOf(identified().tag(sample::registerLink("a", "a")).build()),
              ExitCode::Finding); // an error
    EXPECT_EQ(codeOf(refused()), ExitCode::Damaged);
    EXPECT_EQ(codeOf(Bytes().chars("PK")), ExitCode::Damaged);
    EXPECT_EQ(codeOf(Bytes()), ExitCode::Damaged);
    EXPECT_EQ(runZul({"check", m_directory / "missing"}).code, ExitCode::Unreadable);
    EXPECT_EQ(runZul({"check", m_directory.path()}).code, ExitCode::Unreadable);
    EXPECT_EQ(runZul({"check"}).code, ExitCode::Usage);
}

TEST_F(Check, HighestCodeOfSeveralFiles)
{
    std::string const clean = file(identified().build(), "clean");
    std::string const warning = file(withWarning(), "warning");
    std::string const bad = file(refused(), "bad");

    EXPECT_EQ(runZul({"check", clean, warning, clean}).code, ExitCode::Finding);
    EXPECT_EQ(runZul({"check", warning, m_directory / "missing", clean}).code, ExitCode::Unreadable);
    EXPECT_EQ(runZul({"check", bad, m_directory / "missing", clean}).code, ExitCode::Damaged);
}

TEST_F(Check, ShownToPeople)
{
    std::string const path = file(withWarning());
    ProgramRun const answer = runZul({"check", path});

    EXPECT_EQ(answer.out, path +
                              ": 0 errors, 1 warning, 0 notes\n"
                              "  Z0503 warning: DMA channel outside the settings\n"
                              "    tag 1 (DMA count register) at 0xa8, channel at 0xb0: expected at most 3, "
                              "found 9\n"
                              "    hint: Use a channel of 0 to 3.\n"
                              "  strict load: yes, with 2 tags and 0 configurations\n"
                              "  tolerant load: yes, with 2 tags and 0 configurations\n");
    EXPECT_EQ(answer.err, "");
}

TEST_F(Check, HintIsShownOnceForAFile)
{
    Bytes const bytes =
        identified().tag(sample::dmaCountRegister(8)).tag(sample::dmaCountRegister(9)).build();
    std::string const out = runZul({"check", file(bytes)}).out;

    EXPECT_NE(out.find("hint"), std::string::npos);
    EXPECT_EQ(out.find("hint"), out.rfind("hint"));
}

TEST_F(Check, ColoursOnlyWhereAsked)
{
    std::string const path = file(withWarning());
    EXPECT_NE(runZul({"check", path}, true).out.find("\033[33mZ0503\033[0m"), std::string::npos);
    EXPECT_EQ(runZul({"check", path}, false).out.find('\033'), std::string::npos);
}

TEST_F(Check, NamesOfAFileCannotDriveTheTerminal)
{
    Bytes const bytes = identified().tag(sample::registerLink("a", "\033[2J\nerror")).build();
    std::string const out = runZul({"check", file(bytes)}).out;

    EXPECT_EQ(out.find('\033'), std::string::npos);
    EXPECT_NE(out.find("'\\x1b[2J\\x0aerror'"), std::string::npos);
}

TEST_F(Check, JsonOfAFinding)
{
    Json const checked = jsonOf(withWarning());
    Json const finding = checked["findings"][0];

    EXPECT_EQ(checked["findings"].size(), 1U);
    EXPECT_EQ(checked["size"], 188);
    EXPECT_EQ(checked["exitCode"], 1);
    EXPECT_EQ(finding["id"], "Z0503");
    EXPECT_EQ(finding["level"], "warning");
    EXPECT_EQ(finding["file"], m_directory / "design.zul");
    EXPECT_EQ(finding["tag"],
              Json::parse(R"({"index": 1, "id": 135598112, "kind": "DMA count register", "offset": 168})"));
    EXPECT_EQ(finding["offset"], 176);
    EXPECT_EQ(finding["field"], "channel");
    EXPECT_EQ(finding["expected"], "at most 3");
    EXPECT_EQ(finding["found"], "9");
    EXPECT_EQ(finding["hint"], "Use a channel of 0 to 3.");
}

TEST_F(Check, JsonOfAFindingAboutTheHead)
{
    Json const finding = jsonOf(identified().build().setU32(8, 2))["findings"][0];
    EXPECT_EQ(finding["id"], "Z0107");
    EXPECT_TRUE(finding["tag"].is_null());
}

TEST_F(Check, SaysWhatLoadsDo)
{
    Json const load = jsonOf(refused())["load"];

    EXPECT_EQ(load["strict"]["loads"], false);
    EXPECT_EQ(load["strict"]["result"], -22);
    EXPECT_EQ(load["strict"]["exception"], "ZUL_file_duplicate_tag");
    EXPECT_EQ(load["strict"]["message"], "duplicate tag found");
    EXPECT_EQ(load["strict"]["tagId"], 0x8150070);
    EXPECT_EQ(load["strict"]["printed"], "ZUL Exception: duplicate tag found\n  Details: \n");
    EXPECT_EQ(load["tolerant"]["loads"], true);
    EXPECT_EQ(load["tolerant"]["tags"], 2);
    EXPECT_TRUE(load["tolerant"]["exception"].is_null());
    EXPECT_EQ(load["tolerant"]["text"], "yes, with 2 tags and 0 configurations, after printing errors");
}

TEST_F(Check, SaysWhatLoadsDoWithCountsThatDiffer)
{
    Json const load = jsonOf(identified().build().setU32(8, 2))["load"];
    EXPECT_EQ(load["strict"]["text"], "no: the counts in the head do not match the tags, result -22");
    EXPECT_EQ(load["tolerant"]["loads"], true);
}

TEST_F(Check, SaysWhatLoadsDoWithSomethingElse)
{
    Json const load = jsonOf(headBytes(0).setU8(0, 0))["load"];
    EXPECT_EQ(load["strict"]["text"], "no: not a container, result -22");
    EXPECT_EQ(load["tolerant"]["text"], "no: not a container, result -22");
}

TEST_F(Check, SaysWhenATolerantLoadFindsNoTag)
{
    Json const load = jsonOf(ContainerBytes().tag(sample::author().setU32(4, 71)).build())["load"];
    EXPECT_EQ(load["tolerant"]["loads"], false);
    EXPECT_EQ(load["tolerant"]["text"], "no: no tag can be read, result -22");
}

TEST_F(Check, JsonOfFilesThatCannotBeRead)
{
    std::string const missing = m_directory / "missing";
    std::string const clean = file(identified().build());
    ProgramRun const answer = runZul({"check", "--json", missing, clean});
    Json const json = Json::parse(answer.out);

    EXPECT_EQ(json["schema"], "zul-check");
    EXPECT_EQ(json["version"], 1);
    EXPECT_EQ(json["files"][0]["file"], missing);
    EXPECT_EQ(json["files"][0]["exitCode"], 3);
    EXPECT_EQ(json["files"][0]["error"], missing + ": No such file or directory");
    EXPECT_EQ(json["files"][1]["exitCode"], 0);
    EXPECT_EQ(answer.err, "zul: " + missing + ": No such file or directory\n");
}

TEST_F(Check, ErrorsThatLoadsPrintStayOffStandardOutput)
{
    CapturedOutput const captured;
    runZul({"check", file(refused())});
    EXPECT_EQ(captured.text(), "");
}

TEST_F(Check, SampleDesignHasNoErrorAndNoWarning)
{
    ProgramRun const answer = runZul({"check", ZUL_SAMPLE_DESIGN});
    EXPECT_EQ(answer.code, ExitCode::Clean) << answer.out;
}

/// Whatever is broken: valid JSON, a code that says so, and the findings agree with the load.
void expectHonest(Bytes const& bytes, std::string const& path)
{
    writeFile(path, bytes);
    ProgramRun const answer = runZul({"check", "--json", path});
    ASSERT_TRUE(Json::accept(answer.out)) << answer.out;
    Json const checked = Json::parse(answer.out)["files"][0];
    if (bytes.size() == 0) {
        EXPECT_EQ(answer.code, ExitCode::Damaged);
        return;
    }
    bool const loads = checked["load"]["strict"]["loads"];
    bool hasError = false;
    bool hasWarning = false;
    for (Json const& finding : checked["findings"]) {
        hasError = hasError || finding["level"] == "error";
        hasWarning = hasWarning || finding["level"] == "warning";
    }
    EXPECT_TRUE(loads || hasError) << checked.dump(1);
    EXPECT_EQ(answer.code, !loads                   ? ExitCode::Damaged
                           : hasError || hasWarning ? ExitCode::Finding
                                                    : ExitCode::Clean);
}

TEST_F(Check, EveryTruncationIsNamed)
{
    Bytes const whole = sample::everyKind();
    std::string const path = file(whole);
    for (std::size_t size = 0; size < whole.size(); size += isSanitized ? 3 : 1) {
        SCOPED_TRACE("cut to " + std::to_string(size) + " bytes");
        expectHonest(Bytes(whole).cut(size), path);
    }
}

TEST_F(Check, EveryByteAtItsLimitsIsNamed)
{
    constexpr auto limits = std::to_array<unsigned>({0x00, 0x01, 0x7F, 0x80, 0xFF});
    Bytes const whole = sample::everyKind();
    std::string const path = file(whole);
    for (std::size_t i = 0; i < whole.size(); i += isSanitized ? 3 : 1) {
        for (unsigned const value : oneInTurn(limits, i)) {
            SCOPED_TRACE("byte " + std::to_string(i) + " set to " + std::to_string(value));
            expectHonest(Bytes(whole).setU8(i, value), path);
        }
    }
}

TEST_F(Check, EveryWordAtItsLimitsIsNamed)
{
    constexpr auto limits =
        std::to_array<std::uint32_t>({0, 1, 2, 7, 8, 9, 0x7F, 0xFF, 0x100, 0xFFFF, 0x10000, 0x7FFFFFFF,
                                      0x80000000, 0xFFFFFFF7, 0xFFFFFFFE, 0xFFFFFFFF});
    Bytes const whole = sample::everyKind();
    std::string const path = file(whole);
    for (std::size_t i = 0; i + 4 <= whole.size(); i += 4) {
        for (std::uint32_t const value : oneInTurn(limits, i / 4)) {
            SCOPED_TRACE("word at " + std::to_string(i) + " set to " + std::to_string(value));
            expectHonest(Bytes(whole).setU32(i, value), path);
        }
    }
}

} // namespace
