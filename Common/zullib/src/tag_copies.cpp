#include "tag_copies.h"

#include "ZUL_binary_data.h"
#include "tag_kinds.h"

#include <cstddef>
#include <vector>

namespace {

std::unique_ptr<ZUL_tag> copyAsBytes(ZUL* parent, ZUL_tag& tag)
{
    auto copy = std::make_unique<ZUL_binary_data>(parent, tag.getTagId());
    if (std::vector<std::byte> bytes(tag.getSaveLength()); !bytes.empty()) {
        tag.Save(bytes.data());
        copy->Load(bytes.data(), bytes.size());
    }
    return copy;
}

} // namespace

std::unique_ptr<ZUL_tag> copyTag(ZUL* parent, ZUL_tag& tag)
{
    TagKind const* const kind = findTagKind(tag.getTagId());
    std::unique_ptr<ZUL_tag> copy = kind == nullptr ? nullptr : kind->copy(parent, tag);
    if (auto const* const raw = dynamic_cast<ZUL_binary_data const*>(&tag);
        copy == nullptr && raw != nullptr) {
        auto rawCopy = std::make_unique<ZUL_binary_data>(*raw);
        rawCopy->setParent(parent);
        return rawCopy;
    }
    return copy != nullptr ? std::move(copy) : copyAsBytes(parent, tag);
}
