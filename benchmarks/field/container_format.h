#pragma once

#include "format.h"

/// A format whose bytes are the container itself.
class ContainerFormat : public Format {
public:
    Stored write(Content const&, std::span<std::byte const> container) const override
    {
        return Stored(std::vector<std::byte>(container.begin(), container.end()));
    }
};
