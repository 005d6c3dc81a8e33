#pragma once

#include "first_with_key.h"

#include <cstdint>
#include <string_view>

class ZUL_register;
class ZUL_register_link;

/// Every register by every name that leads to it.
///
/// A name is a register's, or the alias of a link that points to another name. Each name is resolved once, when the
/// register at the end of its way becomes known, by walking the links backwards from there; so a question costs one
/// look-up however long the chain, and a name on a circle simply stays unresolved.
class RegisterNames {
public:
    struct Found {
        ZUL_register* tag = nullptr;
        std::uint32_t number = 0; ///< 1-based: older layout first, then newer; 0 when there is none
    };

    void clear();
    /// Registers and links in list order; of equal names the first counts, and one of the older layout before one of
    /// the newer. When an index is rebuilt, all registers come before all links.
    void add(ZUL_register& reg);
    void add(ZUL_register_link& link);
    /// As add, unless the register's name leads to a register already. @return whether it was added
    bool addNew(ZUL_register& reg);
    /// As add, unless the link's target is the alias of another. @return whether it was added
    bool addNew(ZUL_register_link& link);

    Found find(std::string_view name);

private:
    struct Entry {
        ZUL_register* reg = nullptr;
        std::uint32_t position = 0; // of reg among the registers of its layout
        bool newLayout = false;
        bool alias = false;
        Entry* resolved = nullptr;      // the entry with the register that this name leads to
        Entry* firstPointing = nullptr; // entries whose link has this name as target
        Entry* nextPointing = nullptr;
    };

    Entry& entryOf(std::string_view name) { return *m_names.insert(name).first; }
    static void resolve(Entry& entry, Entry& to);
    void fill(Entry& entry, ZUL_register& reg);
    void point(Entry& alias, Entry& target);

    KeyTable<std::string_view, Entry, SeededHash> m_names; // the texts are the tags'
    std::uint32_t m_oldCount = 0;
    std::uint32_t m_newCount = 0;
};
