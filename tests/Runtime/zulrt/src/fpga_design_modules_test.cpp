#include "designs.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using designs::Loaded;
using designs::module;
using designs::paramLink;

ContainerBytes withProcess()
{
    return ContainerBytes().tag(sample::process(0, "acquisition"));
}

std::vector<std::string> paramsOf(fpga_design const& design, unsigned module)
{
    std::vector<std::string> names;
    for (int i = 0; i < design.GetNrOfParams(module); ++i) {
        names.emplace_back(design.GetParamName(module, static_cast<unsigned>(i)));
    }
    return names;
}

using Names = std::vector<std::string>;

// Which parameters and channels a module has.

TEST(DesignModules, AreOneForEachModuleTagInOrder)
{
    Loaded design(withProcess().tag(module(7, "b")).tag(module(3, "a")));
    fpga_design const& d = *design;
    ASSERT_EQ(d.GetNrOfModules(), 2U);
    for (unsigned i : {0U, 1U}) {
        zul_module_ext const* const extension = d.GetModuleByNumber(i);
        ASSERT_NE(extension, nullptr);
        EXPECT_EQ(extension->GetModuleIndex(), static_cast<int>(i)) << "its position, not what the tag says";
        EXPECT_EQ(extension->GetProcessId(), 0U);
    }
    EXPECT_EQ(d.GetModuleByNumber(0)->getModule()->getIndex(), 7);
    EXPECT_EQ(d.GetModuleByNumber(1)->getModule()->getIndex(), 3);
    EXPECT_EQ(d.GetModuleByNumber(2), nullptr);
}

TEST(DesignModules, HaveTheParametersWithTheirIndexInOrder)
{
    Loaded design(withProcess()
                      .tag(module(7, "b"))
                      .tag(module(3, "a"))
                      .tag(sample::integerParam("of a", 3))
                      .tag(sample::integerParam("of b", 7))
                      .tag(sample::integerParam("of a too", 3)));
    EXPECT_EQ(paramsOf(*design, 0), Names{"of b"});
    EXPECT_EQ(paramsOf(*design, 1), (Names{"of a", "of a too"}));
    EXPECT_EQ(design->GetAbsolutParamIndex(0, 0), 1);
    EXPECT_EQ(design->GetAbsolutParamIndex(1, 0), 0);
    EXPECT_EQ(design->GetAbsolutParamIndex(1, 1), 2);
}

TEST(DesignModules, HaveTheChannelsWithTheirIndexInOrder)
{
    Loaded design(withProcess()
                      .tag(module(7, "b"))
                      .tag(module(3, "a"))
                      .tag(sample::channel("of a", 3))
                      .tag(sample::channel("of b", 7))
                      .tag(sample::channel("of a too", 3)));
    zul_module_ext const& b = *design->GetModuleByNumber(0);
    zul_module_ext const& a = *design->GetModuleByNumber(1);
    ASSERT_EQ(b.GetNrOfChannel(), 1U);
    ASSERT_EQ(a.GetNrOfChannel(), 2U);
    EXPECT_STREQ(b.GetChannel(0)->name, "of b");
    EXPECT_STREQ(a.GetChannel(0)->name, "of a");
    EXPECT_STREQ(a.GetChannel(1)->name, "of a too");
}

TEST(DesignModules, WithOneIndexHaveTheSameParametersAndChannels)
{
    Loaded design(withProcess()
                      .tag(module(7, "first"))
                      .tag(module(8, "between"))
                      .tag(module(7, "second"))
                      .tag(sample::integerParam("width", 7))
                      .tag(sample::integerParam("gain", 8))
                      .tag(sample::integerParam("height", 7))
                      .tag(sample::channel("link0", 7)));
    for (unsigned const i : {0U, 2U}) {
        EXPECT_EQ(paramsOf(*design, i), (Names{"width", "height"}));
        EXPECT_EQ(design->GetAbsolutParamIndex(i, 1), 2);
        EXPECT_EQ(design->GetRelativeParamIndex(i, 2), 1);
        EXPECT_EQ(design->GetModuleByNumber(i)->GetNrOfChannel(), 1U);
        EXPECT_EQ(design->GetModuleByNumber(i)->GetModuleIndex(), static_cast<int>(i));
    }
    EXPECT_EQ(paramsOf(*design, 1), Names{"gain"});
    EXPECT_STREQ(design->GetModuleFullName(2), "second");
}

TEST(DesignModules, WithTheLargestIndexAreModulesLikeOthers)
{
    Loaded design(withProcess()
                      .tag(module(0xFFFFFFFF, "last"))
                      .tag(module(0x80000000, "first"))
                      .tag(sample::integerParam("width", 0xFFFFFFFF))
                      .tag(sample::integerParam("height", 0x80000000)));
    EXPECT_EQ(paramsOf(*design, 0), Names{"width"});
    EXPECT_EQ(paramsOf(*design, 1), Names{"height"});
}

TEST(DesignModules, AreEvaluatedAnewWithTheSameResult)
{
    Loaded design(designs::rich());
    EXPECT_EQ(design->EvaluateModuleData(), 0);
    EXPECT_EQ(paramsOf(*design, 0), (Names{"width", "height", "label"}));
    EXPECT_EQ(paramsOf(*design, 1), (Names{"order", "gain", "taps"}));
    EXPECT_EQ(design->GetRelativeParamIndex(1, 4), 2);
    EXPECT_EQ(design->GetModuleDllName(0), nullptr) << "libraries are named by another step";
    design->ScanDllDir();
    EXPECT_STREQ(design->GetModuleDllName(0), "libCamera.dylib");
}

// What the records of the C interface hold.

TEST(DesignModules, ShowParametersAsRecords)
{
    Loaded design(designs::rich());
    zul_param const* const width = ZulModuleGetParam(design->GetModuleByNumber(0), 0);
    ASSERT_NE(width, nullptr);
    EXPECT_EQ(width->reserved, 0U);
    EXPECT_EQ(width->module_index, 10U);
    EXPECT_EQ(width->param_index, 0);
    EXPECT_STREQ(width->name, "width");
    EXPECT_EQ(width->value, 2048U);
    EXPECT_TRUE(std::isnan(width->double_value));
    EXPECT_EQ(width->flags, 7U);
    EXPECT_EQ(width->type, 2U);
    EXPECT_EQ(width->field_size, 0U);
    EXPECT_EQ(width->field, nullptr);
    EXPECT_EQ(width->param_string, nullptr);
    EXPECT_EQ(width->string_length, 0U);

    zul_param const* const label = ZulModuleGetParam(design->GetModuleByNumber(0), 2);
    EXPECT_EQ(label->param_index, 5);
    EXPECT_EQ(label->type, 13U);
    EXPECT_STREQ(label->param_string, "left");
    EXPECT_EQ(label->string_length, 4U);

    zul_param const* const gain = ZulModuleGetParam(design->GetModuleByNumber(1), 1);
    EXPECT_EQ(gain->type, 5U);
    EXPECT_EQ(gain->double_value, 2.5);
    EXPECT_EQ(gain->value, 0U);

    zul_param const* const taps = ZulModuleGetParam(design->GetModuleByNumber(1), 2);
    EXPECT_EQ(taps->type, 6U);
    EXPECT_EQ(taps->field_size, 3U);
    ASSERT_NE(taps->field, nullptr);
    EXPECT_EQ(taps->field_again, taps->field);
    Bytes const elements = Bytes().u64(1).u64(2).u64(3);
    EXPECT_EQ(std::memcmp(taps->field, elements.data(), elements.size()), 0);
}

TEST(DesignModules, ShowChannelsAsRecords)
{
    Loaded design(designs::rich());
    zul_channel_param const* const link = ZulModuleGetChannel(design->GetModuleByNumber(0), 0);
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->reserved, 0U);
    EXPECT_EQ(link->input, 1U);
    EXPECT_EQ(link->module_index, 10U);
    EXPECT_EQ(link->link_index, 2U);
    EXPECT_STREQ(link->name, "link0");
    EXPECT_EQ(link->format_index, 3U);
    EXPECT_EQ(link->arith, 4U);
    EXPECT_EQ(link->flavor, 5U);
    EXPECT_EQ(link->width, 8U);
    EXPECT_EQ(link->position, 0U);
    EXPECT_EQ(link->parallel, 16U);
    EXPECT_EQ(link->kernel_rows, 1U);
    EXPECT_EQ(link->kernel_columns, 1U);
    EXPECT_EQ(link->max_width, 1024U);
    EXPECT_EQ(link->max_height, 1024U);
}

TEST(DesignModules, CutNamesInRecordsBehind63Characters)
{
    std::string const name(64, 'n');
    Loaded design(
        withProcess().tag(module(7, "m")).tag(sample::integerParam(name, 7)).tag(sample::channel(name, 7)));
    zul_param const* const param = ZulModuleGetParam(design->GetModuleByNumber(0), 0);
    zul_channel_param const* const channel = ZulModuleGetChannel(design->GetModuleByNumber(0), 0);
    EXPECT_EQ(std::string_view(param->name, 64), std::string(63, 'n') + '\0');
    EXPECT_EQ(std::string_view(channel->name, 64), std::string(63, 'n') + '\0');
    EXPECT_EQ(design->GetParamName(0, 0), name) << "the tag has all of it";
}

TEST(DesignModules, KeepRecordsWhereTheyAre)
{
    ContainerBytes container = withProcess().tag(module(7, "m"));
    for (std::uint64_t i = 0; i < 100; ++i) {
        container.tag(sample::integerParam("p", 7, i));
    }
    Loaded design(container);
    zul_module_ext const* const extension = design->GetModuleByNumber(0);
    for (unsigned i = 0; i < 100; ++i) {
        EXPECT_EQ(ZulModuleGetParam(extension, i)->value, i);
        EXPECT_EQ(ZulModuleGetParam(extension, i)->param_index, static_cast<int>(i));
    }
    EXPECT_EQ(ZulModuleGetParam(extension, 100), nullptr);
    EXPECT_EQ(ZulModuleGetParam(extension, 0xFFFFFFFF), nullptr);
}

// Links.

class DesignLinks : public testing::Test {
protected:
    /// A design with three modules, each with parameters, and @p links.
    static ContainerBytes with(std::initializer_list<designs::Link> links)
    {
        ContainerBytes container = withProcess()
                                       .tag(module(7, "acq\\cam"))
                                       .tag(module(8, "acq\\fir"))
                                       .tag(module(9, "acq\\cam"))
                                       .tag(sample::integerParam("first", 8))
                                       .tag(sample::integerParam("second", 8))
                                       .tag(sample::integerParam("second", 8))
                                       .tag(sample::integerParam("only", 7))
                                       .tag(sample::integerParam("elsewhere", 9));
        for (designs::Link const& link : links) {
            container.tag(paramLink(link));
        }
        return container;
    }
    static Bytes linkOf(Loaded& design, unsigned i = 0)
    {
        // What the design holds is seen in what it saves: its links come last.
        unsigned long length = 0;
        design->stripConfigs(nullptr, &length);
        Bytes saved = Bytes().zeros(length);
        EXPECT_EQ(design->stripConfigs(saved.data(), &length), 0);
        std::vector<Bytes> links;
        std::uint32_t header[2];
        for (std::size_t at = 24; at + sizeof header <= saved.size(); at += header[1]) {
            std::memcpy(header, saved.data() + at, sizeof header);
            if (header[0] == 0x815E000) {
                links.push_back(Bytes().chars({reinterpret_cast<char const*>(saved.data() + at), header[1]}));
            }
        }
        return links.at(i);
    }
};

TEST_F(DesignLinks, LeadWhereTheirTextsSay)
{
    Loaded design(with({{.source = 7, .destination = 7, .name = "second", .moduleName = "acq\\fir"}}));
    EXPECT_EQ(linkOf(design), paramLink({.source = 7,
                                         .destination = 8,
                                         .destinationParam = 1,
                                         .name = "second",
                                         .moduleName = "acq\\fir"}))
        << "to the first parameter of that name";
}

TEST_F(DesignLinks, CountParametersWithoutName)
{
    Loaded design(
        withProcess()
            .tag(module(7, "acq\\cam"))
            .tag(sample::integerParam("", 7))
            .tag(sample::integerParam("named", 7))
            .tag(paramLink({.source = 7, .destination = 7, .name = "named", .moduleName = "acq\\cam"})));
    EXPECT_EQ(linkOf(design), paramLink({.source = 7,
                                         .destination = 7,
                                         .destinationParam = 1,
                                         .name = "named",
                                         .moduleName = "acq\\cam"}));
}

TEST_F(DesignLinks, ToAnUnknownModuleStayAsTheyWere)
{
    designs::Link const unknown{.source = 7, .destination = 8, .name = "only", .moduleName = "acq\\none"};
    designs::Link const otherCase{.source = 7, .destination = 8, .name = "only", .moduleName = "ACQ\\cam"};
    Loaded design(with({unknown, otherCase}));
    EXPECT_EQ(linkOf(design, 0), paramLink(unknown));
    EXPECT_EQ(linkOf(design, 1), paramLink(otherCase));
}

TEST_F(DesignLinks, WithoutModuleNameStayAsTheyWere)
{
    designs::Link const nameless{.source = 7, .destination = 8, .name = "only"};
    Loaded design(with({nameless}));
    EXPECT_EQ(linkOf(design), paramLink(nameless));
}

TEST_F(DesignLinks, ToAnUnknownParameterKeepItsIndexButGetTheModule)
{
    designs::Link link{.source = 7, .destination = 7, .name = "none", .moduleName = "acq\\fir"};
    Loaded design(with({link}));
    link.destination = 8;
    EXPECT_EQ(linkOf(design), paramLink(link));
}

TEST_F(DesignLinks, WithoutParameterNameKeepTheIndexButGetTheModule)
{
    designs::Link link{.source = 7, .destination = 7, .moduleName = "acq\\fir"};
    Loaded design(with({link}));
    link.destination = 8;
    EXPECT_EQ(linkOf(design), paramLink(link));
}

TEST_F(DesignLinks, LeadToTheFirstModuleOfAName)
{
    designs::Link link{.source = 8, .destination = 8, .name = "elsewhere", .moduleName = "acq\\cam"};
    designs::Link own{.source = 8, .destination = 8, .name = "only", .moduleName = "acq\\cam"};
    Loaded design(with({link, own}));
    link.destination = 7;
    own.destination = 7;
    own.destinationParam = 0;
    EXPECT_EQ(linkOf(design, 0), paramLink(link)) << "its namesake's parameters do not count";
    EXPECT_EQ(linkOf(design, 1), paramLink(own));
}

TEST_F(DesignLinks, ToModulesWithOneIndexFindTheirCommonParameters)
{
    Loaded design(
        withProcess()
            .tag(module(7, "one"))
            .tag(module(7, "two"))
            .tag(module(8, "three"))
            .tag(sample::integerParam("width", 7))
            .tag(sample::integerParam("height", 7))
            .tag(paramLink({.source = 8, .destination = 8, .name = "height", .moduleName = "two"}))
            .tag(paramLink({.source = 8, .destination = 8, .name = "height", .moduleName = "one"}))
            .tag(paramLink({.source = 8, .destination = 8, .name = "height", .moduleName = "three"})));
    for (unsigned const i : {0U, 1U}) {
        EXPECT_EQ(linkOf(design, i), paramLink({.source = 8,
                                                .destination = 7,
                                                .destinationParam = 1,
                                                .name = "height",
                                                .moduleName = i == 0 ? "two" : "one"}));
    }
    EXPECT_EQ(linkOf(design, 2),
              paramLink({.source = 8, .destination = 8, .name = "height", .moduleName = "three"}));
}

TEST_F(DesignLinks, ToManyModulesWithOneIndexCostNoMoreThanOthers)
{
    // Looking through the common parameters once for each module would take 10^9 steps.
    constexpr unsigned count = 30'000;
    ContainerBytes container = withProcess();
    for (unsigned i = 0; i < count; ++i) {
        container.tag(module(7, "m" + std::to_string(i)));
    }
    for (unsigned i = 0; i < count; ++i) {
        container.tag(sample::integerParam("p" + std::to_string(i), 7));
    }
    for (unsigned i = 0; i < count; ++i) {
        std::string const number = std::to_string(i);
        container.tag(
            paramLink({.source = 7, .destination = 7, .name = "p" + number, .moduleName = "m" + number}));
    }
    Loaded design(container);
    EXPECT_EQ(design->GetNrOfParams(count - 1), static_cast<int>(count));
    EXPECT_EQ(design->GetRelativeParamIndex(count - 1, count - 1), static_cast<int>(count - 1));
}

// Names of libraries and factories.

TEST(DesignModules, NameLibraryAndFactoryByTheirType)
{
    Loaded design(withProcess().tag(module(7, 0, "Image%sFilter", "fir", "acq\\fir")));
    EXPECT_STREQ(design->GetModuleDllName(0), "libImage%sFilter.dylib");
    EXPECT_STREQ(design->GetModuleDecoratedName(0), "Image%sFilterQelLocalCreate");
    std::string const type(65534, 't');
    Loaded longest(withProcess().tag(module(7, 0, type, "", "")));
    EXPECT_EQ(longest->GetModuleDllName(0), "lib" + type + ".dylib");
    EXPECT_EQ(longest->GetModuleDecoratedName(0), type + "QelLocalCreate");
}

TEST(DesignModules, WithoutTypeNameNeither)
{
    Loaded design(withProcess().tag(module(7, 0, "", "fir", "acq\\fir")));
    EXPECT_EQ(design->GetModuleDllName(0), nullptr);
    EXPECT_EQ(design->GetModuleDecoratedName(0), nullptr);
}

TEST(DesignModules, WithAnEmptyTypeNameBoth)
{
    Bytes tag = module(7, 0, "", "fir", "").setU8(12, 1).setU8(14, 4).setU32(4, 125);
    Loaded design(withProcess().tag(Bytes(tag).cut(120).u8(0).charsZ("fir")));
    EXPECT_STREQ(design->GetModuleTyp(0), "");
    EXPECT_STREQ(design->GetModuleDllName(0), "lib.dylib");
    EXPECT_STREQ(design->GetModuleDecoratedName(0), "QelLocalCreate");
}

} // namespace
