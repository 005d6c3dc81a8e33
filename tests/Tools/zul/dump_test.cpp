#include "container_bytes.h"
#include "dump_bytes.h"
#include "program_run.h"
#include "sample_tags.h"
#include "sanitized.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using Json = nlohmann::ordered_json;

Json dumpOf(Bytes const& bytes, std::vector<std::string> const& more = {"--payload"})
{
    return runOn(bytes, "dump", more).json();
}

/// The field called @p name of the first tag.
Json fieldOf(Json const& dump, std::string const& name)
{
    for (Json const& field : dump["tags"][0]["fields"]) {
        if (field["name"] == name) {
            return field;
        }
    }
    return nullptr;
}

TEST(Dump, GoldenOutput)
{
    ProgramRun const run = runOn(ContainerBytes().tag(sample::destination(3)).build(), "dump");
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.json(), Json::parse(R"({
        "schema": "zul-dump",
        "version": 1,
        "file": {"name": "design.zul", "size": 40,
                 "sha256": ")" + run.json()["file"]["sha256"].get<std::string>() +
                                      R"("},
        "walk": {"end": "complete", "offset": 40},
        "head": {"offset": 0, "length": 24, "fields": [
            {"name": "tag id", "offset": 0, "width": 4, "kind": "tag id", "value": 1263490637},
            {"name": "length", "offset": 4, "width": 4, "kind": "tag length", "value": 24},
            {"name": "tag count", "offset": 8, "width": 4, "kind": "unsigned", "value": 1},
            {"name": "config count", "offset": 12, "width": 4, "kind": "unsigned", "value": 0},
            {"name": "version", "offset": 16, "width": 4, "kind": "unsigned", "value": 1},
            {"name": "destination", "offset": 20, "width": 4, "kind": "unsigned", "value": 0}],
            "problems": []},
        "tags": [{"index": 0, "offset": 24, "length": 16, "id": 135594137, "kind": "destination",
            "class": "ZUL_destination", "fields": [
            {"name": "tag id", "offset": 0, "width": 4, "kind": "tag id", "value": 135594137},
            {"name": "length", "offset": 4, "width": 4, "kind": "tag length", "value": 16},
            {"name": "board", "offset": 8, "width": 2, "kind": "unsigned", "value": 2628},
            {"name": "revision", "offset": 10, "width": 2, "kind": "unsigned", "value": 1},
            {"name": "index", "offset": 12, "width": 1, "kind": "unsigned", "value": 3},
            {"name": "reserved", "offset": 13, "width": 3, "kind": "zero"}], "problems": []}],
        "trailing": {"name": "trailing", "offset": 40, "width": 0, "kind": "trailing",
            "sha256": "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"}})"));
}

TEST(Dump, GivesBackEveryByteOfADesign)
{
    Bytes const bytes = sample::everyKind();
    EXPECT_EQ(bytesOfDump(dumpOf(bytes)), bytes);
}

TEST(Dump, GivesBackEveryByteOfATruncation)
{
    Bytes const whole = sample::everyKind();
    for (std::size_t size = 1; size < whole.size(); size += size < 100 ? 1 : isSanitized ? 15 : 5) {
        Bytes const bytes = Bytes(whole).cut(size);
        ASSERT_EQ(bytesOfDump(dumpOf(bytes)), bytes) << size;
    }
}

TEST(Dump, GivesBackEveryByteThatWasChanged)
{
    Bytes const whole = sample::everyKind();
    for (std::size_t offset = 0; offset < whole.size(); offset += isSanitized ? 15 : 3) {
        unsigned const value = offset % 2 == 0 ? 0x80 : 0xFF;
        Bytes const bytes = Bytes(whole).setU8(offset, value);
        ASSERT_EQ(bytesOfDump(dumpOf(bytes)), bytes) << offset << ' ' << value;
    }
}

TEST(Dump, GivesBackTrailingBytesAndWhatAnUnknownTagTook)
{
    Bytes const trailing = ContainerBytes().tag(sample::author()).build().append(Bytes().fill(0xA5, 8));
    EXPECT_EQ(bytesOfDump(dumpOf(trailing)), trailing);
    Bytes const unknown = ContainerBytes().tag(sample::unknown(7)).tag(sample::author()).build();
    EXPECT_EQ(bytesOfDump(dumpOf(unknown)), unknown);
    EXPECT_EQ(dumpOf(unknown)["walk"]["end"], "unknown tag");
}

TEST(Dump, PayloadIsADigestUnlessAskedFor)
{
    Bytes const bytes = ContainerBytes().config(sample::config(1, "abc")).build();
    Json const digest = fieldOf(dumpOf(bytes, {}), "bitstream");
    EXPECT_EQ(digest["width"], 3);
    EXPECT_EQ(digest["sha256"], "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_FALSE(digest.contains("base64"));
    EXPECT_EQ(fieldOf(dumpOf(bytes), "bitstream")["base64"], "YWJj");
}

TEST(Dump, TextThatIsNoUtf8IsLatin1AndItsBytesAreThere)
{
    Json const author = fieldOf(dumpOf(ContainerBytes().tag(sample::author("\xFCx")).build()), "author");
    EXPECT_EQ(author["value"], "\xC3\xBCx");
    EXPECT_EQ(author["hex"].get<std::string>().substr(0, 8), "fc780000");
}

TEST(Dump, BytesBehindTheEndOfATextAreNotLost)
{
    Bytes const bytes = ContainerBytes().tag(sample::author("ab").setU8(8 + 5, 0x77)).build();
    Json const author = fieldOf(dumpOf(bytes), "author");
    EXPECT_EQ(author["value"], "ab");
    EXPECT_EQ(author["hex"].get<std::string>().substr(0, 12), "616200000077");
}

TEST(Dump, LargeNumbersHaveTheirBytesForReadersThatKeepDoubles)
{
    Json const value = fieldOf(dumpOf(ContainerBytes().tag(sample::newRegister("r")).build()), "value");
    EXPECT_EQ(value["value"], 0x0123456789ABCDEFU);
    EXPECT_EQ(value["hex"], "efcdab8967452301");
}

TEST(Dump, NumberThatJsonHasNotIsNullWithItsBytes)
{
    Bytes param = sample::integerParam("p", 0);
    param.setU32(88, 0).setU32(92, 0x7FF80000); // a quiet NaN
    Json const value = fieldOf(dumpOf(ContainerBytes().tag(param).build()), "double value");
    EXPECT_TRUE(value["value"].is_null());
    EXPECT_EQ(value["hex"], "000000000000f87f");
}

TEST(Dump, FieldCutShortHasTheBytesThatAreThere)
{
    ProgramRun const run = runOn(ContainerBytes().tag(sample::destination(1).cut(11)).build(), "dump");
    Json const revision = fieldOf(run.json(), "revision");
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_EQ(revision["width"], 2);
    EXPECT_EQ(revision["present"], 1);
    EXPECT_EQ(revision["hex"], "01");
    EXPECT_FALSE(revision.contains("value"));
}

TEST(Dump, ProblemsOfATagAreNamed)
{
    ProgramRun const run = runOn(ContainerBytes().tag(sample::fpgaInfo().setU8(11, 7)).build(), "dump");
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_EQ(run.json()["tags"][0]["problems"],
              Json::parse(R"([{"field": "reserved", "offset": 11, "expected": "0", "found": "7"}])"));
}

TEST(Dump, ForeignFileIsShownAndRefused)
{
    ProgramRun const run = runOn(Bytes().chars("no container"), "dump", {"--payload"});
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_EQ(run.json()["walk"]["end"], "no container");
    EXPECT_EQ(bytesOfDump(run.json()), Bytes().chars("no container"));
    EXPECT_EQ(run.err,
              "zul: design.zul: not a design file: 12 bytes, the head of a container alone has 24\n");
}

} // namespace
