#pragma once

#include "ZUL_register.h"
#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

/// A second name for a register, with an access and a read-only flag of its own.
///
/// It holds names only: whether a register has the target's name shows when the container looks a name up.
class ZUL_register_link : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8151001;

    /// Not read-only, first access.
    /// @param alias, target as for their setters
    ZUL_register_link(ZUL* parent, char const* alias, char const* target);
    ZUL_register_link(ZUL_register_link const& other) = default;
    explicit ZUL_register_link(ZUL_register_link const* other) : ZUL_register_link(*other) {}
    ZUL_register_link& operator=(ZUL_register_link const& other);

    /// The second name. Keeps at most 128 characters; null or "" leaves none.
    void setAlias(char const* alias);
    /// Null when there is none; valid until the next change of the alias.
    char const* getAlias() const noexcept { return m_alias.get(); }
    /// The register's name, or another alias. Keeps at most 64 characters; null or "" leaves none.
    void setTarget(char const* target);
    /// Takes the name of @p target; null leaves none.
    void setTarget(ZUL_register const* target);
    /// Null when there is none; valid until the next change of the target.
    char const* getTarget() const noexcept { return m_target.get(); }
    /// Stores both without checks.
    void setType(bool readOnly, ZUL_register::access type) noexcept;
    bool isReadOnly() const noexcept { return m_readOnly; }
    ZUL_register::access getType() const noexcept { return m_access; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    friend class RegisterNames; // files texts by their lengths

    static constexpr std::uint64_t targetWidth = 64;
    static constexpr std::uint64_t aliasWidth = 128;

    void layout(TagLayout& row) override;

    bool m_readOnly = false;
    ZUL_register::access m_access = ZUL_register::access1;
    TagText m_target;
    TagText m_alias;
};
