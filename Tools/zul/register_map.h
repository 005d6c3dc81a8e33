#pragma once

#include "walker.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// A register as its tag states it. Texts refer to the file.
struct MappedRegister {
    WalkedTag const* tag;
    std::string_view name;
    std::uint32_t address;
    unsigned msb;
    unsigned lsb;
    std::uint32_t access;
    bool writable;
    std::uint64_t value;
    std::vector<std::string_view> aliases; ///< of the links that lead here, over other links too
};

/// A register link and where it leads.
struct MappedLink {
    enum class End { Register, Nothing, Circle };

    WalkedTag const* tag;
    std::string_view alias;
    std::string_view target;
    End end = End::Nothing;
    std::size_t reg = 0; ///< index of the register, for End::Register
};

/// All registers and register links of a file, in file order. Names lead to what a lookup finds: registers of the older
/// layout before those of the newer before links, the first of a name.
struct RegisterMap {
    explicit RegisterMap(Walk const& walk);

    std::vector<MappedRegister> registers;
    std::vector<MappedLink> links;
};

char const* nameOf(MappedLink::End end) noexcept;
