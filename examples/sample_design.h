#pragma once

#include "zullib.h"

#include <memory>
#include <utility>
#include <vector>

/// The steps in which the sample design is made, in the order in which a file has to hold what they add: a tag that
/// refers to another one comes after it.
namespace sample {

void addIdentity(ZUL& design);
void addDestinations(ZUL& design);
void addProcesses(ZUL& design);
void addModules(ZUL& design);
void addParameters(ZUL& design);
void addParameterLinks(ZUL& design);
void addChannels(ZUL& design);
void addCamerasAndDmas(ZUL& design);
/// Lets each module state how many parameters and channels it has.
void stateCounts(ZUL& design);
void addRegisters(ZUL& design);
void addRegisterLinks(ZUL& design);
void addInterrupts(ZUL& design);
void addEvents(ZUL& design);
/// @param path of a shared library; without directory, "lib" and extension it is the library's name
/// @throws std::runtime_error when the file cannot be read
void addLibrary(ZUL& design, char const* path);
/// Gives the design an id that changes with its libraries: they are unpacked into a directory that is named after it.
void makeId(ZUL& design);
void addConfigurations(ZUL& design);

/// Makes a tag of @p design and adds it; the design owns it then.
template <class Tag, class... Arguments>
Tag& add(ZUL& design, Arguments&&... arguments)
{
    auto tag = std::make_unique<Tag>(&design, std::forward<Arguments>(arguments)...);
    design.AddTag(tag.get()); // takes it over, unless it throws
    return *tag.release();
}

/// All tags of one kind in the order of the file.
template <class Tag>
std::vector<Tag*> all(ZUL const& design)
{
    std::vector<Tag*> tags;
    for (unsigned int i = 0; i < design.getTagCount(Tag::tag_id); ++i) {
        tags.push_back(static_cast<Tag*>(design.getTagAt(Tag::tag_id, i)));
    }
    return tags;
}

/// The module with that instance name.
/// @throws std::invalid_argument when there is none
ZUL_module& module(ZUL const& design, char const* instance);

} // namespace sample
