#pragma once

#include "loaded_container.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <functional>
#include <string_view>
#include <typeinfo>
#include <utility>
#include <vector>

/// Containers put together tag by tag, and what merging them throws. Included by the tests of merging only.
namespace merging {

template <class Tag>
Tag* tagOf(ZUL const& zul, unsigned i = 0)
{
    return dynamic_cast<Tag*>(zul.getTagAt(Tag::tag_id, i));
}

/// A tag that @p zul owns.
template <class Tag, class... Arguments>
Tag* file(ZUL& zul, Arguments&&... arguments)
{
    auto* const tag = new Tag(&zul, std::forward<Arguments>(arguments)...);
    zul.AddTag(tag);
    return tag;
}

inline ZUL_process* fileProcess(ZUL& zul, unsigned id, char const* name = "process")
{
    return file<ZUL_process>(zul, id, name);
}

inline ZUL_module* fileModule(ZUL& zul, int index, ZUL_process const* process)
{
    auto* const module = file<ZUL_module>(zul, process);
    module->setIndex(index);
    return module;
}

/// An event with that queue and bit, of the register @p reg.
inline ZUL_event* fileEvent(ZUL& zul, unsigned char queue, unsigned char bit,
                            ZUL_register const* reg = nullptr)
{
    auto* const event = file<ZUL_event>(zul, queue, bit, static_cast<unsigned char>(4));
    event->setName("event");
    event->setRegister(reg);
    return event;
}

inline ZUL_multi_data* fileConfiguration(ZUL& zul, unsigned index)
{
    auto* const config = new ZUL_multi_data(&zul);
    config->setIndex(index);
    zul.AddConfig(config, nullptr);
    return config;
}

/// Whether @p action throws an Error, of exactly this class, with that message and tag id.
template <class Error = ZUL_add_tag_error>
testing::AssertionResult refuses(std::function<void()> const& action, std::string_view message,
                                 std::uint32_t id)
{
    try {
        action();
        return testing::AssertionFailure() << "nothing was thrown";
    } catch (ZUL_file_error const& error) {
        if (typeid(error) != typeid(Error) || error.what() != message || error.getTagId() != id) {
            return testing::AssertionFailure() << typeid(error).name() << " \"" << error.what()
                                               << "\" with id " << std::hex << error.getTagId();
        }
        return testing::AssertionSuccess();
    }
}

/// Every tag of the tag list, in order.
inline std::vector<ZUL_tag*> tagsOf(ZUL const& zul)
{
    std::vector<ZUL_tag*> tags;
    zul.forEachTag([&tags](ZUL_tag& tag) { tags.push_back(&tag); });
    return tags;
}

inline std::vector<std::uint32_t> idsOf(ZUL const& zul)
{
    std::vector<std::uint32_t> ids;
    zul.forEachTag([&ids](ZUL_tag& tag) { ids.push_back(tag.getTagId()); });
    return ids;
}

} // namespace merging
