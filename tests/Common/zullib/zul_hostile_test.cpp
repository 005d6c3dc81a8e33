#include "captured_output.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

namespace {

constexpr ZULLoadMode otherMode{2};

/// What a program may do with a container whose bytes it did not make. A tag that cannot be saved says so.
void use(ZUL& zul)
{
    for (unsigned number = 1; number <= 3; ++number) {
        if (ZUL_register const* const reg = zul.getRegisterAt(number)) {
            zul.findRegister(reg->getName());
        }
    }
    zul.getConfig(1, 0xA441);
    zul.getMaxConfigIndex();
    zul.getHighestModuleId();
    try {
        Bytes const saved = savedContainer(zul);
        EXPECT_EQ(savedContainer(zul), saved);
        ZUL copy(zul);
        EXPECT_EQ(copy.getTotalTagCount(), zul.getTotalTagCount());
        copy.removeTags(ZUL_module::tag_id);
        copy.removeTags(ZUL_multi_data::tag_id);
    } catch (std::runtime_error const&) {
    }
}

/// Loads a copy that ends where the bytes end, in every mode: a result of the rules or an error of the family.
void expectHarmless(Bytes const& bytes)
{
    std::vector<std::byte> const exact(bytes.data(), bytes.data() + bytes.size());
    for (ZULLoadMode const mode : {ZUL_LOAD_STRICT, ZUL_LOAD_TOLERANT, otherMode}) {
        ZUL zul;
        zul.setLoadMode(mode);
        int result = -22;
        try {
            result = zul.Load(exact.data(), exact.size());
        } catch (ZUL_runtime_error const&) {
            EXPECT_TRUE(mode != ZUL_LOAD_TOLERANT || zul.getTotalTagCount() == 0)
                << "only the head may throw then";
        }
        EXPECT_TRUE(result == 0 || result == -22) << result;
        if (result == 0) {
            use(zul);
        }
    }
}

class HostileContainer : public testing::Test {
protected:
    CapturedOutput quiet; // every error prints two lines
    Bytes const honest = sample::everyKind();
};

TEST_F(HostileContainer, HonestOneLoadsInEveryMode)
{
    for (ZULLoadMode const mode : {ZUL_LOAD_STRICT, ZUL_LOAD_TOLERANT, otherMode}) {
        ZUL zul;
        zul.setLoadMode(mode);
        EXPECT_EQ(zul.Load(honest.data(), honest.size()), 0);
    }
}

TEST_F(HostileContainer, CutAnywhereIsHarmless)
{
    for (std::size_t size = 0; size < honest.size(); ++size) {
        SCOPED_TRACE(size);
        expectHarmless(Bytes(honest).cut(size));
    }
}

TEST_F(HostileContainer, EveryByteAtItsBoundariesIsHarmless)
{
    for (std::size_t offset = 0; offset < honest.size(); ++offset) {
        for (unsigned const value : {0x00U, 0x01U, 0x7FU, 0x80U, 0xFFU}) {
            SCOPED_TRACE(testing::Message() << "byte " << offset << " is " << value);
            expectHarmless(Bytes(honest).setU8(offset, value));
        }
    }
}

TEST_F(HostileContainer, EveryWordAtItsBoundariesIsHarmless)
{
    auto const size = static_cast<std::uint32_t>(honest.size());
    for (std::uint32_t offset = 0; offset + 4 <= size; offset += 4) {
        for (std::uint32_t const value :
             {0U, 1U, 7U, 8U, 9U, 0x7FU, 0x80U, 0xFFU, 0xFFFFU, 0x10000U, size - offset, size, 0x7FFFFFFFU,
              0x80000000U, 0xFFFFFFF8U, 0xFFFFFFFFU}) {
            SCOPED_TRACE(testing::Message() << "word " << offset << " is " << value);
            expectHarmless(Bytes(honest).setU32(offset, value));
        }
    }
}

} // namespace
