#include "ZUL_design_version.h"
#include "bytes.h"
#include "coverage.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;

TEST(DesignVersionTag, NumberBecomesLowerCaseHexadecimalWithoutPadding)
{
    ZUL_design_version version(noContainer);
    version.setVersion(0x1A2BU);
    EXPECT_STREQ(version.getVersion(), "1a2b");
    version.setVersion(0U);
    EXPECT_STREQ(version.getVersion(), "0");
    version.setVersion(10U);
    EXPECT_STREQ(version.getVersion(), "a");
    version.setVersion(0xFFFFFFFFU);
    EXPECT_STREQ(version.getVersion(), "ffffffff");
    EXPECT_EQ(savedBytes(version, 0xA5), Bytes().u32(0x8156000).u32(72).text("ffffffff", 64));
}

TEST(DesignVersionTag, FieldIsNamed)
{
    ZUL_design_version version(noContainer);
    Bytes const bytes = Bytes().u32(0x8156000).u32(72).text("4.2", 64);
    EXPECT_STREQ(visited(version, bytes).at(8).name, "version");
}

} // namespace
