// What loads strictly can be copied, measured and saved, and what was saved loads again to the same bytes. Exceptions
// are what the format itself loses: tags behind an unknown one; a module that sorting puts before its process; texts
// that begin with NUL.

#include "quiet_output.h"
#include "zullib.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <vector>

namespace {

using Image = std::vector<std::uint8_t>;

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

bool holdsUnknownTag(ZUL& zul, std::uint8_t const* data, std::size_t size)
{
    for (std::size_t offset = 24; offset + 8 < size;) {
        std::uint32_t id = 0;
        std::uint32_t length = 0;
        std::memcpy(&id, data + offset, sizeof id);
        std::memcpy(&length, data + offset + 4, sizeof length);
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    keepOutputQuiet();
    ZUL first;
    try {
        if (first.Load(data, size) != 0) {
            return 0;
        }
    } catch (ZUL_runtime_error const&) {
        return 0;
    }
    ZUL copy(first);
    auto const image = saved(first);
    must(image.has_value() == saved(copy).has_value(), "a copy can be saved when its source can");
    if (!image) {
        return 0;
    }
    ZUL second;
    bool loads = false;
    bool excused = holdsUnknownTag(first, data, size);
    try {
        loads = second.Load(image->data(), image->size()) == 0;
    } catch (ZUL_file_bad_reference const&) {
        excused = excused || mayReferBackwards(first);
    } catch (ZUL_runtime_error const&) {
    }
    must(loads || excused, "what was saved loads");
    if (loads) {
        auto const again = saved(second);
        must(!again || *again == *image, "a second save writes the same bytes");
    }
    return 0;
}
