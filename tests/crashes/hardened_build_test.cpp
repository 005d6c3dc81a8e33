#include "elf_file.h"
#include "sanitized.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

namespace {

using testing::Contains;
using testing::EndsWith;

/// What is installed: the library that hosts load, and the program.
class HardenedBuild : public testing::TestWithParam<char const*> {
protected:
    ElfFile const file = ElfFile(GetParam());
};

TEST_P(HardenedBuild, IsPlacedAnywhere)
{
    EXPECT_EQ(file.header().e_type, ET_DYN);
}

TEST_P(HardenedBuild, BindsEverySymbolAtOnceAndMakesTheTablesReadOnly)
{
    EXPECT_TRUE(file.hasSegment(PT_GNU_RELRO));
    EXPECT_NE(file.dynamic(DT_FLAGS) & DF_BIND_NOW, 0U);
    EXPECT_NE(file.dynamic(DT_FLAGS_1) & DF_1_NOW, 0U);
}

TEST_P(HardenedBuild, ExecutesNothingThatCanBeWritten)
{
    EXPECT_TRUE(file.hasSegment(PT_GNU_STACK)) << "without it the stack is executable";
    for (Elf64_Phdr const& segment : file.segments()) {
        EXPECT_NE(segment.p_flags & (PF_W | PF_X), unsigned{PF_W | PF_X}) << "of type " << segment.p_type;
    }
}

TEST_P(HardenedBuild, NoticesAnOverwrittenStack)
{
    EXPECT_THAT(file.imports(), Contains("__stack_chk_fail"));
}

#if ZUL_FORTIFIED
TEST_P(HardenedBuild, ChecksTheLengthsOfCopies)
{
    EXPECT_THAT(file.imports(), Contains(EndsWith("_chk")));
}
#endif

INSTANTIATE_TEST_SUITE_P(WhatIsInstalled, HardenedBuild, testing::Values(ZUL_RUNTIME_LIBRARY, ZUL_PROGRAM),
                         [](auto const& file) { return file.index == 0 ? "Library" : "Program"; });

#ifdef __x86_64__

TEST(HardenedLibrary, MarksEveryExportedFunctionAsAPlaceToJumpTo)
{
    constexpr std::string_view endbr64 = "\xF3\x0F\x1E\xFA";
    std::size_t const lengthOfEntry = isSanitized ? 12 : 4; // a sanitizer jumps over 8 bytes of its own first
    ElfFile const file(ZUL_RUNTIME_LIBRARY);
    int functions = 0;
    for (Elf64_Sym const& symbol : file.symbols()) {
        if (symbol.st_shndx != SHN_UNDEF && ELF64_ST_TYPE(symbol.st_info) == STT_FUNC) {
            std::string_view const entry = file.code(symbol).substr(0, lengthOfEntry);
            EXPECT_NE(entry.find(endbr64), std::string_view::npos) << file.name(symbol);
            ++functions;
        }
    }
    EXPECT_GT(functions, 70);
}

#endif

} // namespace
