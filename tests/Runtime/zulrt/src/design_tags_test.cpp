#include "design_tags.h"

#include "zullib.h"

#include <gtest/gtest.h>

namespace {

/// Somebody's own class under an id of the format.
class OwnModule : public ZUL_comment {
public:
    using ZUL_comment::ZUL_comment;
    std::uint32_t getTagId() const override { return ZUL_module::tag_id; }
};

TEST(DesignTags, LeaveOutWhatIsNotOfTheFormatsClass)
{
    ZUL zul;
    auto* const module = new ZUL_module(&zul, nullptr);
    zul.AddTag(new OwnModule(&zul));
    zul.AddTag(module);
    DesignTags const tags(zul);
    ASSERT_EQ(tags.modules.size(), 1U);
    EXPECT_EQ(tags.modules.at(0), module);
}

} // namespace
