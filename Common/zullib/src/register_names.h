#pragma once

#include "hash_slots.h"

#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

class ZUL_register;
class ZUL_register_link;

/// Every register by every name that leads to it.
///
/// A name is a register's, or the alias of a link that points to another name. Each name is resolved once, when the
/// register at the end of its way becomes known, by walking the links backwards from there; so a question costs one
/// look-up however long the chain, and a name on a circle simply stays unresolved.
///
/// The slot of a name leads straight to its register, whose text the name is: there is nothing between the two that a
/// load has to write and a question has to wait for. Only what links say of a name is kept beside the slots.
class RegisterNames {
public:
    struct Found {
        ZUL_register* tag = nullptr;
        std::uint32_t number = 0; ///< 1-based: older layout first, then newer; 0 when there is none
    };

    void clear();
    /// Registers in list order, before all links; of equal names the first counts, and one of the older layout before
    /// one of the newer.
    void add(ZUL_register& reg);
    /// Links in list order; of equal aliases the first counts.
    void add(ZUL_register_link& link);
    /// Adds a register, unless its name leads to one already. @return whether it was added
    bool addNew(ZUL_register& reg);
    /// As add, unless the link's target is the alias of another. @return whether it was added
    bool addNew(ZUL_register_link& link);

    Found find(std::string_view name);

private:
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
    static constexpr std::uint32_t newerLayout = 1;

    /// A register and its place: twice the number of those of its layout before it, and newerLayout.
    struct Placed {
        ZUL_register* reg = nullptr;
        std::uint32_t place = none;
    };
    /// What links say of a name that one of them has as its alias, or as its target before there is a register.
    struct LinkedName {
        std::string_view name;              // the text is a tag's
        Placed resolved{};                  // where the name leads to
        std::uint32_t firstPointing = none; // names that lead to this one, as long as it leads nowhere
        std::uint32_t nextPointing = none;
        bool alias = false;
    };
    struct Slot {
        ZUL_register* reg = nullptr; // the register of the name; null for a linked name
        std::uint32_t place = none;  // the register's, or the number of the linked name
        std::uint32_t hashOfName = 0;

        bool isFree() const noexcept { return place == none; }
        std::uint64_t hash() const noexcept { return hashOfName; }
    };
    struct Is;

    std::string_view nameOf(Slot const& slot) const;
    Placed resolved(Slot const& slot) const;
    Slot* slotOf(std::string_view name);
    std::pair<Slot*, bool> insert(std::string_view name);
    std::uint32_t nextPlace(ZUL_register const& reg);
    std::uint32_t linked(std::string_view name);
    Slot const* targetOf(ZUL_register_link const& link);
    void point(ZUL_register_link const& link, Slot const* slotOfTarget);
    void resolve(std::uint32_t name, Placed to) noexcept;

    HashSlots<Slot> m_slots;
    std::vector<LinkedName> m_linked;
    std::uint32_t m_oldCount = 0;
    std::uint32_t m_newCount = 0;
};
