#include "ZUL_design_name.h"
#include "bytes.h"
#include "coverage.h"

#include <gtest/gtest.h>

namespace {

TEST(DesignNameTag, FieldIsNamed)
{
    ZUL_design_name name(static_cast<ZUL*>(nullptr));
    Bytes const bytes = Bytes().u32(0x8155000).u32(72).text("Acq_DualLine", 64);
    VisitRecord const record = visited(name, bytes);
    EXPECT_STREQ(record.at(8).name, "name");
    EXPECT_EQ(record.at(8).kind, FieldKind::Text);
}

} // namespace
