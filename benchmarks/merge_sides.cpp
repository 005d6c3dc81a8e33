#include "merge_sides.h"

#include "ZUL_event.h"

#include <stdexcept>

MergeTarget::MergeTarget(std::uint32_t tags) : m_bytes(shapeNamed("cameras-processes").make(tags))
{
    constexpr unsigned char queue = 254;
    if (m_zul.Load(m_bytes.data(), m_bytes.size()) != 0) {
        throw std::runtime_error("the shape does not load");
    }
    for (std::uint32_t i = 0; i < tags; ++i) {
        m_zul.AddTag(new ZUL_event(&m_zul, queue, 0, 0));
    }
}
