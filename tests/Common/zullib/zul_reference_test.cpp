#include "modules.h"
#include "zullib.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;
/// One tag of every kind that refers to others, beside two modules.
class References : public Modules {
protected:
    References()
    {
        for (ZUL_tag* const tag : std::initializer_list<ZUL_tag*>{param, channel, camera, dma, outgoing,
                                                                  incoming, reg, event, destination}) {
            zul.AddTag(tag);
        }
        event->setRegister(reg);
        zul.AddConfig(config, nullptr);
        config->setDestination(destination);
    }

    // All owned by the container.
    ZUL_param* param = new ZUL_param(&zul, QL_ParamType{1}, module);
    ZUL_channel_param* channel = new ZUL_channel_param(&zul, true, module, "channel");
    ZUL_camparam* camera = new ZUL_camparam(&zul, 0, module);
    ZUL_dma_param* dma = new ZUL_dma_param(&zul, 0, module);
    ZUL_param_link* outgoing = new ZUL_param_link(&zul, module, otherModule);
    ZUL_param_link* incoming = new ZUL_param_link(&zul, otherModule, module);
    ZUL_register* reg = new ZUL_register(&zul, "register", false);
    ZUL_event* event = new ZUL_event(&zul, 0, 0, 0);
    ZUL_destination* destination = new ZUL_destination(&zul, 5, 6, 7);
    ZUL_multi_data* config = new ZUL_multi_data(&zul);

    void expectNoneToModule() const
    {
        EXPECT_EQ(param->getModule(), nullptr);
        EXPECT_EQ(channel->getModule(), nullptr);
        EXPECT_EQ(camera->getModule(), nullptr);
        EXPECT_EQ(dma->getModule(), nullptr);
        EXPECT_EQ(outgoing->getSourceModule(), nullptr);
        EXPECT_EQ(incoming->getDestinationModule(), nullptr);
    }
};

TEST_F(References, ToARemovedModuleBecomeNull)
{
    zul.removeTag(module);
    expectNoneToModule();
    EXPECT_EQ(outgoing->getDestinationModule(), otherModule);
    EXPECT_EQ(incoming->getSourceModule(), otherModule);
    EXPECT_EQ(event->getRegister(), reg);
    EXPECT_EQ(config->getDestination(), destination);
    EXPECT_EQ(otherModule->getProcess(), process);
}

TEST_F(References, ToAllRemovedModulesBecomeNull)
{
    zul.removeTags(ZUL_module::tag_id);
    expectNoneToModule();
    EXPECT_EQ(outgoing->getDestinationModule(), nullptr);
    EXPECT_EQ(incoming->getSourceModule(), nullptr);
}

TEST_F(References, ToARemovedProcessBecomeNull)
{
    module->setProcess(otherProcess);
    zul.removeTag(process);
    EXPECT_EQ(otherModule->getProcess(), nullptr);
    EXPECT_EQ(module->getProcess(), otherProcess);
    zul.removeTags(ZUL_process::tag_id);
    EXPECT_EQ(module->getProcess(), nullptr);
}

TEST_F(References, ToARemovedRegisterBecomeNull)
{
    zul.removeTag(reg);
    EXPECT_EQ(event->getRegister(), nullptr);
    EXPECT_EQ(event->getRegisterName(), nullptr);
}

TEST_F(References, ToAllRemovedRegistersOfALayoutBecomeNull)
{
    auto* const older = new ZUL_register(&zul, "older", true);
    zul.AddTag(older);
    event->setRegister(older);
    zul.removeTags(ZUL_register::new_tag_id);
    EXPECT_EQ(event->getRegister(), older);
    zul.removeTags(ZUL_register::old_tag_id);
    EXPECT_EQ(event->getRegister(), nullptr);
}

TEST_F(References, ToARemovedDestinationBecomeNullAndTheIndexStays)
{
    config->setIndex(9);
    zul.removeTag(destination);
    EXPECT_EQ(config->getDestination(), nullptr);
    EXPECT_EQ(config->getIndex(), 9U);
}

TEST_F(References, SurviveTheRemovalOfAnotherTagUnchanged)
{
    config->setIndex(9);
    zul.removeTag(otherProcess);
    EXPECT_EQ(config->getDestination(), destination);
    EXPECT_EQ(config->getIndex(), 9U) << "not taken from the destination again";
    EXPECT_EQ(param->getModule(), module);
}

TEST_F(References, ToADestinationThatIsTakenOutBecomeNull)
{
    zul.removeDestination(destination);
    std::unique_ptr<ZUL_destination> const mine(destination);
    EXPECT_EQ(config->getDestination(), nullptr);
    EXPECT_EQ(config->getIndex(), 5U);
    EXPECT_EQ(mine->getParent(), nullptr);
    EXPECT_EQ(mine->getBoard(), 6);
    EXPECT_EQ(zul.getTagCount(ZUL_destination::tag_id), 0U);
    EXPECT_EQ(zul.searchDestination(5, 6, 7), nullptr);
    zul.removeDestination(mine.get()); // not there any more
    EXPECT_EQ(zul.getTotalTagCount(), 12U);
}

TEST_F(References, TakenOutDestinationCanBeAddedAgain)
{
    zul.removeDestination(destination);
    zul.AddTag(destination);
    EXPECT_EQ(zul.searchDestination(5, 6, 7), destination);
    EXPECT_EQ(destination->getParent(), &zul);
}

TEST_F(References, ToRemovedConfigurationsDestinationsAreGoneToo)
{
    zul.removeTags(ZUL_multi_data::tag_id);
    EXPECT_EQ(zul.getConfigCount(), 0U);
    EXPECT_EQ(zul.searchDestination(5, 6, 7), nullptr);
}

/// A module of somebody's own, with an id of its own.
class OwnModule : public ZUL_module {
public:
    using ZUL_module::ZUL_module;
    std::uint32_t getTagId() const override { return 0x4242; }
};

TEST_F(References, ToAModuleOfAnotherKindBecomeNull)
{
    auto* const own = new OwnModule(&zul, process);
    zul.AddTag(own);
    param->setModule(own);
    camera->setModule(own);
    zul.removeTag(own);
    EXPECT_EQ(param->getModule(), nullptr);
    EXPECT_EQ(camera->getModule(), nullptr);
    EXPECT_EQ(dma->getModule(), module);
}

TEST_F(References, AssigningAConfigurationWithoutDestinationDeletesTheTargetsDestination)
{
    ZUL_multi_data const bare(noContainer);
    auto* const second = new ZUL_multi_data(&zul);
    zul.AddConfig(second, nullptr);
    second->setDestination(destination);
    *config = bare;
    EXPECT_EQ(config->getDestination(), nullptr);
    EXPECT_EQ(second->getDestination(), nullptr) << "it is gone for everybody";
    EXPECT_EQ(zul.getTagCount(ZUL_destination::tag_id), 0U);
}

} // namespace
