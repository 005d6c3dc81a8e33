#pragma once

class ZUL;
class ZUL_register_link;

/// Whether every register link of @p own leads to a register, of @p other or else of @p own, that can be read and
/// written as the link says and is of its type. Links of @p other are not looked at.
/// @return 1 if so, otherwise 0
/// @throws std::bad_alloc
int checkRegisterLinks(ZUL const* other, ZUL const* own);

/// The same of one link of @p own. @throws std::bad_alloc
bool leadsToItsRegister(ZUL_register_link const& link, ZUL const& other, ZUL const& own);
