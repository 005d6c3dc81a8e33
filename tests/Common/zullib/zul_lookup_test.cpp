#include "loaded_container.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr ZUL* noContainer = nullptr;

template <class Tag>
Tag* add(ZUL& zul, Tag* tag)
{
    zul.AddTag(tag);
    return tag;
}

ZUL_module* addModule(ZUL& zul, int index)
{
    auto* const module = new ZUL_module(&zul, nullptr);
    module->setIndex(index);
    return add(zul, module);
}

TEST(TagLookup, CountsAndNumbersTheTagsOfAnIdInListOrder)
{
    ZUL zul;
    auto* const first = add(zul, new ZUL_comment(noContainer));
    add(zul, new ZUL_process(nullptr, 0, nullptr));
    auto* const second = add(zul, new ZUL_comment(noContainer));
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 2U);
    EXPECT_EQ(zul.getTagAt(ZUL_comment::tag_id, 0), first);
    EXPECT_EQ(zul.getTagAt(ZUL_comment::tag_id, 1), second);
    EXPECT_EQ(zul.getTagAt(ZUL_comment::tag_id, 2), nullptr);
    EXPECT_EQ(zul.getTagCount(0), 0U);
    EXPECT_EQ(zul.getTagAt(0, 0), nullptr);
}

TEST(TagLookup, SeesEveryAppendAndRemoval)
{
    ZUL zul;
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 0U);
    auto* const first = add(zul, new ZUL_comment(noContainer));
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 1U);
    auto* const second = add(zul, new ZUL_comment(noContainer));
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 2U);
    zul.removeTag(first);
    EXPECT_EQ(zul.getTagCount(ZUL_comment::tag_id), 1U);
    EXPECT_EQ(zul.getTagAt(ZUL_comment::tag_id, 0), second);
}

TEST(TagLookup, ByClassReachesOlderRegistersAndLinks)
{
    ZUL zul;
    add(zul, new ZUL_register(nullptr, "new", false));
    auto* const older = add(zul, new ZUL_register(nullptr, "old", true));
    auto* const link = add(zul, new ZUL_register_link(nullptr, "alias", "old"));
    EXPECT_EQ(zul.getTagAt<ZUL_register>(0), older);
    EXPECT_EQ(zul.getTagAt<ZUL_register>(1), nullptr) << "the newer layout is not reached";
    EXPECT_EQ(zul.getTagAt<ZUL_register_link>(0), link);
    EXPECT_EQ(zul.getTagAt<ZUL_register_link>(1), nullptr);
}

TEST(TotalTagCount, IsTheTagListAndThePresentSingleInstances)
{
    ZUL zul;
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
    zul.setAuthor("");
    EXPECT_EQ(zul.getTotalTagCount(), 1U);
    zul.setDesignName("name");
    EXPECT_EQ(zul.getTotalTagCount(), 2U);
    zul.setDesignVersion(1, 0);
    EXPECT_EQ(zul.getTotalTagCount(), 3U);
    add(zul, new ZUL_design_version_nr(noContainer));
    EXPECT_EQ(zul.getTotalTagCount(), 4U) << "also one that is not saved";
    zul.AddConfig(new ZUL_multi_data(noContainer), nullptr);
    EXPECT_EQ(zul.getTotalTagCount(), 4U);
}

TEST(ProcessLookup, FindsTheFirstWithTheId)
{
    ZUL zul;
    EXPECT_EQ(zul.getProcessAt(0), nullptr);
    auto* const seven = add(zul, new ZUL_process(nullptr, 7, "first"));
    add(zul, new ZUL_process(nullptr, 7, "second"));
    auto* const largest = add(zul, new ZUL_process(nullptr, 0xFFFFFFFF, nullptr));
    EXPECT_EQ(zul.getProcessAt(7), seven);
    EXPECT_EQ(zul.getProcessAt(0xFFFFFFFF), largest);
    EXPECT_EQ(zul.getProcessAt(0), nullptr) << "an id, not a position";
}

TEST(ProcessLookup, FollowsEveryEdit)
{
    ZUL zul;
    auto* const first = add(zul, new ZUL_process(nullptr, 1, nullptr));
    auto* const second = add(zul, new ZUL_process(nullptr, 2, nullptr));
    ASSERT_EQ(zul.getProcessAt(1), first);
    second->setId(1);
    EXPECT_EQ(zul.getProcessAt(1), first);
    EXPECT_EQ(zul.getProcessAt(2), nullptr);
    first->setId(2);
    EXPECT_EQ(zul.getProcessAt(1), second);
    EXPECT_EQ(zul.getProcessAt(2), first);
    *second = ZUL_process(nullptr, 5, nullptr);
    EXPECT_EQ(zul.getProcessAt(5), second);
    EXPECT_EQ(zul.getProcessAt(1), nullptr);
    zul.removeTag(first);
    EXPECT_EQ(zul.getProcessAt(2), nullptr);
    zul.removeTags(ZUL_process::tag_id);
    EXPECT_EQ(zul.getProcessAt(5), nullptr);
}

TEST(ProcessLookup, FollowsATagThatIsLoadedAgain)
{
    ZUL zul;
    auto* const process = add(zul, new ZUL_process(nullptr, 1, nullptr));
    ASSERT_EQ(zul.getProcessAt(1), process);
    Bytes const other = Bytes().u32(0x8158000).u32(80).u32(6).text("again", 64).u32(0);
    process->Load(other.data(), other.size());
    EXPECT_EQ(zul.getProcessAt(1), nullptr);
    EXPECT_EQ(zul.getProcessAt(6), process);
}

TEST(ModuleLookup, FindsTheFirstWithTheIndexAndFollowsEveryEdit)
{
    ZUL zul;
    EXPECT_EQ(zul.getModuleAt(0), nullptr);
    ZUL_module* const first = addModule(zul, 3);
    ZUL_module* const second = addModule(zul, 3);
    ZUL_module* const unset = addModule(zul, -1);
    EXPECT_EQ(zul.getModuleAt(3), first);
    EXPECT_EQ(zul.getModuleAt(0xFFFFFFFF), unset);
    first->setIndex(4);
    EXPECT_EQ(zul.getModuleAt(3), second);
    EXPECT_EQ(zul.getModuleAt(4), first);
    zul.removeTag(second);
    EXPECT_EQ(zul.getModuleAt(3), nullptr);
    *unset = *first;
    EXPECT_EQ(zul.getModuleAt(4), first);
    EXPECT_EQ(zul.getModuleAt(0xFFFFFFFF), nullptr);
    ZUL_module* const added = addModule(zul, 9);
    EXPECT_EQ(zul.getModuleAt(9), added);
}

TEST(HighestNumber, IsComparedAsASignedOneFromZero)
{
    ZUL zul;
    EXPECT_EQ(zul.getHighestProcessId(), 0U);
    EXPECT_EQ(zul.getHighestModuleId(), 0U);
    add(zul, new ZUL_process(nullptr, 0x80000000, nullptr));
    addModule(zul, -5);
    EXPECT_EQ(zul.getHighestProcessId(), 0U);
    EXPECT_EQ(zul.getHighestModuleId(), 0U);
    add(zul, new ZUL_process(nullptr, 0x7FFFFFFF, nullptr));
    add(zul, new ZUL_process(nullptr, 3, nullptr));
    addModule(zul, 12);
    addModule(zul, 4);
    EXPECT_EQ(zul.getHighestProcessId(), 0x7FFFFFFFU);
    EXPECT_EQ(zul.getHighestModuleId(), 12U);
}

TEST(UserInfoLookup, FindsTheFirstWithTheNameAndFollowsEveryEdit)
{
    ZUL zul;
    EXPECT_EQ(zul.findUserInfo("name"), nullptr);
    EXPECT_EQ(zul.findUserInfo(nullptr), nullptr);
    auto* const nameless = add(zul, new ZUL_user_info(nullptr, nullptr, 1U));
    auto* const empty = add(zul, new ZUL_user_info(nullptr, "", 2U));
    auto* const first = add(zul, new ZUL_user_info(nullptr, "name", 3U));
    auto* const second = add(zul, new ZUL_user_info(nullptr, "name", "text"));
    EXPECT_EQ(zul.findUserInfo("name"), first);
    EXPECT_EQ(zul.findUserInfo(nullptr), nullptr) << "a name that is not there matches none";
    EXPECT_EQ(zul.findUserInfo(""), empty);
    first->setInfo("other");
    EXPECT_EQ(zul.findUserInfo("name"), second);
    EXPECT_EQ(zul.findUserInfo("other"), first);
    first->set("name", 4U);
    EXPECT_EQ(zul.findUserInfo("name"), first);
    *nameless = *second;
    EXPECT_EQ(zul.findUserInfo("name"), nameless);
    zul.removeTag(nameless);
    EXPECT_EQ(zul.findUserInfo("name"), first);
    zul.removeTags(ZUL_user_info::tag_id);
    EXPECT_EQ(zul.findUserInfo("name"), nullptr);
}

TEST(Lookups, OfSeveralReadersAtOnceAgree)
{
    ZUL zul;
    for (unsigned i = 0; i < 50; ++i) {
        std::string const name = std::to_string(i);
        add(zul, new ZUL_register(nullptr, name.c_str(), i % 2 == 0));
        add(zul, new ZUL_register_link(nullptr, ("alias" + name).c_str(), name.c_str()));
        add(zul, new ZUL_process(nullptr, i, nullptr));
        add(zul, new ZUL_user_info(nullptr, name.c_str(), i));
    }
    addModule(zul, 7);
    std::atomic<unsigned> wrong = 0;
    auto const read = [&] {
        for (unsigned i = 0; i < 50; ++i) { // the first question of each kind builds an index
            std::string const name = std::to_string(i);
            ZUL_register const* const reg = zul.findRegister(name.c_str());
            bool const right = reg != nullptr && zul.findRegister(("alias" + name).c_str()) == reg &&
                               zul.getRegisterAt(zul.getRegisterByName(name.c_str())) == reg &&
                               zul.getProcessAt(i)->getId() == i &&
                               zul.findUserInfo(name.c_str())->getInfoValue() == i &&
                               zul.getModuleAt(7) != nullptr;
            wrong += right ? 0 : 1;
        }
    };
    std::vector<std::thread> readers;
    for (unsigned i = 0; i < 4; ++i) {
        readers.emplace_back(read);
    }
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(wrong, 0U);
}

TEST(RegisterPolicy, IsZeroAtFirstAndStaysAsSet)
{
    ZUL zul;
    EXPECT_EQ(zul.getRegisterPolicy(), ZULRegisterPolicy{0});
    zul.setRegisterPolicy(ZULRegisterPolicy{0xFFFFFFFF});
    EXPECT_EQ(zul.getRegisterPolicy(), ZULRegisterPolicy{0xFFFFFFFF});
}

TEST(RegisterPolicy, DecidesTheLayoutThatOlderRegistersAreSavedIn)
{
    ZUL zul;
    add(zul, new ZUL_register(nullptr, "r", true));
    zul.setId("x");
    EXPECT_EQ(savedIds(savedContainer(zul)), (std::vector<std::uint32_t>{0x8151000, 0x8159000}));
    zul.setRegisterPolicy(ZULRegisterPolicy{1});
    EXPECT_EQ(savedIds(savedContainer(zul)), (std::vector<std::uint32_t>{0x8151002, 0x8159000}));
    EXPECT_EQ(zul.getTagCount(ZUL_register::old_tag_id), 1U);
}

} // namespace
