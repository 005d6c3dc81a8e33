#include "register_links.h"

#include "tag_cast.h"
#include "zullib.h"

bool leadsToItsRegister(ZUL_register_link const& link, ZUL const& other, ZUL const& own)
{
    ZUL_register const* const inOther = other.findRegister(link.getTarget());
    ZUL_register const* const target = inOther != nullptr ? inOther : own.findRegister(link.getTarget());
    return target != nullptr && target->isReadOnly() == link.isReadOnly() &&
           target->getType() == link.getType();
}

int checkRegisterLinks(ZUL const* other, ZUL const* own)
{
    bool allResolve = true;
    own->forEachTag([&](ZUL_tag& tag) {
        if (auto const* const link = tagOfKind<ZUL_register_link>(&tag)) {
            allResolve = allResolve && leadsToItsRegister(*link, *other, *own);
        }
    });
    return allResolve ? 1 : 0;
}
