#include "container_bytes.h"
#include "program_run.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

namespace {

bool contains(std::string const& text, std::string const& part)
{
    return text.find(part) != std::string::npos;
}

TEST(Hex, GoldenOutput)
{
    ProgramRun const run =
        runOn(ContainerBytes().tag(sample::destination(3)).build().append(Bytes().chars("ab")), "hex");
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(
        run.out,
        "head at 0x0: container head, 24 bytes\n"
        "  00000000  4d 56 4f 4b                                      |MVOK|              tag id = "
        "0x4b4f564d\n"
        "  00000004  18 00 00 00                                      |....|              length = 24 "
        "(0x18)\n"
        "  00000008  01 00 00 00                                      |....|              tag count = 1\n"
        "  0000000c  00 00 00 00                                      |....|              config count = 0\n"
        "  00000010  01 00 00 00                                      |....|              version = 1\n"
        "  00000014  00 00 00 00                                      |....|              destination = 0\n"
        "tag 0 at 0x18: destination (0x8150099), 16 bytes\n"
        "  00000018  99 00 15 08                                      |....|              tag id = "
        "0x8150099\n"
        "  0000001c  10 00 00 00                                      |....|              length = 16 "
        "(0x10)\n"
        "  00000020  44 0a                                            |D.|                board = 2628 "
        "(0xa44)\n"
        "  00000022  01 00                                            |..|                revision = 1\n"
        "  00000024  03                                               |.|                 index = 3\n"
        "  00000025  00 00 00                                         |...|               reserved: written "
        "as 0, "
        "not read\n"
        "behind the last tag at 0x28: 2 bytes\n"
        "  00000028  61 62                                            |ab|                not read by a "
        "load\n");
}

TEST(Hex, OneTagOrTheHead)
{
    ProgramRun const tag = runOn(sample::everyKind(), "hex", {"1"});
    EXPECT_EQ(tag.out.substr(0, tag.out.find('\n')), "tag 1 at 0x60: author (0x8150070), 72 bytes");
    EXPECT_FALSE(contains(tag.out, "tag 2"));
    ProgramRun const head = runOn(sample::everyKind(), "hex", {"head"});
    EXPECT_EQ(head.out.substr(0, head.out.find('\n')), "head at 0x0: container head, 24 bytes");
    EXPECT_FALSE(contains(head.out, "tag 0"));
}

TEST(Hex, TagThatIsNotThereIsNotFound)
{
    for (std::string const index : {"29", "18446744073709551616"}) {
        ProgramRun const run = runOn(sample::everyKind(), "hex", {index});
        EXPECT_EQ(run.code, ExitCode::NotFound);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "zul: no tag " + index + ": there are 29 tags\n");
    }
}

TEST(Hex, TagThatIsNoNumberIsAMistakeOfTheUser)
{
    for (std::string const index : {"tail", "1x", "0x1"}) {
        ProgramRun const run = runOn(sample::everyKind(), "hex", {index});
        EXPECT_EQ(run.code, ExitCode::Usage);
        EXPECT_EQ(run.err, "zul: TAG is 'head' or the index of a tag, not '" + index + "'\n");
    }
}

TEST(Hex, LongFieldsAreFolded)
{
    Bytes const bytes = ContainerBytes().config(sample::config(1, std::string(65, 'b'))).build();
    ProgramRun const folded = runOn(bytes, "hex", {"0"});
    EXPECT_TRUE(contains(folded.out, "|  bitstream = 65 bytes\n"));
    EXPECT_TRUE(contains(folded.out, "  ...       33 more bytes, shown with --full\n"));
    ProgramRun const full = runOn(bytes, "hex", {"0", "--full"});
    EXPECT_FALSE(contains(full.out, "--full"));
    EXPECT_TRUE(contains(full.out, "  000000b0  62 "));
    Bytes const shorter = ContainerBytes().config(sample::config(1, std::string(64, 'b'))).build();
    EXPECT_FALSE(contains(runOn(shorter, "hex", {"0"}).out, "--full"));
}

TEST(Hex, GapsAndReservedBytesAreMarked)
{
    Bytes const bytes = ContainerBytes().tag(sample::fpgaInfo().setU32(4, 14).u16(0x4142)).build(8);
    ProgramRun const run = runOn(bytes, "hex", {"0"});
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_TRUE(contains(run.out, "reserved: must be 0\n"));
    EXPECT_TRUE(contains(run.out,
                         "42 41                                            |BA|                gap: 2 bytes "
                         "of no field\n"));
    EXPECT_TRUE(
        contains(runOn(sample::everyKind(), "hex", {"7"}).out, "reserved: neither written nor read\n"));
}

TEST(Hex, FieldsCutShortAreMarked)
{
    ProgramRun const run = runOn(ContainerBytes().tag(sample::destination(1).cut(11)).build(), "hex");
    EXPECT_TRUE(contains(run.out, "revision: cut short, 1 of 2 bytes\n"));
    EXPECT_TRUE(contains(run.out, "index: cut short, 0 of 1 byte\n"));
}

TEST(Hex, ForeignFileIsShown)
{
    ProgramRun const run = runOn(Bytes().chars("no container"), "hex");
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_TRUE(contains(run.out, "6e 6f 20 63"));
    EXPECT_TRUE(contains(run.out, "tag id = 0x63206f6e"));
}

TEST(Hex, DamageElsewhereDoesNotConcernOneTag)
{
    Bytes const bytes = ContainerBytes().tag(sample::author()).tag(sample::fpgaInfo().setU8(11, 1)).build();
    EXPECT_EQ(runOn(bytes, "hex", {"0"}).code, ExitCode::Clean);
    EXPECT_EQ(runOn(bytes, "hex", {"1"}).code, ExitCode::Damaged);
}

TEST(Hex, LongTextsAreCutInTheAnnotation)
{
    Bytes const bytes = ContainerBytes().tag(sample::newRegister(std::string(81, 'n'))).build();
    EXPECT_TRUE(contains(runOn(bytes, "hex", {"0"}).out, "name = '" + std::string(80, 'n') + "'...\n"));
    EXPECT_TRUE(
        contains(runOn(bytes, "hex", {"0", "--full"}).out, "name = '" + std::string(81, 'n') + "'\n"));
}

TEST(Hex, JsonNamesTheOwnerOfEveryByte)
{
    Bytes const bytes = sample::everyKind();
    auto const json = runOn(bytes, "hex", {"--json", "--full"}).json();
    EXPECT_EQ(json["schema"], "zul-hex");
    std::string hex;
    for (auto const& range : json["ranges"]) {
        EXPECT_EQ(range["offset"], hex.size() / 2);
        hex += range["hex"].get<std::string>();
    }
    EXPECT_EQ(hex.size(), 2 * bytes.size());
    EXPECT_EQ(json["ranges"][6]["tag"], "0");
    EXPECT_EQ(json["ranges"][6]["name"], "tag id");
}

TEST(Hex, JsonOfALongFieldIsADigestUnlessFull)
{
    Bytes const bytes = ContainerBytes().config(sample::config(1, std::string(65, 'a'))).build();
    auto const last = runOn(bytes, "hex", {"0", "--json"}).json()["ranges"].back();
    EXPECT_EQ(last["sha256"], "635361c48bb9eab14198e76ea8ab7f1a41685d6ad62aa9146d301d4f17eb0ae0");
    EXPECT_FALSE(last.contains("hex"));
}

} // namespace
