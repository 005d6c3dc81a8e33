#include "program_run.h"
#include "sample_tags.h"
#include "sanitized.h"

#include <gtest/gtest.h>

#include <array>

namespace {

constexpr std::array verbs{"info", "ls", "tree", "regs", "dump", "hex", "check"};

/// Every verb writes one JSON value and says by its code that the file is clean, has findings or is damaged.
void expectHonestAnswers(Bytes const& bytes, std::string const& what)
{
    DesignFile const file(bytes);
    for (char const* const verb : verbs) {
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
    for (std::size_t size = 0; size < whole.size(); size += size < 200 ? 1 : 13) {
        expectHonestAnswers(Bytes(whole).cut(size), "cut to " + std::to_string(size));
    }
}

TEST(HostileFiles, ChangedBytes)
{
    Bytes const whole = sample::everyKind();
    for (std::size_t offset = 0; offset < whole.size(); offset += isSanitized ? 21 : 7) {
        expectHonestAnswers(Bytes(whole).setU8(offset, 0xFF), "byte " + std::to_string(offset));
    }
}

TEST(HostileFiles, HugeNumbers)
{
    Bytes const whole = sample::everyKind();
    for (std::size_t offset = 0; offset + 4 <= whole.size(); offset += isSanitized ? 36 : 12) {
        expectHonestAnswers(Bytes(whole).setU32(offset, 0xFFFFFFF0), "word " + std::to_string(offset));
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
    expectHonestAnswers(bytes, "no UTF-8");
}

} // namespace
