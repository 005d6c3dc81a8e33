#include "container_bytes.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

namespace {

TEST(ZulLoadBinding, SecondLibraryOfANameIsDroppedAndDoesNotCount)
{
    LoadedContainer loaded(ContainerBytes()
                               .tag(sample::library("camera", "first"))
                               .tag(sample::library("camera", "other bytes"))
                               .tag(sample::library("camera", "for another system", 517))
                               .tag(sample::library("Camera"))
                               .build());
    ASSERT_EQ(loaded.zul.getTagCount(0x8154000), 3U);
    EXPECT_EQ(static_cast<ZUL_dll*>(loaded.zul.getTagAt(0x8154000, 0))->getLibLength(), 5U);
}

TEST(ZulLoadBinding, LibrariesWithoutNameAreAllKept)
{
    LoadedContainer loaded(ContainerBytes().tag(sample::library("")).tag(sample::library("")).build());
    EXPECT_EQ(loaded.zul.getTagCount(0x8154000), 2U);
}

TEST(ZulLoadBinding, ConfigurationIsBoundToTheDestinationBeforeIt)
{
    LoadedContainer loaded(ContainerBytes()
                               .tag(sample::destination(1))
                               .tag(sample::destination(2, 0xB00, 7))
                               .config(sample::config(2))
                               .config(sample::config(3))
                               .build());
    EXPECT_EQ(loaded.zul.getConfigAt(0)->getDestination(), loaded.zul.getTagAt(0x8150099, 1));
    EXPECT_EQ(loaded.zul.getConfigAt(0)->getBoardType(), 0xB00);
    EXPECT_EQ(loaded.zul.getConfigAt(0)->getBoardRevision(), 7);
    EXPECT_EQ(loaded.zul.getConfigAt(1)->getDestination(), nullptr);
}

TEST(ZulLoadBinding, DestinationAfterItsConfigurationIsNotBound)
{
    LoadedContainer loaded(ContainerBytes().config(sample::config(1)).tag(sample::destination(1)).build());
    EXPECT_EQ(loaded.zul.getConfigAt(0)->getDestination(), nullptr);
}

TEST(ZulLoadBinding, OfSeveralDestinationsTheLastOneBeforeTheConfigurationIsBound)
{
    LoadedContainer loaded(ContainerBytes()
                               .tag(sample::destination(1, 0xA1))
                               .tag(sample::destination(1, 0xA2))
                               .config(sample::config(1))
                               .tag(sample::destination(1, 0xA3))
                               .config(sample::config(1))
                               .build());
    EXPECT_EQ(loaded.zul.getConfigAt(0)->getBoardType(), 0xA2);
    EXPECT_EQ(loaded.zul.getConfigAt(1)->getBoardType(), 0xA3);
}

TEST(ZulLoadBinding, WideConfigurationIndexHasNoDestination)
{
    LoadedContainer loaded(
        ContainerBytes().tag(sample::destination(1)).config(sample::config(0x101)).build());
    EXPECT_EQ(loaded.zul.getConfigAt(0)->getDestination(), nullptr);
    EXPECT_EQ(loaded.zul.getConfigAt(0)->getIndex(), 0x101U);
}

TEST(ZulLoadBinding, LoadedConfigurationGetsNoIdentifier)
{
    LoadedContainer loaded(ContainerBytes().config(sample::config(1)).build());
    EXPECT_EQ(loaded.zul.getConfigAt(0)->getId(), nullptr);
    EXPECT_EQ(loaded.zul.getTotalTagCount(), 0U);
}

TEST(ZulLoadBinding, PayloadsLieInTheBuffer)
{
    Bytes const bytes =
        ContainerBytes().tag(sample::library("camera", "bytes")).config(sample::config(1, "bits")).build();
    ZUL zul;
    ASSERT_EQ(zul.Load(bytes.data(), bytes.size()), 0);
    EXPECT_EQ(static_cast<ZUL_dll*>(zul.getTagAt(0x8154000, 0))->getLib(), bytes.data() + 24 + 96);
    EXPECT_EQ(zul.getConfigAt(0)->getData(), bytes.data() + 24 + 96 + 5 + 88);
}

} // namespace
