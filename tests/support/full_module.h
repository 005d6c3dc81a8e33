#pragma once

#include "loading.h"
#include "modules.h"

/// @param fill stands where saving leaves the buffer as it is
inline Bytes moduleBytes(std::uint32_t processId = 3, unsigned fill = 0)
{
    return Bytes()
        .u32(0x08157000)
        .u32(120 + 7 + 5 + 9)
        .u32(0xFFFFFFFB) // module index -5
        .u16(7)          // type length
        .u16(5)          // instance length
        .u16(9)          // full name length
        .fill(fill, 6)
        .u32(11) // parameter count
        .u32(12) // channel count
        .u32(processId)
        .text("acquisition", 64)
        .fill(fill, 20)
        .charsZ("Buffer")
        .charsZ("buf0")
        .charsZ("acq\\buf0");
}

/// Without texts, of a module with index -1.
inline Bytes bareModuleBytes(std::uint32_t length = 120)
{
    return Bytes()
        .u32(0x08157000)
        .u32(length)
        .u32(0xFFFFFFFF)
        .zeros(6) // no texts
        .zeros(6)
        .zeros(8) // counts
        .u32(3)
        .text("acquisition", 64)
        .zeros(20);
}

class Module : public Modules {
protected:
    ZUL_module empty() { return {&zul, nullptr}; }

    ZUL_module loaded(Bytes const& bytes = moduleBytes())
    {
        ZUL_module tag = empty();
        EXPECT_EQ(loadFrom(tag, bytes), bytes.size());
        return tag;
    }

    /// Everything that moduleBytes() says but the counts.
    void expectFull(ZUL_module const& tag) const
    {
        EXPECT_EQ(tag.getIndex(), -5);
        EXPECT_STREQ(tag.getType(), "Buffer");
        EXPECT_STREQ(tag.getInstance(), "buf0");
        EXPECT_STREQ(tag.getFullName(), "acq\\buf0");
        EXPECT_EQ(tag.getProcess(), process);
    }
};
