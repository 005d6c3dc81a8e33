#include "captured_output.h"
#include "files.h"
#include "sample_design.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <set>
#include <string>

namespace {

using sample::all;

class SampleDesign : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_NE(bytes.size(), 0U);
        ASSERT_EQ(design.Load(bytes.data(), bytes.size()), 0);
    }

    Bytes const bytes = readFile(SAMPLE_DESIGN);
    ZUL design; // a new container loads strictly
};

TEST_F(SampleDesign, LoadsStrictlyFromItsFileWithoutAWord)
{
    ZUL fromFile;
    CapturedOutput const output;
    EXPECT_EQ(fromFile.Load(SAMPLE_DESIGN, ZUL_LOAD_STRICT), 0);
    EXPECT_EQ(output.text(), "");
}

TEST_F(SampleDesign, SavesAsTheBytesItWasLoadedFrom)
{
    ASSERT_EQ(design.getSaveLength(), bytes.size());
    std::vector<std::byte> saved(bytes.size());
    ASSERT_EQ(design.Save(saved.data(), saved.size()), 0);
    EXPECT_EQ(std::memcmp(saved.data(), bytes.data(), bytes.size()), 0);
}

TEST_F(SampleDesign, HasTagsOfEveryKind)
{
    std::map<unsigned int, unsigned int> const expected{
        {ZUL_comment::tag_id, 1},
        {ZUL_design_version_nr::tag_id, 2},
        {ZUL_destination::tag_id, 2},
        {ZUL_fixed_fpga_info::tag_id, 2},
        {ZUL_process::tag_id, 2},
        {ZUL_module::tag_id, 12},
        {ZUL_param::tag_id, 39},
        {ZUL_param_link::tag_id, 7},
        {ZUL_channel_param::tag_id, 20},
        {ZUL_camparam::tag_id, 2},
        {ZUL_dma_param::tag_id, 2},
        {ZUL_register::old_tag_id, 19},
        {ZUL_register::new_tag_id, 12},
        {ZUL_register_link::tag_id, 8},
        {ZUL_dmacnt_register::tag_id, 2},
        {ZUL_dmatag_register::tag_id, 2},
        {ZUL_intvectorreg::tag_id, 1},
        {ZUL_localintreg::tag_id, 1},
        {ZUL_usrintqueue_read::tag_id, 1},
        {ZUL_usrintqueue_write::tag_id, 1},
        {ZUL_event::tag_id, 5},
        {ZUL_dll::tag_id, 3},
        {ZUL_user_info::tag_id, 7}, // three of them are ids
    };
    unsigned int total = 3; // author, name and version
    for (auto const& [id, count] : expected) {
        EXPECT_EQ(design.getTagCount(id), count) << std::hex << id;
        total += count;
    }
    EXPECT_EQ(design.getTotalTagCount(), total);
    EXPECT_EQ(design.getConfigCount(), 2U);
}

TEST_F(SampleDesign, SaysWhatItIs)
{
    EXPECT_STREQ(design.getDesignName(), "DualAreaInspection");
    EXPECT_STREQ(design.getAuthor(), "the libzulrt authors");
    EXPECT_STREQ(design.getDesignVersion(), "2.3.01")
        << "the board code stands in the fifth and sixth character";
    EXPECT_THAT(design.getId(), testing::MatchesRegex("dual-area-inspection-2\\.3-[0-9a-f]{8}"));
    EXPECT_EQ(design.findUserInfo("BuildNumber")->getInfoValue(), 1482U);
    EXPECT_STREQ(design.findUserInfo("BuildDate")->getInfoString(), "2023-10-17");
}

TEST_F(SampleDesign, ModulesAreNumberedByPositionAndStateWhatTheyHave)
{
    auto const modules = all<ZUL_module>(design);
    for (std::size_t i = 0; i < modules.size(); ++i) {
        EXPECT_EQ(modules[i]->getIndex(), static_cast<int>(i));
        EXPECT_EQ(design.getModuleAt(static_cast<unsigned int>(i)), modules[i]);
        EXPECT_EQ(modules[i]->getFullName(),
                  std::string(modules[i]->getProcessName()) + '\\' + modules[i]->getInstance());
        unsigned int parameters = 0;
        for (ZUL_param const* each : all<ZUL_param>(design)) {
            parameters += each->getModule() == modules[i] ? 1U : 0U;
        }
        unsigned int channels = 0;
        for (ZUL_channel_param const* each : all<ZUL_channel_param>(design)) {
            channels += each->getModule() == modules[i] ? 1U : 0U;
        }
        EXPECT_EQ(modules[i]->getParamCount(), parameters) << modules[i]->getInstance();
        EXPECT_EQ(modules[i]->getChanCount(), channels) << modules[i]->getInstance();
    }
}

TEST_F(SampleDesign, ParametersHaveEveryTypeThatHasAValue)
{
    std::set<unsigned int> types;
    for (ZUL_param const* each : all<ZUL_param>(design)) {
        types.insert(each->getType());
    }
    EXPECT_THAT(types, testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 13, 14, 16));
}

/// The parameters of a module by their positions in it.
std::vector<ZUL_param*> parametersOf(ZUL const& design, ZUL_module const* module)
{
    auto parameters = all<ZUL_param>(design);
    std::erase_if(parameters, [module](ZUL_param const* each) { return each->getModule() != module; });
    return parameters;
}

TEST_F(SampleDesign, ParameterLinksMeanTheSameByNameAndByPosition)
{
    for (ZUL_param_link const* link : all<ZUL_param_link>(design)) {
        auto const sources = parametersOf(design, link->getSourceModule());
        auto const destinations = parametersOf(design, link->getDestinationModule());
        ZUL_param const* source = sources.at(static_cast<std::size_t>(link->getSourceParamIndex()));
        ZUL_param const* destination =
            destinations.at(static_cast<std::size_t>(link->getDestinationParamIndex()));
        EXPECT_STREQ(source->getName(), link->getSourceName());
        EXPECT_STREQ(destination->getName(), link->getDestinationName());
        EXPECT_STREQ(link->getDestinationModule()->getFullName(), link->getDestinationModuleName());
        EXPECT_EQ(source->getValue(), destination->getValue()) << link->getSourceName();
    }
}

TEST_F(SampleDesign, EveryStreamHasOneOutputAndOneInputOfTheSameFormat)
{
    std::map<unsigned int, std::vector<ZUL_channel_param*>> streams;
    for (ZUL_channel_param* each : all<ZUL_channel_param>(design)) {
        streams[each->getLinkIndex()].push_back(each);
    }
    EXPECT_EQ(streams.size(), 10U);
    for (auto const& [number, ends] : streams) {
        ASSERT_EQ(ends.size(), 2U) << "stream " << number;
        EXPECT_NE(ends[0]->getInputChannel(), ends[1]->getInputChannel()) << "stream " << number;
        EXPECT_NE(ends[0]->getModule(), ends[1]->getModule()) << "stream " << number;
        EXPECT_EQ(ends[0]->getModule()->getProcess(), ends[1]->getModule()->getProcess())
            << "stream " << number;
        EXPECT_EQ(ends[0]->getWidth(), ends[1]->getWidth()) << "stream " << number;
    }
}

TEST_F(SampleDesign, EveryProcessHasACameraAndADmaChannel)
{
    for (auto const* process : all<ZUL_process>(design)) {
        EXPECT_GT(process->getClock(), 0U);
        EXPECT_EQ(all<ZUL_camparam>(design)[process->getId()]->getModule()->getProcess(), process);
        EXPECT_EQ(all<ZUL_dma_param>(design)[process->getId()]->getModule()->getProcess(), process);
    }
}

} // namespace
