#include "container_bytes.h"
#include "merging.h"
#include "sample_tags.h"

namespace {

using namespace merging;

TEST(SelfMerge, DoublesTheContainer)
{
    LoadedContainer loaded(ContainerBytes()
                               .tag(sample::author())
                               .tag(sample::process(2, "acquisition"))
                               .tag(sample::module(4, 2))
                               .tag(sample::integerParam("width", 4))
                               .tag(sample::userInfo("__ZUL_ID__", "4711"))
                               .tag(sample::destination(1))
                               .config(sample::config(1))
                               .build());
    ZUL& zul = loaded.zul;
    zul += zul;
    Bytes const doubled = ContainerBytes()
                              .tag(sample::author())
                              .tag(sample::process(2, "acquisition"))
                              .tag(sample::module(4, 2))
                              .tag(sample::integerParam("width", 4))
                              .tag(sample::destination(1))
                              .tag(sample::process(3, "acquisition"))
                              .tag(sample::module(5, 3))
                              .tag(sample::integerParam("width", 5))
                              .tag(sample::destination(1))
                              .tag(sample::userInfo("__ZUL_ID__", "__INVALID_ZUL_ID__"))
                              .config(sample::config(1))
                              .config(sample::config(1))
                              .build();
    EXPECT_EQ(savedContainer(zul), doubled);
    EXPECT_EQ(zul.getConfigAt(1)->getDestination(), tagOf<ZUL_destination>(zul, 1));
}

TEST(SelfMerge, IsRefusedForRegistersAndForEvents)
{
    LoadedContainer withRegister(ContainerBytes().tag(sample::oldRegister("r")).build());
    ZUL const& same = withRegister.zul;
    EXPECT_TRUE(
        refuses<ZUL_file_duplicate_tag>([&] { withRegister.zul += same; }, "duplicate tag found", 0x8151000));
    ZUL withEvent;
    ZUL const& sameEvent = withEvent;
    fileEvent(withEvent, 1, 2);
    EXPECT_TRUE(refuses([&] { withEvent += sameEvent; },
                        "Tried to add a ZUL_event with already used UIQ and bit", 0x8156576));
}

} // namespace
