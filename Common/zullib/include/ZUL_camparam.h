#pragma once

#include "laid_out_tag.h"

#include <cstdint>

class ZUL_module;

/// The camera channel of a module.
class ZUL_camparam : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x815D000;

    /// @param module not owned, has to outlive this tag; may be null
    ZUL_camparam(ZUL* parent, unsigned int channel, ZUL_module const* module)
        : LaidOutTag(parent), m_channel(channel), m_module(module)
    {
    }
    ZUL_camparam(ZUL_camparam const& other) = default;
    explicit ZUL_camparam(ZUL_camparam const* other) : ZUL_camparam(*other) {}
    ZUL_camparam& operator=(ZUL_camparam const& other) = default;

    void setChannel(unsigned int channel) noexcept { m_channel = channel; }
    unsigned int getChannel() const noexcept { return m_channel; }
    void setModule(ZUL_module const* module) noexcept { m_module = module; }
    /// Null when there is none.
    ZUL_module const* getModule() const noexcept { return m_module; }
    /// The index of the module; 0xFFFFFFFF when there is none.
    unsigned int getModuleIndex() const noexcept;

    /// @throws std::runtime_error when there is no module
    void checkDependentFields() override;
    std::uint32_t getTagId() const override { return tag_id; }

    using ZUL_tag::operator<;
    using ZUL_tag::operator>;
    using ZUL_tag::operator==;
    /// Compares the channels. @throws std::bad_cast when @p other is not a camera parameter
    bool operator<(ZUL_tag const& other) const override;
    /// Compares the channels. @throws std::bad_cast when @p other is not a camera parameter
    bool operator>(ZUL_tag const& other) const override;
    /// True when @p other is a camera parameter with the same channel and module index.
    bool operator==(ZUL_tag const& other) const override;
    bool operator==(ZUL_camparam const& other) const;

private:
    void layout(TagLayout& row) override;

    std::uint32_t m_channel;
    ZUL_module const* m_module;
};
