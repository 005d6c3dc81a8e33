#pragma once

#include "ZUL_param.h"
#include "modules.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>

constexpr QL_ParamType numbered(std::uint32_t type)
{
    return QL_ParamType{type};
}

inline constexpr auto elements = std::to_array<std::uint64_t>({0xFFFFFFFFFFFFFFFF, 0, 0x0123456789ABCDEF});

/// Parameters of a module that is in a container.
class Param : public Modules {
protected:
    ZUL_param of(std::uint32_t type) { return {&zul, numbered(type), module}; }

    ZUL_param field(std::uint32_t type)
    {
        ZUL_param parameter = of(type);
        setElements(parameter);
        return parameter;
    }

    static void setElements(ZUL_param& parameter)
    {
        bool const doubles = parameter.getType() == QL_DOUBLEFIELD;
        parameter.setField(elements.data(), doubles ? ZUL_param::FIELD_DOUBLE : ZUL_param::FIELD_INTEGER, 3);
    }

    static void expectElements(ZUL_param const& parameter)
    {
        EXPECT_EQ(parameter.getFieldSize(), 3U);
        EXPECT_EQ(parameter.b_fieldlen(), 24U);
        ASSERT_NE(parameter.getField(), nullptr);
        EXPECT_EQ(std::memcmp(parameter.getField(), elements.data(), 24), 0);
    }

    static void expectNoValue(ZUL_param const& parameter)
    {
        EXPECT_EQ(parameter.getValue(), 0U);
        EXPECT_EQ(parameter.getParamString(), nullptr);
        EXPECT_EQ(parameter.getField(), nullptr);
        if (parameter.getType() == 5) {
            EXPECT_EQ(parameter.getValueDouble(), 0.0);
        } else {
            EXPECT_TRUE(std::isnan(parameter.getValueDouble()));
        }
    }
};
