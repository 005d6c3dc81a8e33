#pragma once

#include "ZUL_register.h"
#include "bytes.h"
#include "loading.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

/// Registers of both layouts, as bytes and as tags. Included by the tests of registers only.
namespace registers {

constexpr std::uint32_t oldId = 0x08151000;
constexpr std::uint32_t newId = 0x08151002;

inline ZUL* const noContainer = nullptr;

inline Bytes oldRegister()
{
    return Bytes()
        .u32(0x08151000)
        .u32(104)
        .u32(2)          // access
        .u32(0x00012340) // address
        .u32(0x89ABCDEF) // value
        .u32(1)          // writable
        .u32(3)          // lsb
        .u32(32)         // msb
        .text("dma_ctrl", 64)
        .zeros(8);
}

inline Bytes newRegister()
{
    return Bytes()
        .u32(0x08151002)
        .u32(32 + 8)
        .u8(2)                   // access
        .u8(1)                   // writable
        .u8(3)                   // lsb
        .u8(60)                  // msb
        .u32(0x00012340)         // address
        .u64(0x0123456789ABCDEF) // value
        .u32(8)                  // name length
        .u32(0)
        .chars("dma_ctrl");
}

inline ZUL_register emptyRegister()
{
    return {noContainer, nullptr, false};
}

inline ZUL_register loaded(Bytes const& bytes)
{
    ZUL_register reg = emptyRegister();
    EXPECT_EQ(loadFrom(reg, bytes), bytes.size());
    return reg;
}

/// Everything but the name, in one line.
inline std::string values(ZUL_register const& reg)
{
    return "address " + std::to_string(reg.getAddress()) + " msb " + std::to_string(reg.getMSB()) + " lsb " +
           std::to_string(reg.getLSB()) + (reg.isReadOnly() ? " read-only" : " writable") + " access " +
           std::to_string(reg.getType()) + " value " + std::to_string(reg.getCache()) + " id " +
           std::to_string(reg.getTagId() - oldId);
}

} // namespace registers
