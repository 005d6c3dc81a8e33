#include "kova/templates/platform/invariant.h"

#include <csignal>
#include <gtest/gtest.h>

namespace {

using kova::templates::platform::checkInvariant;
using kova::templates::platform::invariantsAreChecked;

TEST(Invariant, IsCheckedExactlyInBuildsWithoutNdebug)
{
#ifdef NDEBUG
    EXPECT_FALSE(invariantsAreChecked());
#else
    EXPECT_TRUE(invariantsAreChecked());
#endif
}

TEST(Invariant, ThatHoldsDoesNothing)
{
    checkInvariant(true, "index < count", "some/folder/source", 17);
}

TEST(Invariant, ThatIsBrokenEndsTheProcessWithPlaceLineAndText)
{
    if (invariantsAreChecked()) {
        EXPECT_EXIT(checkInvariant(false, "index < count", "some/folder/source", 17),
                    testing::KilledBySignal(SIGABRT),
                    "^some/folder/source:17: Assertion `index < count' failed\\.\n");
    } else {
        checkInvariant(false, "index < count", "some/folder/source", 17);
    }
}

} // namespace
