#include "container_bytes.h"
#include "merging.h"
#include "sample_tags.h"

#include <memory>

namespace {

using namespace merging;

/// Ids of all processes, in order.
std::vector<unsigned> processIds(ZUL const& zul)
{
    std::vector<unsigned> ids;
    for (unsigned i = 0; i < zul.getTagCount(ZUL_process::tag_id); ++i) {
        ids.push_back(tagOf<ZUL_process>(zul, i)->getId());
    }
    return ids;
}

/// Indexes of all modules, in order.
std::vector<int> moduleIndexes(ZUL const& zul)
{
    std::vector<int> indexes;
    for (unsigned i = 0; i < zul.getTagCount(ZUL_module::tag_id); ++i) {
        indexes.push_back(tagOf<ZUL_module>(zul, i)->getIndex());
    }
    return indexes;
}

TEST(MergedProcesses, FollowTheHighestIdAndTheirModulesFollowThem)
{
    ZUL zul;
    fileProcess(zul, 3);
    fileProcess(zul, 1);
    ZUL other;
    auto const* const zero = fileProcess(other, 0);
    auto const* const one = fileProcess(other, 1);
    fileModule(other, 10, one);
    fileModule(other, 11, zero);
    zul += other;
    EXPECT_EQ(processIds(zul), (std::vector<unsigned>{3, 1, 4, 5}));
    EXPECT_EQ(moduleIndexes(zul), (std::vector<int>{10, 11})) << "no modules were there";
    EXPECT_EQ(tagOf<ZUL_module>(zul, 0)->getProcess(), tagOf<ZUL_process>(zul, 3));
    EXPECT_EQ(tagOf<ZUL_module>(zul, 1)->getProcess(), tagOf<ZUL_process>(zul, 2));
}

TEST(MergedProcesses, KeepTheirIdsWhereThereAreNone)
{
    ZUL zul;
    fileModule(zul, 6, nullptr);
    ZUL other;
    fileModule(other, 6, fileProcess(other, 9));
    zul += other;
    EXPECT_EQ(processIds(zul), (std::vector<unsigned>{9}));
    EXPECT_EQ(moduleIndexes(zul), (std::vector<int>{6, 7})) << "modules are numbered on their own";
    EXPECT_EQ(tagOf<ZUL_module>(zul, 1)->getProcess(), tagOf<ZUL_process>(zul));
}

TEST(MergedProcesses, AreRenumberedAlsoWhereTheOnlyIdIsZero)
{
    ZUL zul;
    fileProcess(zul, 0);
    ZUL other;
    fileProcess(other, 7);
    zul += other;
    EXPECT_EQ(processIds(zul), (std::vector<unsigned>{0, 1}));
}

TEST(MergedProcesses, HighestIdIsTheHighestSignedOne)
{
    ZUL zul;
    fileProcess(zul, 0xFFFFFFF0);
    fileProcess(zul, 2);
    ZUL other;
    fileProcess(other, 5);
    zul += other;
    EXPECT_EQ(processIds(zul), (std::vector<unsigned>{0xFFFFFFF0, 2, 3}));
}

TEST(MergedProcesses, IdAfterTheHighestPossibleMayBeTakenThenTheFirstIsBound)
{
    ZUL zul;
    auto const* const taken = fileProcess(zul, 0x80000000);
    fileProcess(zul, 0x7FFFFFFF);
    ZUL other;
    fileModule(other, 0, fileProcess(other, 1));
    zul += other;
    EXPECT_EQ(processIds(zul), (std::vector<unsigned>{0x80000000, 0x7FFFFFFF, 0x80000000}));
    EXPECT_EQ(tagOf<ZUL_module>(zul)->getProcess(), taken);
}

TEST(MergedProcesses, OfSeveralWithOneIdTheFirstIsBound)
{
    for (bool const renumbered : {false, true}) {
        ZUL zul;
        if (renumbered) {
            fileProcess(zul, 3);
        }
        ZUL other;
        fileProcess(other, 5, "first");
        auto const* const second = fileProcess(other, 5, "second");
        fileModule(other, 0, second);
        zul += other;
        EXPECT_EQ(processIds(zul),
                  renumbered ? (std::vector<unsigned>{3, 4, 5}) : (std::vector<unsigned>{5, 5}));
        EXPECT_STREQ(tagOf<ZUL_module>(zul)->getProcess()->getName(), "first");
    }
}

TEST(MergedModules, FollowTheHighestIndexAndWhatRefersToThemFollows)
{
    ZUL zul;
    fileModule(zul, 4, fileProcess(zul, 0));
    fileModule(zul, -1, nullptr);
    ZUL other;
    auto const* const process = fileProcess(other, 0);
    auto const* const zero = fileModule(other, 0, process);
    auto const* const four = fileModule(other, 4, process);
    file<ZUL_param>(other, QL_ParamType{1}, four);
    file<ZUL_channel_param>(other, false, zero, "link");
    file<ZUL_dma_param>(other, 0U, four);
    file<ZUL_camparam>(other, 0U, zero);
    file<ZUL_param_link>(other, four, zero);
    zul += other;
    EXPECT_EQ(moduleIndexes(zul), (std::vector<int>{4, -1, 5, 6}));
    auto const* const five = tagOf<ZUL_module>(zul, 2);
    auto const* const six = tagOf<ZUL_module>(zul, 3);
    EXPECT_EQ(tagOf<ZUL_param>(zul)->getModule(), six);
    EXPECT_EQ(tagOf<ZUL_channel_param>(zul)->getModule(), five);
    EXPECT_EQ(tagOf<ZUL_dma_param>(zul)->getModule(), six);
    EXPECT_EQ(tagOf<ZUL_camparam>(zul)->getModule(), five);
    EXPECT_EQ(tagOf<ZUL_param_link>(zul)->getSourceModule(), six);
    EXPECT_EQ(tagOf<ZUL_param_link>(zul)->getDestinationModule(), five);
}

TEST(MergedModules, KeepTheirIndexesWhereThereAreNone)
{
    ZUL zul;
    fileProcess(zul, 0);
    ZUL other;
    auto const* const module = fileModule(other, 8, fileProcess(other, 0));
    file<ZUL_camparam>(other, 0U, module);
    zul += other;
    EXPECT_EQ(moduleIndexes(zul), (std::vector<int>{8}));
    EXPECT_EQ(tagOf<ZUL_camparam>(zul)->getModule(), tagOf<ZUL_module>(zul));
    EXPECT_EQ(tagOf<ZUL_module>(zul)->getProcessId(), 1U);
}

TEST(MergedModules, OfSeveralWithOneIndexTheFirstIsBound)
{
    for (bool const renumbered : {false, true}) {
        ZUL zul;
        if (renumbered) {
            fileModule(zul, 3, nullptr);
        }
        ZUL other;
        auto const* const process = fileProcess(other, 0);
        fileModule(other, 5, process)->setType("first");
        auto* const second = fileModule(other, 5, process);
        second->setType("second");
        file<ZUL_dma_param>(other, 0U, second);
        zul += other;
        EXPECT_STREQ(tagOf<ZUL_dma_param>(zul)->getModule()->getType(), "first");
    }
}

TEST(MergedModules, CountsStatedByAFileAreNotCopied)
{
    LoadedContainer const other(ContainerBytes()
                                    .tag(sample::process(0))
                                    .tag(sample::module(0, 0).setU32(24, 7).setU32(28, 8))
                                    .build());
    ZUL zul;
    zul += other.zul;
    EXPECT_EQ(tagOf<ZUL_module>(zul)->getParamCount(), 0U);
    EXPECT_EQ(tagOf<ZUL_module>(zul)->getChanCount(), 0U);
}

TEST(MergedReferences, ToTagsBehindTheirUserAreBound)
{
    for (bool const renumbered : {false, true}) {
        ZUL zul;
        if (renumbered) {
            fileModule(zul, 0, fileProcess(zul, 0));
        }
        ZUL other;
        auto* const parameter = file<ZUL_camparam>(other, 0U, nullptr);
        auto* const module = fileModule(other, 0, nullptr);
        auto const* const process = fileProcess(other, 0);
        parameter->setModule(module);
        module->setProcess(process);
        zul += other;
        unsigned const last = zul.getTagCount(ZUL_module::tag_id) - 1;
        EXPECT_EQ(tagOf<ZUL_camparam>(zul)->getModule(), tagOf<ZUL_module>(zul, last));
        EXPECT_EQ(tagOf<ZUL_module>(zul, last)->getProcess(), tagOf<ZUL_process>(zul, last));
        EXPECT_EQ(tagsOf(zul).back(), tagOf<ZUL_process>(zul, last)) << "in the other's order";
    }
}

TEST(MergedReferences, OfWhatSortingALoadLeftAreBound)
{
    // Sorting moves process 1 behind module and parameter.
    LoadedContainer const other(ContainerBytes()
                                    .tag(sample::process(1))
                                    .tag(sample::module(0, 1))
                                    .tag(sample::integerParam("width", 0))
                                    .tag(sample::process(0))
                                    .build());
    ASSERT_EQ(idsOf(other.zul), (std::vector<std::uint32_t>{0x8158000, 0x8157000, 0x815A000, 0x8158000}));
    ASSERT_EQ(tagOf<ZUL_process>(other.zul, 1)->getId(), 1U);
    ZUL zul;
    fileProcess(zul, 0);
    zul += other.zul;
    EXPECT_EQ(processIds(zul), (std::vector<unsigned>{0, 1, 2}));
    EXPECT_EQ(tagOf<ZUL_module>(zul)->getProcess(), tagOf<ZUL_process>(zul, 2));
    EXPECT_EQ(tagOf<ZUL_param>(zul)->getModule(), tagOf<ZUL_module>(zul));
}

/// A tag that refers to a module, and how its merge is refused when the module is missing.
struct Refusal {
    std::uint32_t id;
    char const* message;
    void (*fileUser)(ZUL& zul, ZUL_module const* module);
};

Refusal const refusals[] = {
    {0x815A000, "Tried to add a ZUL_param without a matching module.",
     [](ZUL& zul, ZUL_module const* module) { file<ZUL_param>(zul, QL_ParamType{1}, module); }},
    {0x815B000, "Tried to add a ZUL_channel_param without a matching module.",
     [](ZUL& zul, ZUL_module const* module) { file<ZUL_channel_param>(zul, false, module, "link"); }},
    {0x815C000, "Tried to add a ZUL_dma_param without a matching module.",
     [](ZUL& zul, ZUL_module const* module) { file<ZUL_dma_param>(zul, 0U, module); }},
    {0x815D000, "Tried to add a ZUL_camparam without a matching module.",
     [](ZUL& zul, ZUL_module const* module) { file<ZUL_camparam>(zul, 0U, module); }},
    {0x815E000, "Tried to add a ZUL_param_link without a matching source module.",
     [](ZUL& zul, ZUL_module const* module) { file<ZUL_param_link>(zul, module, tagOf<ZUL_module>(zul)); }},
    {0x815E000, "Tried to add a ZUL_param_link without a matching source module.",
     [](ZUL& zul, ZUL_module const* module) { file<ZUL_param_link>(zul, module, module); }},
    {0x815E000, "Tried to add a ZUL_param_link without a matching destination module.",
     [](ZUL& zul, ZUL_module const* module) { file<ZUL_param_link>(zul, tagOf<ZUL_module>(zul), module); }},
    {0x8157000, "Tried to add a ZUL_module without a matching process.",
     [](ZUL& zul, ZUL_module const* module) {
         fileModule(zul, 1, module == nullptr ? nullptr : module->getProcess());
     }},
};

TEST(MissingReference, IsRefusedByItsOwnMessageAndWhatCameBeforeStays)
{
    ZUL_process const strangeProcess(nullptr, 77, "outside");
    ZUL_module strangeModule(nullptr, &strangeProcess);
    strangeModule.setIndex(77);
    for (Refusal const& refusal : refusals) {
        for (ZUL_module const* const missing :
             {static_cast<ZUL_module const*>(nullptr), &std::as_const(strangeModule)}) {
            for (bool const renumbered : {false, true}) {
                SCOPED_TRACE(refusal.message);
                ZUL zul;
                std::vector<std::uint32_t> expected;
                if (renumbered) {
                    fileModule(zul, 77, fileProcess(zul, 77)); // not the one that is meant
                    expected = idsOf(zul);
                }
                ZUL other;
                fileModule(other, 0, fileProcess(other, 0));
                std::vector<std::uint32_t> const before = idsOf(other);
                expected.insert(expected.end(), before.begin(), before.end());
                refusal.fileUser(other, missing);
                file<ZUL_comment>(other);
                EXPECT_TRUE(refuses([&] { zul += other; }, refusal.message, refusal.id));
                EXPECT_EQ(idsOf(zul), expected);
            }
        }
    }
}

TEST(MissingReference, IsNoneWhenTheOtherHasATagWithThatNumber)
{
    ZUL_process const strangeProcess(nullptr, 1, "outside");
    ZUL_module strangeModule(nullptr, &strangeProcess);
    strangeModule.setIndex(2);
    ZUL other;
    fileModule(other, 2, &strangeProcess);
    file<ZUL_camparam>(other, 0U, &strangeModule);
    fileProcess(other, 1, "own");
    ZUL zul;
    zul += other;
    EXPECT_EQ(tagOf<ZUL_camparam>(zul)->getModule(), tagOf<ZUL_module>(zul));
    EXPECT_STREQ(tagOf<ZUL_module>(zul)->getProcess()->getName(), "own");
}

TEST(MissingReference, LeadsToTheNumberOfNothingWhichTheOwnSideMayHave)
{
    ZUL zul;
    auto const* const process = fileProcess(zul, 0xFFFFFFFF);
    auto const* const module = fileModule(zul, -1, process);
    ZUL other;
    fileProcess(other, 8);
    fileModule(other, 8, nullptr);
    file<ZUL_camparam>(other, 0U, nullptr);
    zul += other;
    EXPECT_EQ(tagOf<ZUL_module>(zul, 1)->getProcess(), process);
    EXPECT_EQ(tagOf<ZUL_camparam>(zul)->getModule(), module);
}

TEST(MissingReference, ToNumberFFFFFFFFIsBoundWhenTheOtherHasIt)
{
    for (bool const renumbered : {false, true}) {
        ZUL zul;
        if (renumbered) {
            fileModule(zul, 0, fileProcess(zul, 0));
        }
        ZUL other;
        fileModule(other, -1, fileProcess(other, 0xFFFFFFFF));
        file<ZUL_camparam>(other, 0U, tagOf<ZUL_module>(other));
        zul += other;
        unsigned const last = renumbered ? 1 : 0;
        EXPECT_EQ(processIds(zul).back(), renumbered ? 1U : 0xFFFFFFFF);
        EXPECT_EQ(moduleIndexes(zul).back(), renumbered ? 1 : -1);
        EXPECT_EQ(tagOf<ZUL_camparam>(zul)->getModule(), tagOf<ZUL_module>(zul, last));
        EXPECT_EQ(tagOf<ZUL_module>(zul, last)->getProcess(), tagOf<ZUL_process>(zul, last));
    }
}

TEST(FailedMerge, LeavesNoReferenceToATagThatWasNotAdded)
{
    ZUL other;
    auto* const parameter = file<ZUL_camparam>(other, 0U, nullptr);
    auto* const link = file<ZUL_param_link>(other, nullptr, nullptr);
    auto* const early = fileModule(other, 0, nullptr);
    auto* const late = file<ZUL_dma_param>(other, 0U, nullptr); // its module is missing
    auto* const module = fileModule(other, 1, nullptr);
    auto const* const process = fileProcess(other, 0);
    early->setProcess(process);
    module->setProcess(process);
    parameter->setModule(module);
    link->setSourceModule(early);
    link->setDestinationModule(module);
    ASSERT_EQ(late->getModule(), nullptr);

    ZUL zul;
    fileModule(zul, 8, fileProcess(zul, 8));
    EXPECT_THROW(zul += other, ZUL_add_tag_error);
    auto const* const filed = tagOf<ZUL_module>(zul, 1);
    EXPECT_EQ(tagOf<ZUL_camparam>(zul)->getModule(), nullptr);
    EXPECT_EQ(tagOf<ZUL_param_link>(zul)->getSourceModule(), filed) << "which was added";
    EXPECT_EQ(tagOf<ZUL_param_link>(zul)->getDestinationModule(), nullptr);
    EXPECT_EQ(filed->getProcess(), nullptr);
    EXPECT_EQ(tagOf<ZUL_module>(zul)->getProcessId(), 8U) << "what was there before is as it was";
}

TEST(FailedMerge, LeavesNoReferenceToTheTagThatFailed)
{
    ZUL other;
    auto* const parameter = file<ZUL_camparam>(other, 0U, nullptr);
    parameter->setModule(fileModule(other, 0, nullptr)); // a module without process
    ZUL zul;
    EXPECT_THROW(zul += other, ZUL_add_tag_error);
    EXPECT_EQ(tagOf<ZUL_camparam>(zul)->getModule(), nullptr);
}

/// A module of somebody's own, with an id of its own.
class OwnModule : public ZUL_module {
public:
    using ZUL_module::ZUL_module;
    std::uint32_t getTagId() const override { return 0x4242; }
};

TEST(MergedModules, OfOtherClassesAreNoModules)
{
    ZUL other;
    auto* const module = new OwnModule(&other, fileProcess(other, 0));
    other.AddTag(module);
    module->setIndex(3);
    ZUL zul;
    zul += other;
    EXPECT_EQ(idsOf(zul), (std::vector<std::uint32_t>{0x8158000, 0x4242}));
    file<ZUL_camparam>(other, 0U, module);
    EXPECT_TRUE(refuses([&] { ZUL() += other; }, "Tried to add a ZUL_camparam without a matching module.",
                        0x815D000));
}

} // namespace
