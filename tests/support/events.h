#pragma once

#include "ZUL_event.h"
#include "ZUL_register.h"
#include "bytes.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

/// Events as bytes and as tags. Included by the tests of events only.
namespace events {

constexpr std::uint32_t eventId = 0x08156576;

inline ZUL* const noContainer = nullptr;

inline Bytes eventBytes(std::string const& name = "overflow", std::string const& registerName = "ev_status")
{
    return Bytes()
        .u32(0x08156576)
        .u32(static_cast<std::uint32_t>(16 + name.size() + registerName.size()))
        .u8(3)  // uiq
        .u8(17) // bit
        .u8(4)  // data length
        .u8(name.size())
        .u32(registerName.size())
        .chars(name)
        .chars(registerName);
}

inline ZUL_register* addRegister(ZUL& zul, char const* name)
{
    auto* const reg = new ZUL_register(&zul, name, false);
    zul.AddTag(reg);
    return reg;
}

/// A container with the register that eventBytes() names.
class EventTag : public testing::Test {
protected:
    ZUL_event emptyEvent() { return {&m_zul, 0, 0, 0}; }
    ZUL_event loaded(Bytes const& bytes)
    {
        ZUL_event event(&m_zul, 0, 0, 0);
        EXPECT_EQ(loadFrom(event, bytes), bytes.size());
        return event;
    }

    ZUL m_zul;
    ZUL_register* m_register = addRegister(m_zul, "ev_status");
};

/// What an action throws.
template <class Error>
std::string thrown(std::function<void()> const& action)
{
    try {
        action();
    } catch (Error const& error) {
        return error.what();
    }
    return "nothing thrown";
}

} // namespace events
