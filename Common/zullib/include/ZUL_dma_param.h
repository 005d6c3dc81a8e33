#pragma once

#include "laid_out_tag.h"

#include <cstdint>

class ZUL_module;

/// The DMA channel of a module, with the largest image that it transfers.
class ZUL_dma_param : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x815C000;

    /// Sizes, format and bit width are 0.
    /// @param dmaChannel stored as a signed number
    /// @param module not owned, has to outlive this tag; may be null
    ZUL_dma_param(ZUL* parent, unsigned int dmaChannel, ZUL_module const* module)
        : LaidOutTag(parent), m_dmaChannel(static_cast<int>(dmaChannel)), m_module(module)
    {
    }
    ZUL_dma_param(ZUL_dma_param const& other) = default;
    explicit ZUL_dma_param(ZUL_dma_param const* other) : ZUL_dma_param(*other) {}
    ZUL_dma_param& operator=(ZUL_dma_param const& other) = default;

    void setDmaChannel(int const& channel) noexcept { m_dmaChannel = channel; }
    int getDmaChannel() const noexcept { return m_dmaChannel; }
    void setModule(ZUL_module const* module) noexcept { m_module = module; }
    /// Null when there is none.
    ZUL_module const* getModule() const noexcept { return m_module; }
    /// The index of the module; -1 when there is none.
    int getModuleIndex() const noexcept;
    /// In pixels.
    void setMaxWidth(unsigned int const& width) noexcept { m_maxWidth = width; }
    unsigned int getMaxWidth() const noexcept { return m_maxWidth; }
    /// In lines.
    void setMaxHeight(unsigned int const& height) noexcept { m_maxHeight = height; }
    unsigned int getMaxHeight() const noexcept { return m_maxHeight; }
    void setFormat(unsigned int const& format) noexcept { m_format = format; }
    unsigned int getFormat() const noexcept { return m_format; }
    void setBitwidth(unsigned int const& bits) noexcept { m_bitWidth = bits; }
    unsigned int getBitwidth() const noexcept { return m_bitWidth; }

    /// @throws std::runtime_error when there is no module
    void checkDependentFields() override;
    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::int32_t m_dmaChannel;
    std::uint32_t m_maxWidth = 0;
    std::uint32_t m_maxHeight = 0;
    std::uint32_t m_format = 0;
    std::uint32_t m_bitWidth = 0;
    ZUL_module const* m_module;
};
