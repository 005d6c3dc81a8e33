#pragma once

#include "laid_out_tag.h"
#include "tag_text.h"

#include <cstdint>

/// An independent part of the design with its own clock. Modules refer to it by its id.
class ZUL_process : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8158000;

    /// @param name as for setName; null leaves the process without a name
    ZUL_process(ZUL* parent, unsigned int id, char const* name);
    ZUL_process(ZUL_process const& other) = default;
    explicit ZUL_process(ZUL_process const* other) : ZUL_process(*other) {}
    ZUL_process& operator=(ZUL_process const& other);

    /// Keeps at most 64 characters.
    void setName(char const* name) { m_name.set(name, nameWidth); }
    /// Null when there is none; valid until the next change of the name.
    char const* getName() const noexcept { return m_name.get(); }
    void setId(unsigned int id);
    unsigned int getId() const noexcept { return m_id; }
    void setClock(unsigned int clock) noexcept { m_clock = clock; }
    unsigned int getClock() const noexcept { return m_clock; }

    std::uint32_t getTagId() const override { return tag_id; }

    using ZUL_tag::operator<;
    using ZUL_tag::operator>;
    using ZUL_tag::operator==;
    /// Compares the ids. @throws std::bad_cast when @p other is not a process
    bool operator<(ZUL_tag const& other) const override;
    /// Compares the ids. @throws std::bad_cast when @p other is not a process
    bool operator>(ZUL_tag const& other) const override;
    /// True when @p other is a process with the same id, clock and name.
    bool operator==(ZUL_tag const& other) const override;
    bool operator==(ZUL_process const& other) const;

private:
    static constexpr std::uint64_t nameWidth = 64;

    void layout(TagLayout& row) override;

    std::uint32_t m_id = 0;
    std::uint32_t m_clock = 0;
    TagText m_name;
};
