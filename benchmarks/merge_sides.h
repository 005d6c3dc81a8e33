#pragma once

#include "shapes.h"
#include "zul_class.h"

/// The container that others are merged into: processes with modules and cameras, and as many events on one interrupt
/// queue. Nothing in a shape collides with it.
class MergeTarget {
public:
    explicit MergeTarget(std::uint32_t tags);

    ZUL const& operator*() const { return m_zul; }
    ZUL& operator*() { return m_zul; }

private:
    Bytes m_bytes; // outlives the container
    ZUL m_zul;
};
