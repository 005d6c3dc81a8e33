#include "program_run.h"
#include "sample_tags.h"
#include "sanitized.h"

#include <gtest/gtest.h>

#include <array>

namespace {

constexpr std::array verbs{"info", "ls", "tree", "regs", "dump", "hex", "check"};

/// Verbs write one JSON value and say by their code that the file is clean, has findings or is damaged: those to try at
/// that place.
void expectHonestAnswers(Bytes const& bytes, std::size_t place, std::string const& what)
{
    DesignFile const file(bytes);
    for (char const* const verb : valuesToTry(verbs, place)) {
        ProgramRun const run = runZul({verb, "--json", file.path()});
        EXPECT_TRUE(run.code == ExitCode::Clean || run.code == ExitCode::Finding ||
                    run.code == ExitCode::Damaged)
            << verb << ' ' << what << ' ' << run.err;
        EXPECT_TRUE(nlohmann::ordered_json::accept(run.out)) << verb << ' ' << what;
    }
}

TEST(HostileFiles, Truncations)
{
    Bytes const whole = sample::everyKind();
    std::size_t place = 0;
    for (std::size_t size = 0; size < whole.size(); size += size < 200 ? 1 : 13) {
        expectHonestAnswers(Bytes(whole).cut(size), place++, "cut to " + std::to_string(size));
    }
}

TEST(HostileFiles, ChangedBytes)
{
    constexpr std::size_t step = 7;
    Bytes const whole = sample::everyKind();
    for (std::size_t offset = 0; offset < whole.size(); offset += step) {
        expectHonestAnswers(Bytes(whole).setU8(offset, 0xFF), offset / step,
                            "byte " + std::to_string(offset));
    }
}

TEST(HostileFiles, HugeNumbers)
{
    constexpr std::size_t step = 12;
    Bytes const whole = sample::everyKind();
    for (std::size_t offset = 0; offset + 4 <= whole.size(); offset += step) {
        expectHonestAnswers(Bytes(whole).setU32(offset, 0xFFFFFFF0), offset / step,
                            "word " + std::to_string(offset));
    }
}

TEST(HostileFiles, TextsOfAnyBytes)
{
    Bytes bytes = sample::everyKind();
    for (std::size_t offset = 24; offset < bytes.size(); ++offset) {
        auto& byte = bytes.data()[offset];
        if (byte >= std::byte{'a'} && byte <= std::byte{'z'}) {
            byte |= std::byte{0x80};
        }
    }
    for (std::size_t place = 0; place < verbs.size(); ++place) {
        expectHonestAnswers(bytes, place, "no UTF-8");
    }
}

} // namespace
