#include "class_cycle.h"

#include "failing_allocations.h"
#include "look_around.h"
#include "zullib.h"

#include <cstring>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <vector>

namespace {

using Image = std::vector<std::uint8_t>;

/// Runs @p action with failing allocations. @return whether memory sufficed
template <class Action>
bool sufficed(Action const& action)
{
    try {
        FailingAllocations const failing;
        action();
        return true;
    } catch (std::bad_alloc const&) {
        must(anAllocationFailed(), "memory does not run out before it does");
        return false;
    }
}

/// @return whether @p zul holds the container now
bool loads(ZUL& zul, Input bytes)
{
    bool loaded = false;
    try {
        bool const toTheEnd = sufficed([&] { loaded = zul.Load(bytes.data(), bytes.size()) == 0; });
        return toTheEnd && loaded;
    } catch (ZUL_runtime_error const&) {
        return false;
    }
}

/// The saved container; nothing when it holds a tag that the format cannot express, which saving tells.
std::optional<Image> saved(ZUL& zul)
{
    try {
        Image image(zul.getSaveLength());
        must(zul.Save(image.data(), image.size()) == 0, "a measured container is saved");
        return image;
    } catch (std::runtime_error const&) {
        return std::nullopt;
    }
}

/// What is done without memory gives the same as with it, or nothing.
void copyAndSaveWithoutMemory(ZUL& zul, std::optional<Image> const& image)
{
    std::optional<ZUL> copy;
    if (sufficed([&] { copy.emplace(zul); })) {
        // Not to the same bytes: the counts that a module was loaded with are not copied.
        auto const copied = saved(*copy);
        must(copied.has_value() == image.has_value(), "a copy can be saved when its source can");
        must(!image || copied->size() == image->size(), "a copy is saved to as many bytes");
    }
    std::optional<Image> again;
    if (sufficed([&] { again = saved(zul); })) {
        must(again == image, "saving changes nothing");
    }
}

bool merges(ZUL& zul, Input second)
{
    ZUL other;
    if (second.empty() || !loads(other, second)) {
        return false;
    }
    try {
        return sufficed([&] { zul.mergeAllOrNothing(other, {}); });
    } catch (ZUL_runtime_error const&) {
        return false;
    }
}

bool holdsUnknownTag(ZUL& zul, Input input)
{
    for (std::size_t offset = 24; offset + 8 < input.size();) {
        std::uint32_t id = 0;
        std::uint32_t length = 0;
        std::memcpy(&id, input.data() + offset, sizeof id);
        std::memcpy(&length, input.data() + offset + 4, sizeof length);
        if (id == 0 ||
            dynamic_cast<ZUL_binary_data*>(zul.getTagAt(id, 0)) != nullptr) { // id 0 is never found
            return true;
        }
        offset += length;
    }
    return false;
}

bool mayReferBackwards(ZUL& zul)
{
    return zul.getTagCount(ZUL_process::tag_id) > 1 || zul.findRegister("") != nullptr;
}

/// Sorting may put another process with the id of a module's first, and reading that again binds the module to it.
bool processesDiffer(ZUL const& zul)
{
    std::set<unsigned int> ids;
    for (unsigned int i = 0; i < zul.getTagCount(ZUL_process::tag_id); ++i) {
        if (!ids.insert(static_cast<ZUL_process*>(zul.getTagAt(ZUL_process::tag_id, i))->getId()).second) {
            return false;
        }
    }
    return true;
}

/// @param lossless whether nothing in the container may get lost on the way
/// @param same whether a save has to write the same again
void reload(Image const& image, bool lossless, bool same)
{
    ZUL second;
    bool const loaded = loads(second, image);
    must(loaded || !lossless || anAllocationFailed(), "what was saved loads");
    if (loaded) {
        reached("saved containers loaded");
        lookAround(second);
        auto const again = saved(second);
        must(!again || !same || *again == image, "a second save writes the same bytes");
    }
}

} // namespace

void cycleThroughClasses(Input first, Input second, bool newRegisters)
{
    ZUL zul;
    zul.setRegisterPolicy(ZULRegisterPolicy{newRegisters ? 1U : 0U});
    if (!loads(zul, first)) {
        return;
    }
    reached("containers loaded");
    // What the format itself loses: tags behind an unknown one; a module that sorting puts before its process; texts
    // that begin with NUL. A merged container may hold more that a file cannot.
    bool const lossless = !holdsUnknownTag(zul, first) && !mayReferBackwards(zul);
    sufficed([&] { lookAround(zul); });
    lookAround(zul);
    auto image = saved(zul);
    copyAndSaveWithoutMemory(zul, image);
    bool const merged = merges(zul, second);
    if (merged) {
        reached("containers merged");
        lookAround(zul);
        image = saved(zul);
    } else {
        must(saved(zul) == image, "a refused merge changes nothing");
    }
    if (image) {
        reached("containers saved");
        reload(*image, lossless && !merged, !merged && processesDiffer(zul));
    }
}
