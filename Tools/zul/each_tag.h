#pragma once

#include "tag_cast.h"
#include "zul_class.h"

/// Calls @p action with every tag of the list that is of the kind @p Tag, in order.
template <class Tag, class Action>
void forEach(ZUL const& zul, Action const& action)
{
    zul.forEachTag([&action](ZUL_tag& tag) {
        if (Tag* const found = tagOfKind<Tag>(&tag)) {
            action(*found);
        }
    });
}
