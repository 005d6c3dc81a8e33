#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

/// A named piece of free information: a number or a text.
class ZUL_user_info : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8159000;

    /// What the value is. Other numbers are refused by Load.
    enum type : std::uint32_t {
        integer = 200, ///< u32
        text = 300     ///< at most 64 characters
    };

    /// @param info the name, as for setInfo
    ZUL_user_info(ZUL* parent, char const* info, unsigned int value);
    /// @param info the name, as for setInfo
    /// @param value as for setValue
    ZUL_user_info(ZUL* parent, char const* info, char const* value);
    /// @throws std::runtime_error as assignment does
    ZUL_user_info(ZUL_user_info const& other);
    explicit ZUL_user_info(ZUL_user_info const* other) : ZUL_user_info(*other) {}
    /// @throws std::runtime_error "Invalid type in ZUL_user_info" when a failed load left another type in @p other
    ZUL_user_info& operator=(ZUL_user_info const& other);

    /// The name. Keeps at most 64 characters; null leaves no name.
    void setInfo(char const* info);
    /// Null when there is none; valid until the next change of the name.
    char const* getInfo() const noexcept { return m_info.get(); }

    /// A change of the type leaves the number 0 or no text. Numbers that are no type change nothing.
    void setType(ZUL_user_info::type const& newType);
    ZUL_user_info::type getType() const noexcept { return static_cast<ZUL_user_info::type>(m_type); }

    /// Makes the value a number.
    void setValue(unsigned int value);
    /// Makes the value a text. Keeps at most 64 characters; null leaves no text.
    void setValue(char const* value);
    /// setInfo and setValue.
    void set(char const* info, unsigned int value);
    /// setInfo and setValue.
    void set(char const* info, char const* value);

    /// The number; 0 when the value is none.
    unsigned int getInfoValue() const noexcept { return m_type == integer ? m_integer : 0; }
    /// Where the number is, valid as long as the tag; null when the value is none.
    unsigned int const* getInfoValuePtr() const noexcept { return m_type == integer ? &m_integer : nullptr; }
    /// The text, valid until the next change of the value; null when the value is none or none was set.
    char const* getInfoString() const noexcept { return m_type == text ? m_text.get() : nullptr; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    static constexpr std::uint64_t infoWidth = 64;
    static constexpr std::uint64_t textWidth = 64;

    void layout(TagLayout& row) override;
    bool hasValidType() const noexcept { return m_type == integer || m_type == text; }

    std::uint16_t m_type = integer; // as stored: a failed load may leave what is no type
    std::uint32_t m_integer = 0;
    TagText m_info;
    TagText m_text;
};
